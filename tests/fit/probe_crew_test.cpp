// Derivative probes on copies of the workbench: the curves, the messages and
// the state left behind must be those of the serial order.
#include "fit/probe_crew.h"

#include <gtest/gtest.h>

#include "fit/fit_driver.h"
#include "support/session.h"

namespace voltrix::test {
namespace {

TEST(ProbeCrew, CurvesMessagesAndFinalStateMatchTheSerialOrder) {
  // E0 of 50 V overflows the kernel's exponential and a negative ks has no
  // root: their messages must come in the order of the probes.
  const double probes[][2] = {{0.0, 0.01}, {50, 0.01}, {0.1, -1}, {0.05, 0.02}, {-0.1, 1}, {60, 0.01}, {0.02, 0.5}};
  std::vector<ParameterVector> vectors(7);
  for (int p = 0; p < 7; ++p)
    for (int k = 1; k <= 2; ++k) vectors[p](k) = probes[p][k - 1];
  Session serial(kAnalytical + "menu mnuSimulate"), crewed(kAnalytical + "menu mnuSimulate");
  std::vector<FitCurve> serialCurves(7), crewCurves(7);
  std::vector<int> serialCounts(7), crewCounts(7);
  for (Session* s : {&serial, &crewed}) {
    s->e.AutoFitFlag = true;
    s->e.FittedCount = 2;
    s->e.FittedSlots(1) = 13;  // Eze(1)
    s->e.FittedSlots(2) = 7;   // ks(1)
  }
  WorkbenchFitModel(serial.wb, 1).Probes(vectors, serialCurves, serialCounts);
  ProbeCrew(crewed.wb, 3).Run(vectors, crewCurves, crewCounts);
  const std::string messages = serial.err.str();
  EXPECT_EQ(crewed.err.str(), messages);
  EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n'), 3);
  EXPECT_EQ(crewCounts, serialCounts);
  EXPECT_EQ(crewCurves, serialCurves);
  EXPECT_NE(serialCurves[0][60], serialCurves[3][60]);  // the curves are the probes' own
  for (int l = 0; l <= 121; ++l) ASSERT_EQ(crewed.y(l, 2), serial.y(l, 2));
  EXPECT_EQ(crewed.e.NData, serial.e.NData);
  EXPECT_EQ(crewed.wb.optimiser.FitSimulations, serial.wb.optimiser.FitSimulations);
}

}  // namespace
}  // namespace voltrix::test
