// The closed-form kernels against the electrochemistry they reduce to, the
// scaled error function against its published values, and the row
// transforms against a plain convolution and exact derivatives.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "analytic/electrode_responses.h"
#include "analytic/row_transforms.h"
#include "analytic/scaled_erfc.h"
#include "model/curve_store.h"
#include "support/expect_close.h"

namespace voltrix {
namespace {

constexpr double kPi = 3.141592654, kD = 1e-5, kC = 1e-3;
const double kS = std::sqrt(kD);

// exp(x^2) erfc(x) to the digits given, on both branches (the series below
// 1.5, the continued fraction from 1.5 on), and the exact function.
TEST(ScaledErfc, PublishedValuesOnBothBranches) {
  const double table[][2] = {{0, 1},          {1, 0.42758364},     {1.5, 0.32158540}, {1.4999, 0.32160203},
                             {2, 0.25539567}, {10, 0.056140991},   {-1.5, 18.653886}, {-2, 108.94090}};
  for (const auto& row : table) EXPECT_DIGITS(ScaledErfc(row[0]), row[1], 8) << row[0];
  for (double x = -3; x <= 5; x += 0.37) EXPECT_CLOSE(ScaledErfc(x), std::exp(x * x) * std::erfc(x), 2e-6) << x;
  EXPECT_CLOSE(ScaledErfc(1e4), 1 / (1e4 * 1.7724539), 1e-6);  // far tail: 1 / (x sqrt(pi))
  EXPECT_THROW(ScaledErfc(-30), RunError);
}

Experiment At25C() {
  Experiment e;
  for (auto [field, value] : {std::pair{&e.fRT, (96484.6 / 8.31441) / 298.14}, {&e.radius, 1e-3}, {&e.Vis, 0.01}, {&e.omega, 100 * kPi / 30}})
    *field = value;
  return e;
}

// Current density per unit of the current scale, against the closed forms of
// Bard and Faulkner (2001): Cottrell, Nernst, the spherical steady state, the
// kinetic limit, Levich.
TEST(Kernels, ReduceToTheTextbookLimits) {
  const Experiment e = At25C();
  const double f = e.fRT, cottrell = kC * kS / std::sqrt(kPi * 0.5);
  const double levich = kC * 0.62 * std::pow(kD, 2.0 / 3) * std::pow(0.01, -1.0 / 6) * std::sqrt(e.omega.value());
  const struct {
    const char* what;
    std::function<double()> kernel;
    double expected, rel;
  } cases[] = {
      {"oxidation of B", [&] { return PlanarResponse(e, 0.5, 1e4, 0.5, 1, 0, 0, kS, 0.5, kC, kS); }, -cottrell, 2e-6},
      {"kinetic limit", [&] { return PlanarResponse(e, -0.1, 1e-6, 0.5, 1, 0, kC, kS, 1e-3, 0, kS); },
       kC * 1e-6 * std::exp(0.5 * f * 0.1), 1e-3},
      {"sphere at long times", [&] { return SphericalResponse(e, -0.5, 1e4, 0.5, 1, 0, kC, kS, 1e6, 0, kS); },
       kD * kC / 1e-3, 1e-3},
      {"Levich, half at E0", [&] { return RotatingDiskResponse(e, 0, 1e4, 0.5, 1, 0, kC, kD, 0, kD); }, levich / 2, 1e-3},
      {"slow disk: kinetics in series", [&] { return RotatingDiskResponse(e, 0, 1e-3, 0.5, 1, 0, kC, kD, 0, kD); },
       kC * 1e-3 / (1 + 1e-3 * 2 * std::pow(kD, -2.0 / 3) / (0.62 * std::pow(0.01, -1.0 / 6) * std::sqrt(e.omega.value()))),
       1e-9},
      {"no species", [&] { return PlanarResponse(e, 0.2, 1e4, 0.5, 1, 0, 0, kS, 0.5, 0, kS); }, 0, 0},
      {"square wave without pulse", [&] { return SquareWavePlanar(e, 0.01, 1e4, 0.5, 1, 0, kC, kS, 0.05, 0, kS, 0); }, 0,
       0},
  };
  for (const auto& c : cases) EXPECT_CLOSE(c.kernel(), c.expected, c.rel) << c.what;
  EXPECT_THROW(RotatingDiskResponse(At25C(), -0.5, 1e4, 0.5, 1, 0, kC, kD, 0, 0), RunError);
  EXPECT_THROW(DiffPulsePlanar(e, 0.01, 1e4, 0.5, 1, 0, kC, kS, 0.05, 0, 0, kS, -0.05), RunError);  // td = 0
  EXPECT_NO_THROW(DiffPulseSpherical(e, 0.01, 1e4, 0.5, 1, 0, kC, kS, 0.05, 0, 0, kS, -0.05));
}

struct Row {
  std::vector<double> x = std::vector<double>(kMaxPoints + 1, 0.0);
  std::vector<double> y = std::vector<double>(kMaxPoints + 1, 0.0);
  Row(int n, double x0, double h, const std::function<double(double)>& f = {}) {
    for (int i = 1; i <= n; ++i) x[i] = x0 + h * (i - 1);
    for (int i = 1; i <= n && f; ++i) y[i] = f(x[i]);
  }
};

// The convolution written out plainly, three square roots per pair.
std::vector<double> PlainSemiDifferentiation(const Row& r, int n) {
  const double scale = 0.25 * std::sqrt((1 / kPi) / std::fabs(r.x[2] - r.x[1]));
  std::vector<double> out(r.y);
  for (int i = 3; i <= n - 1; ++i) {
    double sum = 0;
    for (int j = 1; j <= i - 1; ++j) {
      const double k = i - j;
      sum = sum + (std::sqrt(k + 1) - 2 * std::sqrt(k) + std::sqrt(k - 1)) * r.y[j];
    }
    out[i] = scale * (r.y[i] + sum);
  }
  out[n] = out[n - 1];
  out[1] = out[2] = out[3];
  return out;
}

TEST(SemiDifferentiate, SameDigitsAsThePlainConvolutionForEveryLength) {
  std::mt19937 gen(7);
  std::uniform_real_distribution<double> u(-1e-4, 1e-4);
  for (int n : {4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 17, 121, 4000}) {
    Row r(n, 0.3, -0.005, [&](double) { return u(gen); });
    const std::vector<double> expected = PlainSemiDifferentiation(r, n);
    SemiDifferentiateRow(r.x.data(), r.y.data(), n);
    for (int i = 1; i <= kMaxPoints; ++i) ASSERT_EQ(r.y[i], i <= n ? expected[i] : 0.0) << "n " << n << " point " << i;
  }
  // Three points: the loop does not run and the row becomes 0.
  Row three(3, 0, 0.1, [](double x) { return 5 + x; });
  SemiDifferentiateRow(three.x.data(), three.y.data(), 3);
  EXPECT_EQ(three.y[1] + three.y[2] + three.y[3], 0.0);
}

// d^(1/2) x / dx^(1/2) = 2 sqrt(x / pi) (Oldham and Spanier 1974); the
// routine gives one eighth of it, exactly for a line through the origin.
TEST(SemiDifferentiate, StraightLineGivesOneEighthOfItsHalfDerivative) {
  Row r(400, 0.01, 0.01, [](double x) { return x; });
  SemiDifferentiateRow(r.x.data(), r.y.data(), 400);
  for (int i : {3, 50, 399}) EXPECT_CLOSE(r.y[i], 2 * std::sqrt(r.x[i] / kPi) / 8, 1e-12) << i;
}

TEST(RowTransforms, DerivativesAndIntegrals) {
  const double h = 0.05;
  Row q(20, 1, h, [](double x) { return 3 * x * x - 2 * x + 7; });
  DifferentiateRow(q.x.data(), q.y.data(), 20);
  // Central inside (exact for a quadratic), one-sided at both ends.
  for (int i = 2; i <= 19; ++i) EXPECT_CLOSE(q.y[i], 6 * q.x[i] - 2, 1e-9) << i;
  EXPECT_CLOSE(q.y[1], 6 * (q.x[1] + h / 2) - 2, 1e-9);
  EXPECT_CLOSE(q.y[20], 6 * (q.x[20] - h / 2) - 2, 1e-9);
  // A constant integrates to c h, 2 c h, ... from the first point.
  Row c(5, 0.3, -0.002, [](double) { return 3.0; });
  IntegrateRow(c.x.data(), c.y.data(), 5);
  for (int i = 1; i <= 5; ++i) EXPECT_CLOSE(c.y[i], 3 * 0.002 * i, 1e-12) << i;
  // Equal X values have no step: the row is left as it was.
  Row flat(10, 0.1, 0, [](double) { return 1.0; });
  EXPECT_THROW(SemiDifferentiateRow(flat.x.data(), flat.y.data(), 10), RunError);
  EXPECT_THROW(DifferentiateRow(flat.x.data(), flat.y.data(), 10), RunError);
  EXPECT_EQ(flat.y[5], 1.0);
  EXPECT_THROW(IntegrateRow(c.x.data(), c.y.data(), kMaxPoints + 1), RunError);
}

}  // namespace
}  // namespace voltrix
