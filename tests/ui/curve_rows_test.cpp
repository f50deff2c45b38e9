// Which rows a new curve takes, and what the plotted quantity writes there.
#include <gtest/gtest.h>

#include "expect_close.h"
#include "headless_workbench.h"
#include "ui/commit.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_option.h"

namespace voltrix {
namespace {

class CurveRowsTest : public ::testing::Test {
 protected:
  test::HeadlessWorkbench hw;
  Workbench& wb = hw.wb;
  Experiment& e = wb.experiment;
  CurveStore& s = wb.store;
  void quantity(const char* item) { wb.formOption().control("ComboY").setText(item); }
  // A small finished run: three points of current and surface concentrations.
  void fakeRun() {
    wb.formExpr().OK();
    e.First = 1;
    e.Last = 3;
    e.NTotalRow = 2;
    for (int i = 1; i <= 3; ++i) {
      s.YSim(2, i) = 1e-5 * i;
      s.SurfC(1, i) = 1e-3 - 1e-4 * i;
      s.SurfC(2, i) = 1e-4 * i;
    }
  }
};

TEST_F(CurveRowsTest, OverlapAddsRowsUpToFiveThenStartsAgain) {
  wb.formOption().control("overlap").click();
  for (int run = 1; run <= 5; ++run) {
    StartCurve(wb);
    EXPECT_EQ(e.CurNo, run);
    EXPECT_EQ(e.NCurves, run);
    EXPECT_EQ(e.NOverlay, run);
  }
  StartCurve(wb);
  EXPECT_EQ(e.NCurves, 1);
  EXPECT_EQ(e.CurNo, 1);
}

TEST_F(CurveRowsTest, WithoutOverlapEveryCurveTakesRowOne) {
  StartCurve(wb);
  StartCurve(wb);
  EXPECT_EQ(e.CurNo, 1);
  EXPECT_EQ(e.NCurves, 1);
}

TEST_F(CurveRowsTest, AFitPutsTheCurveInRowTwo) {
  e.AutoFitFlag = true;
  wb.formOption().control("overlap").click();
  StartCurve(wb);
  EXPECT_EQ(e.CurNo, 2);
  EXPECT_EQ(e.NCurves, 2);
  EXPECT_EQ(e.NOverlay, 2);
}

TEST_F(CurveRowsTest, CurrentIsRestoredFromTheSummedRow) {
  fakeRun();
  StartCurve(wb);
  PlotDataStep(wb);
  EXPECT_DOUBLE_EQ(s.YData(1, 3), 3e-5);
  s.YData(1, 3) = 42;  // a transform of the row is dropped by the next step
  PlotDataStep(wb);
  EXPECT_DOUBLE_EQ(s.YData(1, 3), 3e-5);
}

TEST_F(CurveRowsTest, SurfaceConcentrationsShowOneRowPerSpeciesAndCurrentComesBack) {
  fakeRun();
  StartCurve(wb);
  quantity("surface concentration C");
  PlotDataStep(wb);
  EXPECT_EQ(e.NCurves, 2);  // NSpecies of A + e = B
  EXPECT_DOUBLE_EQ(s.YData(2, 2), 2e-4);
  quantity("current I");
  PlotDataStep(wb);
  EXPECT_EQ(e.NCurves, e.NOverlay);
  EXPECT_DOUBLE_EQ(s.YData(1, 1), 1e-5);
}

TEST_F(CurveRowsTest, ResistanceAndConductanceOfTheSolution) {
  fakeRun();
  StartCurve(wb);
  // Electrolyte 0.01 M at 100, species at 100 and 200 per M; Dis 1 cm, area 1 cm2.
  const double g1 = 0.01 * 100 + (1e-3 - 1e-4) * 100 + 1e-4 * 200;
  quantity("conductance Cond");
  PlotDataStep(wb);
  EXPECT_CLOSE(s.YData(1, 1), g1, 1e-12);
  quantity("resistance R");
  PlotDataStep(wb);
  EXPECT_CLOSE(s.YData(1, 1), 1 / g1, 1e-12);
  EXPECT_TRUE(hw.messages().empty());
}

TEST_F(CurveRowsTest, ADistanceOfZeroLeavesTheRowAndSaysWhy) {
  fakeRun();
  StartCurve(wb);
  PlotDataStep(wb);
  wb.formIns().control("TextDis").setText("0");
  quantity("resistance R");
  PlotDataStep(wb);
  ASSERT_EQ(hw.messages().size(), 1u);
  EXPECT_NE(hw.messages()[0].find("Dis (cm)"), std::string::npos);
  EXPECT_DOUBLE_EQ(s.YData(1, 2), 2e-5);  // the current stays
  wb.formIns().control("TextDis").setText("one");
  quantity("conductance Cond");
  PlotDataStep(wb);
  EXPECT_EQ(hw.messages().size(), 2u);
}

TEST_F(CurveRowsTest, ZeroSolutionConductanceIsReportedNotDivided) {
  fakeRun();
  StartCurve(wb);
  wb.formExpr().control("TextElectrolyteC").setText("0");
  for (int i = 1; i <= 3; ++i) s.SurfC(1, i) = s.SurfC(2, i) = 0;
  quantity("resistance R");
  PlotDataStep(wb);
  ASSERT_EQ(hw.messages().size(), 1u);
  EXPECT_NE(hw.messages()[0].find("Division by zero"), std::string::npos);
}

// As the last step of a run, a cell without a resistance or a conductance is
// a run-time error for the run's handler, not a message of its own.
TEST_F(CurveRowsTest, InARunTheCellFaultsGoToTheRunsHandler) {
  const struct {
    const char *quantity, *form, *control, *text, *fault;
  } rows[] = {
      {"resistance R", "FormExpr", "TextElectrolyteC", "0", "Division by zero"},  // no conductance at all
      {"resistance R", "FormIns", "TextDis", "one", "Type mismatch"},
      {"resistance R", "FormIns", "ARE", "0", "Division by zero"},
      {"conductance Cond", "FormIns", "TextDis", "0", "Division by zero"},
      {"conductance Cond", "FormExpr", "TextElectrolyteC", "0", ""},  // 0 is a conductance
  };
  for (const auto& row : rows) {
    Control& box = wb.formNamed(row.form)->control(row.control);
    const std::string old = box.text();
    fakeRun();
    StartCurve(wb);
    for (int i = 1; i <= 3; ++i) s.SurfC(1, i) = s.SurfC(2, i) = 0;
    box.setText(row.text);
    quantity(row.quantity);
    std::string fault;
    try {
      PlotDataStepOfRun(wb);
    } catch (const RunError& err) {
      fault = err.description();
    }
    EXPECT_EQ(fault, row.fault) << row.quantity << " " << row.control;
    box.setText(old);
  }
  EXPECT_TRUE(hw.messages().empty());
}

}  // namespace
}  // namespace voltrix
