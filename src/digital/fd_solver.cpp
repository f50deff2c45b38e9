#include "digital/fd_solver.h"

#include <cmath>

#include "model/checked.h"
#include "model/errors.h"
#include "model/platform.h"

namespace voltrix {

namespace {

// Counts what an inversion shows, so that a kept inverse can repeat the
// message of a singular block at every step, as a fresh inversion would.
class CountingMessages : public MessageBox {
 public:
  explicit CountingMessages(MessageBox& inner) : inner_(inner) {}
  void show(const std::string& text) override {
    ++count;
    inner_.show(text);
  }
  int count = 0;

 private:
  MessageBox& inner_;
};

// Inverts a copy of GBlock(j) into GInv(j) and records how it went.
void InvertBoxBlock(StepWork& w, int j, int n, MessageBox& messages) {
  CountingMessages counted(messages);
  w.GInv[j] = w.GBlock[j];
  InvertMatrix(w.GInv[j], n, counted);
  w.singular[j] = counted.count > 0;
  w.diagonalInverse[j] = IsDiagonal(w.GInv[j], n);
}

// A kept inverse stands for a new inversion: a singular block says so again.
void RecallBoxInverse(const StepWork& w, int j, MessageBox& messages) {
  if (w.singular[j]) messages.show(kSingularBlock);
}

// w = GInv(j) times v, with the shortcut of a diagonal inverse.
void ApplyInverse(const StepWork& w, int j, int n, const Column& v, Column& out) {
  if (w.diagonalInverse[j]) {
    for (int i = 1; i <= n; ++i) out(i) = Checked(w.GInv[j](i, i) * v(i));
    return;
  }
  MatrixProduct(w.GInv[j], v, n, n, out);
}

// GBlock(j) = B(j) - (Up(j, p) Lo(j + 1, p)) GInv(j + 1)(p, q): both factors
// at the row species, in the off-diagonal elements too.
void ReduceBlock(const StepTables& t, StepWork& w, const Matrix& B, int j) {
  const int n = t.n;
  const Matrix& M = w.GInv[j + 1];
  Matrix& G = w.GBlock[j];
  for (int p = 1; p <= n; ++p) {
    const double coupling = t.Up[j][p] * t.Lo[j + 1][p];
    for (int q = 1; q <= n; ++q) G(p, q) = Checked(B(p, q) - coupling * M(p, q));
  }
}

void ReduceRight(const StepTables& t, StepWork& w, const double* base, int j, int n) {
  Column carried;
  ApplyInverse(w, j + 1, n, w.GRight[j + 1], carried);
  for (int i = 1; i <= n; ++i) w.GRight[j](i) = Checked(base[i] + t.Up[j][i] * carried(i));
}

// ---- linear solver -------------------------------------------------------

void LinearFarEnd(StepTables& t, StepWork& w) {
  const int N = t.N;
  if (!w.linearBlocksReady) w.GBlock[N] = t.Block[N];
  for (int i = 1; i <= t.n; ++i) w.GRight[N](i) = Checked(t.Conc[i][N] + t.Up[N][i] * t.Conc[i][N + 1]);
}

void NoteDiagonalInverses(const StepTables& t, StepWork& w) {
  w.allDiagonal = true;
  for (int j = 2; j <= t.N; ++j) {
    if (w.singular[j] || !w.diagonalInverse[j]) w.allDiagonal = false;
    for (int i = 1; i <= t.n; ++i) w.inverseDiagonal[j][i] = w.GInv[j](i, i);
  }
}

// The same arithmetic as the general elimination, for diagonal inverses.
// The species count is a template argument so that the values carried from
// box to box stay in registers: the recurrence sets the pace of a step.
template <int n>
void DiagonalEliminationOf(StepTables& t, StepWork& w) {
  double carried[n + 1];
  for (int i = 1; i <= n; ++i) carried[i] = w.GRight[t.N].v[i];
  for (int j = t.N - 1; j >= 1; --j) {
    const double* inverse = w.inverseDiagonal[j + 1];
    const double* up = t.Up[j];
    double* right = w.GRight[j].v;
#pragma GCC unroll 6
    for (int i = 1; i <= n; ++i) {
      carried[i] = Checked(t.Conc[i][j] + up[i] * Checked(inverse[i] * carried[i]));
      right[i] = carried[i];
    }
  }
}

template <int n>
void DiagonalSubstitutionOf(StepTables& t, StepWork& w) {
  double carried[n + 1];
  for (int i = 1; i <= n; ++i) carried[i] = t.Conc[i][1];
  for (int j = 2; j <= t.N; ++j) {
    const double* inverse = w.inverseDiagonal[j];
    const double* right = w.GRight[j].v;
    const double* lo = t.Lo[j];
#pragma GCC unroll 6
    for (int i = 1; i <= n; ++i) {
      carried[i] = Checked(inverse[i] * Checked(right[i] + lo[i] * carried[i]));
      t.Conc[i][j] = carried[i];
    }
  }
}

void DiagonalElimination(StepTables& t, StepWork& w) {
  switch (t.n) {
    case 1: return DiagonalEliminationOf<1>(t, w);
    case 2: return DiagonalEliminationOf<2>(t, w);
    case 3: return DiagonalEliminationOf<3>(t, w);
    case 4: return DiagonalEliminationOf<4>(t, w);
    case 5: return DiagonalEliminationOf<5>(t, w);
    case 6: return DiagonalEliminationOf<6>(t, w);
    default: return;
  }
}

void DiagonalSubstitution(StepTables& t, StepWork& w) {
  switch (t.n) {
    case 1: return DiagonalSubstitutionOf<1>(t, w);
    case 2: return DiagonalSubstitutionOf<2>(t, w);
    case 3: return DiagonalSubstitutionOf<3>(t, w);
    case 4: return DiagonalSubstitutionOf<4>(t, w);
    case 5: return DiagonalSubstitutionOf<5>(t, w);
    case 6: return DiagonalSubstitutionOf<6>(t, w);
    default: return;
  }
}

void LinearElimination(StepTables& t, StepWork& w, MessageBox& messages) {
  const int n = t.n;
  if (w.linearBlocksReady && w.allDiagonal) {
    DiagonalElimination(t, w);
    return;
  }
  double base[kBlockSize] = {};
  for (int j = t.N - 1; j >= 1; --j) {
    if (w.linearBlocksReady) {
      RecallBoxInverse(w, j + 1, messages);
    } else {
      InvertBoxBlock(w, j + 1, n, messages);
      ReduceBlock(t, w, t.Block[j], j);
      w.blockTimesKBoxInverseReady = false;
    }
    for (int i = 1; i <= n; ++i) base[i] = t.Conc[i][j];
    ReduceRight(t, w, base, j, n);
  }
  if (!w.linearBlocksReady) NoteDiagonalInverses(t, w);
  w.linearBlocksReady = true;
}

bool SameBlock(const Matrix& a, const Matrix& b, int n) {
  for (int i = 1; i <= n; ++i)
    for (int k = 1; k <= n; ++k)
      if (a(i, k) != b(i, k)) return false;
  return true;
}

// The inverse of KBox, formed anew only when KBox has changed.
const Matrix& KBoxInverse(const StepTables& t, StepWork& w, MessageBox& messages) {
  if (w.KBoxReady && SameBlock(w.KBoxSeen, t.KBox, t.n)) {
    if (w.KBoxSingular) messages.show(kSingularBlock);
    return w.KBoxInverse;
  }
  CountingMessages counted(messages);
  w.blockTimesKBoxInverseReady = false;
  w.KBoxSeen = t.KBox;
  w.KBoxInverse = t.KBox;
  w.KBoxReady = false;
  InvertMatrix(w.KBoxInverse, t.n, counted);
  w.KBoxSingular = counted.count > 0;
  w.KBoxReady = true;
  return w.KBoxInverse;
}

// (GBlock(1) KBox^-1 KSurf - Lo(1)) S = GRight(1): the surface values.
void LinearElectrode(StepTables& t, StepWork& w, MessageBox& messages) {
  const int n = t.n;
  const Matrix& Q = KBoxInverse(t, w, messages);
  Matrix& GQ = w.blockTimesKBoxInverse;
  Matrix& M = w.electrode;
  if (!w.blockTimesKBoxInverseReady) {
    MatrixProduct(w.GBlock[1], Q, n, n, n, GQ);
    w.blockTimesKBoxInverseReady = true;
  }
  MatrixProduct(GQ, t.KSurf, n, n, n, M);
  for (int i = 1; i <= n; ++i) M(i, i) = Checked(M(i, i) - t.Lo[1][i]);
  InvertMatrix(M, n, messages);
  Column surface;
  MatrixProduct(M, w.GRight[1], n, n, surface);
  for (int i = 1; i <= n; ++i) t.Conc[i][1] = surface(i);
}

// Box 2 starts from the surface values themselves, which also serve as the
// old first-box values of the next step.
void LinearSubstitution(StepTables& t, StepWork& w, MessageBox& messages) {
  const int n = t.n;
  if (w.allDiagonal) {
    DiagonalSubstitution(t, w);
    return;
  }
  Column v, c;
  for (int j = 2; j <= t.N; ++j) {
    RecallBoxInverse(w, j, messages);
    for (int i = 1; i <= n; ++i) v(i) = Checked(w.GRight[j](i) + t.Lo[j][i] * t.Conc[i][j - 1]);
    ApplyInverse(w, j, n, v, c);
    for (int i = 1; i <= n; ++i) t.Conc[i][j] = c(i);
  }
}

// ---- nonlinear solver ----------------------------------------------------

void CopyProfileIn(const StepTables& t, StepWork& w) {
  for (int j = 0; j <= t.N + 1; ++j) {
    w.CPrev[j][0] = w.CIter[j][0] = 0.0;  // an empty place reads 0
    for (int i = 1; i <= t.n; ++i) w.CPrev[j][i] = w.CIter[j][i] = t.Conc[i][j];
  }
}

// Rate f Ca Cb - g Cc Cd of a + b = c + d: JPart applied to the iterate gives
// the terms, JPart + JRest is their derivative.
void LinearisePass(const StepTables& t, StepWork& w) {
  for (int j = 1; j <= t.N; ++j) {
    w.JPart[j] = t.Block[j];
    w.JRest[j] = Matrix{};
  }
  for (int r = 1; r <= t.NChem2; ++r) {
    const int a = t.Chem2Map[r][1], b = t.Chem2Map[r][2], c = t.Chem2Map[r][3], d = t.Chem2Map[r][4];
    const double f = t.kfStep[t.NChem + r], g = t.kbStep[t.NChem + r];
    for (int j = 1; j <= t.N; ++j) {
      const double* C = w.CIter[j];
      Matrix& P = w.JPart[j];
      Matrix& R = w.JRest[j];
      P(a, a) += f * C[b];
      P(a, c) -= g * C[d];
      R(a, b) += f * C[a];
      R(a, d) -= g * C[c];
      P(b, b) += f * C[a];
      P(b, c) -= g * C[d];
      R(b, a) += f * C[b];
      R(b, d) -= g * C[c];
      P(c, c) += g * C[d];
      P(c, a) -= f * C[b];
      R(c, b) -= f * C[a];
      R(c, d) += g * C[c];
      P(d, d) += g * C[c];
      P(d, a) -= f * C[b];
      R(d, b) -= f * C[a];
      R(d, c) += g * C[d];
    }
  }
}

void AssembleNewton(const StepTables& t, StepWork& w) {
  const int n = t.n;
  for (int j = 1; j <= t.N; ++j) {
    for (int p = 1; p <= n; ++p)
      for (int q = 1; q <= n; ++q) w.JFull[j](p, q) = Checked(w.JPart[j](p, q) + w.JRest[j](p, q));
    for (int p = 1; p <= n; ++p) {
      double sum = 0.0;
      for (int q = 1; q <= n; ++q) sum += w.JRest[j](p, q) * w.CIter[j][q];
      w.RightBase[j](p) = Checked(w.CPrev[j][p] + sum);
    }
  }
}

void NewtonElimination(const StepTables& t, StepWork& w, MessageBox& messages) {
  const int n = t.n, N = t.N;
  w.linearBlocksReady = false;  // the kept blocks of the linear solver are overwritten
  w.allDiagonal = false;
  w.blockTimesKBoxInverseReady = false;
  w.GBlock[N] = w.JFull[N];
  for (int i = 1; i <= n; ++i) w.GRight[N](i) = Checked(w.RightBase[N](i) + t.Up[N][i] * w.CPrev[N + 1][i]);
  for (int j = N - 1; j >= 1; --j) {
    InvertBoxBlock(w, j + 1, n, messages);
    ReduceBlock(t, w, w.JFull[j], j);
    ReduceRight(t, w, &w.RightBase[j].v[0], j, n);
  }
}

// The linear solver's electrode equation multiplied through by
// KBox GBlock(1)^-1; Lo(1, p) scales the rows of P.
void NewtonElectrode(const StepTables& t, StepWork& w, MessageBox& messages) {
  const int n = t.n;
  Matrix M = w.GBlock[1];
  InvertMatrix(M, n, messages);
  Matrix P, T, U;
  MatrixProduct(t.KBox, M, n, n, n, P);
  for (int p = 1; p <= n; ++p)
    for (int q = 1; q <= n; ++q) T(p, q) = Checked(t.KSurf(p, q) - t.Lo[1][p] * P(p, q));
  InvertMatrix(T, n, messages);
  MatrixProduct(T, P, n, n, n, U);
  Column surface;
  MatrixProduct(U, w.GRight[1], n, n, surface);
  for (int i = 1; i <= n; ++i) w.CNew[1][i] = surface(i);
}

void NewtonSubstitution(const StepTables& t, StepWork& w, MessageBox& messages) {
  const int n = t.n;
  Column v, c;
  for (int j = 2; j <= t.N; ++j) {
    RecallBoxInverse(w, j, messages);
    for (int i = 1; i <= n; ++i) v(i) = Checked(w.GRight[j](i) + t.Lo[j][i] * w.CNew[j - 1][i]);
    ApplyInverse(w, j, n, v, c);
    for (int i = 1; i <= n; ++i) w.CNew[j][i] = c(i);
  }
  // The far boundary follows the iterate of the last box.
  for (int i = 1; i <= n; ++i) w.CNew[t.N + 1][i] = w.CIter[t.N][i];
}

// Relative change below 1e-4 in every box but the first; stops at the first
// failure. A new value of exactly 0 is a division by zero of the run.
bool Converged(const StepTables& t, const StepWork& w) {
  for (int i = 1; i <= t.n; ++i)
    for (int j = 2; j <= t.N; ++j)
      if (std::fabs(Div(w.CNew[j][i] - w.CIter[j][i], w.CNew[j][i])) >= 0.0001) return false;
  return true;
}

// Negative values are clipped in the iterate only.
void NextIterate(const StepTables& t, StepWork& w) {
  for (int j = 0; j <= t.N + 1; ++j)
    for (int i = 1; i <= t.n; ++i) w.CIter[j][i] = w.CNew[j][i] < 0.0 ? 0.0 : w.CNew[j][i];
}

}  // namespace

void SolveLinearStep(StepTables& t, StepWork& w, MessageBox& messages) {
  LinearFarEnd(t, w);
  LinearElimination(t, w, messages);
  LinearElectrode(t, w, messages);
  LinearSubstitution(t, w, messages);
}

void SolveNonlinearStep(StepTables& t, StepWork& w, MessageBox& messages) {
  CopyProfileIn(t, w);
  for (int i = 0; i < kBlockSize; ++i) w.CNew[0][i] = 0.0;  // never computed
  w.lastPasses = 0;
  for (int pass = 1; pass <= 10; ++pass) {
    w.lastPasses = pass;
    LinearisePass(t, w);
    AssembleNewton(t, w);
    NewtonElimination(t, w, messages);
    NewtonElectrode(t, w, messages);
    NewtonSubstitution(t, w, messages);
    if (Converged(t, w)) break;
    NextIterate(t, w);
  }
  for (int i = 1; i <= t.n; ++i)
    for (int j = 0; j <= t.N + 1; ++j) t.Conc[i][j] = w.CNew[j][i];
}

}  // namespace voltrix
