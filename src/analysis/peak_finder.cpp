#include "analysis/peak_finder.h"

#include <cmath>
#include <string>
#include <vector>

#include "model/checked.h"
#include "model/number_format.h"

namespace voltrix {

namespace {

struct ScanRange {
  long from, to;
};

// One sweep is one range; a cycle is searched on each side of the turning
// point, leaving out the four points around it where the curve folds back.
std::vector<ScanRange> ScanRanges(const Experiment& e, long start, long end) {
  if (e.Cycles == 0.5) return {{start + 4, end - 4}};
  const long half = static_cast<long>(e.NHalf);
  return {{start + 4, half - 4}, {half + 4, end - 4}};
}

bool IsPeak(const CurveStore& s, int q, long i, double threshold) {
  auto a = [&](long k) { return std::fabs(s.YData(q, k)); };
  return a(i - 2) > a(i - 4) && a(i + 2) > a(i + 4) &&  //
         a(i - 1) > a(i - 2) && a(i + 1) > a(i + 2) &&  //
         a(i) >= a(i - 1) && a(i) >= a(i + 1) &&        //
         a(i) > threshold;
}

// Returns false once the table is full and a further peak was seen.
bool SearchCurve(const Experiment& e, CurveStore& s, int q, long start, long end) {
  const double threshold = Checked(0.02 * std::fabs(Checked(e.Ymax - e.Ymin)));
  bool complete = true;
  for (const ScanRange& range : ScanRanges(e, start, end)) {
    for (long i = range.from; i <= range.to; ++i) {
      if (!IsPeak(s, q, i, threshold)) continue;
      // The tables hold 20 peaks; a further one is only noted, so that the
      // 20 listed stay the first ones in scan order.
      if (s.PeakCount == kMaxPeaks) {
        complete = false;
        continue;
      }
      ++s.PeakCount;
      s.PeakCurrent(q, s.PeakCount) = s.YData(q, i);
      s.PeakPotential(q, s.PeakCount) = s.XData(i);
    }
  }
  return complete;
}

void PrintPeaks(const CurveStore& s, int q, const LineSink& print) {
  for (int j = 1; j <= s.PeakCount; ++j)
    print(PrintLine()
              .text("Peak ").number(j).text(":").zone()
              .text("Ep = ").number(s.PeakPotential(q, j)).zone()
              .text("Ip = ").number(s.PeakCurrent(q, j))
              .str());
}

// The ratio takes in the current at the switching point, an empirical
// correction for the decay of the forward wave under the reverse peak.
void PrintReversibility(const Experiment& e, const CurveStore& s, int q, const LineSink& print) {
  const double ip1 = s.PeakCurrent(q, 1), ip2 = s.PeakCurrent(q, 2);
  const double switching = s.YData(q, static_cast<long>(e.NHalf));
  const double ratio = Checked(std::fabs(Div(ip2, ip1)) + 0.485 * std::fabs(Div(switching, ip1)) + 0.08);
  print(PrintLine().text("I pc/I pa = ").number(ratio).str());
  const double separation = Checked(s.PeakPotential(q, 2) - s.PeakPotential(q, 1));
  print(PrintLine().text("Ep2 - Ep1 = ").number(separation).str());
}

double Area(const Experiment& e, const CurveStore& s, int q, long start, long end) {
  double sum = 0;
  if (e.Cycles == 0.5) {
    for (long k = start; k <= end; ++k) sum += std::fabs(s.YData(q, k));
  } else {
    // The turning point stands in both sums and cancels.
    const long half = static_cast<long>(e.NHalf);
    for (long k = start; k <= half; ++k) sum += s.YData(q, k);
    for (long k = half; k <= end; ++k) sum -= s.YData(q, k);
  }
  return Checked(Checked(sum) * e.Estep);
}

}  // namespace

void FindPeaks(const Experiment& e, CurveStore& s, long start, long end, const LineSink& print) {
  for (int q = 1; q <= Count(e.NCurves); ++q) {
    print(PrintLine().text("Curve ").number(q).text(":").str());
    for (int j = 1; j <= kMaxPeaks; ++j) {
      s.PeakPotential(q, j) = 0;
      s.PeakCurrent(q, j) = 0;
    }
    s.PeakCount = 0;
    const bool complete = SearchCurve(e, s, q, start, end);
    PrintPeaks(s, q, print);
    if (!complete)
      print("More than 20 peaks on this curve: only the first 20 are listed.");
    if (e.Technique == 1 && s.PeakCount == 2 && e.Cycles == 1) PrintReversibility(e, s, q, print);
    print(PrintLine().text("Peak Area = ").zone().number(Area(e, s, q, start, end)).str());
  }
}

}  // namespace voltrix
