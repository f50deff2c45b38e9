#pragma once
// The Marquardt optimiser behind Auto Fit: damped Gauss-Newton with central
// difference derivatives, box bounds and a scaled normal-equation solve. It
// knows nothing of electrochemistry; the curve it fits comes from a FitModel.
#include <vector>

#include "model/experiment.h"
#include "model/field.h"
#include "model/optimiser_memory.h"
#include "model/table.h"

namespace voltrix {

using ParameterVector = Table1<double, kMaxFitted + 1>;  // used from index 1
using FitCurve = std::vector<double>;                     // points 0 to 4000, used from 1

// A curve of 4001 zeros.
inline FitCurve NewFitCurve() { return FitCurve(kMaxPoints + 1, 0.0); }

// The model being fitted: parameters 1 to K in, curve 1 to n out. n is the
// point count as the model leaves it (a simulation may change it).
class FitModel {
 public:
  virtual ~FitModel() = default;
  virtual void Objective(const ParameterVector& parameters, int& n, FitCurve& curve) = 0;

  // The derivative probes of one pass, in their serial order. A model whose
  // probes are independent may run them side by side, as long as the curves,
  // the counts and every visible effect are those of the serial order.
  // counts(p) receives n after probe p.
  virtual void Probes(const std::vector<ParameterVector>& probes, std::vector<FitCurve>& curves,
                      std::vector<int>& counts);
};

// What a pass needs beyond its arguments: the model, the memory that
// survives between passes and fits, the spread of the target (the probe
// step of a parameter at 0) and the evaluation counter of the run.
struct MarquardtContext {
  FitModel& model;
  OptimiserMemory& memory;
  double dataSpread;
  Field& objectiveCount;
  int pointLimit = kMaxPoints;  // a global fit joins several curves into one
  // When set, each pass leaves its derivatives here: column j - 1 holds
  // d(curve)/d(parameter j) at points 0 to n, at the values the pass began from.
  std::vector<std::vector<double>>* lastDerivatives = nullptr;
};

// The derivative probe step of a parameter: 1 percent of its value, the
// spread of the target for a value at 0 (so the step has the curve's units).
double ProbeStep(double value, double dataSpread);

double LargerOf(double a, double b);
double SmallerOf(double a, double b);

// One trial: candidate = base + step, a component that would leave its range
// keeps the base value (and its step becomes 0); then the curve and its sum
// of squares against the target. Counts one evaluation.
void EvaluateCandidate(MarquardtContext& ctx, int k, int& n, ParameterVector& candidate,
                       const ParameterVector& base, ParameterVector& step, double& sumOfSquares, FitCurve& calculated,
                       const FitCurve& target, const ParameterVector& upper, const ParameterVector& lower);

// One outer pass: derivatives once, then steps with rising damping until one
// lowers the sum or the damping passes its ceiling. b and s return the last
// candidate tried, accepted or not. convergenceFlag: 1 improved, -1 below
// the floor, -2 no real improvement. Arithmetic faults raise a RunError.
void MarquardtPass(MarquardtContext& ctx, int k, ParameterVector& b, int& n, FitCurve& calculated,
                   const FitCurve& target, double& s, int& started, int& convergenceFlag, int& marquardtCount,
                   const ParameterVector& lower, const ParameterVector& upper, double variance);

}  // namespace voltrix
