#pragma once
// The physics of a mechanism at a disc electrode on the oblate spheroidal
// grid: species grouped by the homogeneous steps that join them, the state
// laid out group by group (row by row, node-major within a row, the last row
// the bulk at infinity), the residual of an implicit step, the electrode
// reactions on the disc and the currents they carry.
#include <cstddef>
#include <vector>

#include "digital/microdisc_elimination.h"
#include "digital/microdisc_grid.h"
#include "digital/reaction_set.h"
#include "digital/transport_cell.h"

namespace voltrix {

// Butler-Volmer rate constants of every charge reaction at one potential.
struct ChargeRates {
  ElectrodeRates reaction[kMaxCharge] = {};
};

class MicrodiscProblem {
 public:
  // radius in cm; the grid resolves the timing's shortest step and reaches
  // as far as diffusion goes in its whole time.
  MicrodiscProblem(const ReactionSet& set, double radius, const CellTiming& timing);

  const MicrodiscGrid& grid() const { return grid_; }
  const std::vector<SpeciesGroup>& groups() const { return groups_; }
  std::size_t stateSize() const { return stateSize_; }
  std::size_t groupBase(int g) const { return base_[g]; }
  int surfaceSize() const { return surfaceSize_; }
  int surfaceOffset(int g) const { return surfaceOffset_[g]; }
  bool nonlinear(int g) const { return nonlinear_[g]; }
  double concentrationScale() const { return concentrationScale_; }
  double currentScale() const { return currentScale_; }

  void fillBulk(double* c) const;
  ChargeRates ratesAt(double E) const;

  // F = mass (c - old) / h - transport - mass (rate of formation) + disc
  // term, over every row but the bulk; F has the layout of the state.
  void residual(const double* c, const double* old, double h, const ChargeRates& rates, double* F) const;
  // Derivative of the rate of formation of group g at every node of c.
  void groupJacobian(int g, const double* c, double* jacobian) const;
  // Adds the derivative of the disc term to the surface matrix, which spans
  // the surface rows of all groups (surfaceSize by surfaceSize).
  void addElectrodeTerms(const ChargeRates& rates, double* surface) const;

  CellCurrents currents(const double* c, const ChargeRates& rates) const;
  // Largest change of a surface concentration between two states, over the
  // concentration scale, and of a current, over the current or the disc's
  // steady-state scale.
  double surfaceDifference(const double* a, const double* b, const ChargeRates& rates) const;
  double surfaceAverage(const double* c, int species) const;

 private:
  void groupSpecies();
  void shareOutChemistry();
  void layOutState();
  void setScales();
  std::size_t index(int species, int i, int j) const;
  int surfaceIndex(int species, int j) const;
  void addTransport(int g, const double* c, const double* old, double h, double* F) const;
  void addChemistry(int g, const double* c, double* F) const;
  void addDiscTerm(const double* c, const ChargeRates& rates, double* F) const;
  double netReduction(int r, const double* c, int j, const ChargeRates& rates) const;

  ReactionSet set_;
  double radius_ = 0;
  MicrodiscGrid grid_;
  std::vector<SpeciesGroup> groups_;
  std::vector<ReactionSet> groupChemistry_;
  std::vector<bool> nonlinear_;
  int groupOf_[kMaxSpecies + 1] = {};
  int slotOf_[kMaxSpecies + 1] = {};
  std::vector<std::size_t> base_;
  std::vector<int> surfaceOffset_;
  std::size_t stateSize_ = 0;
  int surfaceSize_ = 0;
  double concentrationScale_ = 0;
  double currentScale_ = 0;
  double fastestTransfer_ = 0;  // cm/s
  double chargeFactor_[kMaxCharge] = {};  // n F 2 pi a^2 / 1000: A per (cm/s mol/L) of disc weight
};

// The thinnest layer a run must resolve, over the radius: diffusion over the
// shortest step, or the reaction layer sqrt(D/k) of the fastest
// homogeneous step, of the slowest species.
double FinestLayer(const ReactionSet& set, double radius, double shortestTime);
// How far the fastest species diffuses in the whole run, over the radius.
double WidestLayer(const ReactionSet& set, double radius, double totalTime);

}  // namespace voltrix
