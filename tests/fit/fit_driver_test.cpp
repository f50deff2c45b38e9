// Auto Fit on the workbench: a curve simulated with known values and the
// program's own noise is fitted back from wrong starting values; the report,
// the captions, the limits and the failures a user can run into.
#include "fit/fit_driver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "run/run_simulation.h"
#include "expect_close.h"
#include "headless_workbench.h"
#include "model/number_format.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/text_window.h"

namespace voltrix {
namespace {

using test::HeadlessWorkbench;

// The analytical reference sweep: mechanism 1, linear sweep at a planar
// electrode, 0.3 V to -0.3 V in 5 mV steps at 10 mV/s, 1 mM of A.
void ReferenceSweep(Workbench& wb, const char* scan = "single") {
  wb.formMech().control("CheckDigital").setValue(0);
  wb.formMech().control("mech", 1).setValue(1);
  wb.formIns().control("ComboScan").setText(scan);
  wb.formExpr().control("Eze", 1).setText("0");
}

// Simulates with what stands in the forms and keeps the curve as the target
// in row 1, as a run before the fit would.
void SimulateTarget(Workbench& wb, const char* noise) {
  wb.formIns().control("Noise").setText(noise);
  wb.formExpr().OK();
  RunSimulation(wb);
  wb.formIns().control("Noise").setText("0");
}

void Tick(Workbench& wb, int slot, bool on = true) { wb.formExpr().control("CheckFitted", slot).setValue(on ? 1 : 0); }

// The number printed from zone z (0-based) of a report line; the last item
// of a line may run past its zone.
double ZoneValue(const std::string& line, int zone, bool last = false) {
  const std::size_t at = static_cast<std::size_t>(zone) * 14;
  if (line.size() <= at) return 0;
  return Val(last ? line.substr(at) : line.substr(at, 14));
}

std::vector<std::string> LinesStartingWith(const TextWindow& w, const std::string& head) {
  std::vector<std::string> out;
  for (const auto& l : w.lines())
    if (l.rfind(head, 0) == 0) out.push_back(l);
  return out;
}

double ReportValue(const TextWindow& w, const std::string& label) {
  const auto lines = LinesStartingWith(w, label);
  EXPECT_FALSE(lines.empty()) << label;
  return lines.empty() ? NAN : ZoneValue(lines.back(), 2, true);
}

double Caption(Workbench& wb, int slot) { return Val(wb.formExpr().control("CheckFitted", slot).caption()); }

// E0 0 V, ks 0.005 cm/s (quasi-reversible at 10 mV/s, so both shape and
// position carry it), 1 mM; noise of 1 percent of the largest current.
class ReferenceFit : public ::testing::Test {
 protected:
  HeadlessWorkbench hw;
  Workbench& wb = hw.wb;

