#include "app/commands.h"

namespace voltrix {

void BindRunCommands(Workbench& wb) {
  for (const char* name : {"mnuSimulate"})
    BindNotAvailable(wb, name);
}

}  // namespace voltrix
