// The small-matrix routines against hand-worked inverses and a plain
// reference, and the implicit box step against a dense solve of the same
// equations and against the backward Euler of a known rate law.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "digital/fd_solver.h"
#include "digital/matrix.h"
#include "model/errors.h"
#include "model/headless_platform.h"
#include "support/expect_close.h"

namespace voltrix {
namespace {

Matrix FromRows(const std::vector<std::vector<double>>& rows) {
  Matrix A;
  for (std::size_t i = 0; i < rows.size(); ++i)
    for (std::size_t k = 0; k < rows[i].size(); ++k) A(i + 1, k + 1) = rows[i][k];
  return A;
}

// Hand-worked inverses (elements outside rows and columns 1..n hold
// 100 + 10 i + k and must stay), the singular block left as its first
// elimination leaves it, and for every size the solver uses, with the pivot
// far from the diagonal, a product with the matrix that is the identity.
TEST(InvertMatrix, HandWorkedAndReferenceInverses) {
  const struct {
    std::vector<std::vector<double>> a, inverse;
    int messages;
  } cases[] = {
      {{{4}}, {{0.25}}, 0},                           // n = 1 counts as diagonal
      {{{0, 1}, {1, 0}}, {{0, 1}, {1, 0}}, 0},        // pivot off the diagonal
      {{{1, 2}, {3, 4}}, {{-2, 1}, {1.5, -0.5}}, 0},  // first pivot 4 at (2, 2)
      {{{2, 0, 0}, {0, -8, 0}, {0, 0, 0.5}}, {{0.5, 0, 0}, {0, -0.125, 0}, {0, 0, 2}}, 0},
      {{{1, 1}, {1, 1}}, {{1, 1}, {-1, 0}}, 1},  // singular
  };
  for (const auto& c : cases) {
    const int n = static_cast<int>(c.a.size());
    Matrix A;
    for (int i = 0; i < kBlockSize; ++i)
      for (int k = 0; k < kBlockSize; ++k) A(i, k) = i >= 1 && k >= 1 && i <= n && k <= n ? c.a[i - 1][k - 1] : 100 + 10 * i + k;
    RecordingMessageBox messages;
    InvertMatrix(A, n, messages);
    EXPECT_EQ(messages.shown, std::vector<std::string>(c.messages, "Error: inverse matrix D=0"));
    for (int i = 0; i < kBlockSize; ++i)
      for (int k = 0; k < kBlockSize; ++k) {
        const bool inside = i >= 1 && k >= 1 && i <= n && k <= n;
        EXPECT_NEAR(A(i, k), inside ? c.inverse[i - 1][k - 1] : 100 + 10 * i + k, 1e-14) << i << "," << k;
      }
  }
  RecordingMessageBox messages;
  Matrix zero = FromRows({{2, 0}, {0, 0}});  // a diagonal block with a zero: a fault, not the message
  EXPECT_THROW(InvertMatrix(zero, 2, messages), RunError);
  std::mt19937 rng(7);
  std::uniform_real_distribution<double> u(-1, 1);
  for (int n = 1; n <= 6; ++n)
    for (int trial = 0; trial < 40; ++trial) {
      Matrix A, product;
      for (int i = 1; i <= n; ++i)
        for (int k = 1; k <= n; ++k) A(i, k) = u(rng) + (i == n && k == 1 ? 3 : 0);
      Matrix inverse = A;
      InvertMatrix(inverse, n, messages);
      MatrixProduct(A, inverse, n, n, n, product);
      for (int i = 1; i <= n; ++i)
        for (int k = 1; k <= n; ++k) ASSERT_NEAR(product(i, k), i == k ? 1.0 : 0.0, 1e-10) << n << " " << trial;
    }
  EXPECT_TRUE(messages.shown.empty());
}

struct Grid {
  std::unique_ptr<StepTables> t = std::make_unique<StepTables>();
  std::unique_ptr<StepWork> w = std::make_unique<StepWork>();
};

// n species on N boxes with diffusion couplings equal for the species of a
// box (equal D), a first-order exchange between species 1 and 2, and an
// electrode relation that leaves every surface value at its first box.
Grid MakeGrid(int n, int N, unsigned seed, bool chemistry = true) {
  Grid g;
  StepTables& t = *g.t;
  t.n = n;
  t.N = N;
  std::mt19937 rng(seed);
  std::uniform_real_distribution<double> u(0.2, 1.0);
  for (int j = 1; j <= N; ++j) {
    const double lo = u(rng) * j, up = u(rng) * j;
    for (int i = 1; i <= n; ++i) {
      t.Lo[j][i] = lo;
      t.Up[j][i] = up;
      t.Block[j](i, i) = 1 + lo + up;
    }
    if (n >= 2 && chemistry) {
      t.Block[j](1, 1) += 0.3;
      t.Block[j](2, 2) += 0.1;
      t.Block[j](1, 2) -= 0.1;
      t.Block[j](2, 1) -= 0.3;
    }
  }
  for (int i = 1; i <= n; ++i) {
    t.KSurf(i, i) = t.KBox(i, i) = 1;
    for (int j = 0; j <= N + 1; ++j) t.Conc[i][j] = u(rng);
  }
  return g;
}

// Dense reference: unknowns c(p, j), j = 1..N; box N + 1 holds its value.
std::vector<double> DenseSolve(const StepTables& t) {
  const int n = t.n, N = t.N, size = n * N;
  std::vector<std::vector<double>> a(size, std::vector<double>(size + 1, 0.0));
  auto index = [&](int p, int j) { return (j - 1) * n + (p - 1); };
  for (int j = 1; j <= N; ++j)
    for (int p = 1; p <= n; ++p) {
      std::vector<double>& row = a[index(p, j)];
      for (int q = 1; q <= n; ++q) row[index(q, j)] += t.Block[j](p, q);
      row[index(p, j > 1 ? j - 1 : 1)] -= t.Lo[j][p];
      if (j < N) row[index(p, j + 1)] -= t.Up[j][p];
      row[size] = t.Conc[p][j] + (j == N ? t.Up[N][p] * t.Conc[p][N + 1] : 0);
    }
  for (int c = 0; c < size; ++c)
    for (int r = 0; r < size; ++r)
      if (r != c) {
        const double f = a[r][c] / a[c][c];
        for (int k = c; k <= size; ++k) a[r][k] -= f * a[c][k];
      }
  std::vector<double> x(size);
  for (int r = 0; r < size; ++r) x[r] = a[r][size] / a[r][r];
  return x;
}

TEST(SolveLinearStep, AgreesWithADenseSolveOfTheSameBoxEquations) {
  RecordingMessageBox messages;
  for (int n = 1; n <= 6; ++n)
    for (int N : {2, 3, 14})
      for (bool chemistry : {false, true}) {
        Grid g = MakeGrid(n, N, 11u * n + N, chemistry);
        const std::vector<double> expected = DenseSolve(*g.t);
        SolveLinearStep(*g.t, *g.w, messages);
        for (int j = 1; j <= N; ++j)
          for (int p = 1; p <= n; ++p)
            ASSERT_NEAR(g.t->Conc[p][j], expected[(j - 1) * n + (p - 1)], 1e-12) << "n " << n << " N " << N;
        ASSERT_EQ(g.t->Conc[1][N + 1], MakeGrid(n, N, 11u * n + N).t->Conc[1][N + 1]);  // the far box stays
      }
  EXPECT_TRUE(messages.shown.empty());
}

// The reduced blocks are kept from the first step on; a fresh workspace at
// every step must give the very same numbers while the electrode relation
// changes with the potential.
TEST(SolveLinearStep, KeptBlocksGiveTheDigitsOfFreshOnes) {
  RecordingMessageBox messages;
  for (bool chemistry : {false, true}) {
    Grid kept = MakeGrid(3, 12, 5, chemistry), fresh = MakeGrid(3, 12, 5, chemistry);
    for (int step = 0; step < 6; ++step) {
      for (Grid* g : {&kept, &fresh}) {
        g->t->KSurf(1, 2) = -0.4;
        g->t->KSurf(1, 1) = 1 + 0.3 * step;
        if (step >= 3) g->t->KBox(2, 1) = 1;
      }
      SolveLinearStep(*kept.t, *kept.w, messages);
      fresh.w = std::make_unique<StepWork>();
      SolveLinearStep(*fresh.t, *fresh.w, messages);
      for (int i = 1; i <= 3; ++i)
        for (int j = 0; j <= 13; ++j) ASSERT_EQ(kept.t->Conc[i][j], fresh.t->Conc[i][j]) << step;
    }
  }
}

// Pure kinetics, no transport: A + B = C + D with equal amounts of A and B.
// Backward Euler gives a + f a^2 = a_old, so a = (sqrt(1 + 4 f) - 1) / (2 f).
TEST(SolveNonlinearStep, SecondOrderKineticsFollowTheImplicitRateLaw) {
  RecordingMessageBox messages;
  Grid direct = MakeGrid(2, 10, 3), newton = MakeGrid(2, 10, 3);
  SolveLinearStep(*direct.t, *direct.w, messages);
  SolveNonlinearStep(*newton.t, *newton.w, messages);  // no second-order reaction: the same step
  for (int j = 1; j <= 10; ++j) EXPECT_NEAR(newton.t->Conc[2][j], direct.t->Conc[2][j], 1e-12);
  EXPECT_EQ(newton.w->lastPasses, 2);

  Grid g = MakeGrid(4, 4, 9, false);
  StepTables& t = *g.t;
  for (int j = 0; j <= 5; ++j) {
    for (int i = 1; i <= 4; ++i) t.Lo[j][i] = t.Up[j][i] = 0;
    t.Block[j] = FromRows({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
    t.Conc[1][j] = t.Conc[2][j] = 1;
    t.Conc[3][j] = t.Conc[4][j] = 0.5;
  }
  t.NChem2 = 1;
  for (int place = 1; place <= 4; ++place) t.Chem2Map[1][place] = static_cast<std::int16_t>(place);
  t.kfStep[1] = 1;
  SolveNonlinearStep(t, *g.w, messages);
  const double a = (std::sqrt(5.0) - 1) / 2;
  for (int j = 1; j <= 4; ++j) {
    EXPECT_CLOSE(t.Conc[1][j], a, 1e-4);
    EXPECT_CLOSE(t.Conc[2][j], a, 1e-4);
    EXPECT_CLOSE(t.Conc[4][j], 1.5 - a, 1e-4);
    EXPECT_CLOSE(t.Conc[1][j] + t.Conc[3][j], 1.5, 1e-9);  // what A loses, C gains
  }
}

}  // namespace
}  // namespace voltrix