  void SetUp() override {
    ReferenceSweep(wb);
    wb.formExpr().control("ks", 1).setText("0.005");
    SimulateTarget(wb, "1");
    // Wrong values, inside the limits.
    wb.formExpr().control("Eze", 1).setText("0.03");
    wb.formExpr().control("ks", 1).setText("0.002");
    wb.formExpr().control("C", 1).setText("1.3e-3");
    Tick(wb, 1);
    Tick(wb, 7);
    Tick(wb, 13);
  }
};

// Noise of 1 percent of the peak on 121 points averages down about tenfold:
// C, which scales the whole curve, comes back within half a percent and E0,
// which shifts it, within a millivolt. ks shows only in the broadening of
// the wave, a weaker signal: within 3 percent.
TEST_F(ReferenceFit, RecoversTheTrueValuesFromWrongStarts) {
  // The spread the report gives belongs to the target: its population variance.
  double m = 0, v = 0;
  for (int l = 1; l <= 121; ++l) m += wb.store.YData(1, l) / 121;
  for (int l = 1; l <= 121; ++l) v += (wb.store.YData(1, l) - m) * (wb.store.YData(1, l) - m) / 121;
  const long before = wb.optimiser.FitSimulations;
  AutoFit(wb);
  ASSERT_TRUE(hw.messages().empty()) << hw.messages().front();
  EXPECT_CLOSE(Caption(wb, 1), 1e-3, 0.005);
  EXPECT_NEAR(Caption(wb, 13), 0.0, 0.001);
  EXPECT_CLOSE(Caption(wb, 7), 0.005, 0.03);
  // The report's counts are the simulations that really ran: one per
  // evaluation and two probes per parameter and pass.
  const TextWindow& r = wb.formResult();
  const double passes = ReportValue(r, "No. of iteration = ");
  const double evaluations = ReportValue(r, "No. of obj. fun. = ");
  const double marquardts = ReportValue(r, "No. of MARQUARDS = ");
  EXPECT_EQ(wb.optimiser.FitSimulations - before, evaluations + 6 * passes);
  EXPECT_EQ(evaluations, 1 + passes + marquardts);
  EXPECT_EQ(LinesStartingWith(r, "Least square = ").size(), passes + 1);
  EXPECT_LT(ReportValue(r, "Convergence flag = "), 0);
  EXPECT_CLOSE(ReportValue(r, "Standard deviation^2 = "), v, 1e-9);
}

TEST_F(ReferenceFit, ReportsInItsZonesAndShowsFittedValuesAsCaptions) {
  wb.formExpr().control("Eze", 1).setText("0.35");  // outside -0.2 to 0.2
  AutoFit(wb);
  const TextWindow& r = wb.formResult();
  const auto head = LinesStartingWith(r, "No.  ");
  ASSERT_EQ(head.size(), 1u);
  EXPECT_EQ(head[0], "No.           Initial value               Fitted value");
  const std::vector<std::string>& lines = r.lines();
  std::size_t at = 0;
  while (lines[at] != head[0]) ++at;
  const int slots[] = {1, 7, 13};
  const double read[] = {0, 0.002, 0.35};  // C is read from its Cinit caption, checked below
  for (int i = 1; i <= 3; ++i) {
    const std::string& row = lines[at + i];
    EXPECT_EQ(ZoneValue(row, 0), i);
    if (i > 1) {
      EXPECT_EQ(ZoneValue(row, 1), read[i - 1]);
    }
    EXPECT_EQ(FormatNumber(ZoneValue(row, 2, true), "0.###e-#"), wb.formExpr().control("CheckFitted", slots[i - 1]).caption());
  }
  // Pre-equilibrated at an E0 above the start, most of A is B already.
  EXPECT_EQ(ZoneValue(lines[at + 1], 1), Val(wb.formExpr().control("Cinit", 1).caption()));
  EXPECT_LT(ZoneValue(lines[at + 1], 1), 1.3e-3);
  EXPECT_EQ(lines[at + 4], "");
  // The value read outside its limits started at the limit and stays inside.
  EXPECT_LE(Caption(wb, 13), 0.2);
  EXPECT_GE(Caption(wb, 13), -0.2);
  const std::string labels[] = {"Least square = ",  "Standard deviation^2 = ", "Convergence flag = ",
                                "No. of iteration = ", "No. of obj. fun. = ", "No. of MARQUARDS = ",
                                "Computation time (s) ="};
  for (int i = 0; i < 7; ++i) EXPECT_EQ(lines[at + 5 + i].rfind(labels[i], 0), 0u) << lines[at + 5 + i];
  EXPECT_EQ(lines.size(), at + 12);
  // The text boxes are untouched; the model holds the form values again.
  EXPECT_EQ(wb.formExpr().control("Eze", 1).text(), "0.35");
  EXPECT_EQ(wb.experiment.Eze(1), 0.35);
  EXPECT_FALSE(wb.experiment.AutoFitFlag);
}

// The result window shows each pass as it comes; a fit started from there
// (a front end handling events meanwhile) must not run inside the first.
TEST_F(ReferenceFit, AFitAskedForDuringAFitDoesNotStart) {
  int nested = 0;
  wb.formResult().addLineObserver([&](const std::string* line) {
    if (line && line->rfind("Least square", 0) == 0 && nested++ == 0) {
      AutoFit(wb);
      ManualSeparate(wb);
    }
  });
  AutoFit(wb);
  EXPECT_EQ(LinesStartingWith(wb.formResult(), "No.  ").size(), 1u);
  EXPECT_EQ(wb.experiment.NCurves, 2);
  EXPECT_FALSE(wb.experiment.AutoFitFlag);
}

// The simulation of the workbench, with the trial values of each run kept.
class RecordingModel : public WorkbenchFitModel {
 public:
  using WorkbenchFitModel::WorkbenchFitModel;
  void Objective(const ParameterVector& p, int& n, FitCurve& curve) override {
    tried.push_back(p);
    WorkbenchFitModel::Objective(p, n, curve);
  }
  std::vector<ParameterVector> tried;
};

TEST_F(ReferenceFit, AValueOutsideItsLimitsStartsAtTheLimit) {
  wb.formExpr().control("Eze", 1).setText("0.35");
  wb.formExpr().control("ks", 1).setText("200");  // above 100
  wb.experiment.AutoFitFlag = true;
  wb.formExpr().OK();
  FitCurve target = NewFitCurve();
  for (int l = 1; l <= 121; ++l) target[l] = wb.store.YData(1, l);
  RecordingModel model(wb, 1);
  RunAutoFit(wb, target, model);
  ASSERT_FALSE(model.tried.empty());
  EXPECT_EQ(model.tried[0](2), 100);   // ks, slot 7
  EXPECT_EQ(model.tried[0](3), 0.2);   // Eze, slot 13
}

TEST_F(ReferenceFit, LimitsInTheWrongOrderHoldTheParameterAtTheLowerOne) {
  wb.formExpr().control("TextCmin", 13).setText("0.1");
  wb.formExpr().control("TextCmax", 13).setText("0.05");
  AutoFit(wb);
  EXPECT_EQ(wb.formExpr().control("CheckFitted", 13).caption(), "1.e-1");
}

TEST_F(ReferenceFit, AHiddenTickedBoxDoesNotCount) {
  Tick(wb, 8);  // ks of a second charge reaction, which mechanism 1 hides
  Tick(wb, 1, false);
  AutoFit(wb);
  ASSERT_FALSE(wb.formExpr().control("CheckFitted", 8).visible());
  const auto& lines = wb.formResult().lines();
  const auto head = std::find(lines.begin(), lines.end(), "No.           Initial value               Fitted value");
  ASSERT_NE(head, lines.end());
  EXPECT_EQ(ZoneValue(*(head + 2), 0), 2);
  EXPECT_EQ(*(head + 3), "");
  EXPECT_EQ(wb.formExpr().control("CheckFitted", 8).caption(), "");
}

TEST_F(ReferenceFit, NoTickedBoxEndsInTheFitErrorAfterTwentySixSimulations) {
  for (int slot : {1, 7, 13}) Tick(wb, slot, false);
  const long before = wb.optimiser.FitSimulations;
  AutoFit(wb);
  ASSERT_EQ(hw.messages().size(), 1u);
  EXPECT_EQ(hw.messages()[0].rfind("Fit Error: ", 0), 0u);
  EXPECT_NE(hw.messages()[0].find("! Please try again by other initial values."), std::string::npos);
  EXPECT_EQ(wb.optimiser.FitSimulations - before, 26);
  EXPECT_TRUE(wb.formResult().lines().empty());  // no line, no table
  EXPECT_FALSE(wb.experiment.AutoFitFlag);
}

TEST(FitFaults, TwentyOneTickedBoxesFailBeforeAnySimulation) {
  HeadlessWorkbench hw;
  ReferenceSweep(hw.wb);
  SimulateTarget(hw.wb, "0");
  for (int slot = 1; slot <= 21; ++slot) {
    Tick(hw.wb, slot);
    hw.wb.formExpr().control("CheckFitted", slot).visible(true);
  }
  FitCurve target = NewFitCurve();
  RunAutoFit(hw.wb, target);
  ASSERT_EQ(hw.messages().size(), 1u);
  EXPECT_NE(hw.messages()[0].find("ubscript"), std::string::npos) << hw.messages()[0];
  EXPECT_EQ(hw.wb.optimiser.FitSimulations, 0);
}

TEST(ManualFitCommand, SimulatesOnceIntoRowTwoWithoutNoiseOrReport) {
  HeadlessWorkbench hw;
  ReferenceSweep(hw.wb);
  SimulateTarget(hw.wb, "0");
  std::vector<double> clean(hw.wb.store.YData.row(1), hw.wb.store.YData.row(1) + 122);
  hw.wb.formIns().control("Noise").setText("5");
  ManualFit(hw.wb);
  EXPECT_EQ(hw.wb.experiment.CurNo, 2);
  EXPECT_EQ(hw.wb.experiment.NCurves, 2);
  for (int l = 1; l <= 121; ++l) ASSERT_EQ(hw.wb.store.YData(2, l), clean[l]) << l;
  EXPECT_TRUE(hw.wb.formResult().lines().empty());
  EXPECT_FALSE(hw.wb.experiment.AutoFitFlag);
}

}  // namespace
}  // namespace voltrix

