// The command layer of a run and of the display menu: which menus are
// enabled when, the order of "&Simulate" (clock, hourglass, commit, run,
// plot), and the texts the display commands print.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "app/commands.h"
#include "model/headless_platform.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_option.h"
#include "ui/form_tech.h"
#include "ui/main_form.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {
namespace {

// A clock that answers from a script, and notes which pointer shape stood
// at each reading.
class ScriptedClock : public Clock {
 public:
  explicit ScriptedClock(RecordingPointer& pointer) : pointer_(pointer) {}
  double seconds() override {
    pointerAtReading.push_back(pointer_.shapes.empty() ? -1 : pointer_.shapes.back());
    const double t = readings.empty() ? 0 : readings.front();
    if (!readings.empty()) readings.erase(readings.begin());
    return t;
  }
  std::vector<double> readings;
  std::vector<int> pointerAtReading;

 private:
  RecordingPointer& pointer_;
};

struct Desk {
  HeadlessPlatform hp;
  ScriptedClock clock{hp.pointer};
  Workbench wb{Platform{hp.messages, hp.files, clock, hp.pointer, hp.plot, hp.picture}};
  Desk() { BindMenuCommands(wb); }
  bool enabled(const char* menu) { return wb.mainForm().menu(menu).enabled(); }
  bool run(const char* menu) { return RunMenuCommand(wb, menu); }
  const std::vector<std::string>& result() { return wb.formResult().lines(); }
  const std::vector<std::string>& messages() { return hp.messages.shown; }
  void analytical() {
    wb.formMech().control("CheckDigital").click();
    wb.formExpr().control("CheckPreEqu").setValue(0);
    wb.formExpr().control("Eze", 1).setText("0");
  }
};

TEST(MenuState, DisplayAndAnalysisWaitForTheFirstCurve) {
  Desk d;
  EXPECT_FALSE(d.enabled("mnuDisplay"));
  EXPECT_FALSE(d.enabled("mnuData"));
  EXPECT_FALSE(d.run("mnuNextCurve"));  // refused: its menu is disabled
  EXPECT_TRUE(d.result().empty());
  EXPECT_TRUE(d.run("mnuSimulate"));
  EXPECT_TRUE(d.enabled("mnuDisplay"));
  EXPECT_TRUE(d.enabled("mnuData"));
  EXPECT_TRUE(d.run("mnuNextCurve"));
}

// The box starts checked (digital) and each click inverts the command.
TEST(MenuState, TheoreticalPeakFollowsTheDigitalBox) {
  Desk d;
  Control& box = d.wb.formMech().control("CheckDigital");
  ASSERT_TRUE(box.checked());
  EXPECT_FALSE(d.enabled("mnuTheoPeak"));
  box.click();
  EXPECT_FALSE(box.checked());
  EXPECT_TRUE(d.enabled("mnuTheoPeak"));
  box.click();
  EXPECT_FALSE(d.enabled("mnuTheoPeak"));
}

// Right after the start a click on "&Simulate" runs the digital simulation
// with the default forms; tElapsed spans the commit, the run and the plot.
TEST(Simulate, TimesTheWholeCommandUnderTheHourglass) {
  Desk d;
  d.clock.readings = {100.0, 112.5};
  ASSERT_TRUE(d.run("mnuSimulate"));
  EXPECT_EQ(d.hp.pointer.shapes, (std::vector<int>{11, 0}));
  // Read before the hourglass, and again after it is gone.
  EXPECT_EQ(d.clock.pointerAtReading, (std::vector<int>{-1, 0}));
  EXPECT_EQ(d.wb.experiment.tElapsed, 12.5);
  EXPECT_TRUE(d.wb.experiment.Digital);
  EXPECT_EQ(d.wb.experiment.Technique, 1);
  EXPECT_EQ(d.wb.experiment.NData, 121);
  EXPECT_EQ(d.wb.experiment.Last, 121);
  double largest = 0;
  for (int i = 1; i <= 121; ++i) largest = std::max(largest, std::fabs(d.wb.store.YData(1, i)));
  EXPECT_GT(largest, 0);
  d.run("mnuTime");
  ASSERT_EQ(d.result().size(), 1u);
  EXPECT_EQ(d.result()[0], "time =  12.5 s");
}

// The commit runs first: what stands in a form at the click is simulated.
TEST(Simulate, CommitsWhatTheFormsHoldAndDraws) {
  Desk d;
  d.analytical();
  d.wb.formIns().control("Estep").setText("0.01");
  ASSERT_TRUE(d.run("mnuSimulate"));
  EXPECT_TRUE(d.messages().empty());
  EXPECT_EQ(d.wb.experiment.NData, 61);
  bool drew = false;
  for (const DrawCall& call : d.hp.plot.calls) drew = drew || call.op == "line";
  EXPECT_TRUE(drew);
}

// A failed run shows its message, and the command still plots,
// enables the menus, restores the pointer and takes the time.
TEST(Simulate, FailedRunStillFinishesTheCommand) {
  Desk d;
  d.analytical();
  d.wb.formIns().control("Estep").setText("0");
  d.clock.readings = {5.0, 5.25};
  ASSERT_TRUE(d.run("mnuSimulate"));
  // The plot that follows may say it has no data; the run speaks first.
  ASSERT_FALSE(d.messages().empty());
  EXPECT_EQ(d.messages()[0],
            "Analytical simulation Error: Division by zero! Please try again by other initial values.");
  EXPECT_TRUE(d.enabled("mnuDisplay"));
  EXPECT_TRUE(d.enabled("mnuData"));
  EXPECT_EQ(d.hp.pointer.shapes.back(), 0);
  EXPECT_EQ(d.wb.experiment.tElapsed, 0.25);
}

// A fault in the commit itself (a temperature of absolute zero) is reported
// by the command layer, and the pointer does not stay an hourglass.
TEST(Simulate, CommitFaultRestoresThePointer) {
  Desk d;
  d.wb.formIns().control("txttemp").setText("-273.14");
  d.run("mnuSimulate");
  ASSERT_FALSE(d.messages().empty());
  EXPECT_NE(d.messages().back().find("Division by zero"), std::string::npos);
  EXPECT_EQ(d.hp.pointer.shapes.back(), 0);
}

// Showing surface concentrations, a run plots one row per species and
// keeps its current in YSim only; going back to the current rebuilds it.
TEST(Simulate, SurfaceConcentrationsReplaceTheCurveUntilCurrentIsChosenAgain) {
  Desk d;
  Control& quantity = d.wb.formOption().control("ComboY");
  quantity.setText("surface concentration C");
  d.wb.formOption().control("cmdOK").click();
  ASSERT_TRUE(d.run("mnuSimulate"));
  const Experiment& e = d.wb.experiment;
  const CurveStore& s = d.wb.store;
  ASSERT_GE(e.NSpecies, 2);
  EXPECT_EQ(e.NCurves, e.NSpecies);
  const int total = static_cast<int>(e.NTotalRow.value());
  for (int i = 1; i <= 121; ++i) ASSERT_EQ(s.YData(1, i), s.SurfC(1, i));
  EXPECT_NE(s.YData(1, 121), s.YSim(total, 121));
  quantity.setText("current I");
  d.wb.formOption().control("cmdOK").click();
  EXPECT_EQ(e.NCurves, 1);
  for (int i = 1; i <= 121; ++i) ASSERT_EQ(s.YData(1, i), s.YSim(total, i));
}

TEST(DisplayCommands, TimeBeforeAnyRunPrintsAnEmptyValue) {
  Desk d;
  d.wb.mainForm().menu("mnuDisplay").enabled(true);
  d.run("mnuTime");
  ASSERT_EQ(d.result().size(), 1u);
  EXPECT_EQ(d.result()[0], "time = s");
  EXPECT_TRUE(d.wb.formResult().shown());
}

// With overlap each run takes the next row, up to five; "&Next Curve" walks
// the rows and wraps, and the next run sets the row anew.
TEST(DisplayCommands, NextCurveWalksTheOverlaidRowsAndWraps) {
  Desk d;
  d.analytical();
  d.wb.formOption().control("overlap").setValue(1);
  for (int run = 0; run < 3; ++run) d.run("mnuSimulate");
  ASSERT_EQ(d.wb.experiment.NCurves, 3);
  ASSERT_EQ(d.wb.experiment.CurNo, 3);
  d.run("mnuNextCurve");
  d.run("mnuNextCurve");
  EXPECT_EQ(d.result(), (std::vector<std::string>{"Curve Number is  1 ", "Curve Number is  2 "}));
  EXPECT_EQ(d.wb.experiment.CurNo, 2);
  d.run("mnuSimulate");
  d.run("mnuSimulate");
  d.run("mnuSimulate");  // the sixth starts again from one curve
  EXPECT_EQ(d.wb.experiment.NCurves, 1);
  EXPECT_EQ(d.wb.experiment.CurNo, 1);
}

TEST(DisplayCommands, NextCurveWithNoCurvesGivesOne) {
  Desk d;
  d.wb.mainForm().menu("mnuDisplay").enabled(true);
  d.run("mnuNextCurve");
  EXPECT_EQ(d.wb.experiment.CurNo, 1);
  EXPECT_EQ(d.result().back(), "Curve Number is  1 ");
}

TEST(DisplayCommands, ClearEmptiesTheResultWindowAndKeepsTheCurves) {
  Desk d;
  d.analytical();
  d.run("mnuSimulate");
  d.run("mnuTime");
  const double y67 = d.wb.store.YData(1, 67);
  ASSERT_FALSE(d.result().empty());
  d.run("mnuClear");
  EXPECT_TRUE(d.result().empty());
  EXPECT_EQ(d.wb.store.YData(1, 67), y67);
  d.run("mnuTime");
  EXPECT_EQ(d.result().size(), 1u);
}

// "&Plot" draws what YData holds: a quantity chosen in the option form
// waits for that form's OK.
TEST(DisplayCommands, PlotDoesNotApplyAnUnconfirmedQuantity) {
  Desk d;
  d.analytical();
  d.run("mnuSimulate");
  const double y67 = d.wb.store.YData(1, 67);
  d.run("mnuOption");
  EXPECT_TRUE(d.wb.formOption().shown());
  d.wb.formOption().control("ComboY").setText("surface concentration C");
  d.hp.plot.calls.clear();
  d.run("mnuPlot");
  EXPECT_FALSE(d.hp.plot.calls.empty());
  EXPECT_EQ(d.wb.store.YData(1, 67), y67);
  EXPECT_EQ(d.wb.experiment.NCurves, 1);
}

TEST(DisplayCommands, AboutPrintsItsFiveLines) {
  Desk d;
  d.run("mnuAbout");
  const auto& lines = d.wb.formAbout().lines();
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0], std::string(53, '*'));
  EXPECT_EQ(lines[1], "Voltrix 4.0");
  EXPECT_NE(lines[2].find("voltammograms"), std::string::npos);
  EXPECT_NE(lines[2].find("overlapped peaks"), std::string::npos);
  EXPECT_EQ(lines[3], "Please read document VoltrixDoc.htm for help.");
  EXPECT_EQ(lines[4], std::string(54, '*'));
  EXPECT_TRUE(d.wb.formAbout().shown());
  d.run("mnuAbout");  // cleared first: still five lines
  EXPECT_EQ(d.wb.formAbout().lines().size(), 5u);
}

}  // namespace
}  // namespace voltrix
