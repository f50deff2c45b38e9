#include "analytic/run_simulation.h"

#include "ui/commit.h"
#include "ui/workbench.h"

namespace voltrix {

// Placeholder until the analytical driver lands: picks the curve row and
// refreshes the plotted quantity.
void RunSimulation(Workbench& wb) {
  StartCurve(wb);
  PlotDataStep(wb);
}

}  // namespace voltrix
