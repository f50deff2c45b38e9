#pragma once
// A measured record cut into sweeps (where the potential turns) and cycles
// (as the file numbers them, or pairs of sweeps where it does not).
#include <cstddef>
#include <string>
#include <vector>

#include "files/instrument_file.h"

namespace voltrix {

// Points first to last of one monotonic stretch; consecutive sweeps share
// their turning point.
struct Sweep {
  std::size_t first = 0, last = 0;
};

// A turn counts once the potential has come back from its extreme by more
// than three of the record's typical steps, so that noise on a measured
// potential does not cut a sweep.
[[nodiscard]] std::vector<Sweep> SplitSweeps(const std::vector<double>& E);

// The typical step between neighbouring points: the median of the steps
// that move at all. 0 when no point moves.
[[nodiscard]] double TypicalStep(const std::vector<double>& E);

struct MeasuredCycle {
  std::string label;
  std::vector<double> E, I;
  std::vector<Sweep> sweeps;
  // Out from a start potential to one turn and back to the start, or a
  // single sweep where every cycle of the record is one.
  bool complete = false;
};

struct CycleSplit {
  std::vector<MeasuredCycle> cycles;
  std::vector<std::string> notes;
};

// The file's own grouping where it has more than one group; otherwise the
// sweeps taken in pairs, after a lead-in sweep shorter than the next (a scan
// that starts between its two limits).
[[nodiscard]] CycleSplit SplitCycles(const std::vector<MeasuredScan>& scans);

// The index of the first complete cycle; 0 when none is complete.
[[nodiscard]] std::size_t FirstCompleteCycle(const std::vector<MeasuredCycle>& cycles);

// One line for the cycle dialog: "cycle 2: 0.5 V to -0.2 V to 0.5 V, 1401 points".
[[nodiscard]] std::string DescribeCycle(const MeasuredCycle& cycle);

}  // namespace voltrix
