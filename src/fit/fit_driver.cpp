#include "fit/fit_driver.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "fit/fit_residual.h"
#include "fit/fit_steps.h"
#include "fit/fit_uncertainty.h"
#include "fit/multi_start.h"
#include "fit/parameter_slots.h"
#include "fit/probe_crew.h"
#include "model/checked.h"
#include "model/number_format.h"
#include "run/run_simulation.h"
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
  for (int i = 1; i <= Count(e.FittedCount); ++i) WriteSlotValue(e, e.FittedSlots(i), parameters(i));
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

void RunAutoFit(Workbench& wb, const FitCurve& fitTarget) {
  WorkbenchFitModel model(wb, wb.optimiser.ProbeThreads);
  RunAutoFit(wb, fitTarget, model);
}

namespace {

// The starts of a multi-start fit simulate on their own copies, each with
// its probes in the serial order: the starts already fill the cores.
std::unique_ptr<FitModel> ModelOnCopy(Workbench& copy) { return std::make_unique<WorkbenchFitModel>(copy, 1); }

// What the options of the fit add below the classic report.
void ReportExtras(Workbench& wb, FitModel& model, const FitSetup& setup, const FitOutcome& out,
                  const MultiStartRun& starts) {
  if (!starts.starts.empty()) PrintStarts(wb.formResult(), FittedNames(wb), starts, setup);
  if (out.stopped) wb.formResult().print(ConvergenceInWords(out.convergenceFlag, true, out.passes));
  if (out.stopped || starts.stopped) ++wb.fits.stoppedFits;
  if (UncertaintyWanted(wb)) ReportUncertainty(wb, model, setup, out);
}

}  // namespace

void RunAutoFit(Workbench& wb, const FitCurve& fitTarget, FitModel& model) {
  Experiment& e = wb.experiment;
  try {
    e.tElapsed = wb.platform.clock.seconds();
    e.ObjectiveCount = 0;
    e.FittedCount = 0;
    ListFittedSlots(wb);
    FitSetup setup = ReadSetup(wb);
    const double variance = TargetVariance(e, fitTarget, Count(e.NData));
    const int starts = FitStarts(wb);
    MultiStartRun run;
    FitOutcome out;
    if (starts > 1) {
      run = RunMultiStart(wb, setup, fitTarget, variance, kMaxPoints, starts, ModelOnCopy);
      out = TakeBestStart(wb, model, setup, run);
    } else {
      out = RunPasses(wb, model, setup, fitTarget, variance, kMaxPoints, ProgressWatch(wb));
    }
    e.tElapsed = wb.platform.clock.seconds() - e.tElapsed;
    PrintReport(wb, setup, out, variance);
    ShowFittedValues(wb, setup);
    KeepResidual(wb);
    ReportExtras(wb, model, setup, out, run);
  } catch (const RunError& err) {
    ForgetResidual(wb);
    ++wb.fits.failedFits;
    wb.platform.messages.show("Fit Error: " + err.description() + "! Please try again by other initial values.");
  }
}

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
  {
    FitProgressScope progress(wb);
    RunAutoFit(wb, target);
  }
  PlotCurves(wb);
}

namespace {

// The uncertainty of the values on the form, as typed, against row 1.
void ReportManualUncertainty(Workbench& wb) {
  Experiment& e = wb.experiment;
  try {
    e.FittedCount = 0;
    ListFittedSlots(wb);
    FitSetup setup = ReadSetup(wb);
    setup.b = setup.initial;
    FitOutcome out;
    out.n = Count(e.NData);
    const FitCurve target = BuildFitTarget(wb);
    TargetVariance(e, target, out.n);
    out.curve = NewFitCurve();
    const double* fitted = wb.store.YData.row(Count(e.CurNo));
    for (int l = 1; l <= out.n; ++l) {
      out.curve[l] = fitted[l];
      out.sumOfSquares = Checked(out.sumOfSquares + (fitted[l] - target[l]) * (fitted[l] - target[l]));
    }
    wb.formResult().show();
    wb.formResult().print(PrintLine().text("Least square = ").zone().number(out.sumOfSquares));
    WorkbenchFitModel model(wb, wb.optimiser.ProbeThreads);
    ReportUncertainty(wb, model, setup, out);
  } catch (const RunError& err) {
    ++wb.fits.failedFits;
    wb.platform.messages.show("Fit Error: " + err.description() + "! Please try again by other initial values.");
  }
}

}  // namespace

void ManualFit(Workbench& wb) {
  if (FitUnderWay(wb)) return;
  FitCommandScope scope(wb);
  wb.formExpr().OK();
  RunSimulation(wb);
  KeepResidual(wb);
  if (UncertaintyWanted(wb)) ReportManualUncertainty(wb);
  PlotCurves(wb);
}

}  // namespace voltrix
