// The row transforms: a plain reference for the fast semi-differentiation,
// closed forms for straight lines and polynomials, round trips, and the
// faults of a bad axis.
#include "analytic/row_transforms.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "model/curve_store.h"
#include "support/expect_close.h"

namespace voltrix {
namespace {

struct Row {
  std::vector<double> x = std::vector<double>(kMaxPoints + 1, 0.0);
  std::vector<double> y = std::vector<double>(kMaxPoints + 1, 0.0);
  Row(int n, double x0, double h) {
    for (int i = 1; i <= n; ++i) x[i] = x0 + h * (i - 1);
  }
};

// The convolution written out plainly: three square roots per pair.
std::vector<double> PlainSemiDifferentiation(const std::vector<double>& x, const std::vector<double>& y, int n) {
  const double h = std::fabs(x[2] - x[1]);
  const double scale = 0.25 * std::sqrt((1 / 3.141592654) / h);
  std::vector<double> result(kMaxPoints + 1, 0.0);
  for (int i = 3; i <= n - 1; ++i) {
    double sum = 0;
    for (int j = 1; j <= i - 1; ++j) {
      const double k = i - j;
      sum = sum + (std::sqrt(k + 1) - 2 * std::sqrt(k) + std::sqrt(k - 1)) * y[j];
    }
    result[i] = scale * (y[i] + sum);
  }
  result[n] = result[n - 1];
  result[1] = result[3];
  result[2] = result[3];
  return result;
}

TEST(SemiDifferentiate, WeightsAreNegativeAndTelescope) {
  const auto& w = SemiDifferenceWeights();
  ASSERT_GE(w.size(), static_cast<size_t>(kMaxPoints + 1));
  EXPECT_NEAR(w[1], -0.5858, 5e-5);
  EXPECT_NEAR(w[2], -0.0964, 5e-5);
  EXPECT_NEAR(w[3], -0.0499, 5e-5);
  // Second differences of sqrt(k) sum to sqrt(K + 1) - sqrt(K) - 1.
  double sum = 0;
  for (int k = 1; k <= 4000; ++k) {
    EXPECT_LT(w[k], 0);
    if (k > 1) {
      EXPECT_LT(std::fabs(w[k]), std::fabs(w[k - 1]));
    }
    sum += w[k];
  }
  EXPECT_NEAR(sum, std::sqrt(4001.0) - std::sqrt(4000.0) - 1, 1e-12);
}

// Identical digits to the plain loop, for every length around the block
// boundaries and for the full 4000 points.
TEST(SemiDifferentiate, SameDigitsAsThePlainConvolution) {
  std::mt19937 gen(7);
  std::uniform_real_distribution<double> u(-1e-4, 1e-4);
  std::vector<int> lengths;
  for (int n = 1; n <= 40; ++n) lengths.push_back(n);
  lengths.push_back(121);
  lengths.push_back(4000);
  for (int n : lengths) {
    Row r(n, 0.3, -0.005);
    for (int i = 1; i <= n; ++i) r.y[i] = u(gen);
    const std::vector<double> expected = PlainSemiDifferentiation(r.x, r.y, n);
    const std::vector<double> before = r.y;
    SemiDifferentiateRow(r.x.data(), r.y.data(), n);
    for (int i = 1; i <= n; ++i) ASSERT_EQ(r.y[i], expected[i]) << "n = " << n << ", point " << i;
    for (int i = n + 1; i <= kMaxPoints; ++i) ASSERT_EQ(r.y[i], before[i]) << "beyond the row, point " << i;
  }
}

// d^(1/2) x / dx^(1/2) = 2 sqrt(x / pi); the routine gives one eighth of it,
// exactly for a line through the origin.
TEST(SemiDifferentiate, StraightLineGivesOneEighthOfItsHalfDerivative) {
  const double h = 0.01;
  Row r(400, h, h);
  r.y = r.x;
  SemiDifferentiateRow(r.x.data(), r.y.data(), 400);
  for (int i : {3, 50, 200, 399}) EXPECT_CLOSE(r.y[i], 2 * std::sqrt(r.x[i] / 3.141592654) / 8, 1e-12) << i;
}

TEST(SemiDifferentiate, EndsAreCopiesAndShortRowsBecomeZero) {
  Row r(10, 0, 0.1);
  for (int i = 1; i <= 10; ++i) r.y[i] = i * i;
  SemiDifferentiateRow(r.x.data(), r.y.data(), 10);
  EXPECT_EQ(r.y[1], r.y[3]);
  EXPECT_EQ(r.y[2], r.y[3]);
  EXPECT_EQ(r.y[10], r.y[9]);
  EXPECT_NE(r.y[3], r.y[4]);

  Row s(3, 0, 0.1);
  s.y[1] = 5, s.y[2] = 6, s.y[3] = 7;
  SemiDifferentiateRow(s.x.data(), s.y.data(), 3);
  EXPECT_EQ(s.y[1], 0);
  EXPECT_EQ(s.y[2], 0);
  EXPECT_EQ(s.y[3], 0);
}

TEST(SemiDifferentiate, ScanDirectionDoesNotMatter) {
  Row up(50, -0.3, 0.005), down(50, 0.3, -0.005);
  for (int i = 1; i <= 50; ++i) up.y[i] = down.y[i] = std::sin(0.2 * i);
  SemiDifferentiateRow(up.x.data(), up.y.data(), 50);
  SemiDifferentiateRow(down.x.data(), down.y.data(), 50);
  for (int i = 1; i <= 50; ++i) EXPECT_EQ(up.y[i], down.y[i]);
}

TEST(Differentiate, ExactForQuadraticsInsideAndOneSidedAtTheEnds) {
  const double h = 0.05;
  Row r(20, 1, h);
  for (int i = 1; i <= 20; ++i) r.y[i] = 3 * r.x[i] * r.x[i] - 2 * r.x[i] + 7;
  const Row original = r;
  DifferentiateRow(r.x.data(), r.y.data(), 20);
  for (int i = 2; i <= 19; ++i) EXPECT_CLOSE(r.y[i], 6 * r.x[i] - 2, 1e-9) << i;
  EXPECT_CLOSE(r.y[1], (original.y[2] - original.y[1]) / h, 1e-12);
  // The forward difference at the start is the slope at the midpoint.
  EXPECT_CLOSE(r.y[1], 6 * (r.x[1] + h / 2) - 2, 1e-9);
  EXPECT_CLOSE(r.y[20], 6 * (r.x[20] - h / 2) - 2, 1e-9);

  Row c(7, 0, 0.1);
  for (int i = 1; i <= 7; ++i) c.y[i] = 4.25;
  DifferentiateRow(c.x.data(), c.y.data(), 7);
  for (int i = 1; i <= 7; ++i) EXPECT_EQ(c.y[i], 0);
}

TEST(Integrate, RectangleRuleFromTheFirstPoint) {
  const double h = 0.002;
  Row c(5, 0.3, -h);
  for (int i = 1; i <= 5; ++i) c.y[i] = 3;
  IntegrateRow(c.x.data(), c.y.data(), 5);
  for (int i = 1; i <= 5; ++i) EXPECT_CLOSE(c.y[i], 3 * h * i, 1e-12);
}

// Differentiating a running sum gives back the last point exactly and the
// mean of neighbours inside.
TEST(Integrate, DifferentiateUndoesIt) {
  Row r(30, 0, 0.01);
  for (int i = 1; i <= 30; ++i) r.y[i] = std::cos(0.3 * i);
  const Row original = r;
  IntegrateRow(r.x.data(), r.y.data(), 30);
  DifferentiateRow(r.x.data(), r.y.data(), 30);
  EXPECT_CLOSE(r.y[30], original.y[30], 1e-9);
  for (int i = 2; i <= 29; ++i) EXPECT_CLOSE(r.y[i], (original.y[i] + original.y[i + 1]) / 2, 1e-9) << i;
}

TEST(RowTransforms, BadAxisOrLengthRaisesAndLeavesTheRow) {
  auto kindOf = [](auto call) {
    try {
      call();
    } catch (const RunError& err) {
      return err.kind();
    }
    return ErrorKind::TypeMismatch;  // stands for "no error"
  };
  Row flat(10, 0.1, 0);  // equal X values: no step
  for (int i = 1; i <= 10; ++i) flat.y[i] = i;
  const Row kept = flat;
  EXPECT_EQ(kindOf([&] { SemiDifferentiateRow(flat.x.data(), flat.y.data(), 10); }), ErrorKind::DivisionByZero);
  EXPECT_EQ(kindOf([&] { DifferentiateRow(flat.x.data(), flat.y.data(), 10); }), ErrorKind::DivisionByZero);
  EXPECT_EQ(flat.y, kept.y);
  IntegrateRow(flat.x.data(), flat.y.data(), 10);  // h = 0 integrates to 0, no division
  EXPECT_EQ(flat.y[10], 0);

  Row r(10, 0, 0.1);
  EXPECT_EQ(kindOf([&] { SemiDifferentiateRow(r.x.data(), r.y.data(), kMaxPoints + 1); }),
            ErrorKind::SubscriptOutOfRange);
  EXPECT_EQ(kindOf([&] { IntegrateRow(r.x.data(), r.y.data(), kMaxPoints + 1); }), ErrorKind::SubscriptOutOfRange);
}

TEST(RowTransforms, ModelFormActsOnRowCurNoOnly) {
  Experiment e;
  CurveStore s;
  e.NData = 12;
  e.CurNo = 3;
  for (int i = 1; i <= 12; ++i) {
    s.XData(i) = 0.5 - 0.01 * i;
    for (int row = 1; row <= 6; ++row) s.YData(row, i) = row + 0.5 * i;
  }
  Integrate(e, s.XData, s.YData);
  EXPECT_CLOSE(s.YData(3, 1), 3.5 * 0.01, 1e-12);
  EXPECT_CLOSE(s.YData(3, 2), (3.5 + 4.0) * 0.01, 1e-12);
  for (int row : {1, 2, 4, 5, 6}) EXPECT_EQ(s.YData(row, 2), row + 1.0);
  e.CurNo = 7;
  EXPECT_THROW(Differentiate(e, s.XData, s.YData), RunError);
}

}  // namespace
}  // namespace voltrix
