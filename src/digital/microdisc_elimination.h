#pragma once
// One implicit step of the disc's transport for a group of species that
// react with each other, as a block tridiagonal system along xi: one block
// row per row of nodes, each block spanning the group's species at every
// node of that row (node-major: column j, species k at j * size + k).
// The blocks are eliminated from infinity towards the disc once per step
// length, leaving the reduced block of the surface row, where the electrode
// reactions couple the groups and the potential changes from step to step.
#include <vector>

#include "digital/microdisc_grid.h"
#include "model/experiment.h"

namespace voltrix {

// A group of species transported together.
struct SpeciesGroup {
  int size = 0;                 // species in the group
  int species[kMaxSpecies] = {};  // their numbers in the reaction set
  double rate[kMaxSpecies] = {};   // D / a^2 of each, 1/s
  bool reactive = false;        // a homogeneous step joins them
};

class BlockElimination {
 public:
  // Room for a group on a grid; nothing is allocated later.
  BlockElimination(const MicrodiscGrid& grid, const SpeciesGroup& group);

  // Eliminates the system of a backward Euler step of h seconds:
  //   mass (c - c_old) / h = transport + mass (rate of formation),
  // linearised with jacobian, the derivative of the rate of formation at
  // each node (row by row, size * size per node), or none.
  void build(double h, const double* jacobian);

  // Forward sweep: r holds the right-hand side row by row; afterwards row 0
  // holds the reduced right-hand side of the surface row, and y the partial
  // solutions of the rows behind it.
  void reduce(double* r, double* y) const;
  // Back substitution: c row 0 given, fills rows 1 onwards.
  void substitute(const double* y, double* c) const;

  // The surface row's reduced block (rowSize by rowSize).
  const double* surfaceBlock() const { return blocks_.data(); }
  int rowSize() const { return rowSize_; }
  double stepLength() const { return h_; }

 private:
  void fillDiagonalBlock(int i, const double* jacobian, double* block) const;

  const MicrodiscGrid& grid_;
  SpeciesGroup group_;
  int rowSize_ = 0;
  double h_ = 0;
  std::vector<double> towardDisc_, awayFromDisc_;  // coupling of each row to its neighbours
  std::vector<double> blocks_;                     // row 0: reduced block; rows >= 1: inverse of reduced block
  std::vector<int> pivot_;
  mutable std::vector<double> scratch_;
};

}  // namespace voltrix
