// The global fit of four sweeps of 1201 points each (0.05 to 5 V/s), four
// parameters (C, ks, alpha, E0) shared, by the closed forms: the curves on
// one thread after another (1) and side by side on the machine's cores (0).
// And what the uncertainty block adds to an Auto Fit, in simulations.
#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <random>

#include "fit/fit_driver.h"
#include "fit/global_fit.h"
#include "model/headless_platform.h"
#include "run/run_simulation.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/workbench.h"

namespace voltrix {
namespace {

// Gaussian noise from the generator's own bits, so every run sees the same.
double Gauss(std::mt19937_64& g) {
  const double u1 = (static_cast<double>(g() >> 11) + 0.5) * 0x1.0p-53;
  const double u2 = static_cast<double>(g() >> 11) * 0x1.0p-53;
  return std::sqrt(-2 * std::log(u1)) * std::cos(2 * std::numbers::pi * u2);
}

struct Sweeps {
  HeadlessPlatform platform;
  Workbench wb{platform.platform()};

  // ks 0.01 cm/s, alpha 0.5, E0 0 V, 1 mM; 1 % noise. The fit starts 20 mV,
  // a factor 1.5, 0.05 and 20 % away. By the closed forms, or by the exact
  // finite differences.
  explicit Sweeps(bool exactDigital = false) {
    wb.formMech().control("CheckDigital").setValue(exactDigital ? 1 : 0);
    wb.formMech().control("CheckAccurate").setValue(exactDigital ? 1 : 0);
    wb.formIns().control("Estep").setText("0.0005");
    wb.formExpr().control("Eze", 1).setText("0");
    wb.formExpr().control("ks", 1).setText("0.01");
    std::mt19937_64 noise(11);
    for (const char* rate : {"0.05", "0.2", "1", "5"}) add(rate, noise);
    wb.formExpr().control("Eze", 1).setText("0.02");
    wb.formExpr().control("ks", 1).setText("0.015");
    wb.formExpr().control("alph", 1).setText("0.55");
    wb.formExpr().control("C", 1).setText("1.2e-3");
    for (int slot : {7, 10, 13}) wb.formExpr().control("CheckFitted", slot).setValue(1);
  }

  void add(const char* rate, std::mt19937_64& noise) {
    wb.formIns().control("V").setText(rate);
    wb.formExpr().OK();
    RunSimulation(wb);
    SetCurve c;
    c.name = rate;
    const int n = static_cast<int>(wb.experiment.NData);
    const double* y = wb.store.YData.row(1);
    double peak = 0;
    for (int l = 1; l <= n; ++l) peak = std::fmax(peak, std::fabs(y[l]));
    c.x.assign(wb.store.XData.data(), wb.store.XData.data() + n + 1);
    c.y.assign(y, y + n + 1);
    for (int l = 1; l <= n; ++l) c.y[l] += 0.01 * peak * Gauss(noise);
    c.settings = {{"FormIns", "V", -1, rate}};
    wb.fits.curveSet.push_back(c);
  }
};

// range(0): probe threads (0: the machine's cores); range(1): 1 for the
// exact digital engine.
void BM_GlobalFitFourSweeps(benchmark::State& state) {
  Sweeps prepared(state.range(1) == 1);
  HeadlessPlatform platform;
  Workbench wb(platform.platform());
  long simulations = 0;
  for (auto _ : state) {
    state.PauseTiming();
    wb.copyStateFrom(prepared.wb);
    wb.fits.curveSet = prepared.wb.fits.curveSet;
    wb.optimiser.ProbeThreads = static_cast<int>(state.range(0));
    const long before = wb.optimiser.FitSimulations;
    state.ResumeTiming();
    GlobalFit(wb);
    simulations = wb.optimiser.FitSimulations - before;
  }
  if (!platform.messages.shown.empty()) state.SkipWithError(platform.messages.shown.front().c_str());
  state.counters["simulations"] = static_cast<double>(simulations);
  state.counters["points"] = 4 * static_cast<double>(prepared.wb.fits.curveSet[0].points());
  state.counters["exact_digital"] = prepared.wb.experiment.Digital && prepared.wb.experiment.Accurate;
}

// Simulations of one Auto Fit of the slowest sweep without (0) and with (1)
// the uncertainty block: a converged fit takes its derivatives from its last
// pass and adds none.
void BM_AutoFitUncertaintyCost(benchmark::State& state) {
  Sweeps prepared;
  HeadlessPlatform platform;
  Workbench wb(platform.platform());
  long simulations = 0;
  for (auto _ : state) {
    state.PauseTiming();
    wb.copyStateFrom(prepared.wb);
    const SetCurve& slow = prepared.wb.fits.curveSet[0];
    wb.formIns().control("V").setText(slow.name);
    std::copy(slow.y.begin(), slow.y.end(), wb.store.YData.row(1));
    wb.formExpr().control("CheckUncertainty").setValue(static_cast<int>(state.range(0)));
    const long before = wb.optimiser.FitSimulations;
    state.ResumeTiming();
    AutoFit(wb);
    simulations = wb.optimiser.FitSimulations - before;
  }
  if (!platform.messages.shown.empty()) state.SkipWithError(platform.messages.shown.front().c_str());
  state.counters["simulations"] = static_cast<double>(simulations);
}

BENCHMARK(BM_GlobalFitFourSweeps)->Args({1, 0})->Args({0, 0})->Args({0, 1})->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_AutoFitUncertaintyCost)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace voltrix

BENCHMARK_MAIN();
