#include "analytic/row_transforms.h"

#include <algorithm>
#include <cmath>

#include "analytic/constants.h"
#include "model/checked.h"

namespace voltrix {

namespace {

// Output points computed side by side in the convolution. Each keeps its own
// sum in the order j = 1, 2, ..., so the digits are those of a plain double
// loop, while the independent sums keep the processor busy.
constexpr int kLanes = 8;

double StepOf(const double* x) { return std::fabs(x[2] - x[1]); }

void CheckPointCount(int n) {
  if (n < 1 || n > kMaxPoints) Raise(ErrorKind::SubscriptOutOfRange);
}

std::vector<double> BuildWeights() {
  std::vector<double> w(kMaxPoints + kLanes + 1, 0.0);
  for (std::size_t k = 1; k < w.size(); ++k) {
    const double kk = static_cast<double>(k);
    w[k] = std::sqrt(kk + 1) - 2 * std::sqrt(kk) + std::sqrt(kk - 1);
  }
  return w;
}

void WriteBack(const std::vector<double>& result, double* y, int n) {
  for (int i = 1; i <= n; ++i) y[i] = result[i];
}

}  // namespace

const std::vector<double>& SemiDifferenceWeights() {
  static const std::vector<double> weights = BuildWeights();
  return weights;
}

void SemiDifferentiateRow(const double* x, double* y, int n) {
  const double scale = 0.25 * Sqrt(Div(Div(1, kPi), StepOf(x)));
  CheckPointCount(n);
  const double* w = SemiDifferenceWeights().data();
  std::vector<double> result(kMaxPoints + 1, 0.0);
  for (int i0 = 3; i0 <= n - 1; i0 += kLanes) {
    const int lanes = std::min(kLanes, n - i0);  // points i0 .. i0 + lanes - 1
    double sum[kLanes] = {};
    // Earlier points that every lane of the block sees.
    for (int j = 1; j <= i0 - 1; ++j) {
      const double yj = y[j];
      const double* wk = w + (i0 - j);
      for (int l = 0; l < kLanes; ++l) sum[l] += wk[l] * yj;
    }
    // Points inside the block: lane l sees j up to i0 + l - 1.
    for (int j = i0; j < i0 + lanes - 1; ++j) {
      const double yj = y[j];
      for (int l = j - i0 + 1; l < lanes; ++l) sum[l] += w[i0 + l - j] * yj;
    }
    for (int l = 0; l < lanes; ++l) result[i0 + l] = Checked(scale * (y[i0 + l] + sum[l]));
  }
  result[n] = result[n - 1];
  result[1] = result[3];
  result[2] = result[3];
  WriteBack(result, y, n);
}

void DifferentiateRow(const double* x, double* y, int n) {
  const double h = StepOf(x);
  if (h == 0) Raise(ErrorKind::DivisionByZero);
  CheckPointCount(n);
  std::vector<double> result(kMaxPoints + 1, 0.0);
  result[1] = Div(y[2] - y[1], h);
  result[n] = Div(y[n] - y[n - 1], h);
  for (int i = 2; i <= n - 1; ++i) result[i] = Checked((y[i + 1] - y[i - 1]) / (2 * h));
  WriteBack(result, y, n);
}

void IntegrateRow(const double* x, double* y, int n) {
  const double h = StepOf(x);
  if (n == 0) return;
  CheckPointCount(n);
  std::vector<double> result(kMaxPoints + 1, 0.0);
  double sum = 0;
  for (int i = 1; i <= n; ++i) {
    sum = Checked(sum + y[i] * h);
    result[i] = sum;
  }
  WriteBack(result, y, n);
}

}  // namespace voltrix
