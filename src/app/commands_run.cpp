#include "run/run_simulation.h"
#include "app/commands.h"
#include "model/errors.h"
#include "ui/form_expr.h"
#include "ui/main_form.h"
#include "ui/plot_engine.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

// "&Simulate": commit, run, draw. tElapsed covers all three. A failed run
// has shown its message and still goes on to the plot, which shows what the
// rows hold.
void Simulate(Workbench& wb) {
  Experiment& e = wb.experiment;
  Platform& p = wb.platform;
  e.tElapsed = p.clock.seconds();
  p.pointer.set(Pointer::kHourglass);
  try {
    wb.formExpr().OK();
    RunSimulation(wb);
    RefreshPlot(wb);
  } catch (const RunError&) {
    // A fault in the commit itself: the command layer reports it, but the
    // pointer must not stay an hourglass.
    p.pointer.set(Pointer::kDefault);
    throw;
  }
  MainForm& menu = wb.mainForm();
  menu.menu("mnuDisplay").enabled(true);
  menu.menu("mnuData").enabled(true);
  p.pointer.set(Pointer::kDefault);
  e.tElapsed = p.clock.seconds() - e.tElapsed;
}

}  // namespace

void BindRunCommands(Workbench& wb) {
  wb.mainForm().menu("mnuSimulate").onClick = [&wb] { Simulate(wb); };
}

}  // namespace voltrix
