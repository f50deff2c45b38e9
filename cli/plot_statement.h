#pragma once
// "plot FILE": writes the picture that FormPlot holds to a PNG, SVG or PDF
// file (by extension), painted as the desktop program paints it.
namespace voltrix {

class Cli;

void RegisterPlotStatement(Cli& cli);

}  // namespace voltrix
