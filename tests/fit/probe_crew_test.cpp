// Derivative probes on copies of the workbench: the curves, the messages and
// the state left behind must be those of the serial order.
#include "fit/probe_crew.h"

#include <gtest/gtest.h>

#include "run/run_simulation.h"
#include "fit/fit_driver.h"
#include "headless_workbench.h"
#include "ui/form_expr.h"
#include "ui/form_mech.h"

namespace voltrix {
namespace {

using test::HeadlessWorkbench;

void Prepare(Workbench& wb) {
  wb.formMech().control("CheckDigital").setValue(0);
  wb.formExpr().OK();
  RunSimulation(wb);
  wb.experiment.AutoFitFlag = true;
  wb.experiment.FittedCount = 2;
  wb.experiment.FittedSlots(1) = 13;  // Eze(1)
  wb.experiment.FittedSlots(2) = 7;   // ks(1)
}

ParameterVector Probe(double eze, double ks) {
  ParameterVector p;
  p(1) = eze;
  p(2) = ks;
  return p;
}

TEST(ProbeCrew, CurvesMessagesAndFinalStateMatchTheSerialOrder) {
  // Some probes fail inside the simulation: 50 V overflows the kernel's
  // exponential, a negative ks has no root. Their messages must come in the
  // order of the probes, though different threads run them.
  const std::vector<ParameterVector> probes = {Probe(0.0, 0.01), Probe(50, 0.01), Probe(0.1, -1),
                                               Probe(0.05, 0.02), Probe(-0.1, 1),  Probe(60, 0.01),
                                               Probe(0.02, 0.5)};
  HeadlessWorkbench serial, crewed;
  Prepare(serial.wb);
  Prepare(crewed.wb);
  serial.platform.messages.shown.clear();
  crewed.platform.messages.shown.clear();

  std::vector<FitCurve> serialCurves(probes.size()), crewCurves(probes.size());
  std::vector<int> serialCounts(probes.size()), crewCounts(probes.size());
  WorkbenchFitModel oneByOne(serial.wb, 1);
  oneByOne.Probes(probes, serialCurves, serialCounts);
  ProbeCrew crew(crewed.wb, 3);
  crew.Run(probes, crewCurves, crewCounts);

  ASSERT_GE(serial.messages().size(), 3u);
  EXPECT_EQ(crewed.messages(), serial.messages());
  for (std::size_t p = 0; p < probes.size(); ++p) {
    EXPECT_EQ(crewCounts[p], serialCounts[p]);
    for (int l = 1; l <= serialCounts[p]; ++l) ASSERT_EQ(crewCurves[p][l], serialCurves[p][l]) << p << " " << l;
  }
  // The two good probes differ from each other: the curves are the probes'.
  EXPECT_NE(serialCurves[0][60], serialCurves[3][60]);
  for (int l = 0; l <= 121; ++l) {
    ASSERT_EQ(crewed.wb.store.YData(2, l), serial.wb.store.YData(2, l));
    ASSERT_EQ(crewed.wb.store.YSim(1, l), serial.wb.store.YSim(1, l));
  }
  EXPECT_EQ(crewed.wb.experiment.NData, serial.wb.experiment.NData);
  EXPECT_EQ(crewed.wb.optimiser.FitSimulations, serial.wb.optimiser.FitSimulations);
}

}  // namespace
}  // namespace voltrix
