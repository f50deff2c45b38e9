#pragma once
// The uncertainty of a finished fit: the Jacobian at the fitted values from
// the model, its statistics, and the "Uncertainty" block of the report.
#include <string>
#include <vector>

#include "fit/fit_statistics.h"
#include "fit/marquardt.h"

namespace voltrix {

class TextWindow;

// The spread of the fit at b, of n points and the given sum of squares,
// from fresh central differences with the optimiser's step: two simulations
// per parameter. (A one-sided step is cheaper but its error grows with the
// correlation of the parameters: 1 % on the standard errors of NIST's
// Misra1a, against 0.002 % for the central one.)
FitStatistics MeasureFitSpread(FitModel& model, int k, const ParameterVector& b, int n, double sumOfSquares,
                               double dataSpread);

// Five significant digits, for the tables below the classic report:
// "9.9961E-4", "-1E-1".
std::string ShortNumber(double x);

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
// convergence flag in words. The spread comes from the derivatives of the
// last pass, at no cost (for a converged fit they were taken within a
// fraction of a standard error of the end); only a fit without a pass
// (Manual Fit) probes anew through the model, which leaves the workbench's
// model and curves as the fit left them.
void ReportUncertainty(Workbench& wb, FitModel& model, const FitSetup& setup, const FitOutcome& out);

}  // namespace voltrix
