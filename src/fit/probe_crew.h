#pragma once
// Runs the derivative probes of a pass side by side, each share on a copy of
// the workbench with a headless platform, and the workbench ends in the state
// the last probe leaves. A probe whose simulation failed depends on the run
// before it, so a pass with one runs again in the serial order on the
// workbench itself: messages, curves and state never tell the two apart.
#include <memory>
#include <vector>

#include "fit/marquardt.h"

namespace voltrix {

class Workbench;

class ProbeCrew {
 public:
  ProbeCrew(Workbench& wb, int threads);
  ~ProbeCrew();
  ProbeCrew(const ProbeCrew&) = delete;
  ProbeCrew& operator=(const ProbeCrew&) = delete;

  int threads() const { return static_cast<int>(workers_.size()); }
  void Run(const std::vector<ParameterVector>& probes, std::vector<FitCurve>& curves, std::vector<int>& counts);

 private:
  struct Worker;
  Workbench& wb_;
  std::vector<std::unique_ptr<Worker>> workers_;
};

}  // namespace voltrix
