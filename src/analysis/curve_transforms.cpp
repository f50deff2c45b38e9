#include "analysis/curve_transforms.h"

#include <vector>

#include "analytic/row_transforms.h"
#include "model/checked.h"

namespace voltrix {

namespace {

// Works on a copy and writes back only when every point came out finite, so
// an overflow leaves the curve as it was rather than half scaled.
template <class Get, class Put>
void ScalePoints(long n, double factor, Get get, Put put) {
  std::vector<double> scaled;
  for (long i = 1; i <= n; ++i) scaled.push_back(Checked(get(i) * factor));
  for (long i = 1; i <= n; ++i) put(i, scaled[i - 1]);
}

}  // namespace

void ScaleX(const Experiment& e, CurveStore& s, double factor) {
  ScalePoints(
      static_cast<long>(e.NData), factor, [&](long i) { return s.XData(i); },
      [&](long i, double v) { s.XData(i) = v; });
}

void ScaleY(const Experiment& e, CurveStore& s, double factor) {
  const long row = static_cast<long>(e.CurNo);
  ScalePoints(
      static_cast<long>(e.NData), factor, [&](long i) { return s.YData(row, i); },
      [&](long i, double v) { s.YData(row, i) = v; });
}

void SemiIntegrate(const Experiment& e, CurveStore& s) {
  Integrate(e, s.XData, s.YData);
  SemiDifferentiate(e, s.XData, s.YData);
}

}  // namespace voltrix
