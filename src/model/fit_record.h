#pragma once
// What fits leave on the workbench beyond the report: the residual of the
// last fitted curve and the set of curves a global fit works on.
#include <string>
#include <vector>

namespace voltrix {

// One control written before a curve of the set is simulated, so that each
// curve runs under its own instrument settings ("FormIns.V" = "0.1").
struct FormSetting {
  std::string form, control;
  int index = -1;  // -1: not a control array
  std::string text;
};

// A measured curve, the settings it was recorded under and, after a global
// fit, the curve fitted to it. Points 1 to n; index 0 has no meaning.
struct SetCurve {
  std::string name;
  std::vector<double> x, y;
  std::vector<FormSetting> settings;
  std::vector<double> fitted;  // empty until a global fit succeeds
  double leastSquare = 0;
  int points() const { return static_cast<int>(y.size()) - 1; }
};

// The rows the residual of the last Auto Fit or Manual Fit was taken from:
// row 1 (the target) and the row of the fitted curve, points 0 to n. The
// residual counts only as long as both rows still hold these values.
struct FitResidualRows {
  int fitRow = 0;
  std::vector<double> target, fitted;
};

struct FitRecord {
  FitResidualRows residual;
  std::vector<SetCurve> curveSet;
  int failedFits = 0;   // fits that ended in a "Fit Error" message
  int stoppedFits = 0;  // fits the user stopped between passes
};

}  // namespace voltrix
