#pragma once
// The plot engine: draws rows 1 to NCurves of YData over XData on the
// plot window's drawing surface.
namespace voltrix {

class Workbench;

// PlotCurves(First, Last, XData, YData, LineStyle).
void PlotCurves(Workbench& wb);

// PlotDataStep, then PlotCurves.
void RefreshPlot(Workbench& wb);

}  // namespace voltrix
