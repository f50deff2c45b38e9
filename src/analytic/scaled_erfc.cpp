#include "analytic/scaled_erfc.h"

#include <cmath>

#include "model/checked.h"

namespace voltrix {

namespace {

constexpr double kRoot2 = 1.4142136;
constexpr double kRootPiShort = 1.7724539;  // deliberately not the driver's 1.77245385

// Continued fraction of the tail, |x| >= 1.5; fewer rounds as x grows.
double TailFraction(double x) {
  const double q = x * x;
  double add = 0;
  if (!(x > 0)) {
    add = 2 * Exp(q);  // erfc(-x) = 2 - erfc(x)
    x = -x;
  }
  double m = 2 + std::floor(32 / x);
  double c = 1 / (x * kRoot2);
  do {
    c = c * m;
    c = c + x * kRoot2;
    c = 1 / c;
    m = m - 1;
  } while (m != 0);
  c = (c * kRoot2) / kRootPiShort;
  return add == 0 ? c : add - c;
}

// Nested power series of erf, |x| < 1.5; more rounds as |x| grows.
double CoreSeries(double x) {
  const double q = x * x;
  double m = 2 + std::floor(9 * std::fabs(x));
  double s = m / (m + q);
  do {
    s = s * (0.5 - m) * q;
    s = s / (m * (m + 0.5));
    s = s + 1;
    m = m - 1;
  } while (m != 0);
  return (1 - (s * 2 * x) / kRootPiShort) * Exp(q);
}

}  // namespace

double ScaledErfc(double x) {
  if (std::isnan(x)) Raise(ErrorKind::InvalidOperation);
  return Checked(std::fabs(x) >= 1.5 ? TailFraction(x) : CoreSeries(x));
}

}  // namespace voltrix
