#pragma once
// The uncertainty of a finished fit: the Jacobian at the fitted values from
// the model, its statistics, and the "Uncertainty" block of the report.
#include <string>
#include <vector>

#include "fit/fit_statistics.h"
#include "fit/marquardt.h"

namespace voltrix {

class TextWindow;

// The spread of the fit at b, whose curve (points 1 to n) and sum of squares
// are known: the optimiser's probe step, taken forward from that curve, so it
// costs one simulation per parameter.
FitStatistics MeasureFitSpread(FitModel& model, int k, const ParameterVector& b, const FitCurve& curve, int n,
                               double sumOfSquares, double dataSpread);

// What the convergence flag of the last pass means, in words.
std::string ConvergenceInWords(int flag, bool stopped, int passes);

// The block below the classic report lines: each parameter with its value,
// standard error, 95 % interval and relative error; the correlations; N, K
// and the reduced chi-square; the condition number, with a warning that
// names the two most correlated parameters when it is too large.
void PrintUncertainty(TextWindow& w, const std::vector<std::string>& names, const FitStatistics& st);

}  // namespace voltrix

namespace voltrix {

class Workbench;
struct FitSetup;
struct FitOutcome;

// Measures and prints the block for the fit that ended in `out`, then the
// convergence flag in words. The probes run through the model and leave the
// workbench's model and curves as the fit left them.
void ReportUncertainty(Workbench& wb, FitModel& model, const FitSetup& setup, const FitOutcome& out);

}  // namespace voltrix
