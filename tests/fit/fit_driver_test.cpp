// Auto Fit, Manual Fit and peak separation as the menu runs them: a curve
// simulated with known values (and the program's own noise) is fitted back
// from wrong starts; the report, the captions, the limits, the separated
// rows, and the failures a user can run into.
#include "fit/fit_driver.h"

#include <algorithm>
#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "expect_close.h"
#include "fit/parameter_slots.h"
#include "model/number_format.h"
#include "support/session.h"
#include "ui/form_expr.h"
#include "ui/form_option.h"
#include "ui/text_window.h"

namespace voltrix::test {
namespace {

// The value printed at the zone stop 28 of the last report line with this label.
double ReportValue(const Session& s, const std::string& label) {
  const std::string out = s.out.str();
  const auto at = out.rfind("\n" + label);
  return at == std::string::npos ? NAN : Val(out.substr(at + 29, out.find('\n', at + 1) - at - 29));
}

double Caption(Session& s, int slot) { return Val(s.wb.formExpr().control("CheckFitted", slot).caption()); }

// E0 0 V, ks 0.005 cm/s (quasi-reversible at 10 mV/s: shape and position
// carry it), 1 mM, noise of 1 % of the peak; then wrong starts inside the limits.
const std::string kTarget =
    "set FormExpr.ks(1)=0.005; set FormIns.Noise=1; menu mnuSimulate; set FormIns.Noise=0; "
    "set FormExpr.Eze(1)=0.03; set FormExpr.ks(1)=0.002; set FormExpr.C(1)=1.3e-3; "
    "set FormExpr.CheckFitted(7)=1; set FormExpr.CheckFitted(13)=1; ";

// Noise of 1 % on 121 points averages down about tenfold: C, which scales the
// curve, comes back within half a percent, E0 within a millivolt; ks shows
// only in the broadening of the wave: within 3 %. The same on the digital
// engine over a cycle, probes run in parallel or not, to the same digits.
TEST(AutoFit, RecoversTheTrueValuesFromWrongStarts) {
  for (const std::string& engine : {kAnalytical, std::string("set FormIns.ComboScan=cycle; set FormExpr.Eze(1)=0; ")}) {
    Session serial(engine + kTarget), parallel(engine + kTarget);
    double mean = 0, variance = 0;
    for (int l = 1; l <= serial.points(); ++l) mean += serial.y(l) / serial.points();
    for (int l = 1; l <= serial.points(); ++l) variance += std::pow(serial.y(l) - mean, 2) / serial.points();
    serial.wb.optimiser.ProbeThreads = 1;
    parallel.wb.optimiser.ProbeThreads = 2;
    serial.run("menu mnuAutoFit");
    parallel.run("menu mnuAutoFit");
    ASSERT_EQ(serial.err.str(), "");
    EXPECT_CLOSE(Caption(serial, 1), 1e-3, 0.005);
    EXPECT_NEAR(Caption(serial, 13), 0.0, 0.001);
    EXPECT_CLOSE(Caption(serial, 7), 0.005, 0.03);
    EXPECT_EQ(serial.out.str().substr(0, serial.out.str().rfind("Computation")),
              parallel.out.str().substr(0, parallel.out.str().rfind("Computation")));
    // Counts: one simulation per evaluation and two probes per parameter and pass.
    const double passes = ReportValue(serial, "No. of iteration = ");
    const double evaluations = ReportValue(serial, "No. of obj. fun. = ");
    EXPECT_EQ(serial.wb.optimiser.FitSimulations, evaluations + 6 * passes);
    EXPECT_EQ(evaluations, 1 + passes + ReportValue(serial, "No. of MARQUARDS = "));
    EXPECT_LT(ReportValue(serial, "Convergence flag = "), 0);
    EXPECT_CLOSE(ReportValue(serial, "Standard deviation^2 = "), variance, 1e-9);  // of the target
  }
}

// The report: a head, one row per fitted value (number, value as read, value
// fitted), an empty line, seven totals, then the uncertainty block; the
// fitted values become captions, the text boxes and the model keep what was
// typed.
TEST(AutoFit, ReportsInItsZonesAndShowsFittedValuesAsCaptions) {
  Session s(kAnalytical + kTarget + "set FormExpr.Eze(1)=0.35; menu mnuAutoFit");  // E0 limits -0.2 to 0.2
  std::istringstream report(s.out.str());
  std::vector<std::string> lines;
  for (std::string line; std::getline(report, line);) lines.push_back(line);
  const auto found = std::find(lines.begin(), lines.end(), "No.           Initial value               Fitted value");
  ASSERT_LE(found - lines.begin() + 14, lines.end() - lines.begin());
  const std::size_t head = static_cast<std::size_t>(found - lines.begin());
  EXPECT_EQ(lines[head + 13], "Uncertainty");
  const int slots[] = {1, 7, 13};
  const double read[] = {1.3e-3, 0.002, 0.35};
  for (int i = 1; i <= 3; ++i) {
    EXPECT_EQ(Val(lines[head + i].substr(0, 14)), i);
    EXPECT_EQ(Val(lines[head + i].substr(14, 14)), read[i - 1]);
    EXPECT_EQ(FormatNumber(Val(lines[head + i].substr(28)), "0.###e-#"), s.wb.formExpr().control("CheckFitted", slots[i - 1]).caption());
  }
  EXPECT_EQ(lines[head + 4], "");
  const char* labels[] = {"Least square = ",     "Standard deviation^2 = ", "Convergence flag = ", "No. of iteration = ",
                          "No. of obj. fun. = ", "No. of MARQUARDS = ",     "Computation time (s) ="};
  for (int i = 0; i < 7; ++i) EXPECT_EQ(lines[head + 5 + i].rfind(labels[i], 0), 0u) << lines[head + 5 + i];
  EXPECT_LE(std::fabs(Caption(s, 13)), 0.2);  // started at the limit, stayed inside
  EXPECT_EQ(s.wb.formExpr().control("Eze", 1).text(), "0.35");
  EXPECT_EQ(s.e.Eze(1), 0.35);
  EXPECT_FALSE(s.e.AutoFitFlag);
}

// Limits in the wrong order, hidden boxes, fits of nothing, failed
// separations, as the menu shows them.
TEST(AutoFit, LimitsTicksAndFailures) {
  CheckTranscript("fit/fit_commands.txt");
  Session none(kAnalytical + kTarget + "set FormExpr.CheckFitted(1)=0; set FormExpr.CheckFitted(7)=0; set FormExpr.CheckFitted(13)=0");
  none.run("menu mnuAutoFit");
  EXPECT_EQ(none.wb.optimiser.FitSimulations, 26);  // no parameter: 26 evaluations, then the failure
  EXPECT_EQ(none.wb.formResult().lines().size(), 0u);
  // 21 ticked boxes: "Subscript out of range" before any simulation.
  Session many(kAnalytical + "menu mnuSimulate");
  for (int slot = 1; slot <= 21; ++slot) many.wb.formExpr().control("CheckFitted", slot).setValue(1);
  for (int slot = 1; slot <= 21; ++slot) many.wb.formExpr().control("CheckFitted", slot).visible(true);
  RunAutoFit(many.wb, NewFitCurve());
  EXPECT_EQ(many.err.str(), "message: Fit Error: Subscript out of range! Please try again by other initial values.\n");
  EXPECT_EQ(many.wb.optimiser.FitSimulations, 0);
  // A fit over the longest curve, 4000 points.
  Session longest(kAnalytical + "click FormTech.optTech(2); set FormIns.Estep=0.001; set FormIns.Eend=-3.699; "
                  "menu mnuSimulate; set FormExpr.C(1)=1.2e-3; menu mnuAutoFit");
  EXPECT_EQ(longest.err.str(), "");
  EXPECT_CLOSE(Caption(longest, 1), 1e-3, 1e-3);
}

// y = 1e8 p^3 x against zero: each Gauss-Newton step keeps two thirds of p,
// so only the pass limit ends the fit, after 51 passes with flag 1.
TEST(AutoFit, FiftyOnePassesAtMost) {
  struct Cube : FitModel {
    void Objective(const ParameterVector& p, int& n, FitCurve& curve) override {
      n = 5;
      for (int l = 1; l <= n; ++l) curve[l] = 1e8 * p(1) * p(1) * p(1) * l;
    }
  } cube;
  Session s("set FormExpr.TextCmin(1)=-10; set FormExpr.TextCmax(1)=10; click FormExpr.cmdOK");
  s.e.C(1) = 1.0;
  s.e.NData = 5;
  RunAutoFit(s.wb, NewFitCurve(), cube);
  EXPECT_EQ(s.err.str(), "");
  EXPECT_EQ(ReportValue(s, "Convergence flag = "), 1);
  EXPECT_EQ(ReportValue(s, "No. of iteration = "), 51);
  EXPECT_CLOSE(Caption(s, 1), std::pow(2.0 / 3.0, 51), 0.05);
}

// The fit commands take row 1 as the target whatever curve was current, put
// their curve in row 2 without noise, and a separation adds one row per
// charge reaction beside them; a fit asked for during a fit does not start.
TEST(FitCommands, RowsOfFitsAndSeparations) {
  Session fit(kAnalytical + "set formOption.overlap=1; menu mnuSimulate; set FormExpr.C(1)=2e-3; menu mnuSimulate; "
              "set FormExpr.C(1)=1.5e-3; set FormIns.Noise=5; menu mnuAutoFit");
  EXPECT_CLOSE(Caption(fit, 1), 1e-3, 1e-3);
  EXPECT_EQ(fit.e.CurNo, 2);
  EXPECT_EQ(fit.wb.formOption().control("overlap").value(), 0);
  EXPECT_EQ(fit.cli.platform().pointer.shapes.back(), 0);  // the hourglass is gone
  // Two reactions, E0 30 mV either side of 0 V, fitted from 60 mV: the
  // separated rows are the reactions' own currents, the total their sum.
  Session sep(kAnalytical + "click FormMech.mech(4); set FormExpr.C(3)=1e-3; set FormExpr.Eze(1)=0.03; set FormExpr.Eze(2)=-0.03; "
              "menu mnuSimulate; set FormExpr.Eze(1)=0.06; set FormExpr.Eze(2)=-0.06; set FormExpr.CheckFitted(1)=0; "
              "set FormExpr.CheckFitted(13)=1; set FormExpr.CheckFitted(14)=1; menu mnuAutoSeparate");
  EXPECT_NEAR(Caption(sep, 13), 0.03, 1e-4);
  EXPECT_NEAR(Caption(sep, 14), -0.03, 1e-4);
  EXPECT_EQ(sep.e.NCurves, 4);
  for (int i = 1; i <= 121; ++i) {
    ASSERT_EQ(sep.y(i, 3), sep.s.YSim(1, i));
    ASSERT_NEAR(sep.y(i, 2), sep.y(i, 3) + sep.y(i, 4), 1e-12 * (std::fabs(sep.y(i, 3)) + std::fabs(sep.y(i, 4))));
  }
  // The separated rows show current whatever quantity rows 1 and 2 show
  // (R = Dis / (A (0.01 M * 100)) = 1 Ohm).
  Session failed(kAnalytical + "menu mnuSimulate; set FormExpr.CheckFitted(1)=0; set formOption.ComboY=resistance R; menu mnuAutoSeparate");
  EXPECT_CLOSE(failed.y(60, 2), 1.0, 1e-12);
  EXPECT_EQ(failed.y(60, 3), failed.s.YSim(1, 60));
  // Manual Fit: one run into row 2, without noise or the classic report; with
  // the uncertainty box unticked it prints nothing at all.
  Session manual(kAnalytical + "menu mnuSimulate; set FormIns.Noise=5; menu mnuManualFit");
  for (int l = 1; l <= 121; ++l) ASSERT_EQ(manual.y(l, 2), manual.y(l, 1));
  EXPECT_EQ(manual.out.str().rfind("Least square =               0 \n\nUncertainty\n", 0), 0u);
  manual.out.str("");
  manual.run("set FormExpr.CheckUncertainty=0; menu mnuManualFit");
  EXPECT_EQ(manual.out.str(), "");
  int nested = 0;
  Session busy(kAnalytical + kTarget);
  busy.wb.formResult().addLineObserver([&](const std::string* line) {
    if (line && line->rfind("Least square", 0) == 0 && nested++ == 0) busy.run("menu mnuAutoFit; menu mnuManualSeparate");
  });
  busy.run("menu mnuAutoFit");
  EXPECT_EQ(busy.out.str().find("No.  "), busy.out.str().rfind("No.  "));
  EXPECT_EQ(busy.e.NCurves, 2);
}

// Each of the 23 slots reaches its own field: C 1-6, ks 7-9, alpha 10-12,
// E0 13-15, kf 16-19, kb 20-23; a fit starts from 0 where the mechanism has
// no such species, charge reaction or first-order reaction.
TEST(ParameterSlots, EachSlotItsOwnField) {
  Experiment e;
  e.NSpecies = 2;
  e.NCharge = 1;
  e.NChem = 1;
  for (int slot = 1; slot <= kParameterSlots; ++slot) SlotField(e, slot) = 100 + slot;
  EXPECT_EQ(std::vector<double>({e.C(6), e.ks(3), e.alph(3), e.Eze(3), e.kf(4), e.kb(4)}),
            std::vector<double>({106, 109, 112, 115, 119, 123}));
  const std::set<int> present = {1, 2, 7, 10, 13, 16, 20};  // C of A and B, reaction 1, chemical reaction 1
  for (int slot = 1; slot <= kParameterSlots; ++slot) EXPECT_EQ(SlotStartValue(e, slot), present.count(slot) ? 100 + slot : 0) << slot;
  EXPECT_THROW(SlotField(e, kFitSlots + 1), RunError);
}

// Slot 24, D of the first species, carries the others along: their ratios,
// and with them the balance of the wave, stay as typed.
TEST(ParameterSlots, FittedDiffusionKeepsTheRatiosOfTheSpecies) {
  Experiment e;
  const double typed[] = {0, 1e-5, 2e-5, 0.5e-5, 0, 0, 0};
  for (int i = 1; i <= kMaxSpecies; ++i) e.D(i) = typed[i];
  WriteSlotValue(e, kDiffusionSlot, 3e-5);
  for (int i = 1; i <= kMaxSpecies; ++i) EXPECT_DOUBLE_EQ(e.D(i), 3 * typed[i]) << i;
}

}  // namespace
}  // namespace voltrix::test
