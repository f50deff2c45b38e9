#include "fit/fit_residual.h"

#include "ui/workbench.h"

namespace voltrix {

namespace {

std::vector<double> RowCopy(const CurveStore& s, int row, int n) {
  const double* y = s.YData.row(row);
  return std::vector<double>(y, y + n + 1);
}

}  // namespace

void KeepResidual(Workbench& wb) {
  const Experiment& e = wb.experiment;
  const int n = Count(e.NData);
  const int row = Count(e.CurNo);
  if (n < 1 || n > kMaxPoints || row < 2 || row > kMaxCurves) return ForgetResidual(wb);
  wb.fits.residual = {row, RowCopy(wb.store, 1, n), RowCopy(wb.store, row, n)};
}

void ForgetResidual(Workbench& wb) { wb.fits.residual = {}; }

std::vector<double> CurrentResidual(const Workbench& wb) {
  const FitResidualRows& kept = wb.fits.residual;
  const int n = static_cast<int>(kept.target.size()) - 1;
  if (n < 1 || kept.fitRow > Count(wb.experiment.NCurves)) return {};
  if (RowCopy(wb.store, 1, n) != kept.target || RowCopy(wb.store, kept.fitRow, n) != kept.fitted) return {};
  std::vector<double> residual(kept.target.size(), 0.0);
  for (int i = 1; i <= n; ++i) residual[i] = kept.target[i] - kept.fitted[i];
  return residual;
}

}  // namespace voltrix
