#include "fit/probe_crew.h"

#include <system_error>
#include <thread>

#include "fit/fit_driver.h"
#include "model/headless_platform.h"
#include "ui/workbench.h"

namespace voltrix {

// A copy of the workbench on a headless platform, built by its own thread
// at first use, so that the copies of a crew come into being side by side.
struct ProbeCrew::Worker {
  HeadlessPlatform platform;
  std::unique_ptr<Workbench> copy;
  Workbench& wb() {
    if (!copy) copy = std::make_unique<Workbench>(platform.platform());
    return *copy;
  }
};

ProbeCrew::ProbeCrew(Workbench& wb, int threads) : wb_(wb) {
  for (int t = 0; t < threads; ++t) workers_.push_back(std::make_unique<Worker>());
}

ProbeCrew::~ProbeCrew() = default;

namespace {

struct ProbeOutcome {
  bool troubled = false;  // the run showed a message or raised
  int ran = 0;
};

}  // namespace

void ProbeCrew::Run(const std::vector<ParameterVector>& probes, std::vector<FitCurve>& curves,
                    std::vector<int>& counts) {
  const std::size_t total = probes.size();
  const std::size_t crew = workers_.size();
  std::vector<ProbeOutcome> outcomes(total);
  for (auto& c : curves)
    if (c.size() != static_cast<std::size_t>(kMaxPoints + 1)) c = NewFitCurve();

  // Contiguous shares keep the serial order within a worker; the last worker
  // runs the last probe, whose state the workbench takes over at the end.
  auto share = [&](std::size_t w) { return std::pair{w * total / crew, (w + 1) * total / crew}; };
  auto work = [&](std::size_t w) {
    Worker& worker = *workers_[w];
    Workbench& copy = worker.wb();
    copy.copyStateFrom(wb_);
    auto [begin, end] = share(w);
    for (std::size_t p = begin; p < end; ++p) {
      try {
        FitObjective(copy, probes[p], counts[p], curves[p]);
      } catch (...) {
        outcomes[p].troubled = true;
      }
      ++outcomes[p].ran;
      if (!worker.platform.messages.shown.empty()) outcomes[p].troubled = true;
      worker.platform.messages.shown.clear();
      if (outcomes[p].troubled) break;
    }
  };
  std::vector<std::thread> threads;
  bool spawned = true;
  for (std::size_t w = 1; w < crew && spawned; ++w) {
    try {
      threads.emplace_back(work, w);
    } catch (const std::system_error&) {
      spawned = false;  // no thread to be had: the serial order below does it all
    }
  }
  if (spawned) work(0);
  for (auto& t : threads) t.join();

  // A probe whose run failed (it showed a message or raised) left the curve
  // of the run before it, which on a copy is another curve than in the
  // serial order. Such passes are rare: they run again, serially, on the
  // workbench itself, so messages, curves and state are the serial ones.
  bool troubled = !spawned;
  for (const ProbeOutcome& o : outcomes) troubled = troubled || o.troubled;
  if (troubled) {
    for (std::size_t p = 0; p < total; ++p) FitObjective(wb_, probes[p], counts[p], curves[p]);
    return;
  }
  for (const ProbeOutcome& o : outcomes) wb_.optimiser.FitSimulations += o.ran;
  if (total > 0) {
    wb_.experiment = workers_[crew - 1]->wb().experiment;
    wb_.store = workers_[crew - 1]->wb().store;
  }
}

}  // namespace voltrix
