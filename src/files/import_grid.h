#pragma once
// A measured cycle laid on the program's own potential grid, so that a fit
// compares it point by point with a simulation of the same Estart, Eend,
// Estep and scan. The grid is the one a run lays out: from Estart in steps
// of Estep, X(i) = Estart + (Estep * (i - 1)) * sign, the turning potential
// twice for a cycle, which ends on X(1).
#include <optional>
#include <string>
#include <vector>

#include "files/instrument_cycles.h"

namespace voltrix {

struct ImportGrid {
  // As the instrument form will hold them: each survives its general text.
  double Estart = 0, Eend = 0, Estep = 0;
  bool cycle = false;  // "cycle" (out and back) or "single"
  double dataStep = 0;  // the step the data themselves take
  double fineStep = 0;  // the grid step before any coarsening
  bool coarsened = false;  // the fine step would have passed the point limit
  std::vector<double> X, Y;  // points 1 to NData, stored from 0
  long pointsLeftOut = 0;    // points of the cycle beyond the laid branches
};

struct GridResult {
  bool ok = false;
  ImportGrid grid;
  std::string error;
};

// Lays the cycle's longest out-and-back (or its one sweep) on the grid:
// the step is the header's where it agrees with the data within 10 %, else
// the data's typical step to three digits, made coarser only as far as
// `maxPoints` needs. The current at each grid potential is interpolated
// linearly on its own branch.
[[nodiscard]] GridResult LayOnPotentialGrid(const MeasuredCycle& cycle, std::optional<double> statedStep,
                                            int maxPoints);

}  // namespace voltrix
