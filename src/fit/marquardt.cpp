#include "fit/marquardt.h"

#include <array>
#include <cmath>

#include "model/checked.h"
#include "model/errors.h"

namespace voltrix {

namespace {

constexpr double kRelativeProbeStep = 0.01;
constexpr double kFreezeDiagonal = 1e-20;
constexpr double kPivotFloor = 1e-15;
constexpr double kSumFloor = 1e-10;  // times the variance of the target
constexpr double kFirstLambda = 0.0001;
constexpr double kLambdaCeiling = 1000;
constexpr double kConvergedImprovement = 0.0002;

// Columns 1 to K the normal matrix, K + 1 the right-hand side, K + 2 the
// scale factors.
using Matrix = std::array<std::array<double, kMaxFitted + 3>, kMaxFitted + 1>;

// A sum of finite terms that is no longer finite has overflowed somewhere.
double CheckedSum(double x) {
  if (!std::isfinite(x)) Raise(ErrorKind::Overflow);
  return x;
}

void CheckCounts(const MarquardtContext& ctx, int k, int n) {
  if (k < 0 || k > kMaxFitted || n < 0 || n > ctx.pointLimit) Raise(ErrorKind::SubscriptOutOfRange);
}

// The column of d(curve)/d(parameter j), one per parameter, points 0 to the
// limit.
class Jacobian {
 public:
  Jacobian(int k, int pointLimit)
      : points_(static_cast<std::size_t>(pointLimit) + 1), v_(static_cast<std::size_t>(k + 1) * points_, 0.0) {}
  double* column(int j) { return v_.data() + static_cast<std::size_t>(j) * points_; }

