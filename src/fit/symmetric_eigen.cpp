#include "fit/symmetric_eigen.h"

#include <cmath>

#include "model/checked.h"

namespace voltrix {

namespace {

constexpr int kSweeps = 100;

double OffDiagonalSquares(const SquareMatrix& a) {
  double sum = 0;
  for (std::size_t p = 0; p < a.size(); ++p)
    for (std::size_t q = p + 1; q < a.size(); ++q) sum += a[p][q] * a[p][q];
  return sum;
}

double DiagonalSquares(const SquareMatrix& a) {
  double sum = 0;
  for (std::size_t p = 0; p < a.size(); ++p) sum += a[p][p] * a[p][p];
  return sum;
}

// The rotation in the (p, q) plane that zeroes a[p][q], applied to a and v.
void Rotate(SquareMatrix& a, SquareMatrix& v, std::size_t p, std::size_t q) {
  const double theta = (a[q][q] - a[p][p]) / (2.0 * a[p][q]);
  const double t = (theta >= 0 ? 1.0 : -1.0) / (std::fabs(theta) + std::sqrt(theta * theta + 1.0));
  const double c = 1.0 / std::sqrt(t * t + 1.0);
  const double s = t * c;
  const std::size_t n = a.size();
  for (std::size_t r = 0; r < n; ++r) {
    const double arp = a[r][p], arq = a[r][q];
    a[r][p] = c * arp - s * arq;
    a[r][q] = s * arp + c * arq;
  }
  for (std::size_t r = 0; r < n; ++r) {
    const double apr = a[p][r], aqr = a[q][r];
    a[p][r] = c * apr - s * aqr;
    a[q][r] = s * apr + c * aqr;
  }
  for (std::size_t r = 0; r < n; ++r) {
    const double vrp = v[r][p], vrq = v[r][q];
    v[r][p] = c * vrp - s * vrq;
    v[r][q] = s * vrp + c * vrq;
  }
}

}  // namespace

SymmetricEigen DecomposeSymmetric(SquareMatrix a) {
  const std::size_t n = a.size();
  for (const auto& row : a)
    if (row.size() != n) Raise(ErrorKind::SubscriptOutOfRange);
  SymmetricEigen out;
  out.vectors.assign(n, std::vector<double>(n, 0.0));
  for (std::size_t i = 0; i < n; ++i) out.vectors[i][i] = 1.0;
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    if (!(OffDiagonalSquares(a) > 1e-32 * DiagonalSquares(a))) break;
    for (std::size_t p = 0; p < n; ++p)
      for (std::size_t q = p + 1; q < n; ++q)
        if (a[p][q] != 0.0) Rotate(a, out.vectors, p, q);
  }
  for (std::size_t i = 0; i < n; ++i) out.values.push_back(Checked(a[i][i]));
  return out;
}

}  // namespace voltrix