namespace voltrix {
namespace {

// y = 1e8 p^3 x against a zero target: each Gauss-Newton step keeps two
// thirds of p, so every pass gains far more than 0.02 percent and only the
// pass limit ends the fit (the factor keeps the derivative measurable down
// to the last pass).
class CubeModel : public FitModel {
 public:
  void Objective(const ParameterVector& p, int& n, FitCurve& curve) override {
    n = 5;
    for (int l = 1; l <= n; ++l) curve[l] = 1e8 * p(1) * p(1) * p(1) * l;
  }
};

TEST(FitPassLimit, FiftyOnePassesEndWithFlagOne) {
  HeadlessWorkbench hw;
  Workbench& wb = hw.wb;
  wb.formExpr().control("CheckFitted", 1).setValue(1);
  wb.formExpr().control("TextCmin", 1).setText("-10");
  wb.formExpr().control("TextCmax", 1).setText("10");
  wb.formExpr().OK();
  wb.experiment.C(1) = 1.0;
  wb.experiment.NData = 5;
  CubeModel model;
  RunAutoFit(wb, NewFitCurve(), model);
  ASSERT_TRUE(hw.messages().empty()) << hw.messages().front();
  EXPECT_EQ(ReportValue(wb.formResult(), "Convergence flag = "), 1);
  EXPECT_EQ(ReportValue(wb.formResult(), "No. of iteration = "), 51);
  EXPECT_EQ(ReportValue(wb.formResult(), "Standard deviation^2 = "), 0);
  // p has shrunk by about (2/3)^51.
  EXPECT_CLOSE(Caption(wb, 1), std::pow(2.0 / 3.0, 51), 0.05);
}

}  // namespace
}  // namespace voltrix

