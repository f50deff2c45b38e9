#include "ui/plot_engine.h"

#include "ui/commit.h"
#include "ui/form_option.h"
#include "ui/workbench.h"

namespace voltrix {

// The drawing itself comes with the plot engine; until then a plot reads the
// option form, as every plot does first.
void PlotCurves(Workbench& wb) { wb.formOption().OK(); }

void RefreshPlot(Workbench& wb) {
  PlotDataStep(wb);
  PlotCurves(wb);
}

}  // namespace voltrix
