#include "app/commands.h"

namespace voltrix {

void BindPictureCommands(Workbench& wb) {
  for (const char* name : {"mnuCopyto", "mnuPrint"})
    BindNotAvailable(wb, name);
}

}  // namespace voltrix
