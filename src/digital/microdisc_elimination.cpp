#include "digital/microdisc_elimination.h"

#include <algorithm>

#include "digital/microdisc_dense.h"

namespace voltrix {

BlockElimination::BlockElimination(const MicrodiscGrid& grid, const SpeciesGroup& group)
    : grid_(grid), group_(group), rowSize_(grid.columns * group.size) {
  const std::size_t couplings = static_cast<std::size_t>(grid.rows) * rowSize_;
  towardDisc_.assign(couplings, 0);
  awayFromDisc_.assign(couplings, 0);
  for (int i = 0; i < grid.rows; ++i)
    for (int j = 0; j < grid.columns; ++j)
      for (int k = 0; k < group.size; ++k) {
        const std::size_t at = static_cast<std::size_t>(i) * rowSize_ + j * group.size + k;
        const double across = group.rate[k] * grid.etaWidth[j];
        awayFromDisc_[at] = -across * grid.xiLink[i];
        if (i > 0) towardDisc_[at] = -across * grid.xiLink[i - 1];
      }
  blocks_.assign(static_cast<std::size_t>(grid.rows) * rowSize_ * rowSize_, 0);
  pivot_.assign(rowSize_, 0);
  scratch_.assign(rowSize_, 0);
}

void BlockElimination::fillDiagonalBlock(int i, const double* jacobian, double* block) const {
  const int n = rowSize_, size = group_.size;
  std::fill(block, block + static_cast<std::size_t>(n) * n, 0.0);
  for (int j = 0; j < grid_.columns; ++j) {
    const double mass = grid_.mass(i, j);
    const double up = grid_.etaWidth[j] * grid_.xiLink[i];
    const double down = i > 0 ? grid_.etaWidth[j] * grid_.xiLink[i - 1] : 0.0;
    const double towardAxis = grid_.xiWidth[i] * grid_.etaLink[j];
    const double towardEdge = j > 0 ? grid_.xiWidth[i] * grid_.etaLink[j - 1] : 0.0;
    for (int k = 0; k < size; ++k) {
      const int p = j * size + k;
      const double d = group_.rate[k];
      block[p * n + p] = mass / h_ + d * (up + down + towardAxis + towardEdge);
      if (j + 1 < grid_.columns) block[p * n + p + size] = -d * towardAxis;
      if (j > 0) block[p * n + p - size] = -d * towardEdge;
      if (!jacobian) continue;
      const double* node = jacobian + (static_cast<std::size_t>(i) * grid_.columns + j) * size * size;
      for (int m = 0; m < size; ++m) block[p * n + j * size + m] -= mass * node[k * size + m];
    }
  }
}

void BlockElimination::build(double h, const double* jacobian) {
  h_ = h;
  const int n = rowSize_;
  const std::size_t area = static_cast<std::size_t>(n) * n;
  for (int i = grid_.rows - 1; i >= 0; --i) {
    double* block = blocks_.data() + i * area;
    fillDiagonalBlock(i, jacobian, block);
    if (i + 1 < grid_.rows) {
      // Fold in the row behind: minus (coupling out) inverse (coupling back).
      const double* behind = blocks_.data() + (i + 1) * area;
      const double* out = awayFromDisc_.data() + static_cast<std::size_t>(i) * n;
      const double* back = towardDisc_.data() + static_cast<std::size_t>(i + 1) * n;
      for (int p = 0; p < n; ++p)
        for (int q = 0; q < n; ++q) block[p * n + q] -= out[p] * behind[p * n + q] * back[q];
    }
    if (i > 0) InvertDense(block, n, pivot_.data());
  }
}

void BlockElimination::reduce(double* r, double* y) const {
  const int n = rowSize_;
  const std::size_t area = static_cast<std::size_t>(n) * n;
  for (int i = grid_.rows - 1; i >= 1; --i) {
    double* yi = y + static_cast<std::size_t>(i) * n;
    MultiplyDense(blocks_.data() + i * area, n, r + static_cast<std::size_t>(i) * n, yi);
    const double* out = awayFromDisc_.data() + static_cast<std::size_t>(i - 1) * n;
    double* before = r + static_cast<std::size_t>(i - 1) * n;
    for (int p = 0; p < n; ++p) before[p] -= out[p] * yi[p];
  }
}

void BlockElimination::substitute(const double* y, double* c) const {
  const int n = rowSize_;
  const std::size_t area = static_cast<std::size_t>(n) * n;
  for (int i = 1; i < grid_.rows; ++i) {
    const double* back = towardDisc_.data() + static_cast<std::size_t>(i) * n;
    const double* previous = c + static_cast<std::size_t>(i - 1) * n;
    for (int p = 0; p < n; ++p) scratch_[p] = back[p] * previous[p];
    double* ci = c + static_cast<std::size_t>(i) * n;
    MultiplyDense(blocks_.data() + i * area, n, scratch_.data(), ci);
    const double* yi = y + static_cast<std::size_t>(i) * n;
    for (int p = 0; p < n; ++p) ci[p] = yi[p] - ci[p];
  }
}

}  // namespace voltrix
