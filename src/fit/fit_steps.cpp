#include "fit/fit_steps.h"

#include <algorithm>
#include <cmath>

#include "fit/parameter_slots.h"
#include "model/checked.h"
#include "model/fit_progress.h"
#include "model/number_format.h"
#include "ui/form_expr.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {

void ListFittedSlots(Workbench& wb) {
  Experiment& e = wb.experiment;
  FormExpr& form = wb.formExpr();
  for (int slot = 1; slot <= kFitSlots; ++slot) {
    const Control& box = form.control("CheckFitted", slot);
    if (!box.checked() || !box.visible()) continue;
    const int next = Count(e.FittedCount) + 1;
    e.FittedSlots(next) = static_cast<std::int16_t>(slot);
    e.FittedCount = next;
  }
}

FitSetup ReadSetup(Workbench& wb) {
  Experiment& e = wb.experiment;
  FormExpr& form = wb.formExpr();
  double table[kFitSlots + 1] = {};
  for (int slot = 1; slot <= kFitSlots; ++slot) table[slot] = SlotStartValue(e, slot);
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

double TargetVariance(Experiment& e, const FitCurve& target, int n) {
  if (n < 0 || n >= static_cast<int>(target.size())) Raise(ErrorKind::SubscriptOutOfRange);
  double sum = 0;
  for (int l = 1; l <= n; ++l) sum = Checked(sum + target[l]);
  const double mean = Div(sum, n);
  double squares = 0;
  for (int l = 1; l <= n; ++l) squares = Checked(squares + (target[l] - mean) * (target[l] - mean));
  const double variance = Div(squares, n);
  e.DataSpread = Sqrt(variance);
  return variance;
}

FitCurve BuildFitTarget(Workbench& wb) {
  FitCurve target = NewFitCurve();
  const int n = Count(wb.experiment.NData);
  if (n < 0 || n > kMaxPoints) Raise(ErrorKind::SubscriptOutOfRange);
  const double* row = wb.store.YData.row(1);
  for (int l = 1; l <= n; ++l) target[l] = row[l];
  return target;
}

FitOutcome RunPasses(Workbench& wb, FitModel& model, FitSetup& setup, const FitCurve& target, double variance,
                     int pointLimit, const PassWatch& watch) {
  Experiment& e = wb.experiment;
  FitOutcome out;
  MarquardtContext ctx{model, wb.optimiser, e.DataSpread.value(), e.ObjectiveCount, pointLimit, &out.derivatives};
  out.curve = FitCurve(static_cast<std::size_t>(std::max(pointLimit, kMaxPoints)) + 1, 0.0);
  out.n = std::min(Count(e.NData), pointLimit);
  int started = 0;
  for (;;) {
    MarquardtPass(ctx, setup.k, setup.b, out.n, out.curve, target, out.sumOfSquares, started, out.convergenceFlag,
                  out.marquardtCount, setup.lower, setup.upper, variance);
    ++out.passes;
    wb.formResult().print(PrintLine().text("Least square = ").zone().number(out.sumOfSquares));
    if (out.passes > kPassLimit || out.convergenceFlag <= 0) break;
    if (watch && !watch(out.passes, out.sumOfSquares)) {
      out.stopped = true;
      break;
    }
  }
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

std::vector<std::string> FittedNames(Workbench& wb) {
  std::vector<std::string> names;
  for (int i = 1; i <= Count(wb.experiment.FittedCount); ++i) names.push_back(SlotName(wb, wb.experiment.FittedSlots(i)));
  return names;
}

// More starts than this would take longer than any user waits for.
constexpr int kMostStarts = 1000;

int FitStarts(Workbench& wb) {
  const double starts = std::round(Val(wb.formExpr().control("TextStarts").text()));
  return static_cast<int>(std::clamp(starts, 1.0, static_cast<double>(kMostStarts)));
}

bool UncertaintyWanted(Workbench& wb) { return wb.formExpr().control("CheckUncertainty").checked(); }

PassWatch ProgressWatch(Workbench& wb) {
  FitProgress* progress = wb.platform.fitProgress;
  if (!progress) return {};
  return [progress](int pass, double leastSquare) {
    progress->report({1, 1, pass, leastSquare});
    return !progress->stopRequested();
  };
}

FitCommandScope::FitCommandScope(Workbench& wb) : wb_(wb) {
  wb_.platform.pointer.set(Pointer::kHourglass);
  wb_.experiment.AutoFitFlag = true;
}

FitCommandScope::~FitCommandScope() {
  wb_.experiment.AutoFitFlag = false;
  wb_.platform.pointer.set(Pointer::kDefault);
}

FitProgressScope::FitProgressScope(Workbench& wb) : progress_(wb.platform.fitProgress) {
  if (progress_) progress_->begin();
}

FitProgressScope::~FitProgressScope() {
  if (progress_) progress_->end();
}

bool FitUnderWay(const Workbench& wb) { return wb.experiment.AutoFitFlag; }

}  // namespace voltrix
