#include "run/run_simulation.h"

#include "analytic/constants.h"
#include "analytic/exact_run.h"
#include "analytic/run_steps.h"
#include "digital/exact_run.h"
#include "digital/run_digital.h"
#include "model/checked.h"
#include "ui/commit.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

void ClearSimulatedRows(const Experiment& e, SimRows& Y) {
  for (int row = 1; row <= static_cast<int>(e.NTotalRow.value()); ++row) {
    double* y = Y.row(row);
    for (int i = 1; i <= static_cast<int>(e.NData.value()); ++i) y[i] = 0;
  }
}

void CopyCurveToData(const Experiment& e, CurveStore& s) {
  const double* sum = s.YSim.row(static_cast<long>(e.NTotalRow.value()));
  double* curve = s.YData.row(static_cast<long>(e.CurNo.value()));
  for (int i = 1; i <= static_cast<int>(e.NData.value()); ++i) curve[i] = sum[i];
}

void RunSteps(Workbench& wb) {
  Experiment& e = wb.experiment;
  CurveStore& s = wb.store;
  StartCurve(wb);
  const double currentScale = Checked((e.ARE * kFaraday) * 0.001);
  e.NTotalRow = e.NCharge + 1;
  BuildPotentialGrid(e, s.XData);
  ClearSimulatedRows(e, s.YSim);
  if (e.Digital) {
    if (e.Accurate)
      RunExactDigital(e, s, wb.platform.messages);
    else
      RunDigital(e, s, wb.platform.messages);
    SumReactionRows(e, s.YSim);
  } else if (e.Accurate) {
    FillExactReactionRows(e, s.XData, s.YSim, currentScale);
    SumReactionRows(e, s.YSim);
  } else {
    FillReactionRows(e, s.XData, s.YSim, currentScale);
    SumReactionRows(e, s.YSim);
    ApplySumRowSteps(e, s.XData, s.YSim, currentScale);
  }
  AddChargingCurrent(e, s.XData, s.YSim);
  AddNoise(e, s.YSim, SumRowExtremes(e, s.YSim));
  CopyCurveToData(e, s);
  e.First = 1;
  e.Last = e.NData.value();
  PlotDataStepOfRun(wb);
}

}  // namespace

void RunSimulation(Workbench& wb) {
  try {
    RunSteps(wb);
  } catch (const RunError& err) {
    wb.platform.messages.show("Analytical simulation Error: " + err.description() +
                              "! Please try again by other initial values.");
  }
}

}  // namespace voltrix
