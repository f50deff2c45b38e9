#pragma once
// The accurate closed-form path of a run: rows 1 to NCharge of YSim from
// the integral equations of the electrode on the true time axis of the
// technique, in A, reduction positive. The sum row, charging current and
// noise stay with the run driver.
#include "analytic/run_steps.h"

namespace voltrix {

// Raises a RunError whose description names the combination when no exact
// model of it exists.
void FillExactReactionRows(const Experiment& e, const XAxis& X, SimRows& Y, double currentScale);

}  // namespace voltrix
