#pragma once
// The time steps of the exact digital run through one stretch of the
// potential program. A ramp is cut so that no step moves the potential by
// more than a small part of RT/nF; after a jump of the potential, or a new
// drop, the steps start very short and grow with the time elapsed, so that
// the current's 1/sqrt(t) start is followed as closely as the smooth parts.
// A cell that divides its steps itself takes a hold whole, or (where the
// resistance must follow the start) in halves towards its start.
#include <vector>

namespace voltrix {

// How a stretch that starts at a jump or a new drop is cut.
enum class JumpSteps {
  Graded,   // short first steps growing with the time since the jump
  Whole,    // as any other stretch
  Halves,   // 1/32, 1/32, 1/16, ... 1/2 of it: each a power-of-two part of the stretch
};

struct StepRules {
  double largestSwing = 0;   // V a step may move the potential
  JumpSteps afterJump = JumpSteps::Graded;
  double firstFraction = 0;  // first step after a jump, as a part of the stretch
  double earlyPart = 0;      // later steps after a jump, as a part of the time since it,
  double latePart = 0;       // before and after lateStart of the stretch
  double lateStart = 0;
};

// Rules for electrons numbers up to nMax at F/RT = fRT.
StepRules ExactStepRules(double fRT, double nMax);

// The steps (s) through a stretch of `duration` s over which the potential
// moves by `swing` V; `afterJump` when it starts at a jump or a new drop.
// A graded step is never more than 1 + earlyPart times the one before it
// (the last one, 1.5 times that), well within what the variable-step
// second-order formula needs to stay stable. A ramp cut by its swing is
// cut evenly whatever the rules. Nothing for a stretch without duration.
void PlanSteps(double duration, double swing, bool afterJump, const StepRules& rules, std::vector<double>& steps);

}  // namespace voltrix
