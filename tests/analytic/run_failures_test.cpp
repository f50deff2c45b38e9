// Every road by which a run can fail ends in one message with its own
// description, leaves First and Last as they were, and puts no NaN or
// infinity into any row.
#include <gtest/gtest.h>

#include <functional>

#include "analytic_run.h"

namespace voltrix::test {
namespace {

std::string RunMessage(const std::string& description) {
  return "Analytical simulation Error: " + description + "! Please try again by other initial values.";
}

struct FailureCase {
  const char* name;
  std::function<void(AnalyticRun&)> setUp;
  const char* description;
};

TEST(RunFailures, EachRoadHasItsOwnMessage) {
  const FailureCase cases[] = {
      {"zero step", [](AnalyticRun& r) { r.ins("Estep", "0"); }, "Division by zero"},
      {"count beyond 16 bits", [](AnalyticRun& r) { r.ins("Estep", "1e-9"); }, "Overflow"},
      {"single beyond 4000 points", [](AnalyticRun& r) { r.ins("Estart", "0"), r.ins("Eend", "-4"), r.ins("Estep", "0.001"); },
       "Subscript out of range"},
      {"cycle beyond 4000 points",
       [](AnalyticRun& r) { r.ins("Estep", "0.0003"), r.scan("cycle"); },  // NHalf 2001
       "Subscript out of range"},
      {"2 cycles beyond 4000 points",
       [](AnalyticRun& r) { r.ins("Estep", "0.0006"), r.scan("2 cycles"); },  // NHalf 1001
       "Subscript out of range"},
      {"mechanism 8 without D", [](AnalyticRun& r) { r.mechanism(8); },  // C(4) = 0
       "Invalid argument (logarithm of a number not above 0)"},
      {"thin film of no thickness", [](AnalyticRun& r) { r.electrode(7), r.ins("leng", "0"); },
       "Invalid argument (logarithm of a number not above 0)"},
      {"thin film with negative D", [](AnalyticRun& r) { r.electrode(7), r.expr("D", 1, "-1e-5"); },
       "Invalid argument (square root of a negative number)"},
      {"zero diffusion coefficient", [](AnalyticRun& r) { r.expr("D", 2, "0"); }, "Division by zero"},
      {"sphere of zero radius", [](AnalyticRun& r) { r.technique(2), r.electrode(2), r.ins("radius", "0"); },
       "Division by zero"},
      {"sweep at a sphere of zero radius", [](AnalyticRun& r) { r.electrode(5), r.ins("radius", "0"); },
       "Division by zero"},
      {"potential far from E0", [](AnalyticRun& r) { r.expr("Eze", 1, "50"); }, "Overflow (exponential too large)"},
  };
  for (const FailureCase& c : cases) {
    SCOPED_TRACE(c.name);
    AnalyticRun r;
    r.run();  // a good run first: its range must survive the failure
    ASSERT_TRUE(r.messages().empty());
    const double first = r.wb.experiment.First, last = r.wb.experiment.Last;
    c.setUp(r);
    r.run();
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], RunMessage(c.description));
    EXPECT_EQ(r.wb.experiment.First, first);
    EXPECT_EQ(r.wb.experiment.Last, last);
    EXPECT_EQ(r.wb.experiment.CurNo, 1);
    EXPECT_TRUE(r.allFinite());
  }
}

// The longest runs that fit: 4000 points in each scan mode.
TEST(RunFailures, FourThousandPointsFitInEveryScanMode) {
  const struct {
    const char* scan;
    const char* eend;
    int points;
  } cases[] = {{"single", "-3.699", 4000}, {"cycle", "-1.699", 4000}, {"2 cycles", "-0.699", 4000}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.scan);
    AnalyticRun r;
    r.technique(2);  // DC: no O(N^2) semi-differentiation needed to prove the bound
    r.ins("Eend", c.eend);
    r.ins("Estep", "0.001");
    r.scan(c.scan);
    r.run();
    EXPECT_TRUE(r.messages().empty());
    EXPECT_EQ(r.points(), c.points);
    EXPECT_EQ(r.wb.experiment.Last, c.points);
  }
}

// The run stops where the fault happened: the grid is written up to the
// last point that exists, and the curve row keeps its earlier values.
TEST(RunFailures, StopsWhereTheFaultHappened) {
  AnalyticRun r;
  r.run();
  const double peakBefore = r.largest().value;
  r.ins("Estart", "0");
  r.ins("Eend", "-4");
  r.ins("Estep", "0.001");
  r.run();
  EXPECT_DOUBLE_EQ(r.x(4000), -3.999);
  EXPECT_EQ(r.wb.experiment.NData, 4001);
  // Last still says 121, and that row still holds the earlier curve.
  EXPECT_EQ(r.wb.experiment.Last, 121);
  double peak = 0;
  for (int i = 1; i <= 121; ++i) peak = std::max(peak, r.y(i));
  EXPECT_EQ(peak, peakBefore);
}

}  // namespace
}  // namespace voltrix::test
