#include "model/potential_program.h"

#include <gtest/gtest.h>

#include "expect_close.h"

namespace voltrix {
namespace {

// Three points 0.3, 0.29, 0.28 V, then back (cycle): 6 points, vertex twice.
struct ProgramCase {
  int technique;
  const char* what;
  double totalTime;  // s, worked out by hand from V = 0.1 V/s, td = 0.5 s, tp = 0.05 s
  int samples;
  double lastStretchE;  // applied potential during the last stretch
};

Experiment ThreePointCycle(int technique) {
  Experiment e;
  e.Technique = technique;
  e.NHalf = 3;
  e.NData = 6;
  e.V = 0.1;
  e.td = 0.5;
  e.tp = 0.05;
  e.Epulse = -0.05;
  return e;
}

TEST(PotentialProgram, TimingOfEachTechnique) {
  Table1<double, kMaxPoints + 1> X;
  const double points[] = {0, 0.3, 0.29, 0.28, 0.28, 0.29, 0.3};
  for (int i = 1; i <= 6; ++i) X(i) = points[i];
  const ProgramCase cases[] = {
      {1, "sweep: 4 steps of 10 mV at 0.1 V/s, vertex without time", 0.4, 6, 0.3},
      {2, "DC: six drops of td", 3.0, 6, 0.3},
      {3, "normal pulse: six drops of td, pulse 50 mV below the point", 3.0, 6, 0.25},
      {4, "differential pulse: two samples a drop, pulse turned on the way back", 3.0, 12, 0.35},
      {5, "square wave: two half periods a point, forward first", 0.6, 12, 0.275},
  };
  for (const ProgramCase& c : cases) {
    const PotentialProgram p = BuildPotentialProgram(ThreePointCycle(c.technique), X);
    EXPECT_CLOSE(p.totalTime(), c.totalTime, 1e-12) << c.what;
    EXPECT_EQ(static_cast<int>(p.samples.size()), c.samples) << c.what;
    EXPECT_CLOSE(p.stretches.back().Eend, c.lastStretchE, 1e-12) << c.what;
    double weights = 0;
    for (const ProgramSample& s : p.samples) weights += s.weight;
    // Difference techniques sum to nothing, single samples to one per point.
    EXPECT_DOUBLE_EQ(weights, c.technique >= 4 ? 0 : 6) << c.what;
  }
  // Times that are not positive are refused.
  Experiment sweep = ThreePointCycle(1), pulse = ThreePointCycle(3);
  sweep.V = 0;
  pulse.tp = 0;
  EXPECT_THROW(BuildPotentialProgram(sweep, X), RunError);
  EXPECT_THROW(BuildPotentialProgram(pulse, X), RunError);
}

}  // namespace
}  // namespace voltrix
