// The exact digital engine on the runs a user meets most: a cyclic sweep of
// a reversible couple (1202 points), a dimerisation (242 points), the pulse
// techniques and a sweep with Ru; and the block elimination for every block
// size.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <utility>

#include "digital/exact_blocks.h"
#include "digital/exact_run.h"
#include "digital/mechanism_compiler.h"
#include "model/checked.h"
#include "model/curve_store.h"
#include "model/experiment.h"
#include "model/headless_platform.h"

namespace voltrix {
namespace {

void Type(std::string& box, std::string text) { box = std::move(text); }

struct ExactBench {
  Experiment e;
  CurveStore s;
  RecordingMessageBox messages;
  MechanismInput mech;

  ExactBench() {
    Type(mech.charge[1], "A");
    Type(mech.charge[2], "B");
    mech.nel = {"", "1", "1", "1"};
    e.Technique = 1;
    e.Electrode = 1;
    e.Estart = 0.3;
    e.Eend = -0.3;
    e.Estep = 0.005;
    e.td = 0.5;
    e.tp = 0.05;
    e.Epulse = -0.05;
    e.ARE = 1;
    e.TempK = 298.14;
    e.Cycles = 0.5;
    for (int r = 1; r <= 3; ++r) {
      e.alph(r) = 0.5;
      e.ks(r) = 1e4;
      e.NEL(r) = 1;
    }
    for (int i = 1; i <= 6; ++i) e.D(i) = 1e-5;
    e.C(1) = 1e-3;
  }

  void prepare() {
    CompileMechanism(mech, e);
    e.fRT = (96484.6 / 8.31441) / e.TempK.value();
    e.V = e.Estep.value() / e.td.value();
    const double dir = e.Eend.value() > e.Estart.value() ? 1 : -1;
    const int half = CInt(std::fabs(e.Eend.value() - e.Estart.value()) / e.Estep.value()) + 1;
    e.NHalf = half;
    e.NData = half * 2 * e.Cycles.value();
    for (int i = 1; i <= half; ++i) s.XData(i) = e.Estart.value() + e.Estep.value() * (i - 1) * dir;
    if (e.Cycles.value() >= 1)
      for (int i = 1; i <= half; ++i) s.XData(half + i) = s.XData(half - i + 1);
  }

  void run(benchmark::State& state) {
    prepare();
    for (auto _ : state) {
      RunExactDigital(e, s, messages);
      benchmark::DoNotOptimize(s.YSim(1, 10));
    }
    if (!messages.shown.empty()) state.SkipWithError(messages.shown.front().c_str());
    state.counters["points"] = e.NData.value();
  }
};

void BM_ExactCyclicSweep(benchmark::State& state) {
  ExactBench b;
  b.e.Estep = 0.001;
  b.e.td = 0.01;
  b.e.Cycles = 1;  // 601 points each way at 0.1 V/s
  b.run(state);
}
BENCHMARK(BM_ExactCyclicSweep)->Unit(benchmark::kMillisecond);

void BM_ExactSecondOrderMechanism(benchmark::State& state) {
  ExactBench b;
  Type(b.mech.chem2[1], "B");  // dimerisation of the reduced form: B + B = C
  Type(b.mech.chem2[2], "B");
  Type(b.mech.chem2[3], "C");
  b.e.kf(1) = 100;
  b.e.kb(1) = 0.01;
  b.e.td = 0.05;
  b.e.Cycles = 1;  // 242 points
  b.run(state);
}
BENCHMARK(BM_ExactSecondOrderMechanism)->Unit(benchmark::kMillisecond);

void BM_ExactCyclicSweepWithRu(benchmark::State& state) {
  ExactBench b;
  b.e.Estep = 0.001;
  b.e.td = 0.01;
  b.e.Cycles = 1;
  b.e.Ru = 100;  // 27 mV at the peak
  b.run(state);
}
BENCHMARK(BM_ExactCyclicSweepWithRu)->Unit(benchmark::kMillisecond);

void BM_ExactDifferentialPulse(benchmark::State& state) {
  ExactBench b;
  b.e.Technique = 4;  // 121 drops of 0.5 s, pulses of 50 ms
  b.run(state);
}
BENCHMARK(BM_ExactDifferentialPulse)->Unit(benchmark::kMillisecond);

void BM_ExactSquareWave(benchmark::State& state) {
  ExactBench b;
  b.e.Technique = 5;  // 121 periods of 2 x 50 ms
  b.run(state);
}
BENCHMARK(BM_ExactSquareWave)->Unit(benchmark::kMillisecond);

// One step's elimination and solve on 40 nodes, blocks full, n = 1 to 6.
void BM_ExactBlockSolve(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0)), last = 40;
  std::mt19937 rng(static_cast<unsigned>(n));
  std::uniform_real_distribution<double> u(-1, 1);
  BlockTridiagonal system(last, n);
  SpeciesMatrix P, Q;
  SpeciesVector s;
  for (int p = 0; p < n; ++p) {
    for (int q = 0; q < n; ++q) {
      P.a[p][q] = u(rng) + (p == q ? 4 : 0);
      Q.a[p][q] = u(rng);
    }
  }
  for (int i = 1; i <= last; ++i)
    for (int p = 0; p < n; ++p) {
      system.L(i, p) = u(rng);
      system.U(i, p) = u(rng);
      system.r(i, p) = u(rng);
      for (int q = 0; q < n; ++q) system.M(i)[p * n + q] = u(rng) + (p == q ? 4 : 0);
    }
  BlockTridiagonal::Factor f;
  std::vector<double> c((last + 1) * n);
  for (auto _ : state) {
    system.factor(Q, f);
    system.solve(f, P, s, c);
    benchmark::DoNotOptimize(c.data());
  }
}
BENCHMARK(BM_ExactBlockSolve)->DenseRange(1, 6);

}  // namespace
}  // namespace voltrix

BENCHMARK_MAIN();
