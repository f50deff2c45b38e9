// The program's reference curves, each run from the forms down to YData and
// checked to five significant digits.
#include <gtest/gtest.h>

#include "analytic_run.h"
#include "support/expect_close.h"

namespace voltrix::test {
namespace {

TEST(ReferenceRun, SingleSweepPeak) {
  AnalyticRun r;
  r.run();
  ASSERT_TRUE(r.messages().empty());
  EXPECT_EQ(r.points(), 121);
  const auto peak = r.largest();
  EXPECT_DIGITS(peak.value, 8.5007e-5, 5);
  EXPECT_EQ(peak.point, 67);
  EXPECT_DIGITS(peak.x, -0.03, 10);
}

TEST(ReferenceRun, PlateauOfTheKernelRowBeforeSemiDifferentiation) {
  // A DC run at the same time td is exactly the sweep's row 1 before its
  // post-steps: the kernel values times the current scale.
  AnalyticRun r;
  r.technique(2);
  r.run();
  EXPECT_DIGITS(r.sim(1, 121), 2.4344e-4, 5);
}

TEST(ReferenceRun, CycleKeepsForwardPeakAndReachesReversePeak) {
  AnalyticRun r;
  r.scan("cycle");
  r.run();
  ASSERT_EQ(r.points(), 242);
  const auto peak = r.largest();
  EXPECT_DIGITS(peak.value, 8.5007e-5, 5);
  EXPECT_EQ(peak.point, 67);
  const auto back = r.smallest();
  EXPECT_DIGITS(back.value, -6.3417e-5, 5);
  EXPECT_EQ(back.point, 188);
  EXPECT_DIGITS(back.x, 0.03, 10);
}

struct TableRow {
  int technique, electrode;
  double largest;
  int point;
  double x;
  double last;
};

// Inputs of the reference run with tp 0.05, Epulse -0.05, radius 0.2821,
// "single", no noise, no charging; electrode 2 takes its area from the radius.
TEST(ReferenceRun, TechniqueTableForPlanarAndSphericalElectrodes) {
  const TableRow rows[] = {
      {2, 1, 2.4344e-4, 121, -0.3, 2.4344e-4},   {2, 2, 2.4686e-4, 121, -0.3, 2.4686e-4},
      {3, 1, 7.6983e-4, 121, -0.3, 7.6983e-4},   {3, 2, 7.7325e-4, 121, -0.3, 7.7325e-4},
      {4, 1, 3.4357e-4, 56, 0.025, -5.4778e-6},  {4, 2, 3.4561e-4, 56, 0.025, -1.2720e-5},
      {5, 1, 8.3413e-4, 61, 0, 3.5568e-8},       {5, 2, 8.3783e-4, 61, 0, 3.5726e-8},
  };
  for (const TableRow& row : rows) {
    SCOPED_TRACE("Code " + std::to_string(row.technique * 10 + row.electrode));
    AnalyticRun r;
    r.technique(row.technique);
    r.electrode(row.electrode);
    r.run();
    ASSERT_TRUE(r.messages().empty());
    ASSERT_EQ(r.wb.experiment.Code, row.technique * 10 + row.electrode);
    const auto peak = r.largest();
    EXPECT_DIGITS(peak.value, row.largest, 5);
    EXPECT_EQ(peak.point, row.point);
    EXPECT_NEAR(peak.x, row.x, 1e-12);
    EXPECT_DIGITS(r.y(121), row.last, 5);
  }
}

// The sweep's size follows the step as well as the scan rate: td is the time
// of one step and the semi-differentiation scales with the step.
TEST(ReferenceRun, SweepPeakDependsOnThePotentialStep) {
  const struct {
    const char* step;
    double td, peak;
  } cases[] = {{"0.001", 0.1, 1.8952e-4}, {"0.01", 1, 6.0453e-5}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.step);
    AnalyticRun r;
    r.ins("Estep", c.step);  // rewrites the td box as Estep / V
    r.run();
    EXPECT_DOUBLE_EQ(r.wb.experiment.td, c.td);
    EXPECT_DIGITS(r.largest().value, c.peak, 5);
  }
}

}  // namespace
}  // namespace voltrix::test
