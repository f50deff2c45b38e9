#pragma once
// Dense square matrices of the disc's block elimination, n by n, stored row
// by row and indexed from 0. Blocks are diagonally dominant, so partial
// pivoting is enough.
namespace voltrix {

// Replaces a by its inverse (Gauss-Jordan with row pivoting; pivot holds n
// ints of scratch). Raises DivisionByZero for a singular matrix.
void InvertDense(double* a, int n, int* pivot);

// LU factors of a in place, row permutation in pivot. Raises DivisionByZero
// for a singular matrix.
void FactorDense(double* a, int n, int* pivot);

// Solves (the factored) a x = b, x replacing b.
void SolveFactored(const double* lu, const int* pivot, int n, double* b);

// y = a x (y must not be x).
void MultiplyDense(const double* a, int n, const double* x, double* y);

}  // namespace voltrix
