#include "app/commands.h"

namespace voltrix {

void BindFileCommands(Workbench& wb) {
  for (const char* name : {"mnuSave", "mnuImport", "mnuExport"})
    BindNotAvailable(wb, name);
}

}  // namespace voltrix
