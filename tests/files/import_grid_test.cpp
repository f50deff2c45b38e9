// Records cut into sweeps and cycles, and cycles laid on the potential grid:
// synthetic records whose answers follow from their construction.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "files/import_grid.h"

namespace voltrix {
namespace {

// Potentials from `from` to `to` in `step`, both ends included.
std::vector<double> Ramp(double from, double to, double step) {
  std::vector<double> E;
  const long n = std::lround(std::fabs(to - from) / step);
  for (long k = 0; k <= n; ++k) E.push_back(from + (to > from ? 1 : -1) * step * static_cast<double>(k));
  return E;
}

// Ramps through the given turning potentials, each turn stored once.
std::vector<double> Turns(std::initializer_list<double> at, double step) {
  std::vector<double> E;
  for (auto p = at.begin(); p + 1 != at.end(); ++p) {
    std::vector<double> r = Ramp(*p, *(p + 1), step);
    E.insert(E.end(), r.begin() + (E.empty() ? 0 : 1), r.end());
  }
  return E;
}

MeasuredScan Scan(std::string label, std::vector<double> E) {
  return MeasuredScan{std::move(label), E, std::vector<double>(E.size(), 1e-6)};
}

struct SplitCase {
  const char* what;
  std::vector<MeasuredScan> scans;
  std::size_t cycles, firstComplete;
  double firstStart;  // where the first cycle starts
  std::size_t notes;
};

TEST(CycleSplit, CyclesFollowTheFileOrPairsOfSweeps) {
  std::vector<double> noisy = Turns({0.3, -0.3, 0.3}, 0.005);
  for (std::size_t i = 0; i < noisy.size(); ++i) noisy[i] += i % 2 ? 0.004 : -0.004;
  const SplitCase cases[] = {
      {"a scan that starts between its limits: the lead-in sweep is no cycle, the last sweep is half a cycle",
       {Scan("", Turns({0, 0.2, -0.2, 0.2, -0.2}, 0.01))}, 2, 0, 0.2, 1},
      {"noise of almost a step on a measured potential cuts no sweep", {Scan("", noisy)}, 1, 0, 0.296, 0},
      {"single sweeps, one per scan, are each complete", {Scan("scan 1", Ramp(0, -0.5, 0.005)),
                                                         Scan("scan 2", Ramp(0, -0.5, 0.005))}, 2, 0, 0, 0},
      {"a cycle that stops on its way back is passed over",
       {Scan("cycle 1", Turns({0.5, 0, 0.3}, 0.01)), Scan("cycle 2", Turns({0.5, 0, 0.5}, 0.01))}, 2, 1, 0.5, 0},
  };
  for (const SplitCase& c : cases) {
    SCOPED_TRACE(c.what);
    const CycleSplit split = SplitCycles(c.scans);
    ASSERT_EQ(split.cycles.size(), c.cycles);
    EXPECT_EQ(FirstCompleteCycle(split.cycles), c.firstComplete);
    EXPECT_NEAR(split.cycles[0].E[0], c.firstStart, 1e-12);
    EXPECT_EQ(split.notes.size(), c.notes);
  }
}

MeasuredCycle CycleOf(const std::vector<double>& E, const std::function<double(double, bool)>& current) {
  MeasuredScan s{"", E, {}};
  const std::size_t turn = static_cast<std::size_t>(std::min_element(E.begin(), E.end()) - E.begin());
  for (std::size_t i = 0; i < E.size(); ++i) s.I.push_back(current(E[i], i > turn));
  return SplitCycles({s}).cycles.at(0);
}

TEST(ImportGrid, LinearBranchesAreReproducedExactlyBetweenTheData) {
  // Data every mV, 0.37 mV off the grid: the start rounds to 0.4996 V, the span of 699.97 mV to 700 steps.
  // Both branches are straight lines through the one current measured at the turn.
  const double turn = -0.20037;
  const auto out = [](double E) { return 2e-6 + 3e-6 * E; };
  const auto back = [&](double E) { return out(turn) + 4e-6 * (E - turn); };
  const MeasuredCycle c = CycleOf(Turns({0.49963, turn, 0.50063}, 0.001),
                                  [&](double E, bool returning) { return returning ? back(E) : out(E); });
  const GridResult r = LayOnPotentialGrid(c, std::nullopt, 4000);
  ASSERT_TRUE(r.ok) << r.error;
  const ImportGrid& g = r.grid;
  EXPECT_EQ(g.Estart, 0.4996);
  EXPECT_EQ(g.Eend, -0.2004);
  EXPECT_EQ(g.Estep, 0.001);
  ASSERT_EQ(g.X.size(), 1402u);
  for (std::size_t i = 1; i + 1 < 701; ++i) {
    EXPECT_NEAR(g.Y[i], out(g.X[i]), 1e-17) << i;
    EXPECT_EQ(g.X[701 + i], g.X[700 - i]);  // the way back retraces the way out
    EXPECT_NEAR(g.Y[701 + i], back(g.X[701 + i]), 1e-17) << i;
  }
}

struct LimitCase {
  const char* what;
  std::vector<double> E;
  std::optional<double> stated;
  double Estep;
  std::size_t NData;
  bool coarsened;
};

TEST(ImportGrid, TheStepIsTheDatasOwnUnlessThePointLimitForbids) {
  const LimitCase cases[] = {
      // 40000 steps of 0.1 mV need 21 of them per point to stay within 1999: 2.1 mV, 1905 steps, 2 x 1906 points.
      {"a 4 V battery cycle at 0.1 mV", Turns({0, 4, 0}, 1e-4), std::nullopt, 0.0021, 3812, true},
      // 8000 steps of 0.05 mV within 3999: 3 of them, 0.15 mV, 2667 steps.
      {"a 0.4 V sweep at 0.05 mV", Ramp(0, 0.4, 5e-5), std::nullopt, 1.5e-4, 2668, true},
      {"a stated step that agrees with the data within 10 %", Ramp(0, 0.099, 0.00099), 0.001, 0.001, 100, false},
      {"a stated step the data do not follow", Ramp(0, 0.099, 0.00099), 0.002, 0.00099, 101, false},
  };
  for (const LimitCase& c : cases) {
    SCOPED_TRACE(c.what);
    const GridResult r = LayOnPotentialGrid(CycleOf(c.E, [](double E, bool) { return E; }), c.stated, 4000);
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_NEAR(r.grid.Estep, c.Estep, 1e-15);
    EXPECT_EQ(r.grid.X.size(), c.NData);
    EXPECT_EQ(r.grid.coarsened, c.coarsened);
  }
}

}  // namespace
}  // namespace voltrix
