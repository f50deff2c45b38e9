#include "analysis/halfwave_finder.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "model/checked.h"
#include "model/number_format.h"

namespace voltrix {

void FindHalfWave(const Experiment& e, const CurveStore& s, const LineSink& print) {
  const long n = static_cast<long>(e.NData);
  std::vector<double> a(kMaxPoints + 1, 0.0);
  std::optional<double> halfWave;  // lives through the whole command
  for (int q = 1; q <= Count(e.NCurves); ++q) {
    for (long i = 1; i <= n; ++i) a.at(i) = std::fabs(s.YData(q, i));
    double hi = 0, lo = 0;
    if (n >= 1) {
      hi = *std::max_element(a.begin() + 1, a.begin() + n + 1);
      lo = *std::min_element(a.begin() + 1, a.begin() + n + 1);
    }
    const double height = Checked(hi - lo);
    const double half = height / 2;
    for (long i = 1; i <= n; ++i) {
      const double rise = a[i] - lo;
      if (rise >= 0.95 * half && rise <= 1.05 * half) {
        halfWave = s.XData(i);
        break;
      }
    }
    PrintLine line;
    line.text("Peak ").number(q).text(": ").zone().text("E1/2 = ");
    if (halfWave) line.number(*halfWave);
    line.zone().text("Id = ").number(height);
    print(line.str());
  }
}

}  // namespace voltrix
