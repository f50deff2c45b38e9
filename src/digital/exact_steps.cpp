#include "digital/exact_steps.h"

#include <algorithm>
#include <cmath>

#include "model/checked.h"

namespace voltrix {

namespace {

// A ramp step moves the potential by at most a tenth of RT/nF. After a jump
// a step is a part of the time elapsed since: large at first, where its
// error has died away by the sample, small in the last 90 % of the stretch,
// where the error of the second-order formula grows as the square of that
// part. With these a potential step gives the Cottrell current within
// 0.03 % and a 5 mV sweep the Randles-Sevcik peak within 0.08 %.
constexpr double kThermalSwing = 0.1;
constexpr double kFirstFraction = 1e-5;
constexpr double kEarlyPart = 0.35;
constexpr double kLatePart = 0.05;
constexpr double kLateStart = 0.1;
constexpr int kHalvings = 5;

}  // namespace

StepRules ExactStepRules(double fRT, double nMax) {
  StepRules rules;
  rules.largestSwing = Div(kThermalSwing, Checked(fRT * nMax));
  rules.firstFraction = kFirstFraction;
  rules.earlyPart = kEarlyPart;
  rules.latePart = kLatePart;
  rules.lateStart = kLateStart;
  return rules;
}

namespace {

void PlanHalves(double duration, std::vector<double>& steps) {
  steps.push_back(std::ldexp(duration, -kHalvings));
  for (int k = kHalvings; k >= 1; --k) steps.push_back(std::ldexp(duration, -k));
}

}  // namespace

void PlanSteps(double duration, double swing, bool afterJump, const StepRules& rules, std::vector<double>& steps) {
  steps.clear();
  if (!(duration > 0)) return;
  if (rules.cut == StretchCut::Whole) {
    steps.push_back(duration);
    return;
  }
  const double pieces = std::max(1.0, std::ceil(std::fabs(swing) / rules.largestSwing));
  if (!(pieces < 1e7)) Raise(ErrorKind::InvalidArgument, "The sweep would need too many time steps");
  if (afterJump && pieces == 1 && rules.cut == StretchCut::Halves) return PlanHalves(duration, steps);
  const double cap = duration / pieces;
  const bool graded = afterJump && rules.cut == StretchCut::Graded;
  double h = graded ? std::min(cap, duration * rules.firstFraction) : cap;
  double t = 0;
  while (true) {
    const double remaining = duration - t;
    if (remaining <= 1.5 * h) {
      steps.push_back(remaining);
      return;
    }
    steps.push_back(h);
    t += h;
    if (graded) h = std::min(cap, t * (t < rules.lateStart * duration ? rules.earlyPart : rules.latePart));
  }
}

}  // namespace voltrix
