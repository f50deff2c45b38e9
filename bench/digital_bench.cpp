// The digital engine on the runs a user meets most: a cyclic sweep of a
// reversible couple, a differential pulse run and a second-order mechanism;
// and the small-matrix routines for every block size.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <utility>

#include "digital/matrix.h"
#include "digital/mechanism_compiler.h"
#include "digital/run_digital.h"
#include "model/checked.h"
#include "model/curve_store.h"
#include "model/experiment.h"
#include "model/headless_platform.h"

namespace voltrix {
namespace {

// Texts go into the boxes by move, as a typed string would.
void Type(std::string& box, std::string text) { box = std::move(text); }

struct BenchRun {
  Experiment e;
  CurveStore s;
  RecordingMessageBox messages;
  MechanismInput mech;

  BenchRun() {
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
      RunDigital(e, s, messages);
      benchmark::DoNotOptimize(s.YSim(1, 10));
    }
    if (!messages.shown.empty()) state.SkipWithError(messages.shown.front().c_str());
    state.counters["points"] = e.NData.value();
  }
};

void BM_CyclicSweepReversibleCouple(benchmark::State& state) {
  BenchRun b;
  b.e.Estep = 0.001;
  b.e.td = 0.01;
  b.e.Cycles = 1;  // 601 points each way
  b.run(state);
}
BENCHMARK(BM_CyclicSweepReversibleCouple)->Unit(benchmark::kMillisecond);

void BM_DifferentialPulse(benchmark::State& state) {
  BenchRun b;
  b.e.Technique = 4;  // td / tp = 10: 40 substeps a point, 121 points
  b.run(state);
}
BENCHMARK(BM_DifferentialPulse)->Unit(benchmark::kMillisecond);

void BM_SecondOrderMechanism(benchmark::State& state) {
  BenchRun b;
  Type(b.mech.chem2[1], "B");  // dimerisation of the reduced form: B + B = C
  Type(b.mech.chem2[2], "B");
  Type(b.mech.chem2[3], "C");
  b.e.kf(1) = 100;
  b.e.kb(1) = 0.01;
  b.e.td = 0.05;
  b.e.Cycles = 1;  // 242 points
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
