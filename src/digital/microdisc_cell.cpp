// The microdisc cell: the disc problem advanced by backward Euler steps with
// Richardson extrapolation (one step against two half steps), which is
// second order, damps the stiff edge and the potential jumps of pulses, and
// measures its own error: a step whose two answers differ by more than the
// tolerance at the surface is divided in powers of two (never below what
// the grid resolves), so that the eliminated blocks of each length serve
// again, and grows back once they agree well. Its work is counted against
// the run's budget. The current is that of a disc of the experiment's
// radius; the area the form shows is only its rounded pi r^2.
#include "digital/microdisc_cell.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "digital/exact_budget.h"
#include "digital/microdisc_problem.h"
#include "digital/microdisc_stepper.h"
#include "digital/transport_cell.h"
#include "model/checked.h"
#include "model/errors.h"

namespace voltrix {

namespace {

constexpr double kStepTolerance = 1e-3;  // of the concentration and current scales
constexpr int kDeepestHalving = 40;
constexpr int kMostAttempts = 5000;   // per step: beyond it the run is beyond help
// The grid's first row of cells is a fifth of the diffusion layer of the
// shortest step the run takes, so diffusion crosses it in 0.04 of that step:
// a shorter step resolves nothing the grid can show, so steps are not
// halved below it even where the error is above the tolerance.
constexpr double kFinestStep = 0.04;
// After a jump, halving the step more than this many times removes errors
// that fade by its end anyway (see Allowed): a disturbance at 1/32 of the
// step is down to that part when the current is sampled.
constexpr int kJumpHalvings = 5;

// A timing left out is taken from what is given, or from the disc's own
// diffusion time.
CellTiming CompleteTiming(const ReactionSet& set, double radius, CellTiming timing) {
  const double discTime = Div(radius * radius, set.D[1]);
  if (!(timing.totalTime > 0)) timing.totalTime = timing.shortestStep > 0 ? 1000 * timing.shortestStep : 1000 * discTime;
  if (!(timing.shortestStep > 0)) timing.shortestStep = timing.totalTime / 1000;
  timing.shortestStep = std::min(timing.shortestStep, timing.totalTime);
  return timing;
}

class MicrodiscCell final : public TransportCell {
 public:
  MicrodiscCell(const ReactionSet& set, double radius, const CellTiming& timing, const RunOutline& outline)
      : shortest_(CompleteTiming(set, radius, timing).shortestStep),
        problem_(set, radius, CompleteTiming(set, radius, timing)),
        budget_("The exact microdisc", "use a larger E step or a smaller radius"),
        stepper_(problem_, budget_),
        species_(set.species) {
    budget_.expect(LeastWork(outline));
    for (std::vector<double>* state : {&accepted_, &trial_, &coarse_, &half_, &fine_})
      state->assign(problem_.stateSize(), 0);
    renew();
  }

  void renew() override {
    problem_.fillBulk(accepted_.data());
    trial_ = accepted_;
    acceptedDepth_ = trialDepth_ = 0;
    fresh_ = true;
  }

  CellCurrents trial(double Ebegin, double Eend, double dt) override {
    trial_ = accepted_;
    trialDepth_ = acceptedDepth_;
    trialEnd_ = Eend;
    if (dt > 0) march(Ebegin, Eend, dt);
    return problem_.currents(trial_.data(), problem_.ratesAt(Eend));
  }

  void accept() override {
    accepted_ = trial_;
    acceptedDepth_ = trialDepth_;
    acceptedEnd_ = trialEnd_;
    fresh_ = false;
  }

  double surfaceConcentration(int species) const override {
    if (species < 1 || species > species_) Raise(ErrorKind::SubscriptOutOfRange);
    return problem_.surfaceAverage(accepted_.data(), species);
  }

 private:
  // Positions within a step count in units of its 2^-kDeepestHalving part.
  static constexpr std::uint64_t kWhole = std::uint64_t{1} << (kDeepestHalving + 1);

