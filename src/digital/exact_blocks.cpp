#include "digital/exact_blocks.h"

#include <cmath>
#include <utility>

#include "model/checked.h"

namespace voltrix {

namespace {

// The kernels are written for a block size known at compile time, so that
// the small loops unroll; the public entries dispatch on n. A block here is
// N by N, row-major, at a pointer.

template <int N>
int PivotRow(const double* m, int k) {
  int best = k;
  for (int i = k + 1; i < N; ++i)
    if (std::fabs(m[i * N + k]) > std::fabs(m[best * N + k])) best = i;
  return best;
}

// Gauss-Jordan with partial pivoting. A row exchange of the matrix is a
// column exchange of its inverse, undone at the end.
template <int N>
void Invert(double* m) {
  int swapped[N];
  for (int k = 0; k < N; ++k) {
    swapped[k] = PivotRow<N>(m, k);
    if (swapped[k] != k)
      for (int j = 0; j < N; ++j) std::swap(m[k * N + j], m[swapped[k] * N + j]);
    const double inv = Div(1.0, m[k * N + k]);
    m[k * N + k] = 1;
    for (int j = 0; j < N; ++j) m[k * N + j] *= inv;
    for (int i = 0; i < N; ++i) {
      if (i == k) continue;
      const double f = m[i * N + k];
      m[i * N + k] = 0;
      for (int j = 0; j < N; ++j) m[i * N + j] -= f * m[k * N + j];
    }
  }
  for (int k = N - 1; k >= 0; --k)
    if (swapped[k] != k)
      for (int i = 0; i < N; ++i) std::swap(m[i * N + k], m[i * N + swapped[k]]);
  for (int k = 0; k < N * N; ++k) Checked(m[k]);
}

template <int N>
[[gnu::always_inline]] inline void Apply(const double* A, const double* x, double* y) {
  for (int i = 0; i < N; ++i) {
    double sum = 0;
    for (int k = 0; k < N; ++k) sum += A[i * N + k] * x[k];
    y[i] = sum;
  }
}

template <int N>
void Pack(const SpeciesMatrix& m, double* out) {
  for (int i = 0; i < N; ++i)
    for (int j = 0; j < N; ++j) out[i * N + j] = m.a[i][j];
}

template <int N>
void FactorRows(const BlockTridiagonal& s, const SpeciesMatrix& Q, BlockTridiagonal::Factor& f) {
  const int last = s.last();
  constexpr int B = N * N;
  f.Ginv.resize(static_cast<std::size_t>(last + 1) * B);
  double* G = f.Ginv.data();
  for (int k = 0; k < B; ++k) G[last * B + k] = s.M(last)[k];
  Invert<N>(&G[last * B]);
  for (int i = last - 1; i >= 1; --i) {
    double* Gi = &G[i * B];
    const double* next = &G[(i + 1) * B];
    const double* Mi = s.M(i);
    for (int p = 0; p < N; ++p)
      for (int q = 0; q < N; ++q) Gi[p * N + q] = Mi[p * N + q] - s.U(i, p) * next[p * N + q] * s.L(i + 1, q);
    Invert<N>(Gi);
  }
  double q[B];
  Pack<N>(Q, q);
  for (int p = 0; p < N; ++p)
    for (int c = 0; c < N; ++c) {
      double sum = 0;
      for (int k = 0; k < N; ++k) sum += q[p * N + k] * G[B + k * N + c];
      f.surfaceCoupling.a[p][c] = sum;
    }
}

template <int N>
void SolveRows(const BlockTridiagonal& s, const BlockTridiagonal::Factor& f, const SpeciesMatrix& P,
               const SpeciesVector& sv, std::vector<double>& g, std::vector<double>& c) {
  const int last = s.last();
  constexpr int B = N * N;
  const double* G = f.Ginv.data();
  // Towards the electrode: g(i) = r(i) - U(i) Ginv(i+1) g(i+1).
  for (int p = 0; p < N; ++p) g[last * N + p] = s.r(last, p);
  for (int i = last - 1; i >= 1; --i) {
    double y[N];
    Apply<N>(&G[(i + 1) * B], &g[(i + 1) * N], y);
    for (int p = 0; p < N; ++p) g[i * N + p] = s.r(i, p) - s.U(i, p) * y[p];
  }
  // The surface: (P - Q Ginv(1) L(1)) c(0) = s - Q Ginv(1) g(1).
  double S[B], T[B], Tg[N], rhs[N];
  Pack<N>(P, S);
  Pack<N>(f.surfaceCoupling, T);
  for (int p = 0; p < N; ++p)
    for (int q = 0; q < N; ++q) S[p * N + q] -= T[p * N + q] * s.L(1, q);
  Apply<N>(T, &g[N], Tg);
  for (int p = 0; p < N; ++p) rhs[p] = sv.v[p] - Tg[p];
  Invert<N>(S);
  Apply<N>(S, rhs, &c[0]);
  // Away from the electrode: c(i) = Ginv(i) (g(i) - L(i) c(i-1)).
  for (int i = 1; i <= last; ++i) {
    double v[N];
    for (int p = 0; p < N; ++p) v[p] = g[i * N + p] - s.L(i, p) * c[(i - 1) * N + p];
    Apply<N>(&G[i * B], v, &c[i * N]);
  }
  double all = 0;
  for (int k = 0; k < N * (last + 1); ++k) all += c[k];
  Checked(all);
}

// Without homogeneous reactions every block is diagonal and the species
// are separate chains, coupled only by the surface row. The products that
// the two sweeps multiply by are formed here, so that each link of a chain
// costs one multiply-add.
void FactorDiagonal(const BlockTridiagonal& s, int n, const SpeciesMatrix& Q, BlockTridiagonal::Factor& f) {
  const int last = s.last();
  const std::size_t size = static_cast<std::size_t>(last + 1) * n;
  f.Ginv.resize(size);
  f.towards.resize(size);
  f.away.resize(size);
  double* G = f.Ginv.data();
  for (int p = 0; p < n; ++p) G[last * n + p] = Div(1.0, s.M(last)[p * n + p]);
  for (int i = last - 1; i >= 1; --i)
    for (int p = 0; p < n; ++p)
      G[i * n + p] = Div(1.0, s.M(i)[p * n + p] - s.U(i, p) * G[(i + 1) * n + p] * s.L(i + 1, p));
  for (int k = n; k < (last + 1) * n; ++k) {
    f.towards[k] = k < last * n ? s.upper()[k] * G[k + n] : 0.0;
    f.away[k] = G[k] * s.lower()[k];
  }
  for (int p = 0; p < n; ++p)
    for (int q = 0; q < n; ++q) f.surfaceCoupling.a[p][q] = Q.a[p][q] * G[n + q];
}

template <int N>
void SolveDiagonal(const BlockTridiagonal& s, const BlockTridiagonal::Factor& f, const SpeciesMatrix& P,
                   const SpeciesVector& sv, std::vector<double>& gv, std::vector<double>& cv) {
  const int last = s.last();
  const double* __restrict G = f.Ginv.data();
  const double* __restrict towards = f.towards.data();
  const double* __restrict away = f.away.data();
  const double* __restrict r = s.rhs();
  double* __restrict g = gv.data();
  double* __restrict c = cv.data();
  // Each chain's running value stays in a register from node to node.
  double link[N];
  for (int p = 0; p < N; ++p) link[p] = g[last * N + p] = r[last * N + p];
  for (int i = last - 1; i >= 1; --i)
    for (int p = 0; p < N; ++p) link[p] = g[i * N + p] = r[i * N + p] - towards[i * N + p] * link[p];
  SpeciesMatrix S = P;
  SpeciesVector rhs = sv;
  const SpeciesMatrix& T = f.surfaceCoupling;
  for (int p = 0; p < N; ++p)
    for (int q = 0; q < N; ++q) {
      S.a[p][q] -= T.a[p][q] * s.L(1, q);
      rhs.v[p] -= T.a[p][q] * g[N + q];
    }
  InvertInPlace(S, N);
  double all[N];
  for (int p = 0; p < N; ++p) {
    double sum = 0;
    for (int q = 0; q < N; ++q) sum += S.a[p][q] * rhs.v[q];
    link[p] = c[p] = all[p] = sum;
  }
  for (int i = 1; i <= last; ++i)
    for (int p = 0; p < N; ++p) {
      const int k = i * N + p;
      link[p] = c[k] = G[k] * g[k] - away[k] * link[p];
      all[p] += link[p];
    }
  // A NaN or an infinity anywhere reaches the sums.
  for (int p = 0; p < N; ++p) Checked(all[p]);
}

}  // namespace

void InvertInPlace(SpeciesMatrix& m, int n) {
  double packed[kMaxBlock * kMaxBlock];
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) packed[i * n + j] = m.a[i][j];
  switch (n) {
    case 1: Invert<1>(packed); break;
    case 2: Invert<2>(packed); break;
    case 3: Invert<3>(packed); break;
    case 4: Invert<4>(packed); break;
    case 5: Invert<5>(packed); break;
    case 6: Invert<6>(packed); break;
    default: Raise(ErrorKind::SubscriptOutOfRange);
  }
  for (int i = 0; i < n; ++i)
    for (int j = 0; j < n; ++j) m.a[i][j] = packed[i * n + j];
}

