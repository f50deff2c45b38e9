// The fit and separation commands as the menu runs them: the curve rows they
// leave, what the separated rows hold, and that a failed fit still ends with
// a drawing.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "run/run_simulation.h"
#include "app/commands.h"
#include "expect_close.h"
#include "headless_workbench.h"
#include "model/number_format.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_option.h"
#include "ui/text_window.h"

namespace voltrix {
namespace {

using test::HeadlessWorkbench;

// Linear sweep at a planar electrode by the closed forms, 121 points.
struct FitBench {
  HeadlessWorkbench hw;
  Workbench& wb = hw.wb;
  explicit FitBench(int mechanism) {
    BindMenuCommands(wb);
    wb.formMech().control("CheckDigital").setValue(0);
    wb.formMech().control("mech", mechanism).setValue(1);
  }
  void Simulate() {
    wb.formExpr().OK();
    RunSimulation(wb);
  }
  void Tick(int slot, bool on = true) { wb.formExpr().control("CheckFitted", slot).setValue(on ? 1 : 0); }
  // Marks the drawing record; a picture drawn later clears the mark away.
  void MarkDrawingAtMessages() {
    hw.platform.messages.onShow = [this](const std::string&) { hw.platform.plot.calls.push_back({"mark", {}, {}}); };
  }
  bool DrawnSinceMark() const {
    const auto& calls = hw.platform.plot.calls;
    const auto has = [&](const char* op) {
      return std::any_of(calls.begin(), calls.end(), [&](const DrawCall& c) { return c.op == op; });
    };
    return has("clear") && !has("mark");
  }
};

// The separated rows are the reactions' own currents and the total is their
// sum: with no charging current nothing else adds to it.
TEST(SeparateCommands, TwoReactionsGiveFourRowsThatAddUpToTheTotal) {
  FitBench b(4);  // A + ne = B and C + ne = D, E0 0.1 V and -0.1 V
  b.wb.formExpr().control("C", 3).setText("1e-3");
  b.Simulate();
  std::vector<double> target(b.wb.store.YData.row(1), b.wb.store.YData.row(1) + 122);
  ASSERT_TRUE(RunMenuCommand(b.wb, "mnuManualSeparate"));
  const Experiment& e = b.wb.experiment;
  EXPECT_EQ(e.NCurves, 4);
  EXPECT_EQ(e.CurNo, 2);
  for (int i = 1; i <= 121; ++i) {
    const double r1 = b.wb.store.YData(3, i), r2 = b.wb.store.YData(4, i);
    EXPECT_EQ(b.wb.store.YData(1, i), target[i]);
    EXPECT_EQ(r1, b.wb.store.YSim(1, i));
    EXPECT_EQ(r2, b.wb.store.YSim(2, i));
    EXPECT_NEAR(b.wb.store.YData(2, i), r1 + r2, 1e-12 * std::max(1e-9, std::fabs(r1) + std::fabs(r2)));
  }
  // Each reaction's wave lies at its own potential: its largest current
  // comes after the sweep has passed its E0 (0.1 V, then -0.1 V).
  int peak1 = 1, peak2 = 1;
  for (int i = 1; i <= 121; ++i) {
    if (b.wb.store.YData(3, i) > b.wb.store.YData(3, peak1)) peak1 = i;
    if (b.wb.store.YData(4, i) > b.wb.store.YData(4, peak2)) peak2 = i;
  }
  EXPECT_LT(b.wb.store.XData(peak1), 0.1);
  EXPECT_GT(b.wb.store.XData(peak1), 0.0);
  EXPECT_LT(b.wb.store.XData(peak2), -0.1);
  EXPECT_GT(b.wb.store.XData(peak2), -0.2);
  EXPECT_FALSE(e.AutoFitFlag);
}

TEST(SeparateCommands, AFailedAutoFitStillEndsWithTheSeparatedCurves) {
  FitBench b(1);
  b.Simulate();
  b.wb.formExpr().control("C", 1).setText("2e-3");
  b.Tick(1, false);  // nothing ticked: the fit fails
  b.MarkDrawingAtMessages();
  ASSERT_TRUE(RunMenuCommand(b.wb, "mnuAutoSeparate"));
  ASSERT_EQ(b.hw.messages().size(), 1u);
  EXPECT_EQ(b.hw.messages()[0].rfind("Fit Error: ", 0), 0u);
  EXPECT_EQ(b.wb.experiment.NCurves, 3);  // one reaction: three curves
  for (int i = 1; i <= 121; ++i) ASSERT_EQ(b.wb.store.YData(3, i), b.wb.store.YSim(1, i));
  EXPECT_TRUE(b.DrawnSinceMark());
}

TEST(SeparateCommands, SeparatedRowsShowCurrentWhateverTheQuantity) {
  FitBench b(1);
  b.Simulate();
  b.wb.formOption().control("ComboY").setText("resistance R");
  ASSERT_TRUE(RunMenuCommand(b.wb, "mnuManualSeparate"));
  // Dis 1 cm, area 1 cm2, 0.01 M of electrolyte at 100: R = 1 / (0.01 * 100).
  for (int i = 1; i <= 121; ++i) {
    ASSERT_TRUE(test::IsClose(b.wb.store.YData(2, i), 1.0, 1e-12));
    ASSERT_EQ(b.wb.store.YData(3, i), b.wb.store.YSim(1, i));
  }
}

// Two overlapped waves 60 mV apart, fitted from E0s 30 mV off each: the
// separated rows then stand where the true reactions are.
TEST(SeparateCommands, AutoSeparateFindsBothStandardPotentials) {
  FitBench b(4);
  b.wb.formExpr().control("C", 3).setText("1e-3");
  b.wb.formExpr().control("Eze", 1).setText("0.03");
  b.wb.formExpr().control("Eze", 2).setText("-0.03");
  b.Simulate();
  b.wb.formExpr().control("Eze", 1).setText("0.06");
  b.wb.formExpr().control("Eze", 2).setText("-0.06");
  b.Tick(1, false);
  b.Tick(13);
  b.Tick(14);
  ASSERT_TRUE(RunMenuCommand(b.wb, "mnuAutoSeparate"));
  ASSERT_TRUE(b.hw.messages().empty()) << b.hw.messages()[0];
  EXPECT_NEAR(Val(b.wb.formExpr().control("CheckFitted", 13).caption()), 0.03, 1e-4);
  EXPECT_NEAR(Val(b.wb.formExpr().control("CheckFitted", 14).caption()), -0.03, 1e-4);
  EXPECT_EQ(b.wb.experiment.NCurves, 4);
  // The model keeps the typed values: a later run uses them until the user
  // types the fitted ones.
  EXPECT_EQ(b.wb.experiment.Eze(1), 0.06);
}

TEST(FitCommands, AutoFitTakesRowOneAsTargetWhateverCurveWasCurrent) {
  FitBench b(1);
  b.wb.formOption().control("overlap").setValue(1);
  b.Simulate();  // row 1
  b.wb.formExpr().control("C", 1).setText("2e-3");
  b.Simulate();  // row 2 becomes current
  ASSERT_EQ(b.wb.experiment.CurNo, 2);
  b.wb.formExpr().control("C", 1).setText("1.5e-3");
  ASSERT_TRUE(RunMenuCommand(b.wb, "mnuAutoFit"));
  ASSERT_TRUE(b.hw.messages().empty()) << b.hw.messages()[0];
  // The curve of row 1 had 1 mM (pre-equilibrated to four digits).
  EXPECT_CLOSE(Val(b.wb.formExpr().control("CheckFitted", 1).caption()), 9.996e-4, 1e-3);
  EXPECT_EQ(b.wb.formOption().control("overlap").value(), 0);
  EXPECT_EQ(b.wb.experiment.CurNo, 2);
  EXPECT_EQ(b.wb.experiment.NCurves, 2);
  const auto& shapes = b.hw.platform.pointer.shapes;
  ASSERT_GE(shapes.size(), 2u);
  EXPECT_EQ(shapes.front(), 11);
  EXPECT_EQ(shapes.back(), 0);
}

}  // namespace
}  // namespace voltrix
