#pragma once
// The residual of the last Auto Fit or Manual Fit: data minus fit, point by
// point. It is kept on the workbench (Workbench::fits) and counts only while
// row 1 and the fitted row still hold the curves it was taken from, so a
// later run, import or transform of either row retires it by itself.
#include <vector>

namespace voltrix {

class Workbench;

// Row 1 minus row CurNo, points 1 to NData, as the fit left them.
void KeepResidual(Workbench& wb);
void ForgetResidual(Workbench& wb);

// Data minus fit by point index (index 0 unused); empty when no fit's
// residual stands.
std::vector<double> CurrentResidual(const Workbench& wb);

}  // namespace voltrix
