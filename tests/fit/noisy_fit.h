#pragma once
// A linear sweep by the closed forms (mechanism 1, planar electrode, 0.3 V
// to -0.3 V at 10 mV/s) as the target of a fit, with Gaussian noise of its
// own seed, and one fit of the ticked parameters with its statistics.
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include "fit/fit_steps.h"
#include "fit/fit_uncertainty.h"
#include "run/run_simulation.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/workbench.h"

namespace voltrix::test {

inline void ClosedFormSweep(Workbench& wb, const char* step) {
  wb.formMech().control("CheckDigital").setValue(0);
  wb.formMech().control("mech", 1).setValue(1);
  wb.formIns().control("Estep").setText(step);
  wb.formExpr().control("Eze", 1).setText("0");
}

// The noiseless curve the forms give, points 0 to NData.
inline std::vector<double> CleanCurve(Workbench& wb) {
  wb.formExpr().OK();
  RunSimulation(wb);
  const double* y = wb.store.YData.row(wb.experiment.CurNo.value());
  return std::vector<double>(y, y + static_cast<int>(wb.experiment.NData) + 1);
}

// Box-Muller on the generator's own bits: the same noise on every library.
inline double Gauss(std::mt19937_64& g) {
  const double u1 = (static_cast<double>(g() >> 11) + 0.5) * 0x1.0p-53;
  const double u2 = static_cast<double>(g() >> 11) * 0x1.0p-53;
  return std::sqrt(-2 * std::log(u1)) * std::cos(2 * std::numbers::pi * u2);
}

// clean plus noise of `fraction` of its largest size, points 1 on.
inline std::vector<double> Noisy(const std::vector<double>& clean, double fraction, std::mt19937_64& g) {
  double peak = 0;
  for (double y : clean) peak = std::fmax(peak, std::fabs(y));
  std::vector<double> y = clean;
  for (std::size_t l = 1; l < y.size(); ++l) y[l] += fraction * peak * Gauss(g);
  return y;
}

struct MeasuredFit {
  FitSetup setup;
  FitOutcome out;
  FitStatistics stats;
};

// Fits the ticked parameters to `target` (points 1 on) with `model`, from
// the values on the forms, and takes the spread from the last pass.
inline MeasuredFit FitAndMeasure(Workbench& wb, FitModel& model, const std::vector<double>& target, int points) {
  Experiment& e = wb.experiment;
  e.AutoFitFlag = true;
  e.FittedCount = 0;
  ListFittedSlots(wb);
  MeasuredFit m;
  m.setup = ReadSetup(wb);
  FitCurve t(target);
  t.resize(std::max<std::size_t>(t.size(), kMaxPoints + 1));
  const double variance = TargetVariance(e, t, points);
  m.out = RunPasses(wb, model, m.setup, t, variance, std::max(points, kMaxPoints), {});
  std::vector<double> values;
  for (int j = 1; j <= m.setup.k; ++j) values.push_back(m.setup.b(j));
  m.stats = SpreadOfFit(m.out.derivatives, values, m.out.sumOfSquares, m.out.n);
  e.AutoFitFlag = false;
  return m;
}

}  // namespace voltrix::test
