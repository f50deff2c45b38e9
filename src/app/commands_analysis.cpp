#include "analysis/curve_transforms.h"
#include "analysis/halfwave_finder.h"
#include "analysis/peak_finder.h"
#include "analysis/theoretical_peak.h"
#include "analytic/row_transforms.h"
#include "app/commands.h"
#include "ui/commit.h"
#include "ui/main_form.h"
#include "ui/plot_engine.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

LineSink ResultWindow(Workbench& wb) {
  wb.formResult().show();
  return [&wb](const std::string& line) { wb.formResult().print(line); };
}

void FindPeakCommand(Workbench& wb) {
  const Experiment& e = wb.experiment;
  FindPeaks(e, wb.store, static_cast<long>(e.First) + 2, static_cast<long>(e.Last) - 2, ResultWindow(wb));
}

void TheoreticalPeakCommand(Workbench& wb) {
  CommitInputs(wb);
  const LineSink print = ResultWindow(wb);
  print("Theoretical limiting current:");
  TheoreticalPeakReport(wb.experiment, print);
}

// A transform rewrites the curve in hand, then the plot is drawn once.
template <class Transform>
void BindTransform(Workbench& wb, const char* menuName, Transform transform) {
  wb.mainForm().menu(menuName).onClick = [&wb, transform] {
    transform(wb.experiment, wb.store);
    PlotCurves(wb);
  };
}

void BindScaling(Workbench& wb, const char* menuName, double factor, bool xAxis) {
  BindTransform(wb, menuName, [factor, xAxis](const Experiment& e, CurveStore& s) {
    if (xAxis)
      ScaleX(e, s, factor);
    else
      ScaleY(e, s, factor);
  });
}

}  // namespace

void BindAnalysisCommands(Workbench& wb) {
  MainForm& menu = wb.mainForm();
  menu.menu("mnuFindPeak").onClick = [&wb] { FindPeakCommand(wb); };
  menu.menu("mnuFindHalfwaveE").onClick = [&wb] { FindHalfWave(wb.experiment, wb.store, ResultWindow(wb)); };
  menu.menu("mnuTheoPeak").onClick = [&wb] { TheoreticalPeakCommand(wb); };

  BindTransform(wb, "mnuSemi", [](const Experiment& e, CurveStore& s) { SemiDifferentiate(e, s.XData, s.YData); });
  BindTransform(wb, "mnuSemiInte", [](const Experiment& e, CurveStore& s) { SemiIntegrate(e, s); });
  BindTransform(wb, "mnuDerivative", [](const Experiment& e, CurveStore& s) { Differentiate(e, s.XData, s.YData); });
  BindTransform(wb, "mnuIntegral", [](const Experiment& e, CurveStore& s) { Integrate(e, s.XData, s.YData); });

  const struct {
    const char* x;
    const char* y;
    double factor;
  } scalings[] = {{"mnu1000X", "mnu1000Y", 1000}, {"mnu10X", "mnu10Y", 10}, {"mnu01X", "mnu01Y", 0.1},
                  {"mnu0001X", "mnu0001Y", 0.001}, {"mnuMinusX", "mnuMinusY", -1}};
  for (const auto& s : scalings) {
    BindScaling(wb, s.x, s.factor, true);
    BindScaling(wb, s.y, s.factor, false);
  }
}

}  // namespace voltrix
