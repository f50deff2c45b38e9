#include "fit/fit_driver.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "run/run_simulation.h"
#include "fit/parameter_slots.h"
#include "fit/probe_crew.h"
#include "model/checked.h"
#include "model/number_format.h"
#include "ui/form_expr.h"
#include "ui/form_option.h"
#include "ui/plot_engine.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {

void FitObjective(Workbench& wb, const ParameterVector& parameters, int& n, FitCurve& curve) {
  Experiment& e = wb.experiment;
  // Every fitted field again before each run: the run ends by re-reading the
  // forms into the model.
  for (int i = 1; i <= Count(e.FittedCount); ++i) SlotField(e, e.FittedSlots(i)) = parameters(i);
  RunSimulation(wb);
  ++wb.optimiser.FitSimulations;
  n = Count(e.NData);
  if (n < 0 || n > kMaxPoints) Raise(ErrorKind::SubscriptOutOfRange);
  if (curve.size() != static_cast<std::size_t>(kMaxPoints + 1)) curve = NewFitCurve();
  const double* row = wb.store.YData.row(Count(e.CurNo));
  for (int l = 1; l <= n; ++l) curve[l] = row[l];
}

WorkbenchFitModel::WorkbenchFitModel(Workbench& wb, int probeThreads) : wb_(wb), probeThreads_(probeThreads) {}

WorkbenchFitModel::~WorkbenchFitModel() = default;

