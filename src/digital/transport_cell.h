#pragma once
// A transport cell: the species of a mechanism near one electrode, carried by
// diffusion (and convection where the electrode has it) and reacting in
// solution, advanced in time under a given interfacial potential. The
// technique's timing, Ru and the sampling of currents live above it, so one
// driver serves every electrode geometry.
#include <memory>

#include "digital/reaction_set.h"
#include "model/experiment.h"

namespace voltrix {

// Faradaic current of each charge reaction in A, reduction positive
// (index 1 to the number of charge reactions), and their sum.
struct CellCurrents {
  double reaction[kMaxCharge + 1] = {};
  double total = 0;
};

// What a cell needs to lay out its grid: the shortest step the driver will
// ask for and the whole length of the program (s).
struct CellTiming {
  double shortestStep = 0;
  double totalTime = 0;
};

class TransportCell {
 public:
  virtual ~TransportCell() = default;
  // Back to the bulk solution, as at the start or for a new drop.
  virtual void renew() = 0;
  // One step of dt seconds from the accepted state while the interfacial
  // potential moves linearly from Ebegin to Eend (V); the currents are those
  // at the end of the step. The cell answers for its own accuracy over the
  // step and may divide it as it needs. The accepted state is kept until
  // accept(), so a driver may try several potentials for the same step
  // (resistance).
  virtual CellCurrents trial(double Ebegin, double Eend, double dt) = 0;
  // The last trial becomes the accepted state.
  virtual void accept() = 0;
  // Concentration of a species at the electrode (mol/L, averaged over its
  // surface) in the accepted state.
  virtual double surfaceConcentration(int species) const = 0;
};

// The microdisc in two dimensions: a disc of radius e.radius (area pi r^2).
std::unique_ptr<TransportCell> MakeMicrodiscCell(const Experiment& e, const ReactionSet& set,
                                                 const CellTiming& timing);

}  // namespace voltrix
