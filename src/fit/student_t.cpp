#include "fit/student_t.h"

#include <cmath>

#include "model/checked.h"

namespace voltrix {

namespace {

constexpr double kTiny = 1e-300;
constexpr double kFractionTolerance = 1e-15;
constexpr int kFractionTerms = 500;

double AwayFromZero(double x) { return std::fabs(x) < kTiny ? kTiny : x; }

// The continued fraction of I_x(a, b) (Abramowitz and Stegun 26.5.8), by the
// modified Lentz method; it converges fast for x below (a + 1) / (a + b + 2).
double BetaFraction(double a, double b, double x) {
  double c = 1.0;
  double d = 1.0 / AwayFromZero(1.0 - (a + b) * x / (a + 1.0));
  double h = d;
  for (int m = 1; m <= kFractionTerms; ++m) {
    const double even = m * (b - m) * x / ((a + 2.0 * m - 1.0) * (a + 2.0 * m));
    d = 1.0 / AwayFromZero(1.0 + even * d);
    c = AwayFromZero(1.0 + even / c);
    h *= d * c;
    const double odd = -(a + m) * (a + b + m) * x / ((a + 2.0 * m) * (a + 2.0 * m + 1.0));
    d = 1.0 / AwayFromZero(1.0 + odd * d);
    c = AwayFromZero(1.0 + odd / c);
    const double step = d * c;
    h *= step;
    if (std::fabs(step - 1.0) < kFractionTolerance) break;
  }
  return h;
}

}  // namespace

double RegularizedIncompleteBeta(double a, double b, double x) {
  if (!(a > 0) || !(b > 0) || !(x >= 0) || !(x <= 1)) Raise(ErrorKind::InvalidArgument);
  if (x == 0.0 || x == 1.0) return x;
  const double logFront =
      std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) + a * std::log(x) + b * std::log1p(-x);
  const double front = std::exp(logFront);
  if (x < (a + 1.0) / (a + b + 2.0)) return Checked(front * BetaFraction(a, b, x) / a);
  return Checked(1.0 - front * BetaFraction(b, a, 1.0 - x) / b);
}

double StudentTUpperTail(double t, double dof) {
  if (!(dof > 0)) Raise(ErrorKind::InvalidArgument);
  const double tail = 0.5 * RegularizedIncompleteBeta(dof / 2.0, 0.5, dof / (dof + t * t));
  return t >= 0 ? tail : 1.0 - tail;
}

double StudentTQuantile(double p, double dof) {
  if (!(p > 0) || !(p < 1) || !(dof > 0)) Raise(ErrorKind::InvalidArgument);
  if (p < 0.5) return -StudentTQuantile(1.0 - p, dof);
  const double tail = 1.0 - p;
  // The tail falls as t grows: bracket the root, then halve the bracket.
  double low = 0.0, high = 1.0;
  while (StudentTUpperTail(high, dof) > tail) {
    low = high;
    high = Checked(high * 2.0);
  }
  while (high - low > 1e-13 * high) {
    const double mid = 0.5 * (low + high);
    if (StudentTUpperTail(mid, dof) > tail) low = mid;
    else high = mid;
  }
  return 0.5 * (low + high);
}

}  // namespace voltrix
