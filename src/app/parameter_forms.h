#pragma once
// A parameter file read back into the forms, as a user would type it: the
// mode and mechanism, the technique, the electrode, the scan and the
// species blocks. Each write raises its control's events, so the derived
// texts follow as they do for a user's edit.
#include "files/parameter_reader.h"

namespace voltrix {

class Workbench;

struct AppliedParameters {
  // The file's concentrations are those a run started from. Where
  // pre-equilibration would move them again it is turned off, so that the
  // next run starts from them as they stand.
  bool preEquilibrationOff = false;
};

AppliedParameters ApplyParameters(Workbench& wb, const ParameterRecord& record);

// The radius (cm) that gives an electrode of that number the area (cm²)
// by the area formulas of the instrument form; a cylinder's length (cm)
// takes part. 0 for the planar and thin-film electrodes, whose area is typed.
double RadiusForArea(int electrode, double area, double length);

}  // namespace voltrix
