#include "fit/multi_start.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <limits>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

#include "fit/fit_uncertainty.h"
#include "fit/latin_hypercube.h"
#include "model/fit_progress.h"
#include "model/headless_platform.h"
#include "model/number_format.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

constexpr double kSameMinimum = 0.01;  // of every box, in box coordinates
constexpr auto kProgressPeriod = std::chrono::milliseconds(50);

// What the threads of one multi-start fit share.
struct StartCrew {
  StartCrew(Workbench& w, const FitSetup& s, const FitCurve& t, double v, int limit, const ModelMaker& m,
            std::vector<ParameterVector> starts)
      : wb(w), setup(s), target(t), variance(v), pointLimit(limit), maker(m), points(std::move(starts)),
        results(points.size()) {}
  Workbench& wb;
  const FitSetup& setup;
  const FitCurve& target;
  double variance;
  int pointLimit;
  const ModelMaker& maker;
  std::vector<ParameterVector> points;
  std::vector<StartResult> results;
  std::atomic<int> next{0}, finished{0};
  std::atomic<bool> stop{false};
  std::mutex lock;
  std::condition_variable changed;
  FitProgressReport latest;
  double bestSoFar = std::numeric_limits<double>::infinity();

  void note(int pass, double leastSquare) {
    std::lock_guard<std::mutex> g(lock);
    latest.pass = pass;
    latest.leastSquare = leastSquare;
  }
};

void RunOneStart(StartCrew& crew, Workbench& copy, HeadlessPlatform& platform, int i) {
  StartResult& r = crew.results[i];
  FitSetup setup = crew.setup;
  setup.b = crew.points[i];
  r.start = setup.b;
  r.ran = true;
  copy.experiment.ObjectiveCount = 0;
  try {
    std::unique_ptr<FitModel> model = crew.maker(copy);
    PassWatch watch = [&crew](int pass, double s) {
      crew.note(pass, s);
      return !crew.stop.load();
    };
    r.out = RunPasses(copy, *model, setup, crew.target, crew.variance, crew.pointLimit, watch);
  } catch (const RunError& err) {
    r.failed = true;
    r.trouble = err.description();
  }
  if (!platform.messages.shown.empty()) {
    r.failed = true;
    if (r.trouble.empty()) r.trouble = platform.messages.shown.front();
    platform.messages.shown.clear();
  }
  r.fitted = setup.b;
  r.evaluations = copy.experiment.ObjectiveCount.value();
  r.out.curve = FitCurve();
  // Only the best end needs its derivatives (for the uncertainty); the rest
  // would hold a Jacobian for every start.
  std::lock_guard<std::mutex> g(crew.lock);
  if (!r.failed && r.out.sumOfSquares <= crew.bestSoFar) crew.bestSoFar = r.out.sumOfSquares;
  else r.out.derivatives.clear();
}

// Each start begins from the workbench as the command found it, so which
// thread runs which start changes nothing.
void Work(StartCrew& crew) {
  HeadlessPlatform platform;
  Workbench copy(platform.platform());
  copy.platform.fitProgress = nullptr;
  const int total = static_cast<int>(crew.points.size());
  for (int i = crew.next++; i < total && !crew.stop.load(); i = crew.next++) {
    copy.copyStateFrom(crew.wb);
    RunOneStart(crew, copy, platform, i);
    ++crew.finished;
    crew.changed.notify_all();
  }
}

int CrewSize(int starts) {
  const int cores = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
  return std::max(1, std::min(starts, cores));
}

// The command's thread shows the progress and passes on a stop while the
// starts run.
void Watch(StartCrew& crew, const std::vector<std::thread>& threads) {
  FitProgress* progress = crew.wb.platform.fitProgress;
  const int total = static_cast<int>(crew.points.size());
  std::unique_lock<std::mutex> g(crew.lock);
  while (crew.finished.load() < total && !threads.empty()) {
    crew.changed.wait_for(g, kProgressPeriod);
    if (!progress) continue;
    FitProgressReport now = crew.latest;
    now.start = std::min(crew.finished.load() + 1, total);
    now.starts = total;
    g.unlock();
    progress->report(now);
    if (progress->stopRequested()) crew.stop = true;
    g.lock();
    if (crew.stop.load()) break;
  }
}

void RunCrew(StartCrew& crew) {
  std::vector<std::thread> threads;
  for (int t = 0; t < CrewSize(static_cast<int>(crew.points.size())); ++t) {
    try {
      threads.emplace_back(Work, std::ref(crew));
    } catch (const std::system_error&) {
      break;  // no thread to be had: the command's own thread does the rest
    }
  }
  Watch(crew, threads);
  for (auto& t : threads) t.join();
  if (threads.empty()) Work(crew);
}

