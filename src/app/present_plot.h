#pragma once
// The plot as the front ends show it: the recorded picture through the
// view kept with FormPlot, with the species and the fit residual that the
// workbench holds. Shared by the plot window, copy, print and "plot FILE".
#include <vector>

#include "model/headless_platform.h"
#include "ui/plot_presentation.h"

namespace voltrix {

class Workbench;

PlotPresentation PresentPlot(Workbench& wb, const std::vector<DrawCall>& recorded, const std::vector<RowMark>& rows);

// Data minus fit of the last Auto Fit or Manual Fit, by point (index 0
// unused), while row 1 and the fitted row still hold what the fit left;
// empty when no fit's residual stands.
std::vector<double> FitResidualForPlot(const Workbench& wb);

}  // namespace voltrix
