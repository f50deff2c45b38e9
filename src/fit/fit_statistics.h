#pragma once
// How well a least-squares fit determines its parameters: the covariance
// s^2 (J'J)^-1 at the optimum, with s^2 = S / (N - K), and what follows from
// it. A pure kernel: the Jacobian comes from whoever simulated the curve.
#include <vector>

#include "fit/symmetric_eigen.h"

namespace voltrix {

struct ParameterSpread {
  double value = 0;
  double standardError = 0;
  double low = 0, high = 0;  // the 95 % interval, Student's t with N - K degrees of freedom
  double relativeError = 0;  // standard error over |value|; 0 for a value of 0
  bool determined = true;    // false: the curve does not change with it
};

struct FitStatistics {
  int points = 0, parameters = 0;
  double sumOfSquares = 0;
  double reducedChiSquare = 0;  // S / (N - K)
  double tFactor = 0;           // the 97.5 % point of Student's t
  // Of J'J scaled to a unit diagonal, so that the units of the parameters do
  // not count; `singular` when its smallest eigenvalue is lost in rounding.
  double conditionNumber = 0;
  bool singular = false;
  std::vector<ParameterSpread> spread;  // by fitted position from 0
  SquareMatrix correlation;
  int mostCorrelatedA = -1, mostCorrelatedB = -1;  // positions; -1 with fewer than two
  double largestCorrelation = 0;                   // signed
};

// columns[j][l] = d curve(l) / d parameter j for points l = 1 to `points`
// (index 0 unused); values by fitted position from 0.
FitStatistics SpreadOfFit(const SquareMatrix& columns, const std::vector<double>& values, double sumOfSquares,
                          int points);

// A condition number above this means the curve does not tell all the
// fitted parameters apart.
constexpr double kIllConditioned = 1e8;

}  // namespace voltrix
