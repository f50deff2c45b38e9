// Timings of the analytical run: one whole RunSimulation (from StartCurve to
// PlotDataStep) for the reference sweep and for a sweep of 4000 points, and
// the half-order convolution alone over 4000 points.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "analytic/row_transforms.h"
#include "run/run_simulation.h"
#include "model/headless_platform.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/workbench.h"

namespace {

using namespace voltrix;

struct SweepBench {
  HeadlessPlatform hp;
  Workbench wb{hp.platform()};
  // The reference sweep: analytical mode, E0 0, no pre-equilibration.
  explicit SweepBench(const char* eend = "-0.3", const char* estep = "0.005") {
    wb.formMech().control("CheckDigital").click();
    wb.formExpr().control("CheckPreEqu").setValue(0);
    wb.formExpr().control("Eze", 1).setText("0");
    wb.formIns().control("Eend").setText(eend);
    wb.formIns().control("Estep").setText(estep);
    wb.formExpr().OK();
  }
};

void RunSimulationReferenceSweep(benchmark::State& state) {
  SweepBench b;
  for (auto _ : state) {
    RunSimulation(b.wb);
    benchmark::DoNotOptimize(b.wb.store.YData(1, 67));
  }
  if (b.wb.experiment.NData != 121 || !b.hp.messages.shown.empty()) state.SkipWithError("not the reference sweep");
}
BENCHMARK(RunSimulationReferenceSweep)->Unit(benchmark::kMicrosecond);

void RunSimulation4000PointSweep(benchmark::State& state) {
  SweepBench b("-0.29985", "0.00015");
  for (auto _ : state) {
    RunSimulation(b.wb);
    benchmark::DoNotOptimize(b.wb.store.YData(1, 2000));
  }
  if (b.wb.experiment.NData != 4000 || !b.hp.messages.shown.empty()) state.SkipWithError("not 4000 points");
}
BENCHMARK(RunSimulation4000PointSweep)->Unit(benchmark::kMillisecond);

void SemiDifferentiate4000Points(benchmark::State& state) {
  std::vector<double> x(kMaxPoints + 1), y(kMaxPoints + 1), row(kMaxPoints + 1);
  for (int i = 1; i <= kMaxPoints; ++i) {
    x[i] = 0.3 - 0.00015 * (i - 1);
    y[i] = 1e-4 / (1 + std::exp(38.9 * x[i]));
  }
  for (auto _ : state) {
    row = y;
    SemiDifferentiateRow(x.data(), row.data(), kMaxPoints);
    benchmark::DoNotOptimize(row.data());
  }
}
BENCHMARK(SemiDifferentiate4000Points)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
