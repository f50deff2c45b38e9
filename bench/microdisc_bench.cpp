// The two-dimensional microdisc on its target run: a cyclic sweep of 600
// points (0.3 V to -0.3 V and back, 2 mV steps, 0.1 V/s) of a one-electron
// reversible couple at a disc of 10 um diameter; and, for scale, a
// differential pulse run, whose every pulse is a potential jump. Memory is
// counted by the global allocation functions of this program: the peak of
// bytes held during one run.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>

#include "digital/transport_cell.h"

namespace {

std::atomic<std::size_t> bytesHeld{0}, mostBytesHeld{0};

}  // namespace

void* operator new(std::size_t size) {
  void* block = std::malloc(size + alignof(std::max_align_t));
  if (!block) throw std::bad_alloc();
  *static_cast<std::size_t*>(block) = size;
  const std::size_t held = bytesHeld += size;
  std::size_t most = mostBytesHeld.load();
  while (held > most && !mostBytesHeld.compare_exchange_weak(most, held)) {
  }
  return static_cast<char*>(block) + alignof(std::max_align_t);
}

// These are the replaced allocation functions themselves, so their blocks
// do come from malloc.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void operator delete(void* p) noexcept {
  if (!p) return;
  void* block = static_cast<char*>(p) - alignof(std::max_align_t);
  bytesHeld -= *static_cast<std::size_t*>(block);
  std::free(block);
}
#pragma GCC diagnostic pop

void operator delete(void* p, std::size_t) noexcept { operator delete(p); }

namespace voltrix {
namespace {

constexpr double kRadius = 5e-4;  // cm

ReactionSet ReversibleCouple() {
  ReactionSet set;
  set.species = 2;
  set.D[1] = set.D[2] = 1e-5;
  set.bulk[1] = 1e-3;
  set.fRT = 96484.6 / 8.31441 / 298.14;
  set.charge.push_back(ChargeStep{1, 2, 1, 0, 1e4, 0.5});
  return set;
}

std::unique_ptr<TransportCell> Disc(const CellTiming& timing) {
  Experiment e;
  e.radius = kRadius;
  return MakeMicrodiscCell(e, ReversibleCouple(), timing);
}

void ReportMemory(benchmark::State& state, std::size_t before) {
  state.counters["peak_MB"] = static_cast<double>(mostBytesHeld.load() - before) / (1 << 20);
}

void BM_MicrodiscCyclicSweep(benchmark::State& state) {
  const double dE = 0.002, dt = dE / 0.1;
  const std::size_t before = bytesHeld.load();
  mostBytesHeld = before;
  for (auto _ : state) {
    auto cell = Disc(CellTiming{dt, 600 * dt});
    double E = 0.3;
    for (int k = 0; k < 600; ++k) {
      const double next = k < 300 ? E - dE : E + dE;
      benchmark::DoNotOptimize(cell->trial(E, next, dt));
      cell->accept();
      E = next;
    }
  }
  ReportMemory(state, before);
  state.counters["points"] = 600;
}
BENCHMARK(BM_MicrodiscCyclicSweep)->Unit(benchmark::kMillisecond);

void BM_MicrodiscDifferentialPulse(benchmark::State& state) {
  const double td = 0.5, tp = 0.05, pulse = -0.05;
  const std::size_t before = bytesHeld.load();
  mostBytesHeld = before;
  for (auto _ : state) {
    auto cell = Disc(CellTiming{tp, td});
    for (int k = 0; k < 121; ++k) {
      const double E = 0.3 - 0.005 * k;
      cell->renew();
      benchmark::DoNotOptimize(cell->trial(E, E, td - tp));
      cell->accept();
      benchmark::DoNotOptimize(cell->trial(E + pulse, E + pulse, tp));
      cell->accept();
    }
  }
  ReportMemory(state, before);
  state.counters["points"] = 121;
}
BENCHMARK(BM_MicrodiscDifferentialPulse)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace
}  // namespace voltrix

BENCHMARK_MAIN();
