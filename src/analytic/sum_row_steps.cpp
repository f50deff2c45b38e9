#include <algorithm>
#include <cmath>

#include "analytic/constants.h"
#include "analytic/row_transforms.h"
#include "analytic/run_steps.h"
#include "model/checked.h"

namespace voltrix {

namespace {

int PointCount(const Experiment& e) { return static_cast<int>(e.NData.value()); }
int TotalRow(const Experiment& e) { return static_cast<int>(e.NTotalRow.value()); }

// Steady-state flux to a sphere, D C / r, switched on past the start
// potential and off beyond the standard potential: the sweep's radial part.
void AddSphericalTerm(const Experiment& e, const XAxis& X, SimRows& Y, double currentScale) {
  double* sum = Y.row(TotalRow(e));
  const double* x = X.data();
  for (int r = 1; r <= Count(e.NCharge); ++r) {
    const double n = e.NEL(r);
    const double flux = Div(((currentScale * n) * e.D(2 * r - 1)) * e.C(2 * r - 1), e.radius);
    for (int i = 1; i <= PointCount(e); ++i) {
      const double rise = 1 - Exp(n * e.fRT * (x[i] - e.Estart));
      const double fall = 1 + Exp(n * e.fRT * (x[i] - e.Eze(r)));
      sum[i] = Checked(sum[i] + Div(flux * rise, fall));
    }
  }
}

// With one reaction the sum row is a copy of row 1, so its transform is
// too: the O(N^2) convolution runs once instead of twice.
void SemiDifferentiateRows(const Experiment& e, const XAxis& X, SimRows& Y) {
  const int n = PointCount(e), total = TotalRow(e);
  const bool sumIsRowOne = total == 2 && std::equal(Y.row(1) + 1, Y.row(1) + n + 1, Y.row(total) + 1);
  for (int row = 1; row <= total; ++row) {
    if (row == total && sumIsRowOne)
      std::copy(Y.row(1) + 1, Y.row(1) + n + 1, Y.row(total) + 1);
    else
      SemiDifferentiateRow(X.data(), Y.row(row), n);
  }
}

}  // namespace

void SumReactionRows(const Experiment& e, SimRows& Y) {
  double* sum = Y.row(TotalRow(e));
  for (int r = 1; r <= Count(e.NCharge); ++r) {
    const double* row = Y.row(r);
    for (int i = 1; i <= PointCount(e); ++i) sum[i] = Checked(sum[i] + row[i]);
  }
}

void ApplySumRowSteps(const Experiment& e, const XAxis& X, SimRows& Y, double currentScale) {
  const int code = static_cast<int>(e.Code.value());
  const int technique = static_cast<int>(e.Technique.value());
  // A sweep's memory of the past: the closed forms are step responses.
  if ((code >= 11 && code <= 16) || code == 18) SemiDifferentiateRows(e, X, Y);
  if (code >= 12 && code <= 16) AddSphericalTerm(e, X, Y, currentScale);
  if (code == 17)
    for (int row = 1; row <= TotalRow(e); ++row) DifferentiateRow(X.data(), Y.row(row), PointCount(e));
  if (static_cast<int>(e.Mechanism.value()) == 7) {
    double* sum = Y.row(TotalRow(e));
    const double* cat = Y.row(kCatalyticRow);
    if (technique >= 1 && technique <= 3) {
      for (int i = 1; i <= PointCount(e); ++i) sum[i] = Checked(sum[i] + cat[i]);
    } else if (technique == 4 || technique == 5) {
      const double catRoot = CatalyticRoot(e);
      for (int i = 1; i <= PointCount(e); ++i) sum[i] = Checked((sum[i] * catRoot) / 1.38);
    }
  }
}

void AddChargingCurrent(const Experiment& e, const XAxis& X, SimRows& Y) {
  if (!(e.Cdl > 0)) return;
  const double Q = Checked((e.Cdl * e.ARE) * e.V);
  const double dir = e.dirSign;
  const int technique = static_cast<int>(e.Technique.value());
  const int half = static_cast<int>(e.NHalf.value());
  double* sum = Y.row(TotalRow(e));
  const double* x = X.data();
  for (int i = 1; i <= PointCount(e); ++i) {
    if (e.Cycles == 0.5) {
      // A one-way sweep charges at a constant rate; the other techniques
      // charge the layer in proportion to the potential moved so far.
      sum[i] = technique == 1 ? Checked(sum[i] - dir * Q) : Checked(sum[i] + (x[1] - x[i]) * Q);
    } else if (e.Cycles == 1 || e.Cycles == 2) {
      double s = dir;
      if (i > half) s = -dir;
      if (i > 2 * half) s = dir;
      if (i > 3 * half) s = -dir;
      sum[i] = Checked(sum[i] - s * Q);
    }
  }
}

double SumRowExtremes(Experiment& e, const SimRows& Y) {
  const double* sum = Y.row(TotalRow(e));
  double ymax = 0, ymin = 0;
  for (int i = 1; i <= PointCount(e); ++i) {
    if (sum[i] > ymax) ymax = sum[i];
    if (sum[i] < ymin) ymin = sum[i];
  }
  e.Ymax = ymax;
  e.Ymin = ymin;
  return std::fabs(ymin) > std::fabs(ymax) ? ymin : ymax;
}

namespace {
constexpr double kModulus = 199017;
}

double RunNoise::draw() {
  s_ = s_ * 24298 + 99991;
  s_ = (s_ + 1) - std::floor(s_ / kModulus) * kModulus;  // 1 to kModulus
  return s_;
}

double RunNoise::next() {
  const double u = Sqrt(2 * Log(kModulus / draw()));
  return u * std::cos((draw() * kTwoPi) / kModulus);
}

void AddNoise(const Experiment& e, SimRows& Y, double big) {
  if (!(e.Noise > 0) || e.AutoFitFlag) return;
  RunNoise noise(e.NData);
  double* sum = Y.row(TotalRow(e));
  for (int i = 1; i <= PointCount(e); ++i) sum[i] = Checked(sum[i] + ((e.Noise * noise.next()) * big) * 0.0025);
}

}  // namespace voltrix
