#pragma once
// Backward Euler steps of the disc problem. The transport blocks of each
// step length are eliminated once and kept (the least recently used length
// gives way when the memory budget is spent), and with them the surface
// system, where the potential enters, factored for the last potential they
// met: a step at another potential factors it afresh. Second-order
// steps are solved by Newton's method on the kept factors (a chord
// iteration), refreshed at the current iterate when it slows down; an
// iterate that goes negative on the way is set to 0.
#include <cstdint>
#include <vector>

#include "digital/exact_budget.h"
#include "digital/microdisc_elimination.h"
#include "digital/microdisc_problem.h"

namespace voltrix {

class MicrodiscStepper {
 public:
  // The work of every solve and elimination is spent from budget.
  MicrodiscStepper(const MicrodiscProblem& problem, WorkBudget& budget);

  // From old, one step of h seconds at the potential E (V) into out.
  void step(const double* old, double h, double E, double* out);

  // Multiply-adds of one pass of a step's linear solve, and of eliminating
  // the blocks of one step length.
  double solveWork() const { return solveWork_; }
  double eliminationWork() const;
  // How many step lengths' blocks fit in memory at once.
  std::size_t levelCapacity() const { return levelCapacity_; }

 private:
  struct Level {
    double h = 0;
    std::uint64_t lastUse = 0;
    std::vector<BlockElimination> classes;
    std::vector<double> surface;  // LU factors of the surface system
    std::vector<int> pivot;
    bool factored = false;
    double factoredAt = 0;  // V
  };

  void groupClasses();
  void measureWork();
  Level& levelFor(double h, const double* reference);
  void build(Level& level, const double* reference, bool onlyNonlinear);
  void factorSurface(Level& level, double E, const ChargeRates& rates);
  void solveCorrection(Level& level);
  double applyCorrection(double* out) const;

  const MicrodiscProblem& problem_;
  WorkBudget& budget_;
  double solveWork_ = 0, surfaceWork_ = 0;
  std::vector<double> classWork_;  // of eliminating each class
  std::vector<int> classOf_;             // per group
  std::vector<int> classGroup_;          // a group of each class
  std::vector<Level> levels_;
  std::size_t levelCapacity_ = 0;
  std::uint64_t clock_ = 0;
  bool anyNonlinear_ = false;
  std::vector<double> residual_, partial_, correction_, jacobian_;
  std::vector<double> surfaceRight_;
};

}  // namespace voltrix
