#include <string>

#include "app/commands.h"
#include "model/number_format.h"
#include "ui/form_option.h"
#include "ui/main_form.h"
#include "ui/plot_engine.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

// Only which curve is current changes: no redraw, no data.
void NextCurve(Workbench& wb) {
  Experiment& e = wb.experiment;
  if (e.CurNo < e.NCurves)
    e.CurNo = e.CurNo + 1;
  else
    e.CurNo = 1;
  FormResult& result = wb.formResult();
  result.show();
  result.print(PrintLine().text("Curve Number is ").number(e.CurNo));
}

// Before any run tElapsed is empty and the line reads "time = s".
void ShowTime(Workbench& wb) {
  FormResult& result = wb.formResult();
  result.show();
  result.print(PrintLine().text("time = ").number(wb.experiment.tElapsed).text("s"));
}

void ShowAbout(Workbench& wb) {
  FormAbout& about = wb.formAbout();
  about.show();
  about.clear();
  about.print(std::string(53, '*'));
  about.print("Voltrix 4.0");
  about.print("Simulates voltammograms of electrode reactions and separates overlapped peaks.");
  about.print("Please read document VoltrixDoc.htm for help.");
  about.print(std::string(54, '*'));
}

}  // namespace

void BindDisplayCommands(Workbench& wb) {
  MainForm& menu = wb.mainForm();
  menu.menu("mnuOption").onClick = [&wb] { wb.formOption().show(); };
  // What YData holds, without PlotDataStep: a changed ComboY waits for OK.
  menu.menu("mnuPlot").onClick = [&wb] { PlotCurves(wb); };
  menu.menu("mnuNextCurve").onClick = [&wb] { NextCurve(wb); };
  menu.menu("mnuTime").onClick = [&wb] { ShowTime(wb); };
  // The text position returns to the top left; curves stay.
  menu.menu("mnuClear").onClick = [&wb] { wb.formResult().clear(); };
  menu.menu("mnuAbout").onClick = [&wb] { ShowAbout(wb); };
}

}  // namespace voltrix
