#pragma once
// Auto Fit and Manual Fit: the model on the forms against the curve in row 1
// of YData. Fitted values go to the report and to the captions of the tick
// boxes, never back into the model or the text boxes.
#include "fit/marquardt.h"

namespace voltrix {

class Workbench;

// Writes each fitted value into the Experiment by its slot, runs one
// simulation and reads the curve of row CurNo; n becomes NData.
void FitObjective(Workbench& wb, const ParameterVector& parameters, int& n, FitCurve& curve);

// The workbench's simulation as the model of the optimiser. probeThreads 1
// keeps the probes in the serial order on the workbench; 2 or more runs them
// on copies; 0 lets the model choose: copies on a machine with more than one
// core once a simulation takes long enough to pay for copying the workbench.
class WorkbenchFitModel : public FitModel {
 public:
  WorkbenchFitModel(Workbench& wb, int probeThreads);
  ~WorkbenchFitModel() override;
  void Objective(const ParameterVector& parameters, int& n, FitCurve& curve) override;
  void Probes(const std::vector<ParameterVector>& probes, std::vector<FitCurve>& curves,
              std::vector<int>& counts) override;

 private:
  Workbench& wb_;
  int threads(int probes) const;
  int probeThreads_;
  double lastRunSeconds_ = 0;
};

// The fit of the ticked parameters and its report. Any error ends in the
// message "Fit Error: ..." and a normal return.
void RunAutoFit(Workbench& wb, const FitCurve& fitTarget);
// The same with another model in place of the workbench's simulation.
void RunAutoFit(Workbench& wb, const FitCurve& fitTarget, FitModel& model);

// The menu commands "&Auto Fit" and "&Manual Fit".
void AutoFit(Workbench& wb);
void ManualFit(Workbench& wb);

// "M&anual Separate" and "Auto S&eparate": the fit command, then one plotted
// row per charge reaction beside the target and the total.
void ManualSeparate(Workbench& wb);
void AutoSeparate(Workbench& wb);

}  // namespace voltrix
