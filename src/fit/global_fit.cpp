#include "fit/global_fit.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <thread>
#include <utility>

#include "fit/fit_driver.h"
#include "fit/fit_steps.h"
#include "fit/fit_uncertainty.h"
#include "fit/multi_start.h"
#include "model/checked.h"
#include "model/headless_platform.h"
#include "model/number_format.h"
#include "ui/form_expr.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {

void ApplySetting(Workbench& wb, const FormSetting& s) {
  const std::string name = s.form + "." + s.control + (s.index >= 0 ? "(" + std::to_string(s.index) + ")" : "");
  Form* form = wb.formNamed(s.form);
  Control* c = form && form->hasControlNamed(s.control) ? form->find(s.control, s.index) : nullptr;
  if (!c) Raise(ErrorKind::InvalidArgument, "There is no control " + name);
  const auto& items = c->items();
  switch (c->kind()) {
    case ControlKind::TextBox:
      return c->setText(s.text);
    case ControlKind::ComboBox:
      if (!c->state().editable && std::find(items.begin(), items.end(), s.text) == items.end())
        Raise(ErrorKind::InvalidArgument, "There is no item \"" + s.text + "\" in " + name);
      return c->setText(s.text);
    case ControlKind::CheckBox:
      if (s.text != "0" && s.text != "1") Raise(ErrorKind::InvalidArgument, "The check box " + name + " takes 0 or 1");
      return c->setValue(s.text == "1");
    case ControlKind::OptionButton:
      if (s.text != "1") Raise(ErrorKind::InvalidArgument, "The option button " + name + " is selected with 1");
      return c->setValue(1);
    default:
      Raise(ErrorKind::InvalidArgument, std::string("A ") + KindName(c->kind()) + " cannot be set: " + name);
  }
}

FitCurve JoinedTarget(const std::vector<SetCurve>& set) {
  FitCurve target(1, 0.0);
  for (const SetCurve& c : set) target.insert(target.end(), c.y.begin() + 1, c.y.end());
  return target;
}

// A curve of the set with the workbench it is simulated on.
struct GlobalFitModel::Member {
  HeadlessPlatform platform;
  Workbench wb{platform.platform()};
  FitCurve curve = NewFitCurve();
  int n = 0;
  std::exception_ptr error;
};

GlobalFitModel::GlobalFitModel(Workbench& wb, const std::vector<SetCurve>& set, int threads)
    : wb_(wb), set_(set), threads_(threads) {
  if (threads_ <= 0) threads_ = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
  for (const SetCurve& c : set) {
    auto m = std::make_unique<Member>();
    m->wb.platform.fitProgress = nullptr;
    m->wb.copyStateFrom(wb);
    for (const FormSetting& s : c.settings) ApplySetting(m->wb, s);
    m->wb.formExpr().OK();
    m->wb.experiment.AutoFitFlag = true;
    total_ += c.points();
    members_.push_back(std::move(m));
  }
}

GlobalFitModel::~GlobalFitModel() = default;

int GlobalFitModel::offset(std::size_t curve) const {
  int before = 0;
  for (std::size_t m = 0; m < curve && m < set_.size(); ++m) before += set_[m].points();
  return before;
}

// The curves share the threads in turn; a failure is kept with its curve and
// raised in the order of the set, whatever thread met it first.
void GlobalFitModel::runMembers(const ParameterVector& parameters) {
  const std::size_t count = members_.size();
  const std::size_t crew = std::min<std::size_t>(static_cast<std::size_t>(threads_), count);
  auto work = [&](std::size_t first) {
    for (std::size_t m = first; m < count; m += crew) {
      Member& member = *members_[m];
      try {
        FitObjective(member.wb, parameters, member.n, member.curve);
      } catch (...) {
        member.error = std::current_exception();
      }
    }
  };
  std::vector<std::thread> threads;
  std::size_t spawned = 1;
  for (; spawned < crew; ++spawned) {
    try {
      threads.emplace_back(work, spawned);
    } catch (const std::system_error&) {
      break;
    }
  }
  work(0);
  for (auto& t : threads) t.join();
  for (std::size_t m = spawned; m < crew; ++m) work(m);
  wb_.optimiser.FitSimulations += static_cast<long>(count);
}

namespace {

// The settings must give the curve's own points: same count, same first and
// last potential to within half its step.
void CheckSameAxis(const SetCurve& c, const Workbench& member, int n, std::size_t index) {
  const std::string which = "Curve " + std::to_string(index + 1) + " (" + c.name + ")";
  if (n != c.points())
    Raise(ErrorKind::InvalidArgument, which + " has " + std::to_string(c.points()) + " points, but its settings simulate " +
                                          std::to_string(n));
  const double tolerance = c.points() > 1 ? 0.5 * std::fabs(c.x[2] - c.x[1]) + 1e-12 : 1e-12;
  const auto& x = member.store.XData;
  if (std::fabs(x(1) - c.x[1]) > tolerance || std::fabs(x(n) - c.x[n]) > tolerance)
    Raise(ErrorKind::InvalidArgument, which + " runs from " + GeneralText(c.x[1]) + " to " + GeneralText(c.x[n]) +
                                          ", but its settings simulate " + GeneralText(x(1)) + " to " + GeneralText(x(n)));
}

}  // namespace

