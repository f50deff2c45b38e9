#pragma once
// Numerical transforms of one curve row over its X axis: half-order
// derivative, derivative and running integral. The step is read once from
// the first two points, h = |X(2) - X(1)|, so either scan direction gives
// the same result. Each result is built apart and written back at the end,
// so no point depends on a value the same pass has already rewritten.
//
// The raw forms take arrays of 4001 entries indexed from 1 (index 0 unused)
// and n points;
// the model forms act on row CurNo of a YData-shaped table, points 1 to
// NData. A zero step raises Division by zero; more than 4000 points raise
// Subscript out of range; no NaN or infinity is written.
#include <vector>

#include "model/experiment.h"
#include "model/table.h"

namespace voltrix {

// Weights of the half-order convolution: w(k) = sqrt(k+1) - 2 sqrt(k) +
// sqrt(k-1), for k = 1 to at least 4000 (index 0 unused). They depend on k
// alone, so they are computed once for the whole process.
const std::vector<double>& SemiDifferenceWeights();

// Half-order derivative by convolution with the second difference of the
// square root, scaled by 0.25 * sqrt(1 / (pi h)): one eighth of the exact
// derivative of a straight line, a scale the sweep currents are built on.
// Ends are filled by copying: points 1 and 2 take point 3, point n takes n-1.
void SemiDifferentiateRow(const double* x, double* y, int n);

// Central differences, one-sided at both ends.
void DifferentiateRow(const double* x, double* y, int n);

// Running sum by the rectangle rule from the first point: y(1) * h first.
void IntegrateRow(const double* x, double* y, int n);

namespace detail {
using XTable = Table1<double, kMaxPoints + 1>;

template <class YTable>
double* CurrentRow(const Experiment& e, YTable& Y) {
  return Y.row(static_cast<long>(e.CurNo.value()));
}
inline int PointCount(const Experiment& e) { return static_cast<int>(e.NData.value()); }
}  // namespace detail

template <class YTable>
void SemiDifferentiate(const Experiment& e, const detail::XTable& X, YTable& Y) {
  SemiDifferentiateRow(X.data(), detail::CurrentRow(e, Y), detail::PointCount(e));
}

template <class YTable>
void Differentiate(const Experiment& e, const detail::XTable& X, YTable& Y) {
  DifferentiateRow(X.data(), detail::CurrentRow(e, Y), detail::PointCount(e));
}

template <class YTable>
void Integrate(const Experiment& e, const detail::XTable& X, YTable& Y) {
  IntegrateRow(X.data(), detail::CurrentRow(e, Y), detail::PointCount(e));
}

}  // namespace voltrix
