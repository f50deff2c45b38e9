#include "fit/fit_statistics.h"

#include <cmath>

#include "fit/student_t.h"
#include "model/checked.h"

namespace voltrix {

namespace {

// The optimiser freezes a parameter whose diagonal of J'J is not above this.
constexpr double kNoInfluence = 1e-20;
// An eigenvalue below this fraction of the largest one is rounding.
constexpr double kRoundingFloor = 1e-16;

SquareMatrix NormalMatrix(const SquareMatrix& columns, int points) {
  const std::size_t k = columns.size();
  SquareMatrix a(k, std::vector<double>(k, 0.0));
  for (std::size_t i = 0; i < k; ++i)
    for (std::size_t j = i; j < k; ++j) {
      double sum = 0;
      for (int l = 1; l <= points; ++l) sum += columns[i][l] * columns[j][l];
      a[i][j] = a[j][i] = Checked(sum);
    }
  return a;
}

// Positions of the parameters the curve depends on.
std::vector<std::size_t> DeterminedPositions(const SquareMatrix& a) {
  std::vector<std::size_t> out;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (a[i][i] > kNoInfluence) out.push_back(i);
  return out;
}

SquareMatrix UnitDiagonal(const SquareMatrix& a, const std::vector<std::size_t>& kept) {
  SquareMatrix r(kept.size(), std::vector<double>(kept.size(), 0.0));
  for (std::size_t x = 0; x < kept.size(); ++x)
    for (std::size_t y = 0; y < kept.size(); ++y)
      r[x][y] = a[kept[x]][kept[y]] / std::sqrt(a[kept[x]][kept[x]] * a[kept[y]][kept[y]]);
  return r;
}

double Largest(const std::vector<double>& v) {
  double m = 0;
  for (double x : v) m = std::fmax(m, x);
  return m;
}

// The inverse from the eigen decomposition; eigenvalues lost in rounding
// count at the floor, so a singular matrix still shows its correlations.
SquareMatrix InverseOf(const SymmetricEigen& e) {
  const std::size_t n = e.values.size();
  const double floor = Largest(e.values) * kRoundingFloor;
  SquareMatrix inv(n, std::vector<double>(n, 0.0));
  for (std::size_t i = 0; i < n; ++i) {
    const double lambda = std::fmax(e.values[i], floor);
    for (std::size_t r = 0; r < n; ++r)
      for (std::size_t c = 0; c < n; ++c) inv[r][c] += Div(e.vectors[r][i] * e.vectors[c][i], lambda);
  }
  return inv;
}

void ConditionOf(const SymmetricEigen& e, FitStatistics& st) {
  if (e.values.empty()) return;
  double low = e.values[0];
  for (double x : e.values) low = std::fmin(low, x);
  const double high = Largest(e.values);
  st.singular = !(low > high * kRoundingFloor);
  st.conditionNumber = st.singular ? 1.0 / kRoundingFloor : high / low;
}

void SpreadOfEach(const SquareMatrix& a, const std::vector<std::size_t>& kept, const SquareMatrix& inv,
                  FitStatistics& st) {
  for (std::size_t x = 0; x < kept.size(); ++x) {
    ParameterSpread& p = st.spread[kept[x]];
    const double variance = st.reducedChiSquare * inv[x][x] / a[kept[x]][kept[x]];
    p.standardError = Sqrt(Checked(variance));
    p.low = Checked(p.value - st.tFactor * p.standardError);
    p.high = Checked(p.value + st.tFactor * p.standardError);
    p.relativeError = p.value == 0.0 ? 0.0 : p.standardError / std::fabs(p.value);
  }
}

void CorrelationsOf(const std::vector<std::size_t>& kept, const SquareMatrix& inv, FitStatistics& st) {
  const std::size_t k = st.spread.size();
  st.correlation.assign(k, std::vector<double>(k, 0.0));
  for (std::size_t i = 0; i < k; ++i) st.correlation[i][i] = 1.0;
  for (std::size_t x = 0; x < kept.size(); ++x)
    for (std::size_t y = 0; y < kept.size(); ++y) {
      if (x == y) continue;
      const double r = inv[x][y] / std::sqrt(inv[x][x] * inv[y][y]);
      st.correlation[kept[x]][kept[y]] = r;
      if (y > x && std::fabs(r) > std::fabs(st.largestCorrelation)) {
        st.largestCorrelation = r;
        st.mostCorrelatedA = static_cast<int>(kept[x]);
        st.mostCorrelatedB = static_cast<int>(kept[y]);
      }
    }
}

}  // namespace

FitStatistics SpreadOfFit(const SquareMatrix& columns, const std::vector<double>& values, double sumOfSquares,
                          int points) {
  const int k = static_cast<int>(columns.size());
  if (values.size() != columns.size()) Raise(ErrorKind::SubscriptOutOfRange);
  for (const auto& c : columns)
    if (static_cast<int>(c.size()) <= points) Raise(ErrorKind::SubscriptOutOfRange);
  if (points <= k) Raise(ErrorKind::InvalidArgument, "More parameters than points: nothing is left to judge the fit by");
  FitStatistics st;
  st.points = points;
  st.parameters = k;
  st.sumOfSquares = sumOfSquares;
  st.reducedChiSquare = Div(sumOfSquares, points - k);
  st.tFactor = StudentTQuantile(0.975, points - k);
  st.spread.resize(columns.size());
  for (std::size_t i = 0; i < values.size(); ++i) st.spread[i].value = values[i];
  const SquareMatrix a = NormalMatrix(columns, points);
  const std::vector<std::size_t> kept = DeterminedPositions(a);
  for (std::size_t i = 0; i < st.spread.size(); ++i) st.spread[i].determined = false;
  for (std::size_t i : kept) st.spread[i].determined = true;
  const SymmetricEigen e = DecomposeSymmetric(UnitDiagonal(a, kept));
  ConditionOf(e, st);
  const SquareMatrix inv = InverseOf(e);
  SpreadOfEach(a, kept, inv, st);
  CorrelationsOf(kept, inv, st);
  return st;
}

}  // namespace voltrix
