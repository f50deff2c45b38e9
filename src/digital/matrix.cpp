#include "digital/matrix.h"

#include <cmath>

#include "model/checked.h"
#include "model/platform.h"

namespace voltrix {

namespace {

void SwapRows(Matrix& A, int a, int b, int n) {
  for (int e = 1; e <= n; ++e) SwapValues(A(a, e), A(b, e));
}

void SwapColumns(Matrix& A, int a, int b, int n) {
  for (int i = 1; i <= n; ++i) SwapValues(A(i, a), A(i, b));
}

// The running maximum starts at 0 and only a strictly larger element takes
// over, so the first of equal elements in row-major order wins.
double FindPivot(const Matrix& A, int k, int n, int& row, int& col) {
  double biggest = 0.0;
  row = k;
  col = k;
  for (int p = k; p <= n; ++p)
    for (int q = k; q <= n; ++q)
      if (std::fabs(A(p, q)) > biggest) {
        biggest = std::fabs(A(p, q));
        row = p;
        col = q;
      }
  return biggest;
}

// One Gauss-Jordan step at the pivot (k, k). The row step reads the new
// reciprocal, the elimination the scaled row and the still unscaled column.
void EliminateAt(Matrix& A, int k, int n) {
  const double pivot = Checked(1.0 / A(k, k));
  A(k, k) = pivot;
  for (int e = 1; e <= n; ++e)
    if (e != k) A(k, e) = Checked(A(k, e) * pivot);
  for (int i = 1; i <= n; ++i) {
    if (i == k) continue;
    const double factor = A(i, k);
    for (int e = 1; e <= n; ++e)
      if (e != k) A(i, e) = Checked(A(i, e) - factor * A(k, e));
  }
  for (int i = 1; i <= n; ++i)
    if (i != k) A(i, k) = Checked(-A(i, k) * pivot);
}

}  // namespace

void SwapValues(double& a, double& b) {
  const double held = a;
  a = b;
  b = held;
}

bool IsDiagonal(const Matrix& A, int n) {
  for (int i = 1; i <= n; ++i)
    for (int k = 1; k <= n; ++k)
      if (i != k && A(i, k) != 0.0) return false;
  return true;
}

void InvertMatrix(Matrix& A, int n, MessageBox& messages) {
  if (!IsDiagonal(A, n)) {
    GaussJordanInverse(A, n, messages);
    return;
  }
  for (int i = 1; i <= n; ++i) A(i, i) = Div(1.0, A(i, i));
}

void GaussJordanInverse(Matrix& A, int n, MessageBox& messages) {
  std::int16_t pivotRow[kBlockSize] = {};
  std::int16_t pivotCol[kBlockSize] = {};
  for (int k = 1; k <= n; ++k) {
    int row = k, col = k;
    const double biggest = FindPivot(A, k, n, row, col);
    pivotRow[k] = static_cast<std::int16_t>(row);
    pivotCol[k] = static_cast<std::int16_t>(col);
    if (biggest == 0.0) {
      messages.show(kSingularBlock);
      return;
    }
    if (row != k) SwapRows(A, k, row, n);
    if (col != k) SwapColumns(A, k, col, n);
    EliminateAt(A, k, n);
  }
  // A column exchange of the forward pass is undone by a row exchange and a
  // row exchange by a column exchange, in reverse order.
  for (int k = n; k >= 1; --k) {
    if (pivotCol[k] != k) SwapRows(A, k, pivotCol[k], n);
    if (pivotRow[k] != k) SwapColumns(A, k, pivotRow[k], n);
  }
}

void MatrixProduct(const Matrix& A, const Matrix& B, int rows, int inner, int cols, Matrix& R) {
  for (int i = 1; i <= rows; ++i)
    for (int k = 1; k <= cols; ++k) {
      double sum = 0.0;
      for (int m = 1; m <= inner; ++m) sum += A(i, m) * B(m, k);
      R(i, k) = Checked(sum);
    }
}

void MatrixProduct(const Matrix& A, const Column& B, int rows, int inner, Column& R) {
  for (int i = 1; i <= rows; ++i) {
    double sum = 0.0;
    for (int m = 1; m <= inner; ++m) sum += A(i, m) * B(m);
    R(i) = Checked(sum);
  }
}

}  // namespace voltrix
