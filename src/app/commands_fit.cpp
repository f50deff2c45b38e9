#include "app/commands.h"

namespace voltrix {

void BindFitCommands(Workbench& wb) {
  for (const char* name : {"mnuManualFit", "mnuAutoFit", "mnuManualSeparate", "mnuAutoSeparate"})
    BindNotAvailable(wb, name);
}

}  // namespace voltrix