int BestStart(const std::vector<StartResult>& results) {
  int best = -1;
  for (int i = 0; i < static_cast<int>(results.size()); ++i) {
    const StartResult& r = results[i];
    if (!r.ran || r.failed) continue;
    if (best < 0 || r.out.sumOfSquares < results[best].out.sumOfSquares) best = i;
  }
  return best;
}

std::string FirstTrouble(const std::vector<StartResult>& results) {
  for (const StartResult& r : results)
    if (r.failed) return r.trouble;
  return "No start finished";
}

bool SameMinimum(const ParameterVector& a, const ParameterVector& b, const FitSetup& setup) {
  for (int j = 1; j <= setup.k; ++j) {
    const double ua = BoxCoordinate(a(j), setup.lower(j), setup.upper(j));
    const double ub = BoxCoordinate(b(j), setup.lower(j), setup.upper(j));
    if (std::fabs(ua - ub) > kSameMinimum) return false;
  }
  return true;
}

std::string Short(double x) { return ShortNumber(x); }

}  // namespace

std::vector<ParameterVector> StartingPoints(const FitSetup& setup, int n) {
  std::vector<ParameterVector> points{setup.b};
  if (n > 1) {
    const auto spread = LatinHypercube(n - 1, setup.k, setup.lower, setup.upper, kStartSeed);
    points.insert(points.end(), spread.begin(), spread.end());
  }
  return points;
}

MultiStartRun RunMultiStart(Workbench& wb, const FitSetup& setup, const FitCurve& target, double variance,
                            int pointLimit, int n, const ModelMaker& maker) {
  StartCrew crew(wb, setup, target, variance, pointLimit, maker, StartingPoints(setup, n));
  RunCrew(crew);
  MultiStartRun run;
  run.starts = std::move(crew.results);
  run.stopped = crew.stop.load();
  run.best = BestStart(run.starts);
  if (run.best < 0) Raise(ErrorKind::InvalidOperation, FirstTrouble(run.starts));
  for (int i = 0; i < static_cast<int>(run.starts.size()); ++i)
    if (i != run.best) run.starts[i].out.derivatives.clear();
  return run;
}

std::vector<Minimum> DistinctMinima(const MultiStartRun& run, const FitSetup& setup) {
  std::vector<int> order;
  for (int i = 0; i < static_cast<int>(run.starts.size()); ++i)
    if (run.starts[i].ran && !run.starts[i].failed) order.push_back(i);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
    return run.starts[a].out.sumOfSquares < run.starts[b].out.sumOfSquares;
  });
  std::vector<Minimum> minima;
  for (int i : order) {
    auto same = std::find_if(minima.begin(), minima.end(), [&](const Minimum& m) {
      return SameMinimum(run.starts[m.start].fitted, run.starts[i].fitted, setup);
    });
    if (same != minima.end()) ++same->count;
    else minima.push_back({i, 1});
  }
  return minima;
}

FitOutcome TakeBestStart(Workbench& wb, FitModel& model, FitSetup& setup, const MultiStartRun& run) {
  const StartResult& best = run.starts[run.best];
  if (run.best > 0) setup.initial = best.start;
  setup.b = best.fitted;
  FitOutcome out = best.out;
  model.Objective(setup.b, out.n, out.curve);
  wb.experiment.ObjectiveCount = best.evaluations;
  return out;
}

void PrintStarts(TextWindow& w, const std::vector<std::string>& names, const MultiStartRun& run,
                 const FitSetup& setup) {
  int ran = 0;
  for (const StartResult& r : run.starts) ran += r.ran ? 1 : 0;
  w.print(std::string());
  w.print(PrintLine().text("Starts = ").number(static_cast<double>(run.starts.size())).zone().text(
      "the form's values and a Latin hypercube over the min-max boxes, seed ").number(kStartSeed));
  if (run.stopped) w.print("Stopped by the user: " + std::to_string(ran) + " starts ran.");
  PrintLine head;
  head.text("Minimum").zone().text("Least square").zone().text("Starts");
  for (const std::string& n : names) head.zone().text(n);
  w.print(head);
  const std::vector<Minimum> minima = DistinctMinima(run, setup);
  for (std::size_t m = 0; m < minima.size(); ++m) {
    const StartResult& r = run.starts[minima[m].start];
    PrintLine line;
    line.number(static_cast<double>(m + 1)).zone().text(Short(r.out.sumOfSquares)).zone().number(minima[m].count);
    for (int j = 1; j <= setup.k; ++j) line.zone().text(Short(r.fitted(j)));
    w.print(line);
  }
  for (std::size_t i = 0; i < run.starts.size(); ++i)
    if (run.starts[i].failed) w.print("Start " + std::to_string(i + 1) + " failed: " + run.starts[i].trouble);
}

}  // namespace voltrix