void WorkbenchFitModel::Objective(const ParameterVector& parameters, int& n, FitCurve& curve) {
  const auto start = std::chrono::steady_clock::now();
  FitObjective(wb_, parameters, n, curve);
  lastRunSeconds_ = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Copying the workbench to the probes and back costs a few tenths of a
// millisecond per pass. Measured on two idle cores: at 0.05 ms per simulation
// two threads are slower than one, at 0.2 ms they are 1.3 times faster.
constexpr double kParallelWorthSeconds = 0.00015;

int WorkbenchFitModel::threads(int probes) const {
  int wanted = probeThreads_;
  if (wanted == 0) {
    const unsigned cores = std::thread::hardware_concurrency();
    wanted = lastRunSeconds_ >= kParallelWorthSeconds ? static_cast<int>(cores) : 1;
  }
  return std::max(1, std::min(wanted, probes));
}

void WorkbenchFitModel::Probes(const std::vector<ParameterVector>& probes, std::vector<FitCurve>& curves,
                               std::vector<int>& counts) {
  const int wanted = threads(static_cast<int>(probes.size()));
  if (wanted <= 1) return FitModel::Probes(probes, curves, counts);
  std::shared_ptr<void>& kept = wb_.optimiser.ProbeWorkers.value;
  auto crew = std::static_pointer_cast<ProbeCrew>(kept);
  if (!crew || crew->threads() != wanted) {
    crew = std::make_shared<ProbeCrew>(wb_, wanted);
    kept = crew;
  }
  crew->Run(probes, curves, counts);
}

namespace {

// What one Auto Fit works on, by fitted position 1 to K.
struct FitSetup {
  int k = 0;
  ParameterVector b, initial, lower, upper;
};

// The ticked boxes that can be seen, in rising slot order; a 21st raises
// "Subscript out of range" before anything is simulated.
void ListFittedSlots(Workbench& wb) {
  Experiment& e = wb.experiment;
  FormExpr& form = wb.formExpr();
  for (int slot = 1; slot <= kParameterSlots; ++slot) {
    const Control& box = form.control("CheckFitted", slot);
    if (!box.checked() || !box.visible()) continue;
    const int next = Count(e.FittedCount) + 1;
    e.FittedSlots(next) = static_cast<std::int16_t>(slot);
    e.FittedCount = next;
  }
}

// Start values from the committed model, limits from the text boxes; a value
// outside its limits starts at the limit but is reported as read.
FitSetup ReadSetup(Workbench& wb) {
  Experiment& e = wb.experiment;
  FormExpr& form = wb.formExpr();
  double table[kParameterSlots + 1] = {};
  for (int slot = 1; slot <= kParameterSlots; ++slot) table[slot] = SlotStartValue(e, slot);
  FitSetup setup;
  setup.k = Count(e.FittedCount);
  for (int i = 1; i <= setup.k; ++i) {
    const int slot = e.FittedSlots(i);
    setup.b(i) = table[slot];
    setup.lower(i) = Val(form.control("TextCmin", slot).text());
    setup.upper(i) = Val(form.control("TextCmax", slot).text());
  }
  for (int i = 1; i <= setup.k; ++i) {
    setup.initial(i) = setup.b(i);
    setup.b(i) = LargerOf(setup.lower(i), SmallerOf(setup.upper(i), setup.b(i)));
  }
  return setup;
}

// Population variance of the target over points 1 to n; DataSpread is its root.
double TargetVariance(Experiment& e, const FitCurve& target, int n) {
  if (n < 0 || n > kMaxPoints) Raise(ErrorKind::SubscriptOutOfRange);
  double sum = 0;
  for (int l = 1; l <= n; ++l) sum = Checked(sum + target[l]);
  const double mean = Div(sum, n);
  double squares = 0;
  for (int l = 1; l <= n; ++l) squares = Checked(squares + (target[l] - mean) * (target[l] - mean));
  const double variance = Div(squares, n);
  e.DataSpread = Sqrt(variance);
  return variance;
}

struct FitOutcome {
  double sumOfSquares = 0;
  int convergenceFlag = 0, passes = 0, marquardtCount = 0;
};

constexpr int kPassLimit = 50;  // a fit stops once it has made more passes than this

FitOutcome RunPasses(Workbench& wb, FitModel& model, FitSetup& setup, const FitCurve& target, double variance) {
  Experiment& e = wb.experiment;
  MarquardtContext ctx{model, wb.optimiser, e.DataSpread.value(), e.ObjectiveCount};
  FitCurve calculated = NewFitCurve();
  int n = Count(e.NData);
  int started = 0;
  FitOutcome out;
  do {
    MarquardtPass(ctx, setup.k, setup.b, n, calculated, target, out.sumOfSquares, started, out.convergenceFlag,
                  out.marquardtCount, setup.lower, setup.upper, variance);
    ++out.passes;
    wb.formResult().print(PrintLine().text("Least square = ").zone().number(out.sumOfSquares));
  } while (out.passes <= kPassLimit && out.convergenceFlag > 0);
  return out;
}

void PrintReport(Workbench& wb, const FitSetup& setup, const FitOutcome& out, double variance) {
  Experiment& e = wb.experiment;
  FormResult& result = wb.formResult();
  result.show();
  result.print(PrintLine().text("No.").zone().text("Initial value").zone().zone().text("Fitted value"));
  for (int i = 1; i <= setup.k; ++i)
    result.print(PrintLine().number(i).zone().number(setup.initial(i)).zone().number(setup.b(i)));
  result.print(std::string());
  result.print(PrintLine().text("Least square = ").zone().number(out.sumOfSquares));
  result.print(PrintLine().text("Standard deviation^2 = ").zone().number(variance));
  result.print(PrintLine().text("Convergence flag = ").zone().number(out.convergenceFlag));
  result.print(PrintLine().text("No. of iteration = ").zone().number(out.passes));
  result.print(PrintLine().text("No. of obj. fun. = ").zone().number(e.ObjectiveCount));
  result.print(PrintLine().text("No. of MARQUARDS = ").zone().number(out.marquardtCount));
  result.print(PrintLine().text("Computation time (s) =").zone().number(e.tElapsed));
}

void ShowFittedValues(Workbench& wb, const FitSetup& setup) {
  for (int i = 1; i <= setup.k; ++i)
    wb.formExpr().control("CheckFitted", wb.experiment.FittedSlots(i)).setCaption(FormatNumber(setup.b(i), "0.###e-#"));
}

// The target is row 1 of YData, points 1 to NData, in a curve whose other
// points stand at 0 (a run with more points compares its tail with 0).
FitCurve BuildFitTarget(Workbench& wb) {
  FitCurve target = NewFitCurve();
  const int n = Count(wb.experiment.NData);
  if (n < 0 || n > kMaxPoints) Raise(ErrorKind::SubscriptOutOfRange);
  const double* row = wb.store.YData.row(1);
  for (int l = 1; l <= n; ++l) target[l] = row[l];
  return target;
}

// AutoFitFlag and the hourglass for the length of a fit command, also when
// it ends by an error that no routine of it handles.
class FitCommandScope {
 public:
  explicit FitCommandScope(Workbench& wb) : wb_(wb) {
    wb_.platform.pointer.set(Pointer::kHourglass);
    wb_.experiment.AutoFitFlag = true;
  }
  ~FitCommandScope() {
    wb_.experiment.AutoFitFlag = false;
    wb_.platform.pointer.set(Pointer::kDefault);
  }
  FitCommandScope(const FitCommandScope&) = delete;
  FitCommandScope& operator=(const FitCommandScope&) = delete;

 private:
  Workbench& wb_;
};

}  // namespace

void RunAutoFit(Workbench& wb, const FitCurve& fitTarget) {
  WorkbenchFitModel model(wb, wb.optimiser.ProbeThreads);
  RunAutoFit(wb, fitTarget, model);
}

void RunAutoFit(Workbench& wb, const FitCurve& fitTarget, FitModel& model) {
  Experiment& e = wb.experiment;
  try {
    e.tElapsed = wb.platform.clock.seconds();
    e.ObjectiveCount = 0;
    e.FittedCount = 0;
    ListFittedSlots(wb);
    FitSetup setup = ReadSetup(wb);
    const double variance = TargetVariance(e, fitTarget, Count(e.NData));
    const FitOutcome out = RunPasses(wb, model, setup, fitTarget, variance);
    e.tElapsed = wb.platform.clock.seconds() - e.tElapsed;
    PrintReport(wb, setup, out, variance);
    ShowFittedValues(wb, setup);
  } catch (const RunError& err) {
    wb.platform.messages.show("Fit Error: " + err.description() + "! Please try again by other initial values.");
  }
}

namespace {
// A fit runs to its end before anything else: a front end that repaints
// during a fit must not start another one inside it.
bool FitUnderWay(const Workbench& wb) { return wb.experiment.AutoFitFlag; }
}  // namespace

void AutoFit(Workbench& wb) {
  Experiment& e = wb.experiment;
  if (FitUnderWay(wb)) return;
  FitCommandScope scope(wb);
  e.CurNo = 1;
  wb.formOption().control("overlap").setValue(0);
  if (!e.OverlapFlag) {
    e.NCurves = 1;
    e.NOverlay = 1;
  }
  wb.formExpr().OK();
  wb.formResult().clear();
  const FitCurve target = BuildFitTarget(wb);
  RunAutoFit(wb, target);
  PlotCurves(wb);
}

void ManualFit(Workbench& wb) {
  if (FitUnderWay(wb)) return;
  FitCommandScope scope(wb);
  wb.formExpr().OK();
  RunSimulation(wb);
  PlotCurves(wb);
}

}  // namespace voltrix
