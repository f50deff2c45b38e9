#pragma once
// A fit from several starting points: the values on the form, then points of
// a Latin hypercube over the min-max boxes of the fitted parameters. The
// starts run side by side, each on its own copy of the workbench; the best
// end is kept and the distinct minima are listed.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "fit/fit_steps.h"

namespace voltrix {

class TextWindow;

// Builds the model of one start on that start's copy of the workbench.
using ModelMaker = std::function<std::unique_ptr<FitModel>(Workbench& copy)>;

// The Latin hypercube is always drawn from this seed: the same starts for
// the same boxes, run after run.
constexpr unsigned kStartSeed = 1;

struct StartResult {
  ParameterVector start, fitted;
  FitOutcome out;  // without its curve
  double evaluations = 0;
  bool ran = false;
  bool failed = false;  // raised an error, or one of its simulations showed a message
  std::string trouble;
};

struct MultiStartRun {
  std::vector<StartResult> starts;
  int best = -1;  // the successful start of the lowest least square
  bool stopped = false;
};

// The form's values (inside the box) first, then n - 1 hypercube points.
std::vector<ParameterVector> StartingPoints(const FitSetup& setup, int n);

// Raises when no start succeeded.
MultiStartRun RunMultiStart(Workbench& wb, const FitSetup& setup, const FitCurve& target, double variance,
                            int pointLimit, int n, const ModelMaker& maker);

// One entry per distinct minimum, lowest least square first: ends that lie
// within 1 % of every box of each other are one minimum.
struct Minimum {
  int start = 0;  // the best start that reached it
  int count = 0;  // starts that reached it
};
std::vector<Minimum> DistinctMinima(const MultiStartRun& run, const FitSetup& setup);

// Puts the best start's values into setup and its curve into the workbench's
// rows (one simulation), and gives its outcome as the fit's: stopped only if
// the stop cut that start itself short.
FitOutcome TakeBestStart(Workbench& wb, FitModel& model, FitSetup& setup, const MultiStartRun& run);

void PrintStarts(TextWindow& w, const std::vector<std::string>& names, const MultiStartRun& run,
                 const FitSetup& setup);

}  // namespace voltrix