  // A step that starts at a jump of the potential, or on a new drop, starts
  // as short as it may; any other goes on with the length the last one
  // ended with.
  void march(double Ebegin, double Eend, double dt) {
    const bool jump = fresh_ || Ebegin != acceptedEnd_;
    const int deepest = jump ? std::min(DeepestFor(dt), kJumpHalvings) : DeepestFor(dt);
    int depth = jump ? deepest : std::min(trialDepth_, deepest);
    std::uint64_t at = 0;
    for (int attempt = 1; at < kWhole; ++attempt) {
      if (attempt > kMostAttempts)
        Raise(ErrorKind::InvalidOperation, "The microdisc simulation needs too many time steps");
      const std::uint64_t span = kWhole >> depth;
      const double error = stepTwice(Ebegin, Eend, dt, at, depth);
      const double allowed = Allowed(at + span);
      if (error > allowed && depth < deepest) {
        depth = std::min(deepest, depth + std::max(1, static_cast<int>(std::ceil(std::log2(error / allowed)))));
        continue;
      }
      for (std::size_t p = 0; p < trial_.size(); ++p) trial_[p] = 2 * fine_[p] - coarse_[p];
      at += span;
      depth = Widened(depth, at, error, allowed);
    }
    trialDepth_ = depth;
  }

  // One step of the given depth from `at` and two half steps; returns how
  // far the two answers differ at the surface.
  double stepTwice(double Ebegin, double Eend, double dt, std::uint64_t at, int depth) {
    const std::uint64_t span = kWhole >> depth;
    auto potential = [&](std::uint64_t t) { return Ebegin + (Eend - Ebegin) * (static_cast<double>(t) / kWhole); };
    const double h = std::ldexp(dt, -depth), Estop = potential(at + span);
    stepper_.step(trial_.data(), h, Estop, coarse_.data());
    stepper_.step(trial_.data(), h / 2, potential(at + span / 2), half_.data());
    stepper_.step(half_.data(), h / 2, Estop, fine_.data());
    return problem_.surfaceDifference(fine_.data(), coarse_.data(), problem_.ratesAt(Estop));
  }

  // An error made early in a step, as just after a potential jump, has
  // faded by its end: the flux that a disturbance of the diffusion layer at
  // time t adds at time T is down by t/T where the electrode takes all that
  // reaches it (and more where it does not), so the tolerance widens as
  // the step's length over the part of it reached.
  static double Allowed(std::uint64_t reached) {
    return kStepTolerance * (static_cast<double>(kWhole) / static_cast<double>(reached));
  }

  // The least work a run's outline asks: every step at least one attempt
  // of three solves, one after a jump one more for each halving on the way
  // back to the whole; and the blocks of the lengths a jump uses eliminated
  // once, or those that do not fit in memory again after every jump.
  double LeastWork(const RunOutline& outline) const {
    const double attempts = outline.steps + kJumpHalvings * outline.jumpSteps;
    const double lengths = kJumpHalvings + 2;  // the whole to its 2^-(kJumpHalvings + 1) part
    const double spilled = std::max(0.0, lengths - static_cast<double>(stepper_.levelCapacity()));
    const double eliminations = lengths + spilled * outline.jumpSteps;
    return 3 * attempts * stepper_.solveWork() + eliminations * stepper_.eliminationWork();
  }

  // How many times a step of dt may be halved before it is shorter than
  // the finest step the grid resolves.
  int DeepestFor(double dt) const {
    const double halvings = std::ceil(std::log2(dt / (kFinestStep * shortest_)));
    return static_cast<int>(std::clamp(halvings, 0.0, static_cast<double>(kDeepestHalving)));
  }

  // The error of backward Euler grows as h^2: the step doubles while the
  // longer one is expected to stay inside the tolerance and starts on its
  // own grid.
  static int Widened(int depth, std::uint64_t at, double error, double allowed) {
    for (double expected = 4 * error; depth > 0 && expected < allowed; expected *= 4) {
      if (at % (kWhole >> (depth - 1)) != 0) break;
      --depth;
    }
    return depth;
  }

  double shortest_ = 0;  // s
  MicrodiscProblem problem_;
  WorkBudget budget_;
  MicrodiscStepper stepper_;
  int species_ = 0;
  std::vector<double> accepted_, trial_, coarse_, half_, fine_;
  int acceptedDepth_ = 0, trialDepth_ = 0;
  double acceptedEnd_ = 0, trialEnd_ = 0;  // V
  bool fresh_ = true;  // renewed since the last accepted step
};

}  // namespace

std::unique_ptr<TransportCell> MakeMicrodiscCell(const Experiment& e, const ReactionSet& set,
                                                 const CellTiming& timing, const RunOutline& outline) {
  const double radius = e.radius.value();
  if (!(radius > 0)) Raise(ErrorKind::InvalidArgument, "The microdisc needs a radius above 0");
  return std::make_unique<MicrodiscCell>(set, radius, timing, outline);
}

std::unique_ptr<TransportCell> MakeMicrodiscCell(const Experiment& e, const ReactionSet& set,
                                                 const CellTiming& timing) {
  return MakeMicrodiscCell(e, set, timing, RunOutline{});
}

}  // namespace voltrix
