#pragma once
// The time steps of the exact digital run through one stretch of the
// potential program. A ramp is cut so that no step moves the potential by
// more than a small part of RT/nF; after a jump of the potential, or a new
// drop, the steps start very short and grow with the time elapsed, so that
// the current's 1/sqrt(t) start is followed as closely as the smooth parts.
// A cell that divides its steps itself takes each stretch whole, or, where
// the resistance must follow the current, ramps cut by their swing and
// holds after a jump in halves towards their start.
#include <vector>

namespace voltrix {

enum class StretchCut {
  Graded,  // ramps by their swing; after a jump short steps growing with the time since it
  Whole,   // one step
  Halves,  // ramps by their swing; holds after a jump 1/32, 1/32, 1/16, ... 1/2 of the stretch
};

struct StepRules {
  double largestSwing = 0;   // V a step may move the potential
  StretchCut cut = StretchCut::Graded;
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
// second-order formula needs to stay stable. Nothing for a stretch without
// duration.
void PlanSteps(double duration, double swing, bool afterJump, const StepRules& rules, std::vector<double>& steps);

}  // namespace voltrix
