// The block tridiagonal step against a dense solve of the same equations,
// and the Newton step against the backward Euler of a known rate law.
#include "digital/fd_solver.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "model/headless_platform.h"
#include "support/expect_close.h"

namespace voltrix {
namespace {

struct Grid {
  std::unique_ptr<StepTables> t = std::make_unique<StepTables>();
  std::unique_ptr<StepWork> w = std::make_unique<StepWork>();
};

// n species on N boxes with diffusion couplings, first-order exchange between
// species 1 and 2, and an electrode relation that leaves every surface value
// at its first-box value (no charge reaction acts).
Grid MakeGrid(int n, int N, bool equalCouplings, unsigned seed) {
  Grid g;
  StepTables& t = *g.t;
  t.n = n;
  t.N = N;
  std::mt19937 rng(seed);
  std::uniform_real_distribution<double> u(0.2, 1.0);
  for (int j = 1; j <= N; ++j) {
    const double lo = u(rng) * j, up = u(rng) * j;
    for (int i = 1; i <= n; ++i) {
      t.Lo[j][i] = equalCouplings ? lo : u(rng) * j;
      t.Up[j][i] = equalCouplings ? up : u(rng) * j;
    }
  }
  for (int j = 1; j <= N; ++j) {
    for (int p = 1; p <= n; ++p) t.Block[j](p, p) = 1 + t.Lo[j][p] + t.Up[j][p];
    if (n >= 2) {
      const double kf = 0.3, kb = 0.1;
      t.Block[j](1, 1) += kf;
      t.Block[j](2, 2) += kb;
      t.Block[j](1, 2) -= kb;
      t.Block[j](2, 1) -= kf;
    }
  }
  for (int i = 1; i <= n; ++i) {
    t.KSurf(i, i) = 1;
    t.KBox(i, i) = 1;
    for (int j = 0; j <= N + 1; ++j) t.Conc[i][j] = u(rng);
  }
  return g;
}

// Dense reference: unknowns c(p, j), j = 1..N, with S = c(., 1) at the
// electrode; box N + 1 holds its old value.
std::vector<double> DenseSolve(const StepTables& t) {
  const int n = t.n, N = t.N, size = n * N;
  std::vector<double> a(static_cast<std::size_t>(size) * (size + 1), 0.0);
  auto at = [&](int row, int col) -> double& { return a[static_cast<std::size_t>(row) * (size + 1) + col]; };
  auto index = [&](int p, int j) { return (j - 1) * n + (p - 1); };
  for (int j = 1; j <= N; ++j)
    for (int p = 1; p <= n; ++p) {
      const int row = index(p, j);
      for (int q = 1; q <= n; ++q) at(row, index(q, j)) += t.Block[j](p, q);
      if (j == 1)
        at(row, index(p, 1)) -= t.Lo[1][p];
      else
        at(row, index(p, j - 1)) -= t.Lo[j][p];
      double rhs = t.Conc[p][j];
      if (j < N)
        at(row, index(p, j + 1)) -= t.Up[j][p];
      else
        rhs += t.Up[N][p] * t.Conc[p][N + 1];
      at(row, size) = rhs;
    }
  for (int c = 0; c < size; ++c) {
    int best = c;
    for (int r = c + 1; r < size; ++r)
      if (std::fabs(at(r, c)) > std::fabs(at(best, c))) best = r;
    for (int k = 0; k <= size; ++k) std::swap(at(c, k), at(best, k));
    for (int r = 0; r < size; ++r) {
      if (r == c) continue;
      const double f = at(r, c) / at(c, c);
      for (int k = c; k <= size; ++k) at(r, k) -= f * at(c, k);
    }
  }
  std::vector<double> x(size);
  for (int r = 0; r < size; ++r) x[r] = at(r, size) / at(r, r);
  return x;
}

// The elimination scales a reduced block by the couplings of its row
// species, which is exact when the species of a box share their couplings
// (equal diffusion coefficients).
TEST(SolveLinearStep, AgreesWithADenseSolveOfTheSameBoxEquations) {
  RecordingMessageBox messages;
  for (int n = 1; n <= 4; ++n)
    for (int N : {2, 3, 14}) {
      Grid g = MakeGrid(n, N, true, 11u * n + N);
      const std::vector<double> expected = DenseSolve(*g.t);
      SolveLinearStep(*g.t, *g.w, messages);
      for (int j = 1; j <= N; ++j)
        for (int p = 1; p <= n; ++p)
          EXPECT_NEAR(g.t->Conc[p][j], expected[(j - 1) * n + (p - 1)], 1e-12) << "n " << n << " N " << N;
    }
  EXPECT_TRUE(messages.shown.empty());
}

// The reduced blocks are kept from the first step on; a fresh workspace at
// every step must give the very same numbers.
TEST(SolveLinearStep, KeptBlocksGiveIdenticalResultsToFreshOnes) {
  RecordingMessageBox messages;
  Grid kept = MakeGrid(3, 12, false, 5);
  Grid fresh = MakeGrid(3, 12, false, 5);
  kept.t->KSurf(1, 2) = -0.4;  // a relation that couples the species
  fresh.t->KSurf(1, 2) = -0.4;
  for (int step = 0; step < 6; ++step) {
    // The relation changes from step to step as the potential moves, and
    // once the box side of it changes too.
    for (Grid* g : {&kept, &fresh}) {
      g->t->KSurf(1, 1) = 1 + 0.3 * step;
      if (step == 3) g->t->KBox(2, 1) = 1;
    }
    SolveLinearStep(*kept.t, *kept.w, messages);
    fresh.w = std::make_unique<StepWork>();
    SolveLinearStep(*fresh.t, *fresh.w, messages);
    for (int i = 1; i <= 3; ++i)
      for (int j = 0; j <= 13; ++j) ASSERT_EQ(kept.t->Conc[i][j], fresh.t->Conc[i][j]) << step;
  }
}

// A singular block that is not diagonal is reported at each inversion, also
// when its inverse is kept: once in the elimination, once in the substitution.
TEST(SolveLinearStep, SingularBlockIsReportedAtEveryStepAndTheRunGoesOn) {
  RecordingMessageBox messages;
  Grid g = MakeGrid(2, 3, true, 1);
  for (int i = 1; i <= 2; ++i) {
    g.t->Lo[3][i] = 0;
    g.t->Up[3][i] = 0;
    g.t->Up[2][i] = 0;
  }
  g.t->Block[3] = Matrix{};
  g.t->Block[3](1, 1) = g.t->Block[3](1, 2) = g.t->Block[3](2, 1) = g.t->Block[3](2, 2) = 1;
  for (int step = 1; step <= 3; ++step) {
    SolveLinearStep(*g.t, *g.w, messages);
    EXPECT_EQ(messages.shown.size(), 2u * step);
  }
  for (const std::string& m : messages.shown) EXPECT_EQ(m, "Error: inverse matrix D=0");
}

TEST(SolveNonlinearStep, WithoutSecondOrderReactionsMatchesTheDirectSolve) {
  RecordingMessageBox messages;
  Grid direct = MakeGrid(2, 10, true, 3);
  Grid newton = MakeGrid(2, 10, true, 3);
  SolveLinearStep(*direct.t, *direct.w, messages);
  SolveNonlinearStep(*newton.t, *newton.w, messages);
  for (int i = 1; i <= 2; ++i)
    for (int j = 1; j <= 10; ++j) EXPECT_NEAR(newton.t->Conc[i][j], direct.t->Conc[i][j], 1e-12);
  EXPECT_EQ(newton.w->lastPasses, 2);  // the second pass confirms the first
}

// Pure kinetics, no transport: A + B = C + D with equal amounts of A and B.
// Backward Euler gives a + f a^2 = a_old, so a = (sqrt(1 + 4 f) - 1) / (2 f).
TEST(SolveNonlinearStep, SecondOrderKineticsFollowTheImplicitRateLaw) {
  RecordingMessageBox messages;
  Grid g = MakeGrid(4, 4, true, 9);
  StepTables& t = *g.t;
  for (int j = 1; j <= 4; ++j) {
    for (int i = 1; i <= 4; ++i) t.Lo[j][i] = t.Up[j][i] = 0;
    t.Block[j] = Matrix{};
    for (int p = 1; p <= 4; ++p) t.Block[j](p, p) = 1;
  }
  for (int j = 0; j <= 5; ++j) {
    t.Conc[1][j] = t.Conc[2][j] = 1;
    t.Conc[3][j] = t.Conc[4][j] = 0.5;
  }
  t.NChem = 0;
  t.NChem2 = 1;
  t.Chem2Map[1][1] = 1;
  t.Chem2Map[1][2] = 2;
  t.Chem2Map[1][3] = 3;
  t.Chem2Map[1][4] = 4;
  const double f = 1.0;
  t.kfStep[1] = f;
  t.kbStep[1] = 0;
  SolveNonlinearStep(t, *g.w, messages);
  const double a = (std::sqrt(1 + 4 * f) - 1) / (2 * f);  // 0.618034
  for (int j = 1; j <= 4; ++j) {
    EXPECT_CLOSE(t.Conc[1][j], a, 1e-4);
    EXPECT_CLOSE(t.Conc[2][j], a, 1e-4);
    // What A loses, C and D gain.
    EXPECT_CLOSE(t.Conc[3][j], 0.5 + (1 - a), 1e-4);
    EXPECT_CLOSE(t.Conc[1][j] + t.Conc[3][j], 1.5, 1e-9);
  }
}

}  // namespace
}  // namespace voltrix
