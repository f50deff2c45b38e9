#include "app/commands.h"
#include "fit/fit_driver.h"
#include "ui/main_form.h"
#include "ui/workbench.h"

namespace voltrix {

void BindFitCommands(Workbench& wb) {
  MainForm& menu = wb.mainForm();
  menu.menu("mnuManualFit").onClick = [&wb] { ManualFit(wb); };
  menu.menu("mnuAutoFit").onClick = [&wb] { AutoFit(wb); };
  menu.menu("mnuManualSeparate").onClick = [&wb] { ManualSeparate(wb); };
  menu.menu("mnuAutoSeparate").onClick = [&wb] { AutoSeparate(wb); };
}

}  // namespace voltrix