 private:
  std::size_t points_;
  std::vector<double> v_;
};

// Central differences at CandidateVector, 1 percent of each value (the spread
// of the target for a value at 0, so the step has the curve's units).
void ComputeDerivatives(MarquardtContext& ctx, int k, int& n, Jacobian& jac) {
  ParameterVector& candidate = ctx.memory.CandidateVector;
  std::vector<ParameterVector> probes;
  ParameterVector h;
  for (int j = 1; j <= k; ++j) {
    const double v = candidate(j);
    h(j) = ProbeStep(v, ctx.dataSpread);
    candidate(j) = Checked(v + h(j));
    probes.push_back(candidate);
    candidate(j) = Checked(v - h(j));
    probes.push_back(candidate);
    candidate(j) = v;
  }
  std::vector<FitCurve> curves(probes.size());
  std::vector<int> counts(probes.size(), n);
  ctx.model.Probes(probes, curves, counts);
  for (int j = 1; j <= k; ++j) {
    const FitCurve& plus = curves[2 * (j - 1)];
    const FitCurve& minus = curves[2 * (j - 1) + 1];
    double* column = jac.column(j);
    n = counts[2 * (j - 1)];
    CheckCounts(ctx, k, n);
    for (int l = 1; l <= n; ++l) column[l] = plus[l];
    n = counts[2 * (j - 1) + 1];
    CheckCounts(ctx, k, n);
    const double width = Checked(h(j) + h(j));
    if (n >= 1 && width == 0.0) Raise(ErrorKind::DivisionByZero);
    for (int l = 1; l <= n; ++l) column[l] = CheckedSum((column[l] - minus[l]) / width);
  }
}

void KeepDerivatives(int k, int n, Jacobian& jac, std::vector<std::vector<double>>& kept) {
  kept.assign(static_cast<std::size_t>(k), {});
  for (int j = 1; j <= k; ++j) kept[j - 1].assign(jac.column(j), jac.column(j) + n + 1);
}

// J'J and J'(Y - Z); a parameter without measurable influence is frozen for
// the pass (its row and column become those of the identity).
void BuildNormalEquations(int k, int n, Jacobian& jac, const FitCurve& target, const FitCurve& calculated,
                          Matrix& normal) {
  for (int i = 1; i <= k; ++i) {
    const double* ji = jac.column(i);
    double rhs = 0;
    for (int l = 1; l <= n; ++l) rhs += (target[l] - calculated[l]) * ji[l];
    normal[i][k + 1] = CheckedSum(rhs);
    for (int j = i; j <= k; ++j) {
      const double* jj = jac.column(j);
      double sum = 0;
      for (int l = 1; l <= n; ++l) sum += ji[l] * jj[l];
      normal[i][j] = CheckedSum(sum);
    }
    if (!(normal[i][i] > kFreezeDiagonal)) {
      for (int j = 1; j <= k; ++j) normal[i][j] = normal[j][i] = 0;
      normal[i][k + 1] = 0;
      normal[i][i] = 1;
    }
  }
}

// Divides by the roots of the diagonal so that the diagonal becomes 1.
void ScaleNormalEquations(int k, Matrix& normal) {
  for (int i = 1; i <= k; ++i) normal[i][k + 2] = Sqrt(normal[i][i]);
  for (int i = 1; i <= k; ++i) {
    normal[i][k + 1] = Div(normal[i][k + 1], normal[i][k + 2]);
    for (int j = i; j <= k; ++j) {
      normal[i][j] = Div(normal[i][j], Checked(normal[i][k + 2] * normal[j][k + 2]));
      normal[j][i] = normal[i][j];
    }
  }
}

void CopySystem(int k, const Matrix& normal, Matrix& solve, double lambda) {
  for (int i = 1; i <= k; ++i)
    for (int j = 1; j <= k + 1; ++j) solve[i][j] = normal[i][j];
  for (int i = 1; i <= k; ++i) solve[i][i] = Checked(solve[i][i] + lambda);
}

// Gauss-Jordan without pivot search; a vanishing pivot is replaced by the
// floor so that a singular system still gives a step.
void Eliminate(int k, Matrix& solve) {
  for (int p = 1; p <= k; ++p) {
    for (int c = p + 1; c <= k + 1; ++c) {
      if (std::fabs(solve[p][p]) <= kPivotFloor) solve[p][p] = kPivotFloor;
      solve[p][c] = Div(solve[p][c], solve[p][p]);
    }
    for (int r = 1; r <= k; ++r) {
      if (r == p) continue;
      for (int c = p + 1; c <= k + 1; ++c) solve[r][c] = Checked(solve[r][c] - solve[r][p] * solve[p][c]);
    }
  }
}

void Unscale(int k, const Matrix& solve, const Matrix& normal, ParameterVector& step) {
  for (int i = 1; i <= k; ++i) step(i) = Div(solve[i][k + 1], normal[i][k + 2]);
}

}  // namespace

double ProbeStep(double value, double dataSpread) {
  const double h = kRelativeProbeStep * std::fabs(value);
  return h == 0.0 ? dataSpread : h;
}

void FitModel::Probes(const std::vector<ParameterVector>& probes, std::vector<FitCurve>& curves,
                      std::vector<int>& counts) {
  for (std::size_t p = 0; p < probes.size(); ++p) {
    if (curves[p].size() != static_cast<std::size_t>(kMaxPoints + 1)) curves[p] = NewFitCurve();
    Objective(probes[p], counts[p], curves[p]);
  }
}

double LargerOf(double a, double b) { return a > b ? a : b; }
double SmallerOf(double a, double b) { return a < b ? a : b; }

void EvaluateCandidate(MarquardtContext& ctx, int k, int& n, ParameterVector& candidate,
                       const ParameterVector& base, ParameterVector& step, double& sumOfSquares, FitCurve& calculated,
                       const FitCurve& target, const ParameterVector& upper, const ParameterVector& lower) {
  CheckCounts(ctx, k, n);
  for (int i = 1; i <= k; ++i) {
    const double t = Checked(base(i) + step(i));
    if (t > upper(i) || t < lower(i)) step(i) = 0;
    candidate(i) = base(i) + step(i);
  }
  ctx.model.Objective(candidate, n, calculated);
  CheckCounts(ctx, k, n);
  double sum = 0;
  for (int l = 1; l <= n; ++l) {
    const double d = calculated[l] - target[l];
    sum += d * d;
  }
  sumOfSquares = CheckedSum(sum);
  ctx.objectiveCount = ctx.objectiveCount + 1;
}

void MarquardtPass(MarquardtContext& ctx, int k, ParameterVector& b, int& n, FitCurve& calculated,
                   const FitCurve& target, double& s, int& started, int& convergenceFlag, int& marquardtCount,
                   const ParameterVector& lower, const ParameterVector& upper, double variance) {
  CheckCounts(ctx, k, n);
  OptimiserMemory& mem = ctx.memory;
  ParameterVector& candidate = mem.CandidateVector;
  ParameterVector& step = mem.StepVector;
  const double floor = Checked(variance * kSumFloor);
  double trial = s;  // S' of the latest attempt
  auto writeBack = [&] {
    for (int i = 1; i <= k; ++i) b(i) = candidate(i);
    s = trial;
  };

  if (started == 0) {
    for (int i = 1; i <= k; ++i) candidate(i) = b(i);
    EvaluateCandidate(ctx, k, n, candidate, b, step, trial, calculated, target, upper, lower);
    s = trial;
    if (s < floor) {
      convergenceFlag = -1;
      return writeBack();
    }
    started = 1;
  }

  Jacobian jac(k, ctx.pointLimit);
  ComputeDerivatives(ctx, k, n, jac);
  if (ctx.lastDerivatives) KeepDerivatives(k, n, jac, *ctx.lastDerivatives);
  Matrix normal{}, solve{};
  BuildNormalEquations(k, n, jac, target, calculated, normal);
  ScaleNormalEquations(k, normal);
  CopySystem(k, normal, solve, 0.0);

  int attempts = 0;
  double factor = 0;
  for (;;) {
    Eliminate(k, solve);
    Unscale(k, solve, normal, step);
    EvaluateCandidate(ctx, k, n, candidate, b, step, trial, calculated, target, upper, lower);
    if (s < floor) {  // a sum that fell below the floor in the pass before
      convergenceFlag = -1;
      return writeBack();
    }
    factor = LargerOf(2, SmallerOf(10, Div(trial, s)));
    if (s > trial) break;  // accepted; equal sums are no improvement
    if (attempts > 0) mem.Lambda = Checked(mem.Lambda * factor);
    if (marquardtCount == 0) mem.Lambda = kFirstLambda;  // nothing carries over from an earlier fit
    CopySystem(k, normal, solve, mem.Lambda);
    ++marquardtCount;
    ++attempts;
    if (!(mem.Lambda <= kLambdaCeiling)) break;
  }

  if (marquardtCount != 0) mem.Lambda = Div(mem.Lambda, factor);
  // A pass over no parameters has nothing to average its step over: it fails
  // like the division by the parameter count it is.
  if (k == 0) Raise(ErrorKind::DivisionByZero);
  const double improvement = Div(s - trial, Checked(s + trial));
  convergenceFlag = improvement < kConvergedImprovement ? -2 : 1;
  writeBack();
}

}  // namespace voltrix
