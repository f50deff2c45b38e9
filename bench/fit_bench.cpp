// Auto Fit of E0, ks and C as a user runs it: on the analytical reference
// sweep (121 points) and on a digital cyclic run (242 points), with the
// derivative probes in the serial order (1), on two threads (2) and as the
// fit chooses (0).
#include <benchmark/benchmark.h>

#include <ctime>

#include "run/run_simulation.h"
#include "fit/fit_driver.h"
#include "model/headless_platform.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/workbench.h"

namespace voltrix {
namespace {

struct FitCase {
  HeadlessPlatform platform;
  Workbench wb{platform.platform()};

  // A target with E0 0 V, ks 0.005 cm/s, 1 mM and 1 percent noise; the fit
  // starts 30 mV, a factor 2.5 and 30 percent away.
  explicit FitCase(bool digital, const char* step = "0.005") {
    wb.formMech().control("CheckDigital").setValue(digital ? 1 : 0);
    wb.formIns().control("ComboScan").setText(digital ? "cycle" : "single");
    wb.formIns().control("Estep").setText(step);
    wb.formExpr().control("Eze", 1).setText("0");
    wb.formExpr().control("ks", 1).setText("0.005");
    wb.formIns().control("Noise").setText("1");
    wb.formExpr().OK();
    RunSimulation(wb);
    wb.formIns().control("Noise").setText("0");
    wb.formExpr().control("Eze", 1).setText("0.03");
    wb.formExpr().control("ks", 1).setText("0.002");
    wb.formExpr().control("C", 1).setText("1.3e-3");
    for (int slot : {1, 7, 13}) wb.formExpr().control("CheckFitted", slot).setValue(1);
  }
};

void RunFit(benchmark::State& state, bool digital, const char* step = "0.005") {
  FitCase prepared(digital, step);
  HeadlessPlatform platform;
  Workbench wb(platform.platform());
  long simulations = 0;
  double processCpu = 0;  // all threads: shows what the probes on copies cost in work
  for (auto _ : state) {
    state.PauseTiming();
    wb.copyStateFrom(prepared.wb);
    wb.optimiser.ProbeThreads = static_cast<int>(state.range(0));
    const long before = wb.optimiser.FitSimulations;
    state.ResumeTiming();
    const std::clock_t start = std::clock();
    AutoFit(wb);
    processCpu += static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    simulations = wb.optimiser.FitSimulations - before;
  }
  if (!platform.messages.shown.empty()) state.SkipWithError(platform.messages.shown.front().c_str());
  state.counters["simulations"] = static_cast<double>(simulations);
  state.counters["process_cpu_ms"] = benchmark::Counter(processCpu * 1000, benchmark::Counter::kAvgIterations);
}

void BM_AutoFitAnalyticalSweep(benchmark::State& state) { RunFit(state, false); }
void BM_AutoFitDigitalCycle(benchmark::State& state) { RunFit(state, true); }
// 1 mV steps, 1202 points: a simulation long enough for the probes to
// show what a second core gives.
void BM_AutoFitDigitalFineCycle(benchmark::State& state) { RunFit(state, true, "0.001"); }
// Half-millivolt steps, 2402 points.
void BM_AutoFitDigitalFinestCycle(benchmark::State& state) { RunFit(state, true, "0.0005"); }

// What a pass pays to run its probes on copies: the copy of a workbench.
void BM_WorkbenchCopy(benchmark::State& state) {
  FitCase prepared(true);
  HeadlessPlatform platform;
  Workbench wb(platform.platform());
  for (auto _ : state) {
    wb.copyStateFrom(prepared.wb);
    benchmark::DoNotOptimize(wb.store.YData.row(1));
  }
}

BENCHMARK(BM_AutoFitAnalyticalSweep)->Arg(1)->Arg(2)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_AutoFitDigitalCycle)->Arg(1)->Arg(2)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_AutoFitDigitalFineCycle)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_AutoFitDigitalFinestCycle)->Arg(1)->Arg(2)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();
// A fresh workbench as a probe's copy: construction and the first copy,
// which creates its forms.
void BM_WorkbenchFirstCopy(benchmark::State& state) {
  FitCase prepared(true);
  for (auto _ : state) {
    HeadlessPlatform platform;
    Workbench wb(platform.platform());
    wb.copyStateFrom(prepared.wb);
    benchmark::DoNotOptimize(wb.store.YData.row(1));
  }
}

BENCHMARK(BM_WorkbenchFirstCopy)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_WorkbenchCopy)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace voltrix

BENCHMARK_MAIN();
