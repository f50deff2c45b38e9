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
// formOption.ComboY names.
void PlotDataStep(Workbench& wb);

}  // namespace voltrix
