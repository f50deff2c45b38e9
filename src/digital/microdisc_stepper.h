#pragma once
// Backward Euler steps of the disc problem. The transport blocks of each
// step length are eliminated once and kept (the least recently used length
// gives way when the memory budget is spent); per step only the surface
// system, where the potential enters, is factored afresh. Second-order
// steps are solved by Newton's method on the kept factors (a chord
// iteration), refreshed at the current iterate when it slows down; an
// iterate that goes negative on the way is set to 0.
#include <cstdint>
#include <vector>

#include "digital/microdisc_elimination.h"
#include "digital/microdisc_problem.h"

namespace voltrix {

class MicrodiscStepper {
 public:
  explicit MicrodiscStepper(const MicrodiscProblem& problem);

  // From old, one step of h seconds at the potential E (V) into out.
  void step(const double* old, double h, double E, double* out);

 private:
  struct Level {
    double h = 0;
    std::uint64_t lastUse = 0;
    std::vector<BlockElimination> classes;
  };

  void groupClasses();
  Level& levelFor(double h, const double* reference);
  void build(Level& level, const double* reference, bool onlyNonlinear);
  void factorSurface(const Level& level, const ChargeRates& rates);
  void solveCorrection(Level& level);
  double applyCorrection(double* out) const;

  const MicrodiscProblem& problem_;
  std::vector<int> classOf_;             // per group
  std::vector<int> classGroup_;          // a group of each class
  std::vector<Level> levels_;
  std::size_t levelCapacity_ = 0;
  std::uint64_t clock_ = 0;
  bool anyNonlinear_ = false;
  std::vector<double> residual_, partial_, correction_, jacobian_;
  std::vector<double> surface_, surfaceRight_;
  std::vector<int> surfacePivot_;
};

}  // namespace voltrix
