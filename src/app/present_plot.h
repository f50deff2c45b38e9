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

}  // namespace voltrix
