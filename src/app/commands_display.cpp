#include "app/commands.h"

namespace voltrix {

void BindDisplayCommands(Workbench& wb) {
  for (const char* name : {"mnuOption", "mnuPlot", "mnuNextCurve", "mnuTime", "mnuClear", "mnuAbout"})
    BindNotAvailable(wb, name);
}

}  // namespace voltrix
