// Timings of whole accurate closed-form runs (StartCurve to PlotDataStep):
// reversible cyclic sweeps of 1200 and 4000 points at a planar electrode,
// and the same 1200 points as a square wave, whose every half period is a
// potential step followed through 100-odd graded sub-steps.
#include <benchmark/benchmark.h>

#include <string>

#include "model/headless_platform.h"
#include "run/run_simulation.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_tech.h"
#include "ui/workbench.h"

namespace {

using namespace voltrix;

struct AccurateCycle {
  HeadlessPlatform hp;
  Workbench wb{hp.platform()};
  AccurateCycle(const char* eend, const char* estep, int technique = 1) {
    wb.formMech().control("CheckDigital").click();
    wb.formMech().control("CheckAccurate").setValue(1);
    wb.formTech().control("optTech", technique).setValue(1);
    wb.formExpr().control("CheckPreEqu").setValue(0);
    wb.formExpr().control("Eze", 1).setText("0");
    wb.formIns().control("Eend").setText(eend);
    wb.formIns().control("Estep").setText(estep);
    wb.formIns().control("ComboScan").setText("cycle");
    wb.formExpr().OK();
  }
  void time(benchmark::State& state, int points) {
    for (auto _ : state) {
      RunSimulation(wb);
      benchmark::DoNotOptimize(wb.store.YData(1, points / 4));
    }
    if (wb.experiment.NData != points || !hp.messages.shown.empty()) state.SkipWithError("not the intended run");
  }
};

void AccurateCyclicSweep1200Points(benchmark::State& state) { AccurateCycle("-0.299", "0.001").time(state, 1200); }
BENCHMARK(AccurateCyclicSweep1200Points)->Unit(benchmark::kMillisecond);

void AccurateCyclicSweep4000Points(benchmark::State& state) { AccurateCycle("-0.2997", "0.0003").time(state, 4000); }
BENCHMARK(AccurateCyclicSweep4000Points)->Unit(benchmark::kMillisecond);

void AccurateSquareWave1200Points(benchmark::State& state) { AccurateCycle("-0.299", "0.001", 5).time(state, 1200); }
BENCHMARK(AccurateSquareWave1200Points)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
