#include "analytic/exact_kernels.h"

#include <algorithm>
#include <cmath>
#include <complex>

#include "analytic/constants.h"
#include "model/checked.h"

namespace voltrix {

namespace {

// Spacing of the modes in ln(rate): the midpoint rule on this analytic
// integrand errs by about exp(-pi^2 / spacing), 1e-5 here.
constexpr double kLogSpacing = 0.85;
// Modes slower than this fraction of 1/longest act as a running integral.
constexpr double kSlowest = 1e-3;
// Modes faster than this many times 1/shortest settle within every step.
constexpr double kFastest = 100;
// Film modes kept one by one before the rest are taken as a continuum.
constexpr int kFilmModes = 60;

using Complex = std::complex<double>;

// rho(s) from the admittance Y(p) = flux / concentration drop in Laplace
// space, continued to p = -s: rho = -Im(1 / Y) / pi.
template <class Admittance>
double DensityFromAdmittance(Admittance Y, double s) {
  return -std::imag(1.0 / Y(Complex(0.0, std::sqrt(s)))) / kPi;
}

// Semi-infinite planar diffusion, K(t) = 1/sqrt(pi D t).
double PlanarDensity(double D, double s) { return 1.0 / (kPi * std::sqrt(D * s)); }

// Outside a sphere of radius r: Y = sqrt(D p) + D/r.
double SphereDensity(double D, double r, double s) {
  return DensityFromAdmittance([&](Complex root) { return std::sqrt(D) * root + D / r; }, s);
}

// Inlaid disc: Cottrell with the edge term D/r at short times (Aoki and
// Osteryoung), the steady state 4D/(pi r) (Saito) and its first correction
// 0.71835 (4D/pi r) / sqrt(4 D t / r^2) (Shoup and Szabo 1982) at long
// times, joined by one pole in sqrt(p). It follows Shoup and Szabo's
// current within 0.8 % at every time.
double DiscDensity(double D, double r, double s) {
  const double excess = (4 / kPi - 1) * D / r;
  const double longRoot = 2 * 0.71835 / kRootPi;  // long-time sqrt(t) coefficient over sqrt(D)
  const double pole = excess / ((1 - longRoot) * std::sqrt(D));
  return DensityFromAdmittance(
      [&](Complex root) { return std::sqrt(D) * root + D / r + excess / (1.0 + root / pole); }, s);
}

// Outside an infinite cylinder of radius r: Y = sqrt(D p) K1 / K0, whose
// continuation gives rho through the Bessel functions J1, Y1 (Jaeger and
// Clarke 1942).
double CylinderDensity(double D, double r, double s) {
  const double z = r * std::sqrt(s / D);
  const double j = std::cyl_bessel_j(1.0, z), y = std::cyl_neumann(1.0, z);
  return 2.0 / (kPi * kPi * z * std::sqrt(D * s) * (j * j + y * y));
}

// Adds modes on [lo, hi] by the midpoint rule in ln(rate).
template <class Density>
void AddContinuum(KernelModes& k, double lo, double hi, Density rho) {
  if (!(hi > lo)) return;
  const int n = std::max(1, static_cast<int>(std::ceil(std::log(hi / lo) / kLogSpacing)));
  const double dx = std::log(hi / lo) / n;
  for (int j = 0; j < n; ++j) {
    const double s = lo * std::exp((j + 0.5) * dx);
    k.rate.push_back(s);
    k.weight.push_back(Checked(dx * s * rho(s)));
  }
}

// The modes below `lo` as one mode of rate 0; rho grows as s^power there.
template <class Density>
void AddSlowest(KernelModes& k, double lo, double power, Density rho) {
  k.rate.push_back(0.0);
  k.weight.push_back(Checked(lo * rho(lo) / (power + 1)));
}

// A film on the electrode, closed at thickness l: K = (1/l)(1 + 2 sum
// exp(-m^2 pi^2 D t / l^2)); above kFilmModes the modes are dense enough
// to be a continuum with the planar density.
void AddFilmModes(KernelModes& k, double D, double l, double hi) {
  const double first = kPi * kPi * D / (l * l);
  k.rate.push_back(0.0);
  k.weight.push_back(1.0 / l);
  int m = 1;
  for (; m <= kFilmModes && first * m * m <= hi; ++m) {
    k.rate.push_back(first * m * m);
    k.weight.push_back(2.0 / l);
  }
  const double continuum = first * (m - 0.5) * (m - 0.5);
  AddContinuum(k, continuum, hi, [&](double s) { return PlanarDensity(D, s); });
  k.fastest = std::max(hi, continuum);
}

// c * atan(c / U), the tail integral of one Lorentzian c^2 / (u^2 + c^2).
double LorentzTail(double c, double U) { return c * std::atan(c / U); }

}  // namespace

KernelModes DiffusionModes(Geometry g, double D, double size, const ModeSpan& span) {
  if (!(D > 0)) Raise(ErrorKind::InvalidArgument, "A diffusion coefficient must be greater than 0");
  if (g != Geometry::kPlanar && !(size > 0))
    Raise(ErrorKind::InvalidArgument, "The electrode radius or film thickness must be greater than 0");
  KernelModes k;
  k.D = D;
  const double lo = kSlowest / Checked(span.longest), hi = Div(kFastest, span.shortest);
  k.fastest = hi;
  switch (g) {
    case Geometry::kPlanar: {
      auto rho = [&](double s) { return PlanarDensity(D, s); };
      AddSlowest(k, lo, -0.5, rho);
      AddContinuum(k, lo, hi, rho);
      break;
    }
    case Geometry::kSphere: {
      auto rho = [&](double s) { return SphereDensity(D, size, s); };
      AddSlowest(k, lo, 0.5, rho);
      AddContinuum(k, lo, hi, rho);
      k.edge = D / size;
      break;
    }
    case Geometry::kDisc: {
      auto rho = [&](double s) { return DiscDensity(D, size, s); };
      AddSlowest(k, lo, 0.5, rho);
      AddContinuum(k, lo, hi, rho);
      k.edge = D / size;
      break;
    }
    case Geometry::kCylinder: {
      auto rho = [&](double s) { return CylinderDensity(D, size, s); };
      AddSlowest(k, lo, 0.0, rho);
      AddContinuum(k, lo, hi, rho);
      k.edge = D / (2 * size);
      break;
    }
    case Geometry::kFilm: AddFilmModes(k, D, size, hi); break;
  }
  return k;
}

// Above `fastest` every geometry looks like a plane with an edge admittance
// a, rho = u / (pi (a^2 + u^2)) with u = sqrt(D s); damping b^2 = D k.
double InstantWeight(const KernelModes& k, double damping) {
  const double U = std::sqrt(k.D * k.fastest);
  const double a = k.edge, b = std::sqrt(k.D * damping);
  if (std::fabs(a * a - b * b) <= 1e-9 * (a * a + b * b + U * U)) {
    const double c = std::max(0.5 * (a + b), 1e-300);
    return (2 / kPi) * (std::atan(c / U) + c * U / (U * U + c * c)) / (2 * c);
  }
  return (2 / kPi) * (LorentzTail(a, U) - LorentzTail(b, U)) / (a * a - b * b);
}

double LayerSteadyKernel(double D, double delta, double damping) {
  if (damping <= 0) return Div(delta, D);
  const double root = Sqrt(D * damping);
  return Checked(std::tanh(delta * std::sqrt(damping / D)) / root);
}

}  // namespace voltrix
