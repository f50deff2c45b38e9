#pragma once
// Names the curve rows for the plot's legend as the commands fill them: a
// run by its technique, rate, mechanism and electrode, an import by its
// file's name, a fit and the reactions of a separation by what they are.
#include <string>

namespace voltrix {

class Workbench;

// "CV, 0.1 V/s, A + ne = B": the run that the committed experiment describes.
std::string RunLabel(Workbench& wb);

// The row an import filled, named by the file's name.
void LabelImportedRow(Workbench& wb, const std::string& path);

// Wraps the handlers of the commands that fill rows; bound after them.
void BindCurveLabels(Workbench& wb);

}  // namespace voltrix
