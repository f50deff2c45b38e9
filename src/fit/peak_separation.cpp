#include "fit/fit_driver.h"
#include "ui/plot_engine.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

// Rows 3 on take the current of each charge reaction from YSim; they show
// current whatever quantity rows 1 and 2 show.
void SeparateReactions(Workbench& wb) {
  Experiment& e = wb.experiment;
  CurveStore& s = wb.store;
  e.NCurves = 2;
  const int n = Count(e.NData);
  for (int r = 1; r <= Count(e.NCharge); ++r) {
    e.NCurves = e.NCurves + 1;
    const int row = Count(e.NCurves);
    for (int i = 1; i <= n; ++i) s.YData(row, i) = s.YSim(r, i);
  }
  PlotCurves(wb);
}

}  // namespace

void ManualSeparate(Workbench& wb) {
  if (wb.experiment.AutoFitFlag) return;  // a fit under way runs to its end first
  ManualFit(wb);
  SeparateReactions(wb);
}

void AutoSeparate(Workbench& wb) {
  if (wb.experiment.AutoFitFlag) return;
  AutoFit(wb);
  SeparateReactions(wb);
}

}  // namespace voltrix
