#pragma once
// One implicit (backward Euler) time step of the box grid: a block
// tridiagonal system, eliminated from the far end towards the electrode,
// closed by the electrode relation and substituted back outwards.
#include "digital/step_tables.h"

namespace voltrix {

class MessageBox;

// Mechanisms without second-order reactions: one direct solve.
void SolveLinearStep(StepTables& t, StepWork& w, MessageBox& messages);

// With second-order reactions: at most 10 Newton passes on the same
// elimination; the last result stands whether or not it converged.
void SolveNonlinearStep(StepTables& t, StepWork& w, MessageBox& messages);

}  // namespace voltrix
