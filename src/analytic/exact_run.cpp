#include "analytic/exact_run.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "analytic/exact_solver.h"
#include "model/checked.h"
#include "model/potential_program.h"

namespace voltrix {

namespace {

constexpr int kRotatingDisk = 8;
// A ramp is cut into sub-steps of at most this potential change times n:
// the flux then stays within 2e-4 of linear over each.
constexpr double kRampPotentialStep = 5e-4;
// A held potential starts with a step of 1e-9 of its length, and the steps
// grow by 1 + 0.03 (t / length)^(-1/6) (at most doubling): after a jump the
// flux falls as t^-1/2, and this spacing spreads the error of its linear
// pieces evenly over the charge passed, 2e-4 of a Cottrell current.
constexpr double kHoldFirst = 1e-9;
// A ramp from rest starts with 1e-4 of its length: the charge of a
// singular start is then followed to 0.5 % over that ramp alone.
constexpr double kRampFirst = 1e-4;
constexpr double kHoldGrowth = 0.03;

const char* TechniqueName(int t) {
  switch (t) {
    case 3: return "normal pulse voltammetry";
    case 4: return "differential pulse voltammetry";
    default: return "square wave voltammetry";
  }
}

// A rotating disk is modelled at steady state, which a pulse never reaches.
void RefuseWithoutModel(const Experiment& e) {
  const int technique = Count(e.Technique);
  if (Count(e.Electrode) == kRotatingDisk && technique >= 3)
    Raise(ErrorKind::InvalidArgument, std::string("Accurate physics has no model of ") + TechniqueName(technique) +
                                          " at a rotating disk electrode, only of its steady state");
}

struct ElectrodeShape {
  Geometry geometry = Geometry::kPlanar;
  double size = 0;
};

ElectrodeShape ShapeOf(const Experiment& e) {
  switch (Count(e.Electrode)) {
    case 2: case 3: return {Geometry::kSphere, e.radius.value()};
    case 4: return {Geometry::kDisc, e.radius.value()};
    case 5: case 6: return {Geometry::kCylinder, e.radius.value()};
    case 7: return {Geometry::kFilm, e.leng.value()};
    default: return {Geometry::kPlanar, 0};
  }
}

std::vector<double> GradedSteps(double duration, double first) {
  std::vector<double> h;
  double t = 0, next = first;
  while (t + next < 1) {
    h.push_back(next);
    t += next;
    next *= std::min(2.0, 1 + kHoldGrowth * std::pow(t, -1.0 / 6));
  }
  h.back() += 1 - t;
  for (double& step : h) step *= duration;
  return h;
}

std::vector<double> RampSteps(const ProgramStretch& s, double largestN) {
  const double change = std::fabs(s.Eend - s.Ebegin) * largestN;
  const int m = std::max(1, static_cast<int>(std::ceil(change / kRampPotentialStep)));
  return std::vector<double>(m, s.duration / m);
}

// A ramp that starts from rest meets the bulk, which need not be in
// equilibrium with the electrode: it is graded like a held potential.
std::vector<double> SubSteps(const ProgramStretch& s, double largestN, bool fromRest) {
  if (s.duration <= 0) return {};
  if (s.Ebegin == s.Eend) return GradedSteps(s.duration, kHoldFirst);
  return fromRest ? GradedSteps(s.duration, kRampFirst) : RampSteps(s, largestN);
}

ModeSpan SpanOf(const PotentialProgram& p, double largestN) {
  ModeSpan span{1e300, 0};
  double sinceRenewal = 0;
  for (const ProgramStretch& s : p.stretches) {
    if (s.renew) sinceRenewal = 0;
    for (double h : SubSteps(s, largestN, sinceRenewal == 0)) span.shortest = std::min(span.shortest, h);
    sinceRenewal += s.duration;
    span.longest = std::max(span.longest, sinceRenewal);
  }
  return span;
}

// Adds weight times the current of each reaction at `point` to its row.
void Sample(const ExactMechanism& m, const ReactionFluxes& f, const ProgramSample& s, double currentScale,
            SimRows& Y) {
  for (size_t r = 0; r < m.charge.size(); ++r) {
    double& cell = Y(static_cast<long>(r + 1), s.point);
    cell = Checked(cell + s.weight * m.charge[r].n * f.f[r] * currentScale);
  }
}

// Marches every stretch and samples at the end of those that carry samples.
void MarchProgram(const ExactMechanism& m, const PotentialProgram& p, const ElectrodeShape& shape,
                  double currentScale, SimRows& Y) {
  const double n = m.largestN();
  const ModeSpan span = SpanOf(p, n);
  if (span.longest <= 0) return;  // every point at rest: no current
  SurfaceFluxSolver solver(m, shape.geometry, shape.size, span);
  size_t next = 0;
  double lastE = 0;
  bool atRest = true;
  for (size_t i = 0; i < p.stretches.size(); ++i) {
    const ProgramStretch& s = p.stretches[i];
    if (s.renew) solver.renew();
    atRest = atRest || s.renew;
    bool jump = atRest || s.Ebegin != lastE;
    const std::vector<double> steps = SubSteps(s, n, atRest);
    double elapsed = 0;
    for (double h : steps) {
      elapsed += h;
      const double E = s.Ebegin + (s.Eend - s.Ebegin) * std::min(1.0, elapsed / s.duration);
      solver.step(h, E, jump);
      jump = false;
      atRest = false;
    }
    lastE = s.Eend;
    for (; next < p.samples.size() && p.samples[next].stretch == static_cast<int>(i); ++next)
      Sample(m, solver.fluxes(), p.samples[next], currentScale, Y);
  }
}

// A rotating disk at steady state at each sampled potential.
void SteadyProgram(const Experiment& e, const ExactMechanism& m, const PotentialProgram& p, double currentScale,
                   SimRows& Y) {
  double t = 0;
  size_t next = 0;
  for (size_t i = 0; i < p.stretches.size(); ++i) {
    t += p.stretches[i].duration;
    for (; next < p.samples.size() && p.samples[next].stretch == static_cast<int>(i); ++next) {
      const ReactionFluxes f = SteadyDiskFluxes(m, p.stretches[i].Eend, t, e.Vis.value(), e.omega.value());
      Sample(m, f, p.samples[next], currentScale, Y);
    }
  }
}

}  // namespace

void FillExactReactionRows(const Experiment& e, const XAxis& X, SimRows& Y, double currentScale) {
  RefuseWithoutModel(e);
  const ExactMechanism m = ReadExactMechanism(e);
  const PotentialProgram p = BuildPotentialProgram(e, X);
  if (Count(e.Electrode) == kRotatingDisk)
    SteadyProgram(e, m, p, currentScale, Y);
  else
    MarchProgram(m, p, ShapeOf(e), currentScale, Y);
}

}  // namespace voltrix
