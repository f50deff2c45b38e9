#pragma once
// "plot FILE": writes the picture that FormPlot holds to a PNG, SVG or PDF
// file (by extension), painted as the desktop program paints it: through
// the view that "zoom" sets, with the legend that "legend" shows or hides.
namespace voltrix {

class Cli;

// Registers plot, zoom and legend.
void RegisterPlotStatement(Cli& cli);

}  // namespace voltrix