namespace voltrix {
namespace {

TEST(FitFloor, NoTickedBoxOnAnExactTargetEndsNormallyWithAnEmptyTable) {
  HeadlessWorkbench hw;
  ReferenceSweep(hw.wb);
  SimulateTarget(hw.wb, "0");
  Tick(hw.wb, 1, false);
  AutoFit(hw.wb);
  EXPECT_TRUE(hw.messages().empty());
  const TextWindow& r = hw.wb.formResult();
  EXPECT_EQ(ReportValue(r, "Convergence flag = "), -1);
  EXPECT_EQ(ReportValue(r, "Least square = "), 0);
  EXPECT_EQ(ReportValue(r, "No. of obj. fun. = "), 1);
  const auto& lines = r.lines();
  const auto head = std::find(lines.begin(), lines.end(), "No.           Initial value               Fitted value");
  ASSERT_NE(head, lines.end());
  EXPECT_EQ(*(head + 1), "");
}

}  // namespace
}  // namespace voltrix

namespace voltrix {
namespace {

// The same fit through the digital simulation of the typed A + e = B, over a
// whole cycle (242 points); tolerances as for the closed forms.
TEST(DigitalFit, RecoversTheTrueValuesSeriallyAndInParallelAlike) {
  HeadlessWorkbench serial, parallel;
  for (HeadlessWorkbench* hw : {&serial, &parallel}) {
    Workbench& wb = hw->wb;
    ASSERT_TRUE(wb.experiment.Digital);
    wb.formIns().control("ComboScan").setText("cycle");
    wb.formExpr().control("Eze", 1).setText("0");
    wb.formExpr().control("ks", 1).setText("0.005");
    SimulateTarget(wb, "1");
    ASSERT_EQ(wb.experiment.NData, 242);
    wb.formExpr().control("Eze", 1).setText("0.03");
    wb.formExpr().control("ks", 1).setText("0.002");
    wb.formExpr().control("C", 1).setText("1.3e-3");
    Tick(wb, 7);
    Tick(wb, 13);
  }
  serial.wb.optimiser.ProbeThreads = 1;
  parallel.wb.optimiser.ProbeThreads = 2;
  AutoFit(serial.wb);
  AutoFit(parallel.wb);
  ASSERT_TRUE(serial.messages().empty()) << serial.messages().front();
  EXPECT_CLOSE(Caption(serial.wb, 1), 1e-3, 0.005);
  EXPECT_NEAR(Caption(serial.wb, 13), 0.0, 0.001);
  EXPECT_CLOSE(Caption(serial.wb, 7), 0.005, 0.03);
  const auto& a = serial.wb.formResult().lines();
  const auto& b = parallel.wb.formResult().lines();
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i + 1 < a.size(); ++i) EXPECT_EQ(a[i], b[i]);
  for (int l = 1; l <= 242; ++l) ASSERT_EQ(serial.wb.store.YData(2, l), parallel.wb.store.YData(2, l)) << l;
}

}  // namespace
}  // namespace voltrix
