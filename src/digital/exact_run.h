#pragma once
// The exact digital run: the compiled mechanism on the electrode's own
// transport cell, marched through the technique's potential program on its
// true time axis, with the uncompensated resistance solved at every step.
namespace voltrix {

struct Experiment;
struct CurveStore;
class MessageBox;

inline constexpr const char* kExactRunPrefix = "CV Error: ";
inline constexpr const char* kExactRunSuffix = "! Please try again by other initial values.";

// Fills rows 1 to NCharge of YSim with the sampled currents (A) and rows 1
// to NSpecies of SurfC with the surface concentrations (mol/L) of each
// point's last sample. A mechanism that cannot be meant ends in "Error:
// <what>." before anything is computed; a failure of the run in "CV Error:
// <what>! Please try again by other initial values.", the points done so
// far kept. Both return normally.
void RunExactDigital(Experiment& e, CurveStore& s, MessageBox& messages);

}  // namespace voltrix
