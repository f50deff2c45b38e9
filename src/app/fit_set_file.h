#pragma once
// A curve file for the set of a global fit, read as "&Import Data..." reads
// it, so that an instrument file brings the settings it was recorded under.
#include <string>

#include "model/fit_record.h"

namespace voltrix {

class Workbench;

// The curve as the import lays it on its grid, and as settings every control
// of the instrument and technique forms that the import changed, in form
// order. Runs on a copy of the workbench, which stays untouched. Raises a
// RunError with the import's own message when the file cannot be read.
SetCurve ReadSetCurveFile(Workbench& wb, const std::string& path);

}  // namespace voltrix
