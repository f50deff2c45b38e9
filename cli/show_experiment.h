#pragma once
#include <ostream>

#include "model/experiment.h"

namespace voltrix {

// Every field of the Experiment, one "Name = value" line each (arrays as
// "Name(i) = value"), numbers in plain numeric print, flags as True/False.
void WriteExperiment(std::ostream& out, const Experiment& e);

}  // namespace voltrix
