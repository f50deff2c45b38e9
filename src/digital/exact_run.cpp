#include "digital/exact_run.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "digital/exact_layout.h"
#include "digital/exact_resistance.h"
#include "digital/exact_steps.h"
#include "digital/reaction_set.h"
#include "model/checked.h"
#include "model/curve_store.h"
#include "model/platform.h"
#include "model/potential_program.h"

namespace voltrix {

namespace {

double LargestElectronNumber(const ReactionSet& set) {
  double n = 1;
  for (const ChargeStep& s : set.charge) n = std::max(n, s.n);
  return n;
}

// Whether each stretch starts at a jump of the potential or on a new drop,
// where the steps must start short.
std::vector<char> JumpStarts(const PotentialProgram& p) {
  std::vector<char> jumps(p.stretches.size());
  bool fresh = true;
  double previousEnd = 0;
  for (std::size_t k = 0; k < p.stretches.size(); ++k) {
    const ProgramStretch& s = p.stretches[k];
    fresh = fresh || s.renew;
    jumps[k] = fresh || s.Ebegin != previousEnd;
    if (s.duration > 0) fresh = false;
    previousEnd = s.Eend;
  }
  return jumps;
}

// The time scales a cell must resolve: a sampled hold from its start, a
// sampled ramp over the time it takes to move RT/nF, the longest time the
// solution evolves between new drops (how far diffusion reaches); and the
// steps the run will ask of it.
ProgramScales MeasureProgram(const PotentialProgram& p, const std::vector<char>& jumps, const StepRules& rules,
                             double thermalVolt) {
  constexpr double kNone = std::numeric_limits<double>::max();
  ProgramScales scales{kNone, 0, kNone, RunOutline{}};
  std::vector<char> sampled(p.stretches.size());
  for (const ProgramSample& s : p.samples) sampled[s.stretch] = 1;
  std::vector<double> steps;
  double sinceRenewal = 0;
  for (std::size_t k = 0; k < p.stretches.size(); ++k) {
    const ProgramStretch& s = p.stretches[k];
    sinceRenewal = s.renew ? s.duration : sinceRenewal + s.duration;
    scales.totalTime = std::max(scales.totalTime, sinceRenewal);
    if (!(s.duration > 0)) continue;
    const double swing = std::fabs(s.Eend - s.Ebegin);
    if (sampled[k])
      scales.resolvedTime = std::min(scales.resolvedTime, swing == 0 ? s.duration : thermalVolt * s.duration / swing);
    PlanSteps(s.duration, s.Eend - s.Ebegin, jumps[k], rules, steps);
    scales.shortestStep = std::min(scales.shortestStep, *std::min_element(steps.begin(), steps.end()));
    scales.outline.steps += static_cast<double>(steps.size());
    scales.outline.jumpSteps += jumps[k] ? 1 : 0;
  }
  if (scales.resolvedTime == kNone) scales.resolvedTime = scales.totalTime > 0 ? scales.totalTime : 1;
  if (scales.shortestStep == kNone) scales.shortestStep = scales.resolvedTime;
  if (!(scales.totalTime > 0)) scales.totalTime = scales.resolvedTime;
  return scales;
}

class ExactMarch {
 public:
  ExactMarch(Experiment& e, CurveStore& s, const ReactionSet& set, const PotentialProgram& program)
      : s_(s), set_(set), program_(program), jumps_(JumpStarts(program)) {
    rules_ = ExactStepRules(set.fRT, LargestElectronNumber(set));
    rules_.cut = StretchCutFor(e);
    const ProgramScales scales =
        MeasureProgram(program, jumps_, rules_, Div(1.0, set.fRT * LargestElectronNumber(set)));
    cell_ = MakeExactCell(e, set, scales);
    Ru_ = std::max(0.0, e.Ru.value());
  }

  void run() {
    for (std::size_t k = 0; k < program_.stretches.size(); ++k) {
      runStretch(program_.stretches[k], jumps_[k]);
      writeSamples(static_cast<int>(k));
    }
  }

 private:
  void runStretch(const ProgramStretch& stretch, bool jump) {
    if (stretch.renew) {
      cell_->renew();
      accepted_ = CellCurrents{};
    }
    PlanSteps(stretch.duration, stretch.Eend - stretch.Ebegin, jump, rules_, steps_);
    double t = 0;
    for (std::size_t j = 0; j < steps_.size(); ++j) {
      t += steps_[j];
      const double part = j + 1 == steps_.size() ? 1.0 : t / stretch.duration;
      const double applied = stretch.Ebegin + (stretch.Eend - stretch.Ebegin) * part;
      // At a jump the interface starts from the new potential less the drop
      // of the current just before it.
      const double from = j == 0 && jump ? Checked(stretch.Ebegin + Ru_ * accepted_.total) : interface_;
      const InterfaceStep step = SolveInterface(*cell_, from, applied, steps_[j], Ru_, accepted_.total);
      cell_->accept();
      accepted_ = step.currents;
      interface_ = step.E;
    }
  }

  void writeSamples(int stretch) {
    for (; next_ < program_.samples.size() && program_.samples[next_].stretch == stretch; ++next_) {
      const ProgramSample& sample = program_.samples[next_];
      for (std::size_t r = 1; r <= set_.charge.size(); ++r) {
        double& y = s_.YSim(static_cast<long>(r), sample.point);
        y = Checked(y + sample.weight * accepted_.reaction[r]);
      }
      for (int i = 1; i <= set_.species; ++i) s_.SurfC(i, sample.point) = Checked(cell_->surfaceConcentration(i));
    }
  }

  CurveStore& s_;
  const ReactionSet& set_;
  const PotentialProgram& program_;
  std::vector<char> jumps_;
  StepRules rules_;
  std::unique_ptr<TransportCell> cell_;
  double Ru_ = 0;
  CellCurrents accepted_;
  double interface_ = 0;
  std::vector<double> steps_;
  std::size_t next_ = 0;
};

}  // namespace

void RunExactDigital(Experiment& e, CurveStore& s, MessageBox& messages) {
  ReactionSet set;
  try {
    set = ReadReactionSet(e);
  } catch (const RunError& error) {
    messages.show("Error: " + error.description() + ".");
    return;
  }
  try {
    const PotentialProgram program = BuildPotentialProgram(e, s.XData);
    ExactMarch(e, s, set, program).run();
  } catch (const RunError& error) {
    messages.show(kExactRunPrefix + error.description() + kExactRunSuffix);
  }
}

}  // namespace voltrix
