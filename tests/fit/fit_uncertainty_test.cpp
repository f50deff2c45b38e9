// The uncertainty of a fit tested as a statistician would: the 95 % interval
// must hold the true value about 95 % of the time, a degenerate pair must be
// flagged, and asking for it must leave the classic fit as it was.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "fit/fit_driver.h"
#include "expect_close.h"
#include "fit/fit_residual.h"
#include "headless_workbench.h"
#include "model/number_format.h"
#include "noisy_fit.h"
#include "ui/text_window.h"

namespace voltrix {
namespace {

using test::HeadlessWorkbench;

void Tick(Workbench& wb, int slot) { wb.formExpr().control("CheckFitted", slot).setValue(1); }

// The reference sweep in 5 mV steps, with the program's own 1 % noise, as row 1.
void NoisyTarget(Workbench& wb) {
  test::ClosedFormSweep(wb, "0.005");
  wb.formIns().control("Noise").setText("1");
  test::CleanCurve(wb);
  wb.formIns().control("Noise").setText("0");
}

// 200 curves of 61 points, E0 0 V, ks 0.005 cm/s and 1 mM (as pre-equilibrated),
// each with its own Gaussian noise of 1 % of the peak, fitted from the truth.
// A correct interval holds the truth in 95 % of them; with 200 curves the
// count lies within 90 % to 98 % but for a chance below 1 in 1000.
TEST(FitUncertainty, NinetyFivePercentIntervalsHoldTheTruthNinetyFivePercentOfTheTime) {
  HeadlessWorkbench hw;
  Workbench& wb = hw.wb;
  test::ClosedFormSweep(wb, "0.01");
  wb.formExpr().control("ks", 1).setText("0.005");
  const std::vector<double> clean = test::CleanCurve(wb);
  const double truth[] = {Val(wb.formExpr().control("Cinit", 1).caption()), 0.005, 0.0};
  for (int slot : {7, 13}) Tick(wb, slot);
  WorkbenchFitModel model(wb, 1);
  std::mt19937_64 noise(20240614);
  int inside[3] = {};
  const int curves = 200;
  for (int c = 0; c < curves; ++c) {
    const test::MeasuredFit fit = test::FitAndMeasure(wb, model, test::Noisy(clean, 0.01, noise), 61);
    ASSERT_EQ(fit.stats.parameters, 3);
    for (int j = 0; j < 3; ++j)
      inside[j] += fit.stats.spread[j].low <= truth[j] && truth[j] <= fit.stats.spread[j].high ? 1 : 0;
  }
  for (int j = 0; j < 3; ++j) {
    EXPECT_GE(inside[j], 180) << "parameter " << j;
    EXPECT_LE(inside[j], 196) << "parameter " << j;
  }
}

// The report's lines that start with `head`; "" gives all but the time line,
// which no two runs share.
std::vector<std::string> Lines(Workbench& wb, const std::string& head = "") {
  std::vector<std::string> kept;
  for (const std::string& l : wb.formResult().lines())
    if (l.rfind(head, 0) == 0 && l.rfind("Computation time", 0) != 0) kept.push_back(l);
  return kept;
}

std::vector<double> LeastSquares(Workbench& wb) {
  std::vector<double> sums;
  for (const std::string& l : Lines(wb, "Least square = ")) sums.push_back(Val(l.substr(28)));
  return sums;
}

// A reversible wave (ks 1e4 cm/s) scales with C times the root of D and no
// more: C and D together cannot be told apart, while E0 can.
TEST(FitUncertainty, AReversibleWaveFlagsTheCorrelationOfDAndC) {
  HeadlessWorkbench hw;
  Workbench& wb = hw.wb;
  NoisyTarget(wb);
  for (int slot : {13, 24}) Tick(wb, slot);
  wb.formExpr().control("CheckUncertainty").setValue(1);
  AutoFit(wb);
  ASSERT_TRUE(hw.messages().empty()) << hw.messages().front();
  const std::vector<std::string> warning = Lines(wb, "Warning:");
  ASSERT_EQ(warning.size(), 1u);
  EXPECT_NE(warning[0].find("C(A) and D(A) are the most correlated (-1)"), std::string::npos) << warning[0];
}

struct ReferenceFit {
  HeadlessWorkbench hw;
  Workbench& wb = hw.wb;
  explicit ReferenceFit(bool uncertainty) {
    wb.formExpr().control("ks", 1).setText("0.005");
    NoisyTarget(wb);
    wb.formExpr().control("Eze", 1).setText("0.03");
    wb.formExpr().control("ks", 1).setText("0.002");
    for (int slot : {7, 13}) Tick(wb, slot);
    wb.formExpr().control("CheckUncertainty").setValue(uncertainty ? 1 : 0);
  }
};

// The probes of the block run after the report: the classic lines, the
// captions and the curves left in the rows are those of the fit without it.
// The residual is data minus fit: its squares add up to the least square
// the report prints, until a new run changes the rows.
TEST(FitUncertainty, LeavesTheClassicReportCaptionsAndCurvesAsTheyWere) {
  ReferenceFit classic(false), extended(true);
  AutoFit(classic.wb);
  AutoFit(extended.wb);
  const std::vector<std::string> a = Lines(classic.wb), b = Lines(extended.wb);
  ASSERT_GT(b.size(), a.size() + 8);
  EXPECT_TRUE(std::equal(a.begin(), a.end(), b.begin()));
  EXPECT_EQ(b[a.size() + 1], "Uncertainty");
  for (int slot : {1, 7, 13})
    EXPECT_EQ(classic.wb.formExpr().control("CheckFitted", slot).caption(),
              extended.wb.formExpr().control("CheckFitted", slot).caption());
  for (int row : {1, 2})
    for (int i = 1; i <= 121; ++i) ASSERT_EQ(classic.wb.store.YData(row, i), extended.wb.store.YData(row, i));
  const std::vector<double> r = CurrentResidual(classic.wb);
  ASSERT_EQ(r.size(), 122u);
  double squares = 0;
  for (int i = 1; i <= 121; ++i) squares += r[i] * r[i];
  EXPECT_TRUE(test::IsClose(squares, LeastSquares(classic.wb).back(), 1e-12));
  RunSimulation(classic.wb);
  EXPECT_TRUE(CurrentResidual(classic.wb).empty());
}

// A stop asked for during pass 2 ends the fit there, with the values of the
// best pass so far, and the report says so.
TEST(FitProgress, AStopBetweenPassesKeepsTheBestValuesSoFar) {
  ReferenceFit free(false), stopped(false);
  AutoFit(free.wb);
  RecordingFitProgress& progress = stopped.hw.platform.fitProgress;
  progress.onReport = [&progress](const FitProgressReport& r) { progress.stop = r.pass == 2; };
  AutoFit(stopped.wb);
  ASSERT_EQ(progress.reports.size(), 2u);
  const std::vector<double> sums = LeastSquares(stopped.wb);
  ASSERT_EQ(sums.size(), 3u);
  EXPECT_EQ(sums[2], *std::min_element(sums.begin(), sums.end()));
  EXPECT_TRUE(test::IsClose(progress.reports[1].leastSquare, sums[2], 1e-14));
  const std::vector<std::string> lines = Lines(stopped.wb);
  EXPECT_EQ(lines.back(), "Stopped by the user after pass 2: the values are the best found so far.");
  EXPECT_EQ(stopped.wb.fits.stoppedFits, 1);
  EXPECT_GT(Lines(free.wb).size(), lines.size());  // left alone, the fit goes on
}

}  // namespace
}  // namespace voltrix
