#include "app/commands.h"

namespace voltrix {

void BindAnalysisCommands(Workbench& wb) {
  for (const char* name : {"mnuFindPeak", "mnuFindHalfwaveE", "mnuTheoPeak", "mnuSemi", "mnuSemiInte", "mnuDerivative", "mnuIntegral", "mnu1000X", "mnu10X", "mnu01X", "mnu0001X", "mnuMinusX", "mnu1000Y", "mnu10Y", "mnu01Y", "mnu0001Y", "mnuMinusY"})
    BindNotAvailable(wb, name);
}

}  // namespace voltrix
