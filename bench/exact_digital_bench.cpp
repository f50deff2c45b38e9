// The exact digital engine on the runs a user meets most: a cyclic sweep of
// a reversible couple (1202 points), a dimerisation (242 points), the pulse
// techniques and a sweep with Ru; and the block elimination for every block
// size.
#include <benchmark/benchmark.h>

#include <random>

#include "digital_bench_run.h"
#include "digital/exact_blocks.h"
#include "digital/exact_run.h"

namespace voltrix {
namespace {

void BM_ExactCyclicSweep(benchmark::State& state) {
  DigitalBenchRun b(RunExactDigital);
  b.e.Estep = 0.001;
  b.e.td = 0.01;
  b.e.Cycles = 1;  // 601 points each way at 0.1 V/s
  b.run(state);
}
BENCHMARK(BM_ExactCyclicSweep)->Unit(benchmark::kMillisecond);

void BM_ExactSecondOrderMechanism(benchmark::State& state) {
  DigitalBenchRun b(RunExactDigital);
  b.dimerisation();
  b.run(state);
}
BENCHMARK(BM_ExactSecondOrderMechanism)->Unit(benchmark::kMillisecond);

void BM_ExactCyclicSweepWithRu(benchmark::State& state) {
  DigitalBenchRun b(RunExactDigital);
  b.e.Estep = 0.001;
  b.e.td = 0.01;
  b.e.Cycles = 1;
  b.e.Ru = 100;  // 27 mV at the peak
  b.run(state);
}
BENCHMARK(BM_ExactCyclicSweepWithRu)->Unit(benchmark::kMillisecond);

void BM_ExactDifferentialPulse(benchmark::State& state) {
  DigitalBenchRun b(RunExactDigital);
  b.e.Technique = 4;  // 121 drops of 0.5 s, pulses of 50 ms
  b.run(state);
}
BENCHMARK(BM_ExactDifferentialPulse)->Unit(benchmark::kMillisecond);

void BM_ExactSquareWave(benchmark::State& state) {
  DigitalBenchRun b(RunExactDigital);
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
