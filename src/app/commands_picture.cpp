#include "app/commands.h"

#include "model/platform.h"
#include "ui/main_form.h"
#include "ui/workbench.h"

namespace voltrix {

// Both act on the plot window as it stands: a window never plotted gives an
// empty picture.
void BindPictureCommands(Workbench& wb) {
  wb.mainForm().menu("mnuCopyto").onClick = [&wb] { wb.platform.picture.copyToClipboard(); };
  wb.mainForm().menu("mnuPrint").onClick = [&wb] { wb.platform.picture.print(); };
}

}  // namespace voltrix
