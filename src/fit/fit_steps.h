#pragma once
// The steps of a fit that Auto Fit, the starts of a multi-start fit and the
// global fit share: the fitted slots and their limits, the target, the passes
// and the classic report.
#include <functional>
#include <string>
#include <vector>

#include "fit/marquardt.h"

namespace voltrix {

class Workbench;

// What one fit works on, by fitted position 1 to K.
struct FitSetup {
  int k = 0;
  ParameterVector b, initial, lower, upper;
};

// How a run of passes ended, with the curve of the values it returns.
struct FitOutcome {
  double sumOfSquares = 0;
  int convergenceFlag = 0, passes = 0, marquardtCount = 0;
  bool stopped = false;  // stopped between passes at the user's request
  FitCurve curve;        // points 1 to n
  int n = 0;
  // The central-difference derivatives of the last pass, column by
  // parameter, taken where that pass began.
  std::vector<std::vector<double>> derivatives;
};

// Told after each pass that another would follow; false stops the fit there.
using PassWatch = std::function<bool(int pass, double leastSquare)>;

constexpr int kPassLimit = 50;  // a fit stops once it has made more passes than this

// The ticked boxes that can be seen, in rising slot order, into FittedCount
// and FittedSlots; a 21st raises "Subscript out of range".
void ListFittedSlots(Workbench& wb);

// Start values from the committed model, limits from the text boxes; a value
// outside its limits starts at the limit but is reported as read.
FitSetup ReadSetup(Workbench& wb);

// Population variance of the target over points 1 to n; DataSpread is its root.
double TargetVariance(Experiment& e, const FitCurve& target, int n);

// Row 1 of YData, points 1 to NData, in a curve whose other points stand at 0.
FitCurve BuildFitTarget(Workbench& wb);

// Marquardt passes until convergence, the pass limit or a stop. Prints the
// "Least square = " line of each pass.
FitOutcome RunPasses(Workbench& wb, FitModel& model, FitSetup& setup, const FitCurve& target, double variance,
                     int pointLimit, const PassWatch& watch);

// The classic report lines and the fitted values as captions of the boxes.
void PrintReport(Workbench& wb, const FitSetup& setup, const FitOutcome& out, double variance);
void ShowFittedValues(Workbench& wb, const FitSetup& setup);

// The fitted parameters by their names on the form, in fitted order.
std::vector<std::string> FittedNames(Workbench& wb);

// The options of the "Fit" frame of FormExpr.
int FitStarts(Workbench& wb);  // at least 1
bool UncertaintyWanted(Workbench& wb);

// Reports each pass to the platform's progress and stops when the user asks.
PassWatch ProgressWatch(Workbench& wb);

// AutoFitFlag and the hourglass for the length of a fit command, also when
// it ends by an error that no routine of it handles.
class FitCommandScope {
 public:
  explicit FitCommandScope(Workbench& wb);
  ~FitCommandScope();
  FitCommandScope(const FitCommandScope&) = delete;
  FitCommandScope& operator=(const FitCommandScope&) = delete;

 private:
  Workbench& wb_;
};

// The platform's progress from the first pass of a fit to its end.
class FitProgressScope {
 public:
  explicit FitProgressScope(Workbench& wb);
  ~FitProgressScope();
  FitProgressScope(const FitProgressScope&) = delete;
  FitProgressScope& operator=(const FitProgressScope&) = delete;

 private:
  class FitProgress* progress_;
};

// A fit runs to its end before anything else: a front end that repaints
// during a fit must not start another one inside it.
bool FitUnderWay(const Workbench& wb);

}  // namespace voltrix
