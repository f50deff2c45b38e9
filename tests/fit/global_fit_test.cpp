// The global fit: curves at several scan rates, each simulated under its own
// settings with the chemistry shared, pin down a rate constant that no single
// curve determines well.
#include "fit/global_fit.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fit/fit_driver.h"
#include "headless_workbench.h"
#include "noisy_fit.h"

namespace voltrix {
namespace {

using test::HeadlessWorkbench;

SetCurve CurveAt(Workbench& wb, const char* rate, std::mt19937_64& noise) {
  wb.formIns().control("V").setText(rate);
  SetCurve c;
  c.name = std::string("v = ") + rate;
  c.y = test::Noisy(test::CleanCurve(wb), 0.01, noise);
  c.x.assign(wb.store.XData.data(), wb.store.XData.data() + c.y.size());
  c.settings = {{"FormIns", "V", -1, rate}};
  return c;
}

// A quasi-reversible couple (ks 0.01 cm/s, alpha 0.5) swept at 0.05 to 5 V/s,
// where the rate constant goes from nearly hidden to plain in the wave's
// shape and position; 1 % noise on each curve. Fitted with C, ks, alpha and
// E0 free, all four together pin ks at least twice as tightly as the best
// single curve, and the global value lies within four of its standard errors
// of the truth.
TEST(GlobalFit, FourScanRatesPinTheRateConstantFarTighterThanAnyOneCurve) {
  HeadlessWorkbench hw;
  Workbench& wb = hw.wb;
  test::ClosedFormSweep(wb, "0.005");
  wb.formExpr().control("ks", 1).setText("0.01");
  for (int slot : {7, 10, 13}) wb.formExpr().control("CheckFitted", slot).setValue(1);
  std::mt19937_64 noise(7);
  double bestSingle = 1e9;
  for (const char* rate : {"0.05", "0.3", "1", "5"}) {
    wb.fits.curveSet.push_back(CurveAt(wb, rate, noise));
    WorkbenchFitModel model(wb, 1);
    const SetCurve& c = wb.fits.curveSet.back();
    const test::MeasuredFit single = test::FitAndMeasure(wb, model, c.y, c.points());
    bestSingle = std::min(bestSingle, single.stats.spread[1].standardError);
  }
  wb.formIns().control("V").setText("0.01");
  GlobalFitModel model(wb, wb.fits.curveSet, 0);
  const test::MeasuredFit global = test::FitAndMeasure(wb, model, JoinedTarget(wb.fits.curveSet), model.points());
  ASSERT_EQ(global.stats.points, 4 * 121);
  const ParameterSpread& ks = global.stats.spread[1];
  EXPECT_LT(ks.standardError, 0.5 * bestSingle);
  EXPECT_LT(std::fabs(ks.value - 0.01), 4 * ks.standardError);
}

}  // namespace
}  // namespace voltrix
