#pragma once
// The run driver: turns the committed Experiment into one curve.
namespace voltrix {

class Workbench;

// RunSimulation(First, Last, XData, YData). Any error of the run ends in the
// message "Analytical simulation Error: ..." and a normal return.
void RunSimulation(Workbench& wb);

}  // namespace voltrix
