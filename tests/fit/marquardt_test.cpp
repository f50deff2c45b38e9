// The optimiser on its own: certified reference problems (sums of squares,
// which a fit must reach whatever path it takes), and the rules of its
// damping, bounds and frozen parameters on models worked out by hand.
#include "fit/marquardt.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "expect_close.h"
#include "model/errors.h"

namespace voltrix {
namespace {

// y(x; p) on given abscissas; `disturb` may spoil evaluation `call` (counted
// over every Objective, probes included).
struct CurveModel : FitModel {
  using Shape = std::function<double(double x, const ParameterVector& p)>;
  CurveModel(std::vector<double> xs, Shape f) : x(std::move(xs)), shape(std::move(f)) {}
  void Objective(const ParameterVector& p, int& n, FitCurve& curve) override {
    seen.push_back(p);
    n = static_cast<int>(x.size());
    for (int l = 1; l <= n; ++l) curve[l] = shape(x[l - 1], p);
    for (int l = 1; l <= n && disturb; ++l) curve[l] = disturb(static_cast<int>(seen.size()), x[l - 1], curve[l]);
  }
  std::vector<double> x;
  Shape shape;
  std::vector<ParameterVector> seen;
  std::function<double(int call, double x, double y)> disturb;
};

ParameterVector Vec(std::initializer_list<double> v) {
  ParameterVector p;
  int i = 1;
  for (double x : v) p(i++) = x;
  return p;
}

struct Outcome {
  double s = 0;
  int flag = 0, passes = 0, marquardts = 0;
  Field evaluations = Field(0.0);
};

// Passes as the driver runs them: until the flag is not above 0, or 51.
Outcome Fit(FitModel& model, OptimiserMemory& memory, int k, ParameterVector& b, const std::vector<double>& y,
            const ParameterVector& lower = Vec({-1e9, -1e9}), const ParameterVector& upper = Vec({1e9, 1e9}),
            int passLimit = 51, double spread = 0) {
  Outcome out;
  double mean = 0, variance = 0;
  for (double v : y) mean += v / static_cast<double>(y.size());
  for (double v : y) variance += (v - mean) * (v - mean) / static_cast<double>(y.size());
  MarquardtContext ctx{model, memory, spread ? spread : std::sqrt(variance), out.evaluations};
  FitCurve target = NewFitCurve(), z = NewFitCurve();
  std::copy(y.begin(), y.end(), target.begin() + 1);
  int n = static_cast<int>(y.size()), started = 0;
  do {
    MarquardtPass(ctx, k, b, n, z, target, out.s, started, out.flag, out.marquardts, lower, upper, variance);
    ++out.passes;
  } while (out.passes < passLimit && out.flag > 0);
  return out;
}

// NIST StRD nonlinear regression: Misra1a and DanWood (lower difficulty),
// BoxBOD (higher difficulty), with their certified values.
TEST(Marquardt, ReachesTheCertifiedSumsOfSquares) {
  const std::vector<double> misraX = {77.6, 114.9, 141.1, 190.8, 239.9, 289.0, 332.8, 378.4, 434.8, 477.3, 536.8, 593.1, 689.1, 760.0};
  const std::vector<double> misraY = {10.07, 14.73, 17.94, 23.93, 29.61, 35.18, 40.02, 44.82, 50.76, 55.05, 61.01, 66.40, 75.47, 81.78};
  const auto exponential = [](double x, const ParameterVector& p) { return p(1) * (1 - std::exp(-p(2) * x)); };
  const auto power = [](double x, const ParameterVector& p) { return p(1) * std::pow(x, p(2)); };
  const struct {
    std::vector<double> x, y;
    CurveModel::Shape shape;
    ParameterVector start;
    double certifiedSum;
  } cases[] = {
      {misraX, misraY, exponential, Vec({500, 1e-4}), 1.2455138894e-1},
      {{1.309, 1.471, 1.490, 1.565, 1.611, 1.680}, {2.138, 3.421, 3.597, 4.340, 4.882, 5.660}, power, Vec({1, 5}), 4.3173084083e-3},
      {{1.309, 1.471, 1.490, 1.565, 1.611, 1.680}, {2.138, 3.421, 3.597, 4.340, 4.882, 5.660}, power, Vec({0.7, 4}), 4.3173084083e-3},
      {{1, 2, 3, 5, 7, 10}, {109, 149, 149, 191, 213, 224}, exponential, Vec({100, 0.75}), 1.1680088766e3},
  };
  for (const auto& c : cases) {
    CurveModel model(c.x, c.shape);
    OptimiserMemory memory;
    ParameterVector b = c.start;
    const Outcome out = Fit(model, memory, 2, b, c.y);
    EXPECT_CLOSE(out.s, c.certifiedSum, 1e-5) << c.certifiedSum << " from " << c.start(1);
    EXPECT_LT(out.flag, 0);
    EXPECT_EQ(out.evaluations.value(), static_cast<double>(model.seen.size()) - 4 * out.passes);  // probes are not counted
    double sum = 0;  // the sum belongs to the parameters returned
    for (std::size_t l = 0; l < c.x.size(); ++l) sum += std::pow(c.shape(c.x[l], b) - c.y[l], 2);
    EXPECT_CLOSE(sum, out.s, 1e-12);
  }
}

// One pass on the line 1.5 + 2 x from (1, 1), where one undamped step is
// exact; evaluation 6 is the first attempt (1 evaluation, 4 probes).
TEST(Marquardt, DampingBoundsAndFrozenParameters) {
  const std::vector<double> x{0, 1, 2, 3, 4, 5}, y{1.5, 3.5, 5.5, 7.5, 9.5, 11.5};
  const struct {
    const char* what;
    std::function<double(int call, double x, double y)> disturb;
    ParameterVector lower, upper;
    int marquardts, flag;
    double lambda, evaluations, b1, b2;
  } cases[] = {
      {"an undamped step that improves leaves Lambda", nullptr, Vec({-9, -9}), Vec({9, 9}), 0, 1, 7, 2, 1.5, 2},
      // A first rejection starts Lambda at 1e-4; an accepted pass halves it.
      {"first rejection", [](int call, double, double y) { return call == 6 ? y + 100 : y; }, Vec({-9, -9}), Vec({9, 9}), 1, 1, 5e-5, 3,
       1.5, 2},
      // An attempt whose sum only equals the sum before is rejected.
      {"equal sum", [](int call, double x, double y) { return call == 6 ? 1 + x : y; }, Vec({-9, -9}), Vec({9, 9}), 1, 1, 5e-5, 3,
       1.5, 2},
      // Every attempt far off: Lambda runs 1e-4 .. 1e3 and passes its ceiling.
      {"Lambda past its ceiling", [](int call, double, double y) { return call >= 6 ? y + 1000 : y; }, Vec({-9, -9}), Vec({9, 9}), 9, -2, 1000,
       10, 0, 0},
      // A step past a bound keeps that parameter where it was.
      {"bound", nullptr, Vec({0, 0}), Vec({1.2, 10}), 0, 1, 7, 2, 1, 2},
  };
  for (const auto& c : cases) {
    CurveModel model(x, [](double x, const ParameterVector& p) { return p(1) + p(2) * x; });
    model.disturb = c.disturb;
    OptimiserMemory memory;
    memory.Lambda = 7;  // left by an earlier fit
    ParameterVector b = Vec({1, 1});
    const Outcome out = Fit(model, memory, 2, b, y, c.lower, c.upper, 1);
    EXPECT_EQ(out.marquardts, c.marquardts) << c.what;
    EXPECT_EQ(out.flag, c.flag) << c.what;
    EXPECT_DOUBLE_EQ(memory.Lambda, c.lambda) << c.what;
    EXPECT_EQ(out.evaluations.value(), c.evaluations) << c.what;
    if (c.b1 != 0) {
      EXPECT_NEAR(b(1), c.b1, 1e-3) << c.what;
      EXPECT_NEAR(b(2), c.b2, 1e-3) << c.what;
    }
  }
  // A parameter at 0 is probed by the spread of the target, the others by 1 %.
  CurveModel probed(x, [](double x, const ParameterVector& p) { return p(1) + p(2) * x; });
  OptimiserMemory memory;
  ParameterVector zero = Vec({0, 3});
  Fit(probed, memory, 2, zero, y, Vec({-9, -9}), Vec({9, 9}), 1, 0.25);
  EXPECT_EQ(probed.seen[1](1), 0.25);
  EXPECT_EQ(probed.seen[2](1), -0.25);
  EXPECT_DOUBLE_EQ(probed.seen[3](2), 3.03);
  // A parameter that changes nothing is frozen while the other fits exactly,
  // and the next fit starts from its values plus the last step of this one.
  CurveModel frozen({1, 2, 3, 4}, [](double x, const ParameterVector& p) { return p(1) * x + 0 * p(2); });
  OptimiserMemory kept;
  ParameterVector f = Vec({1, 5});
  EXPECT_EQ(Fit(frozen, kept, 2, f, {2, 4, 6, 8}).flag, -1);
  EXPECT_EQ(f(2), 5.0);
  EXPECT_CLOSE(f(1), 2.0, 1e-9);
  const double lastStep = kept.StepVector(1);
  frozen.seen.clear();
  ParameterVector again = Vec({3, 5});
  Fit(frozen, kept, 2, again, {2, 4, 6, 8});
  EXPECT_EQ(frozen.seen[0](1), 3 + lastStep);
  // A flat target matched exactly has no relative improvement to measure.
  CurveModel flat({1, 2, 3}, [](double, const ParameterVector& p) { return p(1); });
  OptimiserMemory fresh;
  ParameterVector two = Vec({2});
  EXPECT_THROW(Fit(flat, fresh, 1, two, {2, 2, 2}), RunError);
}

}  // namespace
}  // namespace voltrix
