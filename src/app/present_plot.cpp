#include "app/present_plot.h"

#include <string>

#include "fit/fit_residual.h"
#include "ui/form_plot.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

// Typed mechanisms name their species; the fixed ones are A, B, C, D.
std::vector<std::string> SpeciesNames(const Experiment& e) {
  std::vector<std::string> names;
  for (int i = 1; i <= Count(e.NSpecies) && i <= kMaxSpecies; ++i)
    names.push_back(e.Mechanism == 0 ? e.SpeciesName(i) : std::string(1, static_cast<char>('A' + i - 1)));
  return names;
}

ResidualCurve ResidualAlongX(const Workbench& wb) {
  ResidualCurve curve;
  const std::vector<double> residual = CurrentResidual(wb);
  for (std::size_t i = 1; i < residual.size() && i <= static_cast<std::size_t>(kMaxPoints); ++i) {
    curve.x.push_back(wb.store.XData(static_cast<long>(i)));
    curve.r.push_back(residual[i]);
  }
  return curve;
}

}  // namespace

PlotPresentation PresentPlot(Workbench& wb, const std::vector<DrawCall>& recorded, const std::vector<RowMark>& rows) {
  return PresentPicture(recorded, rows, wb.formPlot().view(), SpeciesNames(wb.experiment), ResidualAlongX(wb));
}

}  // namespace voltrix
