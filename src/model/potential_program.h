#pragma once
// The potential program of a run on its true time axis: what the electrode
// is held at, for how long, and when each data point's current is sampled.
// The exact engines (closed-form and finite-difference) both march through
// it, so a technique's timing has one definition.
#include <vector>

#include "model/curve_store.h"
#include "model/experiment.h"

namespace voltrix {

// The applied potential moves linearly from Ebegin to Eend (V) over
// duration (s); a step is a stretch with Ebegin = Eend. A renewed stretch
// starts from the bulk solution: a new drop, as the program's DC and pulse
// techniques assume.
struct ProgramStretch {
  double duration = 0;
  double Ebegin = 0, Eend = 0;
  bool renew = false;
};

// Point `point` shows the sum over its samples of weight times the current
// at the end of stretch `stretch`. A stretch of zero length samples the
// state the previous one left (the vertex of a cycle stands twice).
struct ProgramSample {
  int stretch = 0;
  int point = 0;
  double weight = 1;
};

struct PotentialProgram {
  std::vector<ProgramStretch> stretches;
  std::vector<ProgramSample> samples;
  double totalTime() const;
};

// Reads Technique, XData(1..NData), NHalf, V, td, tp and Epulse:
//   sweep: a linear ramp at V through the points, from rest at X(1);
//   DC: each point a new drop held at X(i) for td, sampled at its end;
//   normal pulse: a new drop at X(1) for td - tp, then X(i) + Epulse for tp;
//   differential pulse: a new drop at X(i) for td - tp, then X(i) + P for tp,
//     the difference of the samples at the ends of both (P = Epulse, -Epulse
//     on the way back);
//   square wave: a staircase, each point tp at X(i) + Epulse/2 (forward) then
//     tp at X(i) - Epulse/2 (reverse), the forward sample minus the reverse
//     one; the pulse follows the scan direction on the way back.
// Raises InvalidArgument for a time that is not positive where the technique
// needs it, and DivisionByZero for a sweep with V of 0.
PotentialProgram BuildPotentialProgram(const Experiment& e, const Table1<double, kMaxPoints + 1>& X);

}  // namespace voltrix
