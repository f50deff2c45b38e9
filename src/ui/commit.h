#pragma once
// The commit chain and the two small routines that every run uses.
namespace voltrix {

class Workbench;

// FormIns.OK, then the chemical fields of FormExpr, Code (unless digital),
// fRT and RTF.
void CommitInputs(Workbench& wb);

// Picks the row of YData for a new curve: CurNo, NCurves, NOverlay.
void StartCurve(Workbench& wb);

// Commits the forms and writes into YData the quantity that
// formOption.ComboY names. A cell that cannot give a resistance or a
// conductance is reported and leaves the rows as they were.
void PlotDataStep(Workbench& wb);

// The same as the last step of a run: such a fault is a run-time error that
// goes to the run's handler, with the points written so far kept.
void PlotDataStepOfRun(Workbench& wb);

}  // namespace voltrix
