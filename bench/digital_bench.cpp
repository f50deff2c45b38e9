// The digital engine on the runs a user meets most: a cyclic sweep of a
// reversible couple, a differential pulse run and a second-order mechanism;
// and the small-matrix routines for every block size.
#include <benchmark/benchmark.h>

#include <random>

#include "digital_bench_run.h"
#include "digital/matrix.h"
#include "digital/run_digital.h"

namespace voltrix {
namespace {

void BM_CyclicSweepReversibleCouple(benchmark::State& state) {
  DigitalBenchRun b(RunDigital);
  b.e.Estep = 0.001;
  b.e.td = 0.01;
  b.e.Cycles = 1;  // 601 points each way
  b.run(state);
}
BENCHMARK(BM_CyclicSweepReversibleCouple)->Unit(benchmark::kMillisecond);

void BM_DifferentialPulse(benchmark::State& state) {
  DigitalBenchRun b(RunDigital);
  b.e.Technique = 4;  // td / tp = 10: 40 substeps a point, 121 points
  b.run(state);
}
BENCHMARK(BM_DifferentialPulse)->Unit(benchmark::kMillisecond);

void BM_SecondOrderMechanism(benchmark::State& state) {
  DigitalBenchRun b(RunDigital);
  b.dimerisation();
  b.run(state);
}
BENCHMARK(BM_SecondOrderMechanism)->Unit(benchmark::kMillisecond);

Matrix WellConditioned(int n, bool diagonal) {
  std::mt19937 rng(static_cast<unsigned>(n));
  std::uniform_real_distribution<double> u(-1, 1);
  Matrix A;
  for (int i = 1; i <= n; ++i)
    for (int k = 1; k <= n; ++k) A(i, k) = diagonal ? (i == k ? 2 + u(rng) : 0) : u(rng) + (i == k ? n : 0);
  return A;
}

void BM_InvertFullBlock(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const Matrix A = WellConditioned(n, false);
  RecordingMessageBox messages;
  for (auto _ : state) {
    Matrix B = A;
    InvertMatrix(B, n, messages);
    benchmark::DoNotOptimize(B);
  }
}
BENCHMARK(BM_InvertFullBlock)->DenseRange(1, 6);

void BM_InvertDiagonalBlock(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const Matrix A = WellConditioned(n, true);
  RecordingMessageBox messages;
  for (auto _ : state) {
    Matrix B = A;
    InvertMatrix(B, n, messages);
    benchmark::DoNotOptimize(B);
  }
}
BENCHMARK(BM_InvertDiagonalBlock)->DenseRange(1, 6);

void BM_BlockProduct(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  const Matrix A = WellConditioned(n, false), B = WellConditioned(n, false);
  Matrix R;
  for (auto _ : state) {
    MatrixProduct(A, B, n, n, n, R);
    benchmark::DoNotOptimize(R);
  }
}
BENCHMARK(BM_BlockProduct)->DenseRange(1, 6);

}  // namespace
}  // namespace voltrix

BENCHMARK_MAIN();
