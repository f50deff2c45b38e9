#include "digital/microdisc_dense.h"

#include <cmath>
#include <utility>

#include "model/errors.h"

namespace voltrix {

namespace {

int LargestBelow(const double* a, int n, int k) {
  int best = k;
  for (int i = k + 1; i < n; ++i)
    if (std::fabs(a[i * n + k]) > std::fabs(a[best * n + k])) best = i;
  if (a[best * n + k] == 0.0) Raise(ErrorKind::DivisionByZero);
  return best;
}

void SwapRows(double* a, int n, int i, int k) {
  if (i == k) return;
  for (int m = 0; m < n; ++m) std::swap(a[i * n + m], a[k * n + m]);
}

}  // namespace

void InvertDense(double* a, int n, int* pivot) {
  for (int k = 0; k < n; ++k) {
    pivot[k] = LargestBelow(a, n, k);
    SwapRows(a, n, pivot[k], k);
    double* rowK = a + k * n;
    const double inverse = 1.0 / rowK[k];
    rowK[k] = 1.0;
    for (int m = 0; m < n; ++m) rowK[m] *= inverse;
    for (int i = 0; i < n; ++i) {
      if (i == k) continue;
      double* rowI = a + i * n;
      const double factor = rowI[k];
      if (factor == 0.0) continue;
      rowI[k] = 0.0;
      for (int m = 0; m < n; ++m) rowI[m] -= factor * rowK[m];
    }
  }
  // The row swaps of the elimination become column swaps of the inverse,
  // undone in reverse order.
  for (int k = n - 1; k >= 0; --k) {
    if (pivot[k] == k) continue;
    for (int i = 0; i < n; ++i) std::swap(a[i * n + k], a[i * n + pivot[k]]);
  }
}

void FactorDense(double* a, int n, int* pivot) {
  for (int k = 0; k < n; ++k) {
    pivot[k] = LargestBelow(a, n, k);
    SwapRows(a, n, pivot[k], k);
    const double* rowK = a + k * n;
    for (int i = k + 1; i < n; ++i) {
      double* rowI = a + i * n;
      if (rowI[k] == 0.0) continue;
      const double factor = rowI[k] / rowK[k];
      rowI[k] = factor;
      for (int m = k + 1; m < n; ++m) rowI[m] -= factor * rowK[m];
    }
  }
}

void SolveFactored(const double* lu, const int* pivot, int n, double* b) {
  for (int k = 0; k < n; ++k) std::swap(b[k], b[pivot[k]]);
  for (int i = 1; i < n; ++i) {
    double sum = b[i];
    for (int m = 0; m < i; ++m) sum -= lu[i * n + m] * b[m];
    b[i] = sum;
  }
  for (int i = n - 1; i >= 0; --i) {
    double sum = b[i];
    for (int m = i + 1; m < n; ++m) sum -= lu[i * n + m] * b[m];
    b[i] = sum / lu[i * n + i];
  }
}

// Four rows at a time: their sums are independent, so they proceed side by
// side instead of waiting on one another; each row still adds in order.
void MultiplyDense(const double* a, int n, const double* x, double* y) {
  int i = 0;
  for (; i + 4 <= n; i += 4) {
    const double* r0 = a + i * n;
    const double* r1 = r0 + n;
    const double* r2 = r1 + n;
    const double* r3 = r2 + n;
    double s0 = 0, s1 = 0, s2 = 0, s3 = 0;
    for (int m = 0; m < n; ++m) {
      s0 += r0[m] * x[m];
      s1 += r1[m] * x[m];
      s2 += r2[m] * x[m];
      s3 += r3[m] * x[m];
    }
    y[i] = s0;
    y[i + 1] = s1;
    y[i + 2] = s2;
    y[i + 3] = s3;
  }
  for (; i < n; ++i) {
    const double* row = a + i * n;
    double sum = 0;
    for (int m = 0; m < n; ++m) sum += row[m] * x[m];
    y[i] = sum;
  }
}

}  // namespace voltrix
