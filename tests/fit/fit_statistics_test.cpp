// The statistics of a fit on their own: Student's t against a published
// table, the eigen decomposition against a textbook matrix, and the standard
// errors against the certified ones of reference problems.
#include "fit/fit_statistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

#include "expect_close.h"
#include "fit/fit_uncertainty.h"
#include "fit/student_t.h"

namespace voltrix {
namespace {

// Upper critical values t(p, dof) of Student's t, NIST/SEMATECH e-Handbook of
// Statistical Methods (2012), table 1.3.6.7.2, printed to three decimals.
TEST(StudentT, MatchesThePublishedTable) {
  struct Row {
    double p, dof, t;
  };
  const Row table[] = {{0.975, 1, 12.706}, {0.975, 2, 4.303}, {0.975, 3, 3.182}, {0.975, 5, 2.571},
                       {0.975, 10, 2.228}, {0.975, 20, 2.086}, {0.975, 30, 2.042}, {0.975, 100, 1.984},
                       {0.995, 1, 63.657}, {0.995, 10, 3.169}, {0.90, 5, 1.476},   {0.95, 60, 1.671},
                       {0.999, 4, 7.173},  {0.975, 1e6, 1.960}};
  for (const Row& r : table) {
    EXPECT_NEAR(StudentTQuantile(r.p, r.dof), r.t, 0.0005) << r.p << " " << r.dof;
    EXPECT_NEAR(StudentTQuantile(1 - r.p, r.dof), -r.t, 0.0005) << r.p << " " << r.dof;
  }
}

// The second-difference matrix of order 3 has eigenvalues 2 - sqrt 2, 2 and
// 2 + sqrt 2 (Strang, Introduction to Linear Algebra, 2016); each vector
// must satisfy A v = lambda v.
TEST(SymmetricEigen, FindsTheSecondDifferenceSpectrum) {
  const SquareMatrix a = {{2, -1, 0}, {-1, 2, -1}, {0, -1, 2}};
  const SymmetricEigen e = DecomposeSymmetric(a);
  std::vector<double> values = e.values;
  std::sort(values.begin(), values.end());
  EXPECT_NEAR(values[0], 2 - std::sqrt(2.0), 1e-12);
  EXPECT_NEAR(values[1], 2, 1e-12);
  EXPECT_NEAR(values[2], 2 + std::sqrt(2.0), 1e-12);
  for (int i = 0; i < 3; ++i)
    for (int r = 0; r < 3; ++r) {
      double av = 0;
      for (int c = 0; c < 3; ++c) av += a[r][c] * e.vectors[c][i];
      EXPECT_NEAR(av, e.values[i] * e.vectors[r][i], 1e-12);
    }
}

class Curve : public FitModel {
 public:
  Curve(std::vector<double> x, std::function<double(double, const ParameterVector&)> f)
      : x_(std::move(x)), f_(std::move(f)) {}
  void Objective(const ParameterVector& p, int& n, FitCurve& curve) override {
    n = static_cast<int>(x_.size());
    for (int l = 1; l <= n; ++l) curve[l] = f_(x_[l - 1], p);
  }

 private:
  std::vector<double> x_;
  std::function<double(double, const ParameterVector&)> f_;
};

// NIST StRD nonlinear regression (1999): at the certified values and
// residual sum of squares, the certified standard deviations, from the
// optimiser's 1 % central differences, whose truncation error stays below
// 0.05 %.
TEST(FitSpread, GivesTheCertifiedStandardDeviations) {
  struct Case {
    const char* name;
    std::vector<double> x;
    std::function<double(double, const ParameterVector&)> f;
    double b1, b2, sd1, sd2, rss;
    double t;  // t(0.975, N - 2) from the e-Handbook table
  };
  const auto exponential = [](double x, const ParameterVector& p) { return p(1) * (1 - std::exp(-p(2) * x)); };
  const auto power = [](double x, const ParameterVector& p) { return p(1) * std::pow(x, p(2)); };
  const Case cases[] = {
      {"Misra1a",
       {77.6, 114.9, 141.1, 190.8, 239.9, 289.0, 332.8, 378.4, 434.8, 477.3, 536.8, 593.1, 689.1, 760.0},
       exponential, 2.3894212918e2, 5.5015643181e-4, 2.7070075241, 7.2668688436e-6, 1.2455138894e-1, 2.179},
      {"DanWood", {1.309, 1.471, 1.490, 1.565, 1.611, 1.680}, power, 7.6886226176e-1, 3.8604055871, 1.8281973860e-2,
       5.1726610913e-2, 4.3173084083e-3, 2.776},
      {"BoxBOD", {1, 2, 3, 5, 7, 10}, exponential, 2.1380940889e2, 5.4723748542e-1, 1.2354515176e1,
       1.0455993237e-1, 1.1680088766e3, 2.776},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Curve model(c.x, c.f);
    ParameterVector b;
    b(1) = c.b1;
    b(2) = c.b2;
    const FitStatistics st = MeasureFitSpread(model, 2, b, static_cast<int>(c.x.size()), c.rss, 1.0);
    EXPECT_CLOSE(st.spread[0].standardError, c.sd1, 5e-4);
    EXPECT_CLOSE(st.spread[1].standardError, c.sd2, 5e-4);
    EXPECT_NEAR((st.spread[1].high - st.spread[1].low) / (2 * st.spread[1].standardError), c.t, 0.0005);
    EXPECT_LT(st.conditionNumber, kIllConditioned);
  }
}

}  // namespace
}  // namespace voltrix
