#pragma once
// The work of an exact run's linear algebra, in multiply-adds, against a
// limit that every sensible run stays well within: past it the run stops
// with a message naming what to change, rather than keeping the program
// busy for minutes. Work known before the run starts is checked at once.
#include <string>

namespace voltrix {

// Some ten seconds of this engine's work on one core: four times what a
// cyclic run of 4000 points at a 1 mm disc needs.
inline constexpr double kRunWorkLimit = 3e10;

// What a run asks of its cell, counted from its potential program before it
// starts: the driver's steps, and how many of them start at a jump of the
// potential or on a new drop.
struct RunOutline {
  double steps = 0;
  double jumpSteps = 0;
};

class WorkBudget {
 public:
  // what: the cell as the message names it; advice: what the user may change.
  WorkBudget(std::string what, std::string advice, double limit = kRunWorkLimit);

  // The work of one time step, so that the message can put the limit in
  // time steps.
  void setStepWork(double work) { stepWork_ = work; }
  // Raises InvalidOperation once the work spent passes the limit.
  void spend(double work);
  // Raises the same before anything is computed when the least work a run
  // needs is past it.
  void expect(double work) const;
  double spent() const { return spent_; }

 private:
  [[noreturn]] void refuse() const;

  std::string what_, advice_;
  double limit_ = 0, stepWork_ = 1, spent_ = 0;
};

}  // namespace voltrix
