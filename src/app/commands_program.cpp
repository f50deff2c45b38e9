#include "app/commands.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_tech.h"
#include "ui/main_form.h"
#include "ui/workbench.h"

namespace voltrix {

void BindProgramCommands(Workbench& wb) {
  MainForm& menu = wb.mainForm();
  menu.menu("mnuTech").onClick = [&wb] { wb.formTech().show(); };
  menu.menu("mnuMechamism").onClick = [&wb] { wb.formMech().show(); };
  menu.menu("mnuInstrument").onClick = [&wb] { wb.formIns().show(); };
  // The form opens with the rows of the mechanism in force.
  menu.menu("mnuExperimental").onClick = [&wb] {
    CompileMechanism(wb);
    wb.formExpr().show();
  };
  menu.menu("mnuExit").onClick = [&wb] { wb.exitRequested = true; };
}

}  // namespace voltrix