BlockTridiagonal::BlockTridiagonal(int last, int n) : last_(last), n_(n) {
  if (n < 1 || n > kMaxBlock || last < 2) Raise(ErrorKind::SubscriptOutOfRange);
  const std::size_t rows = static_cast<std::size_t>(last + 1);
  L_.assign(rows * n, 0.0);
  U_.assign(rows * n, 0.0);
  r_.assign(rows * n, 0.0);
  g_.assign(rows * n, 0.0);
  M_.assign(rows * n * n, 0.0);
}

void BlockTridiagonal::factor(const SpeciesMatrix& Q, Factor& f) const {
  if (diagonal) return FactorDiagonal(*this, n_, Q, f);
  switch (n_) {
    case 1: return FactorRows<1>(*this, Q, f);
    case 2: return FactorRows<2>(*this, Q, f);
    case 3: return FactorRows<3>(*this, Q, f);
    case 4: return FactorRows<4>(*this, Q, f);
    case 5: return FactorRows<5>(*this, Q, f);
    default: return FactorRows<6>(*this, Q, f);
  }
}

void BlockTridiagonal::solve(const Factor& f, const SpeciesMatrix& P, const SpeciesVector& s,
                             std::vector<double>& c) const {
  if (diagonal) {
    switch (n_) {
      case 1: return SolveDiagonal<1>(*this, f, P, s, g_, c);
      case 2: return SolveDiagonal<2>(*this, f, P, s, g_, c);
      case 3: return SolveDiagonal<3>(*this, f, P, s, g_, c);
      case 4: return SolveDiagonal<4>(*this, f, P, s, g_, c);
      case 5: return SolveDiagonal<5>(*this, f, P, s, g_, c);
      default: return SolveDiagonal<6>(*this, f, P, s, g_, c);
    }
  }
  switch (n_) {
    case 1: return SolveRows<1>(*this, f, P, s, g_, c);
    case 2: return SolveRows<2>(*this, f, P, s, g_, c);
    case 3: return SolveRows<3>(*this, f, P, s, g_, c);
    case 4: return SolveRows<4>(*this, f, P, s, g_, c);
    case 5: return SolveRows<5>(*this, f, P, s, g_, c);
    default: return SolveRows<6>(*this, f, P, s, g_, c);
  }
}

}  // namespace voltrix
