#pragma once
// The global fit: several measured curves fitted at once, the chemistry (the
// ticked parameters) shared and each curve simulated under its own
// instrument settings, on its own copy of the workbench. The curves are the
// workbench's curve set (Workbench::fits.curveSet).
#include <memory>
#include <string>
#include <vector>

#include "fit/marquardt.h"
#include "model/fit_record.h"

namespace voltrix {

class Workbench;

constexpr int kMostSetCurves = 8;

// Writes a setting into its control as a user's edit would. Raises for an
// unknown control or a value the control cannot take.
void ApplySetting(Workbench& wb, const FormSetting& setting);

// The curves of the set one after another, points 1 to their total.
FitCurve JoinedTarget(const std::vector<SetCurve>& set);

class GlobalFitModel : public FitModel {
 public:
  // threads 0: the cores of the machine; 1: one curve after another.
  GlobalFitModel(Workbench& wb, const std::vector<SetCurve>& set, int threads);
  ~GlobalFitModel() override;
  // The joined curve; raises when a curve's settings do not simulate the
  // points the curve has.
  void Objective(const ParameterVector& parameters, int& n, FitCurve& curve) override;
  int points() const { return total_; }
  int offset(std::size_t curve) const;  // points of the curves before it

 private:
  struct Member;
  void runMembers(const ParameterVector& parameters);
  Workbench& wb_;
  const std::vector<SetCurve>& set_;
  std::vector<std::unique_ptr<Member>> members_;
  int threads_;
  int total_ = 0;
};

// The menu-like command: fit, report (each curve's least square and the
// overall result, then the uncertainty) and the fitted curves kept in the set.
void GlobalFit(Workbench& wb);

}  // namespace voltrix
