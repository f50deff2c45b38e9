#pragma once
// Which transport cell an electrode gets on the exact digital path, and the
// grid of the one-dimensional ones, chosen from the time scales of the
// potential program and of the chemistry so that no user setting is needed.
#include <memory>

#include "digital/exact_budget.h"
#include "digital/exact_grid.h"
#include "digital/exact_steps.h"
#include "digital/transport_cell.h"

namespace voltrix {

struct ProgramScales {
  double resolvedTime = 0;  // s: the shortest time over which a sampled current must be right
  double totalTime = 0;     // s: the longest the solution evolves without a new drop
  double shortestStep = 0;  // s: the shortest step the run will take
  RunOutline outline;
};

// a of the Levich velocity -a x^2 towards a disk rotating at omega rad/s in
// a solution of kinematic viscosity nu cm2/s: 0.51023 omega^3/2 nu^-1/2.
double LevichFlow(double omega, double nu);

// The grid of electrodes 1 to 3 and 5 to 8.
GridRequest ChooseGrid(const Experiment& e, const ReactionSet& set, const ProgramScales& scales);

// How the run cuts the stretches of its program: graded for the
// one-dimensional cells; whole for the microdisc, which measures the error
// of its own steps and divides them as it needs, so that the steps it keeps
// for one drop serve every other; at a microdisc with resistance as short
// as the ohmic drop needs to follow the current.
StretchCut StretchCutFor(const Experiment& e);

// Electrode 4 is the two-dimensional microdisc; the others are
// one-dimensional cells. Raises InvalidArgument for a geometry input that is
// not positive where the electrode needs it.
std::unique_ptr<TransportCell> MakeExactCell(const Experiment& e, const ReactionSet& set, const ProgramScales& scales);

}  // namespace voltrix
