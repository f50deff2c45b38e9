#pragma once
// The digital branch of a run: an implicit finite-difference simulation of
// the compiled mechanism over the potential axis XData.
namespace voltrix {

struct Experiment;
struct CurveStore;
class MessageBox;

// Fills rows 1 to NCharge of YSim and rows 1 to NSpecies of SurfC. Any error
// ends in the message "CV Error: ..." and a normal return.
void RunDigital(Experiment& e, CurveStore& s, MessageBox& messages);

}  // namespace voltrix