void GlobalFitModel::Objective(const ParameterVector& parameters, int& n, FitCurve& curve) {
  runMembers(parameters);
  if (curve.size() < static_cast<std::size_t>(total_) + 1) curve.assign(static_cast<std::size_t>(total_) + 1, 0.0);
  for (std::size_t m = 0; m < members_.size(); ++m) {
    Member& member = *members_[m];
    for (const std::string& message : member.platform.messages.shown) wb_.platform.messages.show(message);
    member.platform.messages.shown.clear();
    if (member.error) std::rethrow_exception(std::exchange(member.error, nullptr));
    CheckSameAxis(set_[m], member.wb, member.n, m);
    std::copy(member.curve.begin() + 1, member.curve.begin() + member.n + 1, curve.begin() + offset(m) + 1);
  }
  n = total_;
}

namespace {

// Each curve's own least square, kept in the set with its fitted curve.
void ReportEachCurve(Workbench& wb, const GlobalFitModel& model, const FitOutcome& out) {
  std::vector<SetCurve>& set = wb.fits.curveSet;
  TextWindow& w = wb.formResult();
  w.print(std::string());
  w.print(PrintLine().text("Curve").zone().text("Points").zone().text("Least square").zone().text("File"));
  for (std::size_t m = 0; m < set.size(); ++m) {
    SetCurve& c = set[m];
    const int first = model.offset(m);
    c.fitted.assign(1, 0.0);
    c.fitted.insert(c.fitted.end(), out.curve.begin() + first + 1, out.curve.begin() + first + c.points() + 1);
    double sum = 0;
    for (int l = 1; l <= c.points(); ++l) sum += (c.fitted[l] - c.y[l]) * (c.fitted[l] - c.y[l]);
    c.leastSquare = Checked(sum);
    w.print(PrintLine().number(static_cast<double>(m + 1)).zone().number(c.points()).zone().text(
        ShortNumber(c.leastSquare)).zone().text(c.name));
  }
  w.print(PrintLine().text("All").zone().number(out.n).zone().text(ShortNumber(out.sumOfSquares)));
}

void RunGlobalFit(Workbench& wb) {
  Experiment& e = wb.experiment;
  const std::vector<SetCurve>& set = wb.fits.curveSet;
  if (set.empty()) Raise(ErrorKind::InvalidArgument, "The curve set is empty: add curves to it first");
  e.tElapsed = wb.platform.clock.seconds();
  e.ObjectiveCount = 0;
  e.FittedCount = 0;
  ListFittedSlots(wb);
  FitSetup setup = ReadSetup(wb);
  GlobalFitModel model(wb, set, wb.optimiser.ProbeThreads);
  const FitCurve target = JoinedTarget(set);
  const double variance = TargetVariance(e, target, model.points());
  const int starts = FitStarts(wb);
  MultiStartRun multi;
  FitOutcome out;
  if (starts > 1) {
    const ModelMaker maker = [&set](Workbench& copy) { return std::make_unique<GlobalFitModel>(copy, set, 1); };
    multi = RunMultiStart(wb, setup, target, variance, model.points(), starts, maker);
    out = TakeBestStart(wb, model, setup, multi);
  } else {
    out = RunPasses(wb, model, setup, target, variance, model.points(), ProgressWatch(wb));
  }
  e.tElapsed = wb.platform.clock.seconds() - e.tElapsed;
  wb.formResult().print("Global fit of " + std::to_string(set.size()) + " curves");
  PrintReport(wb, setup, out, variance);
  ShowFittedValues(wb, setup);
  ReportEachCurve(wb, model, out);
  if (starts > 1) PrintStarts(wb.formResult(), FittedNames(wb), multi, setup);
  if (out.stopped) wb.formResult().print(ConvergenceInWords(out.convergenceFlag, true, out.passes));
  if (out.stopped || multi.stopped) ++wb.fits.stoppedFits;
  ReportUncertainty(wb, model, setup, out);
}

}  // namespace

void GlobalFit(Workbench& wb) {
  if (FitUnderWay(wb)) return;
  FitCommandScope scope(wb);
  FitProgressScope progress(wb);
  wb.formExpr().OK();
  wb.formResult().clear();
  try {
    RunGlobalFit(wb);
  } catch (const RunError& err) {
    ++wb.fits.failedFits;
    for (SetCurve& c : wb.fits.curveSet) c.fitted.clear();
    wb.platform.messages.show("Fit Error: " + err.description() + "! Please try again by other initial values.");
  }
}

}  // namespace voltrix
