#include "app/commands.h"

#include "app/curve_labels.h"
#include "model/platform.h"
#include "ui/main_form.h"
#include "ui/workbench.h"

namespace voltrix {

void BindMenuCommands(Workbench& wb) {
  BindProgramCommands(wb);
  BindRunCommands(wb);
  BindDisplayCommands(wb);
  BindFileCommands(wb);
  BindPictureCommands(wb);
  BindAnalysisCommands(wb);
  BindFitCommands(wb);
  BindParameterCommands(wb);
  // Last: it wraps the handlers bound above.
  BindCurveLabels(wb);
}

void BindNotAvailable(Workbench& wb, const std::string& menuName) {
  Control& item = wb.mainForm().menu(menuName);
  item.onClick = [&wb, &item] {
    std::string caption;
    for (char c : item.caption())
      if (c != '&') caption += c;
    wb.platform.messages.show(caption + ": not available yet.");
  };
}

namespace {
bool EnabledWithParents(const Control& item) {
  for (const Control* c = &item; c; c = c->container())
    if (!c->enabled()) return false;
  return true;
}
}  // namespace

bool RunMenuCommand(Workbench& wb, const std::string& menuName) {
  Control& item = wb.mainForm().menu(menuName);
  if (!EnabledWithParents(item)) return false;
  try {
    item.click();
  } catch (const RunError& err) {
    wb.platform.messages.show("Error: " + err.description());
  }
  return true;
}

}  // namespace voltrix
