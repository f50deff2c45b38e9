#pragma once
// Small dense blocks of the finite-difference step: one row and one column
// per species, stored from index 0 to 6 and used from 1 to n.
#include <cstdint>

namespace voltrix {

class MessageBox;

constexpr int kBlockSize = 7;  // indices 0 to 6
inline constexpr const char* kSingularBlock = "Error: inverse matrix D=0";

struct Matrix {
  double v[kBlockSize][kBlockSize] = {};
  double& operator()(int i, int k) { return v[i][k]; }
  double operator()(int i, int k) const { return v[i][k]; }
};

// A column of n values, stored from index 0 to 6.
struct Column {
  double v[kBlockSize] = {};
  double& operator()(int i) { return v[i]; }
  double operator()(int i) const { return v[i]; }
};

// Replaces A by its inverse: n divisions when A is exactly diagonal (a zero
// on the diagonal raises Division by zero), otherwise GaussJordanInverse.
void InvertMatrix(Matrix& A, int n, MessageBox& messages);

// In-place Gauss-Jordan inversion with complete pivoting. A singular block
// shows "Error: inverse matrix D=0" and returns with A half reduced; the
// caller goes on with what A holds.
void GaussJordanInverse(Matrix& A, int n, MessageBox& messages);

void SwapValues(double& a, double& b);

// R(i, k) = sum over m = 1..inner of A(i, m) B(m, k); R must be neither A
// nor B. Rows and columns of R beyond the counts keep what they held.
void MatrixProduct(const Matrix& A, const Matrix& B, int rows, int inner, int cols, Matrix& R);
// The same with cols = 1 and B a column.
void MatrixProduct(const Matrix& A, const Column& B, int rows, int inner, Column& R);

// True when no element off the diagonal of rows and columns 1..n differs
// from 0.
bool IsDiagonal(const Matrix& A, int n);

}  // namespace voltrix
