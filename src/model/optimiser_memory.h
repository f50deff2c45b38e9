#pragma once
// What the Marquardt optimiser keeps from one pass to the next and from one
// fit to the next within one run of the program.
#include <memory>

#include "model/experiment.h"
#include "model/table.h"

namespace voltrix {

// Something a workbench keeps for itself between commands: a copy of the
// memory starts without it and an assignment leaves the target's own.
struct OwnOnly {
  OwnOnly() = default;
  OwnOnly(const OwnOnly&) {}
  OwnOnly& operator=(const OwnOnly&) { return *this; }
  std::shared_ptr<void> value;
};

struct OptimiserMemory {
  Table1<double, kMaxFitted + 1> CandidateVector;
  Table1<double, kMaxFitted + 1> StepVector;
  double Lambda = 0.0;
  // Threads for the derivative probes of a pass: 1 the serial order on the
  // workbench itself, 2 or more copies of it side by side, 0 the fit's own
  // choice by the cores of the machine and the cost of one simulation.
  int ProbeThreads = 0;
  // Simulations run for fits so far, probes included: what a fit really cost.
  long FitSimulations = 0;
  // The copies of the workbench that run the probes, kept from one fit to
  // the next because a fresh one costs more than a pass.
  OwnOnly ProbeWorkers;
};

}  // namespace voltrix
