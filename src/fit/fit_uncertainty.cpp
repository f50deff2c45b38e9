#include "fit/fit_uncertainty.h"

#include <cmath>

#include "fit/fit_steps.h"
#include "model/checked.h"
#include "model/number_format.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {

FitStatistics MeasureFitSpread(FitModel& model, int k, const ParameterVector& b, int n, double sumOfSquares,
                               double dataSpread) {
  std::vector<ParameterVector> probes;
  std::vector<double> steps;
  for (int j = 1; j <= k; ++j) {
    steps.push_back(ProbeStep(b(j), dataSpread));
    for (double side : {1.0, -1.0}) {
      probes.push_back(b);
      probes.back()(j) = Checked(b(j) + side * steps.back());
    }
  }
  std::vector<FitCurve> curves(probes.size());
  std::vector<int> counts(probes.size(), n);
  model.Probes(probes, curves, counts);
  SquareMatrix columns(static_cast<std::size_t>(k), std::vector<double>(static_cast<std::size_t>(n) + 1, 0.0));
  std::vector<double> values;
  for (int j = 0; j < k; ++j) {
    const FitCurve& plus = curves[2 * j];
    const FitCurve& minus = curves[2 * j + 1];
    if (counts[2 * j] != n || counts[2 * j + 1] != n) Raise(ErrorKind::SubscriptOutOfRange);
    const double width = Checked(2 * steps[j]);
    if (width == 0.0) Raise(ErrorKind::DivisionByZero);
    for (int l = 1; l <= n; ++l) columns[j][l] = Checked((plus[l] - minus[l]) / width);
    values.push_back(b(j + 1));
  }
  return SpreadOfFit(columns, values, sumOfSquares, n);
}

std::string ConvergenceInWords(int flag, bool stopped, int passes) {
  if (stopped)
    return "Stopped by the user after pass " + std::to_string(passes) + ": the values are the best found so far.";
  if (flag == -1) return "Convergence flag -1: the least square fell below 1e-10 of the spread of the data.";
  if (flag == -2)
    return "Convergence flag -2: converged, the last pass improved the least square by less than 0.02 %.";
  return "Convergence flag 1: the pass limit ended the fit before it converged; the values may still move.";
}

std::string ShortNumber(double x) {
  std::string s = FormatNumber(x, "0.####E-0");
  const auto point = s.find(".E");
  if (point != std::string::npos) s.erase(point, 1);
  return s;
}

namespace {

// Four decimals, without the bare point the pattern leaves on a whole number.
std::string Correlation(double r) {
  std::string s = FormatNumber(r, "0.####");
  if (!s.empty() && s.back() == '.') s.pop_back();
  return s;
}

PrintLine Row(const std::string& head) {
  PrintLine line;
  line.text(head);
  return line;
}

void PrintParameterTable(TextWindow& w, const std::vector<std::string>& names, const FitStatistics& st) {
  w.print(Row("Parameter").zone().text("Value").zone().text("Std. error").zone().text("95% low").zone().text(
      "95% high").zone().text("Rel. error"));
  for (std::size_t i = 0; i < st.spread.size(); ++i) {
    const ParameterSpread& p = st.spread[i];
    PrintLine line = Row(names[i]);
    line.zone().text(ShortNumber(p.value)).zone();
    if (!p.determined) {
      w.print(line.text("not determined: the curve does not change with it"));
      continue;
    }
    line.text(ShortNumber(p.standardError)).zone().text(ShortNumber(p.low)).zone().text(ShortNumber(p.high)).zone();
    w.print(line.text(p.value == 0.0 ? std::string() : ShortNumber(p.relativeError)));
  }
}

void PrintCorrelations(TextWindow& w, const std::vector<std::string>& names, const FitStatistics& st) {
  PrintLine head = Row("Correlation");
  for (const std::string& n : names) head.zone().text(n);
  w.print(head);
  for (std::size_t i = 0; i < names.size(); ++i) {
    PrintLine line = Row(names[i]);
    for (std::size_t j = 0; j <= i; ++j) line.zone().text(Correlation(st.correlation[i][j]));
    w.print(line);
  }
}

void PrintCondition(TextWindow& w, const std::vector<std::string>& names, const FitStatistics& st) {
  PrintLine line = Row("Condition number of J'J (scaled) = ");
  w.print(st.singular ? line.text("above 1E16, J'J is singular") : line.text(ShortNumber(st.conditionNumber)));
  if (!(st.conditionNumber > kIllConditioned) || st.mostCorrelatedA < 0) return;
  w.print("Warning: the curve does not determine all these parameters together. " + names[st.mostCorrelatedA] +
          " and " + names[st.mostCorrelatedB] + " are the most correlated (" +
          Correlation(st.largestCorrelation) + "): fix one of them or add data that tells them apart.");
}

}  // namespace

void PrintUncertainty(TextWindow& w, const std::vector<std::string>& names, const FitStatistics& st) {
  w.print(std::string());
  w.print("Uncertainty");
  PrintParameterTable(w, names, st);
  PrintCorrelations(w, names, st);
  w.print(Row("N = ").number(st.points).zone().text("K = ").number(st.parameters).zone().text(
      "Reduced chi^2 = S/(N-K) = ").text(ShortNumber(st.reducedChiSquare)));
  PrintCondition(w, names, st);
}

namespace {

FitStatistics SpreadAtTheEnd(Workbench& wb, FitModel& model, const FitSetup& setup, const FitOutcome& out) {
  std::vector<double> values;
  for (int j = 1; j <= setup.k; ++j) values.push_back(setup.b(j));
  if (static_cast<int>(out.derivatives.size()) == setup.k)
    return SpreadOfFit(out.derivatives, values, out.sumOfSquares, out.n);
  const Experiment fitted = wb.experiment;
  const CurveStore curves = wb.store;
  FitStatistics st;
  try {
    st = MeasureFitSpread(model, setup.k, setup.b, out.n, out.sumOfSquares, fitted.DataSpread.value());
  } catch (const RunError&) {
    wb.experiment = fitted;
    wb.store = curves;
    throw;
  }
  wb.experiment = fitted;
  wb.store = curves;
  return st;
}

}  // namespace

void ReportUncertainty(Workbench& wb, FitModel& model, const FitSetup& setup, const FitOutcome& out) {
  TextWindow& w = wb.formResult();
  if (setup.k == 0) {
    w.print("Uncertainty: no parameter is ticked.");
    return;
  }
  PrintUncertainty(w, FittedNames(wb), SpreadAtTheEnd(wb, model, setup, out));
  if (!out.stopped && out.passes > 0) w.print(ConvergenceInWords(out.convergenceFlag, false, out.passes));
}

}  // namespace voltrix
