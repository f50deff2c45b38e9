#pragma once
// Eigenvalues and eigenvectors of a small symmetric matrix.
#include <vector>

namespace voltrix {

using SquareMatrix = std::vector<std::vector<double>>;  // rows of equal length

struct SymmetricEigen {
  std::vector<double> values;
  SquareMatrix vectors;  // vectors[r][i]: component r of the eigenvector of values[i]
};

// Cyclic Jacobi rotations until the off-diagonal part vanishes beside the
// diagonal; exact for the orthogonality of the vectors, to rounding.
SymmetricEigen DecomposeSymmetric(SquareMatrix a);

}  // namespace voltrix
