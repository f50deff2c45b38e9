// The potential axis of a run: counts, rounding of the step count, the
// mirrored return scan and the repeated cycle.
#include <gtest/gtest.h>

#include "analytic/run_steps.h"
#include "support/expect_close.h"

namespace voltrix {
namespace {

Experiment Scan(double estart, double eend, double estep, double cycles) {
  Experiment e;
  e.Estart = estart;
  e.Eend = eend;
  e.Estep = estep;
  e.Cycles = cycles;
  return e;
}

TEST(PotentialGrid, CountsFollowScanMode) {
  for (double cycles : {0.5, 1.0, 2.0}) {
    Experiment e = Scan(0.3, -0.3, 0.005, cycles);
    XAxis X;
    BuildPotentialGrid(e, X);
    EXPECT_EQ(e.dirSign, -1);
    EXPECT_EQ(e.NHalf, 121);
    EXPECT_EQ(e.NData, 242 * cycles);
  }
  // Equal potentials count as a negative scan of one point.
  Experiment flat = Scan(0.1, 0.1, 0.005, 0.5);
  XAxis X;
  BuildPotentialGrid(flat, X);
  EXPECT_EQ(flat.dirSign, -1);
  EXPECT_EQ(flat.NHalf, 1);
  EXPECT_EQ(flat.NData, 1);
  EXPECT_EQ(X(1), 0.1);
}

// The step count is rounded to the nearest integer, ties to even:
// 120.5 steps give 121 points, 121.5 steps give 123.
TEST(PotentialGrid, StepCountRoundsTiesToEven) {
  XAxis X;
  // Binary-exact ties: 60.25 / 0.5 and 60.75 / 0.5.
  Experiment a = Scan(0, 60.25, 0.5, 0.5);
  BuildPotentialGrid(a, X);
  EXPECT_EQ(a.NHalf, 121);
  Experiment b = Scan(0, 60.75, 0.5, 0.5);
  BuildPotentialGrid(b, X);
  EXPECT_EQ(b.NHalf, 123);
  // The last point is reached in whole steps and may pass Eend.
  EXPECT_EQ(X(123), 61);
  EXPECT_EQ(b.dirSign, 1);
}

TEST(PotentialGrid, CycleTurnsTwiceAtTheVertexAndEndsAtTheStart) {
  Experiment e = Scan(-0.2, 0.4, 0.005, 1);
  XAxis X;
  BuildPotentialGrid(e, X);
  ASSERT_EQ(e.NData, 242);
  EXPECT_DOUBLE_EQ(X(121), 0.4);
  EXPECT_EQ(X(122), X(121));
  EXPECT_EQ(X(242), X(1));
  for (int i = 1; i <= 121; ++i) ASSERT_EQ(X(121 + i), X(122 - i));

  Experiment two = Scan(-0.2, 0.4, 0.005, 2);
  XAxis Y;
  BuildPotentialGrid(two, Y);
  ASSERT_EQ(two.NData, 484);
  for (int i = 1; i <= 242; ++i) ASSERT_EQ(Y(242 + i), Y(i));
}

TEST(PotentialGrid, TooManyPointsStopsAtTheBound) {
  Experiment e = Scan(0, -1, 0.00025, 0.5);  // 4001 points
  XAxis X;
  EXPECT_THROW(BuildPotentialGrid(e, X), RunError);
  EXPECT_DOUBLE_EQ(X(4000), -0.99975);
  // NHalf is a 16-bit integer, the +1 included: 32766 steps give 32767
  // points and stop at point 4001; 32767 steps overflow.
  const std::pair<double, ErrorKind> counts[] = {
      {32766.4, ErrorKind::SubscriptOutOfRange}, {32766.6, ErrorKind::Overflow}, {1e6, ErrorKind::Overflow}};
  for (const auto& [steps, fault] : counts) {
    Experiment many = Scan(0, steps * 1e-5, 1e-5, 0.5);
    try {
      BuildPotentialGrid(many, X);
      ADD_FAILURE() << steps;
    } catch (const RunError& err) {
      EXPECT_EQ(err.kind(), fault) << steps;
    }
  }
}

}  // namespace
}  // namespace voltrix
