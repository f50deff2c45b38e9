// The optimiser on its own: certified reference problems (sums of squares,
// which a fit must reach whatever path it takes) and the rules of its
// damping, bounds and frozen parameters on small models whose answers can be
// worked out by hand.
#include "fit/marquardt.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "expect_close.h"
#include "model/errors.h"

namespace voltrix {
namespace {

// A model y(x; p) on given abscissas, with a hook that may disturb a chosen
// evaluation (counted over Objective calls, probes included).
class CurveModel : public FitModel {
 public:
  using Shape = std::function<double(double x, const ParameterVector& p)>;
  CurveModel(std::vector<double> x, Shape shape) : x_(std::move(x)), shape_(std::move(shape)) {}
  void Objective(const ParameterVector& p, int& n, FitCurve& curve) override {
    ++calls;
    seen.push_back(p);
    n = static_cast<int>(x_.size());
    for (int l = 1; l <= n; ++l) curve[l] = shape_(x_[l - 1], p);
    if (disturb) disturb(calls, curve, n);
  }
  int calls = 0;
  std::vector<ParameterVector> seen;
  std::function<void(int call, FitCurve&, int n)> disturb;

 private:
  std::vector<double> x_;
  Shape shape_;
};

struct Problem {
  std::vector<double> x, y;
};

FitCurve Target(const std::vector<double>& y) {
  FitCurve t = NewFitCurve();
  for (std::size_t l = 0; l < y.size(); ++l) t[l + 1] = y[l];
  return t;
}

double Variance(const std::vector<double>& y) {
  double m = 0, v = 0;
  for (double v0 : y) m += v0;
  m /= static_cast<double>(y.size());
  for (double v0 : y) v += (v0 - m) * (v0 - m);
  return v / static_cast<double>(y.size());
}

struct Outcome {
  double s = 0;
  int flag = 0, passes = 0, marquardts = 0;
  Field evaluations;
};

// The driver's loop: passes until the flag is not above 0 or 51 passes.
Outcome Fit(FitModel& model, OptimiserMemory& memory, int k, ParameterVector& b, const ParameterVector& lower,
            const ParameterVector& upper, const std::vector<double>& y) {
  Outcome out;
  out.evaluations = 0;
  const double variance = Variance(y);
  MarquardtContext ctx{model, memory, std::sqrt(variance), out.evaluations};
  const FitCurve target = Target(y);
  FitCurve z = NewFitCurve();
  int n = static_cast<int>(y.size());
  int started = 0;
  do {
    MarquardtPass(ctx, k, b, n, z, target, out.s, started, out.flag, out.marquardts, lower, upper, variance);
    ++out.passes;
  } while (out.passes <= 50 && out.flag > 0);
  return out;
}

ParameterVector Vec(std::initializer_list<double> v) {
  ParameterVector p;
  int i = 1;
  for (double x : v) p(i++) = x;
  return p;
}

double SumOfSquares(CurveModel& model, const ParameterVector& p, const std::vector<double>& y) {
  FitCurve c = NewFitCurve();
  int n = 0;
  model.Objective(p, n, c);
  double s = 0;
  for (int l = 1; l <= n; ++l) s += (c[l] - y[l - 1]) * (c[l] - y[l - 1]);
  return s;
}

// NIST StRD Misra1a (lower difficulty): y = b1 (1 - exp(-b2 x)).
const Problem kMisra1a = {
    {77.6, 114.9, 141.1, 190.8, 239.9, 289.0, 332.8, 378.4, 434.8, 477.3, 536.8, 593.1, 689.1, 760.0},
    {10.07, 14.73, 17.94, 23.93, 29.61, 35.18, 40.02, 44.82, 50.76, 55.05, 61.01, 66.40, 75.47, 81.78}};
// NIST StRD DanWood (lower difficulty): y = b1 x^b2.
const Problem kDanWood = {{1.309, 1.471, 1.490, 1.565, 1.611, 1.680}, {2.138, 3.421, 3.597, 4.340, 4.882, 5.660}};
// NIST StRD BoxBOD (higher difficulty): y = b1 (1 - exp(-b2 x)).
const Problem kBoxBod = {{1, 2, 3, 5, 7, 10}, {109, 149, 149, 191, 213, 224}};

double Exponential(double x, const ParameterVector& p) { return p(1) * (1 - std::exp(-p(2) * x)); }
double Power(double x, const ParameterVector& p) { return p(1) * std::pow(x, p(2)); }

// Wide limits: the reference problems are unbounded.
const ParameterVector kLow = Vec({-1e9, -1e9}), kHigh = Vec({1e9, 1e9});

// The method stops when a pass gains less than 0.02 percent, and its
// derivatives are 1 percent central differences. Near the minimum the sum is
// quadratic in the parameter error and Gauss-Newton converges fast, so the
// pass that stops the fit has already landed within a few parts per million
// of the certified sum.
TEST(MarquardtReferenceProblems, ReachTheCertifiedSumsOfSquares) {
  struct Case {
    const char* name;
    const Problem& problem;
    CurveModel::Shape shape;
    ParameterVector start, certifiedParameters;
    double certifiedSum;
  };
  const Case cases[] = {
      {"Misra1a start 1", kMisra1a, Exponential, Vec({500, 1e-4}), Vec({2.3894212918e2, 5.5015643181e-4}),
       1.2455138894e-1},
      {"Misra1a start 2", kMisra1a, Exponential, Vec({250, 5e-4}), Vec({2.3894212918e2, 5.5015643181e-4}),
       1.2455138894e-1},
      {"DanWood start 1", kDanWood, Power, Vec({1, 5}), Vec({7.6886226176e-1, 3.8604055871}), 4.3173084083e-3},
      {"DanWood start 2", kDanWood, Power, Vec({0.7, 4}), Vec({7.6886226176e-1, 3.8604055871}), 4.3173084083e-3},
      {"BoxBOD start 2", kBoxBod, Exponential, Vec({100, 0.75}), Vec({2.1380940889e2, 5.4723748542e-1}),
       1.1680088766e3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    CurveModel model(c.problem.x, c.shape);
    // The data as transcribed give the certified sum at the certified values.
    EXPECT_DIGITS(SumOfSquares(model, c.certifiedParameters, c.problem.y), c.certifiedSum, 8);
    OptimiserMemory memory;
    ParameterVector b = c.start;
    const Outcome out = Fit(model, memory, 2, b, kLow, kHigh, c.problem.y);
    EXPECT_CLOSE(out.s, c.certifiedSum, 1e-5);
    EXPECT_LT(out.flag, 0);
    // The returned sum belongs to the returned parameters.
    EXPECT_CLOSE(SumOfSquares(model, b, c.problem.y), out.s, 1e-12);
  }
}

// A straight line is fitted exactly by one undamped Gauss-Newton step.
class LineFit : public ::testing::Test {
 protected:
  std::vector<double> x{0, 1, 2, 3, 4, 5};
  std::vector<double> y{1.5, 3.5, 5.5, 7.5, 9.5, 11.5};  // 1.5 + 2 x
  CurveModel model{x, [](double x, const ParameterVector& p) { return p(1) + p(2) * x; }};
  OptimiserMemory memory;
  Field count = Field(0.0);

  // One pass from b, as the first pass of a fit.
  void Pass(ParameterVector& b, double& s, int& flag, int& marquardts, const ParameterVector& low,
            const ParameterVector& high, double spread = 1.0) {
    MarquardtContext ctx{model, memory, spread, count};
    FitCurve z = NewFitCurve();
    int n = static_cast<int>(x.size()), started = 0;
    MarquardtPass(ctx, 2, b, n, z, Target(y), s, started, flag, marquardts, low, high, Variance(y));
  }
};

TEST_F(LineFit, AnUndampedStepThatImprovesLeavesLambdaAlone) {
  memory.Lambda = 7;
  ParameterVector b = Vec({1, 1});
  double s = 0;
  int flag = 0, marquardts = 0;
  Pass(b, s, flag, marquardts, kLow, kHigh);
  EXPECT_EQ(marquardts, 0);
  EXPECT_EQ(memory.Lambda, 7);
  EXPECT_EQ(flag, 1);
  EXPECT_CLOSE(b(1), 1.5, 1e-9);
  EXPECT_CLOSE(b(2), 2.0, 1e-9);
}

TEST_F(LineFit, AFirstRejectionStartsLambdaAfreshAndAnAcceptedPassHalvesIt) {
  memory.Lambda = 123;  // left by an earlier fit; must not carry over
  // The first attempt (evaluation 1 + 4 probes + 1) comes out far off.
  model.disturb = [](int call, FitCurve& c, int n) {
    if (call == 6)
      for (int l = 1; l <= n; ++l) c[l] += 100;
  };
  ParameterVector b = Vec({1, 1});
  double s = 0;
  int flag = 0, marquardts = 0;
  Pass(b, s, flag, marquardts, kLow, kHigh);
  EXPECT_EQ(marquardts, 1);
  EXPECT_DOUBLE_EQ(memory.Lambda, 0.00005);
  EXPECT_EQ(count.value(), 3);
  // The damped step of the scaled system is still close to the exact one.
  EXPECT_CLOSE(b(1), 1.5, 1e-3);
  EXPECT_CLOSE(b(2), 2.0, 1e-3);
}

TEST_F(LineFit, AnAttemptThatOnlyEqualsTheSumIsRejected) {
  const std::vector<double> start{2, 3, 4, 5, 6, 7};  // the line 2 + x
  model.disturb = [&](int call, FitCurve& c, int n) {
    if (call == 6)
      for (int l = 1; l <= n; ++l) c[l] = start[l - 1];
  };
  ParameterVector b = Vec({2, 1});
  double s = 0;
  int flag = 0, marquardts = 0;
  Pass(b, s, flag, marquardts, kLow, kHigh);
  EXPECT_EQ(marquardts, 1);
}

TEST_F(LineFit, AStepPastItsBoundKeepsThatParameterWhileTheOtherMoves) {
  ParameterVector b = Vec({1, 1});
  double s = 0;
  int flag = 0, marquardts = 0;
  Pass(b, s, flag, marquardts, Vec({0, 0}), Vec({1.2, 10}));
  EXPECT_EQ(b(1), 1.0);  // the exact step would take it to 1.5
  EXPECT_NE(b(2), 1.0);
  EXPECT_EQ(memory.StepVector(1), 0.0);
  EXPECT_LT(s, 6 * 6.25);  // below the start, where every residual was 0.5 + x
}

TEST_F(LineFit, AParameterAtZeroIsProbedByTheSpreadOfTheTarget) {
  ParameterVector b = Vec({0, 3});
  double s = 0;
  int flag = 0, marquardts = 0;
  Pass(b, s, flag, marquardts, kLow, kHigh, 0.25);
  ASSERT_GE(model.seen.size(), 5u);
  // seen[0] is the first evaluation; then +h and -h of parameter 1, of 2.
  EXPECT_EQ(model.seen[1](1), 0.25);
  EXPECT_EQ(model.seen[2](1), -0.25);
  EXPECT_DOUBLE_EQ(model.seen[3](2), 3.03);
  EXPECT_DOUBLE_EQ(model.seen[4](2), 2.97);
}

TEST_F(LineFit, AtTheLambdaCeilingThePassReturnsTheLastRejectedCandidate) {
  // Every attempt is far off: the damping factor stays at its clamp of 10,
  // so Lambda runs 1e-4, 1e-3, ... 1e3 and stops at 1e4, nine rejections.
  model.disturb = [](int call, FitCurve& c, int n) {
    if (call >= 6)
      for (int l = 1; l <= n; ++l) c[l] += 1000;
  };
  ParameterVector b = Vec({1, 1});
  double s = 0;
  int flag = 0, marquardts = 0;
  Pass(b, s, flag, marquardts, kLow, kHigh);
  EXPECT_EQ(flag, -2);
  EXPECT_EQ(marquardts, 9);
  EXPECT_EQ(count.value(), 10);
  EXPECT_DOUBLE_EQ(memory.Lambda, 1000);
  EXPECT_NE(b(1), 1.0);       // moved by the most damped step, not the start
  EXPECT_GT(s, 6 * 1000.0 * 1000.0 * 0.9);  // the sum of that rejected attempt
}

TEST(MarquardtFrozenParameter, ANoInfluenceParameterKeepsItsValueWhileTheOtherFits) {
  std::vector<double> x{1, 2, 3, 4}, y{2, 4, 6, 8};
  CurveModel model(x, [](double x, const ParameterVector& p) { return p(1) * x + 0 * p(2); });
  OptimiserMemory memory;
  ParameterVector b = Vec({1, 5});
  const Outcome out = Fit(model, memory, 2, b, kLow, kHigh, y);
  EXPECT_EQ(b(2), 5.0);
  EXPECT_CLOSE(b(1), 2.0, 1e-9);
  EXPECT_EQ(out.flag, -1);  // an exact fit falls below the floor
}

TEST(MarquardtFaults, NoParametersFailAfterTwentySixEvaluations) {
  std::vector<double> x{1, 2, 3}, y{1, 2, 4};
  CurveModel model(x, [](double x, const ParameterVector&) { return x; });
  OptimiserMemory memory;
  ParameterVector b;
  try {
    Fit(model, memory, 0, b, kLow, kHigh, y);
    FAIL() << "a pass over no parameters must fail";
  } catch (const RunError& e) {
    EXPECT_EQ(e.kind(), ErrorKind::DivisionByZero);
  }
  EXPECT_EQ(model.calls, 26);
}

TEST(MarquardtFaults, AFlatTargetMatchedExactlyIsADivisionByZero) {
  std::vector<double> x{1, 2, 3}, y{2, 2, 2};
  CurveModel model(x, [](double, const ParameterVector& p) { return p(1); });
  OptimiserMemory memory;
  ParameterVector b = Vec({2});
  try {
    Fit(model, memory, 1, b, kLow, kHigh, y);
    FAIL() << "a flat target matched exactly has no relative improvement";
  } catch (const RunError& e) {
    EXPECT_EQ(e.kind(), ErrorKind::DivisionByZero);
  }
}

TEST(MarquardtMemory, ASecondFitStartsFromItsValuesPlusTheLastStepOfTheFirst) {
  CurveModel model(kMisra1a.x, Exponential);
  OptimiserMemory memory;
  ParameterVector b = Vec({250, 5e-4});
  Fit(model, memory, 2, b, kLow, kHigh, kMisra1a.y);
  const ParameterVector lastStep = memory.StepVector;
  ASSERT_NE(lastStep(1), 0.0);
  model.seen.clear();
  ParameterVector again = Vec({240, 5.5e-4});
  Fit(model, memory, 2, again, kLow, kHigh, kMisra1a.y);
  EXPECT_EQ(model.seen[0](1), 240 + lastStep(1));
  EXPECT_EQ(model.seen[0](2), 5.5e-4 + lastStep(2));
}

}  // namespace
}  // namespace voltrix
