#pragma once
// The exact one-dimensional cell: every species of the mechanism on an
// expanding grid normal to a planar, cylindrical or spherical electrode,
// carried by diffusion (and by the rotating disk's flow where there is one),
// reacting in solution, and exchanging electrons at the surface by
// Butler-Volmer kinetics. Time advances by the second-order backward
// difference formula, restarted by one backward Euler step at every jump of
// the potential and after a renewal.
#include <vector>

#include "digital/exact_blocks.h"
#include "digital/exact_budget.h"
#include "digital/exact_grid.h"
#include "digital/transport_cell.h"

namespace voltrix {

struct OneDimensionalCellSetup {
  ExpandingGrid grid;
  double area = 0;        // cm2
  double convection = 0;  // a of the velocity -a x^2 towards the electrode, 1/(cm s)
  RunOutline outline;     // what the run will ask: one too large for the budget is refused at once
};

class OneDimensionalCell final : public TransportCell {
 public:
  OneDimensionalCell(const ReactionSet& set, OneDimensionalCellSetup setup);

  void renew() override;
  CellCurrents trial(double Ebegin, double Eend, double dt) override;
  void accept() override;
  double surfaceConcentration(int species) const override;

 private:
  struct Scheme {
    double dt = 0, a0 = 1;  // a0 c(new) - dt f(c(new)) = history
    double w = 0;           // ratio of this step to the last (BDF2)
    bool restart = true;    // backward Euler
  };
  struct CachedFactor {
    double dt = -1, a0 = 0;
    BlockTridiagonal::Factor factor;
    SpeciesMatrix Q;
  };
  // How the current of a reaction is read: from the surface gradient of a
  // species that takes part in no other electron transfer (exact to the
  // grid's order, free of the cancellation of two large kinetic terms), or
  // from the kinetics where no such species exists.
  struct CurrentReading {
    int species = -1;  // 0-based; -1: kinetics
    double sign = 1;
  };

  void measureWork();
  void layOutTransport();
  void chooseCurrentReadings();
  Scheme schemeFor(double Ebegin, double dt) const;
  void formHistory(const Scheme& s, double* out, std::size_t from);
  void setElectrodeRates(double E);
  void setTransportRows(double dt);
  void assembleInterior(const Scheme& s, const std::vector<double>& around);
  void assembleReactionRhs(const Scheme& s, const std::vector<double>& around);
  void assembleSurface(SpeciesMatrix& P, SpeciesMatrix& Q, SpeciesVector& s) const;
  void predict(const Scheme& s);
  const CachedFactor& cachedFactor(const Scheme& s);
  void solveLinear(const Scheme& s);
  void solveNonlinear(const Scheme& s);
  CellCurrents currents(const std::vector<double>& c) const;
  double surfaceFlux(const std::vector<double>& c, int p) const;

  ReactionSet set_;
  OneDimensionalCellSetup setup_;
  int n_ = 0, last_ = 0;
  bool linear_ = true;
  double D_[kMaxBlock] = {};
  std::vector<double> low_, up_;         // transport rates to the neighbours, 1/s, node-major
  SpeciesMatrix linearJacobian_;         // first-order reactions, 1/s
  std::vector<SpeciesMatrix> jacobian_;  // of each node where the last factor was made
  std::vector<double> now_, before_, trial_, iterate_, history_;
  BlockTridiagonal system_;
  double transportDt_ = -1;          // the step the transport rows hold
  std::vector<CachedFactor> cache_;  // filled as new steps come, up to its capacity
  std::size_t cacheCapacity_ = 1, nextCacheSlot_ = 0;
  std::size_t lastHit_ = 0;
  BlockTridiagonal::Factor factor_;
  std::vector<CurrentReading> readings_;
  double kred_[kMaxCharge] = {}, kox_[kMaxCharge] = {};
  double lastE_ = 0, lastStep_ = 0, trialE_ = 0;
  Scheme trialScheme_;
  int steps_ = 0;  // accepted steps since the last restart
  WorkBudget budget_;
  double solveWork_ = 0, factorWork_ = 0, reactionWork_ = 0;  // multiply-adds
};

}  // namespace voltrix
