#include "analysis/peak_finder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "expect_close.h"

namespace voltrix {
namespace {

// A sweep from 0.3 V down in steps of 5 mV, as the default instrument gives.
struct Sweep {
  Experiment e;
  CurveStore s;
  std::vector<std::string> lines;

  explicit Sweep(int points, double cycles = 0.5) {
    e.NData = points;
    e.First = 1;
    e.Last = points;
    e.NHalf = cycles == 0.5 ? points : points / (2 * cycles);
    e.Cycles = cycles;
    e.NCurves = 1;
    e.Technique = 1;
    e.Estep = 0.005;
    e.Ymin = 0;
    e.Ymax = 1e-4;
    for (int i = 1; i <= points; ++i) s.XData(i) = 0.3 - 0.005 * (i - 1);
  }
  void gaussian(int row, int centre, double height, double width) {
    for (int i = 1; i <= Count(e.NData); ++i)
      s.YData(row, i) += height * std::exp(-0.5 * std::pow((i - centre) / width, 2));
  }
  void find() {
    FindPeaks(e, s, static_cast<long>(e.First) + 2, static_cast<long>(e.Last) - 2,
              [this](const std::string& l) { lines.push_back(l); });
  }
  bool printed(const std::string& prefix) const {
    for (const auto& l : lines)
      if (l.rfind(prefix, 0) == 0) return true;
    return false;
  }
};

TEST(PeakFinder, FindsASinglePeakWithItsPotentialHeightAndArea) {
  Sweep w(121);
  w.gaussian(1, 67, 8.5e-5, 6.0);
  w.find();
  ASSERT_EQ(w.s.PeakCount, 1);
  EXPECT_DOUBLE_EQ(w.s.PeakCurrent(1, 1), 8.5e-5);
  EXPECT_CLOSE(w.s.PeakPotential(1, 1), -0.03, 1e-12);
  // The area of a Gaussian is height * width * sqrt(2 pi), in volts times amperes.
  const double area = 8.5e-5 * 6.0 * 0.005 * std::sqrt(2 * 3.141592653589793);
  ASSERT_EQ(w.lines.size(), 3u);
  EXPECT_EQ(w.lines[0], "Curve  1 :");
  EXPECT_EQ(w.lines[1], "Peak  1 :     Ep = -0.03    Ip =  8.5E-05 ");
  EXPECT_EQ(w.lines[2].substr(0, 14), "Peak Area =   ");
  EXPECT_CLOSE(std::stod(w.lines[2].substr(14)), area, 1e-6);
}

TEST(PeakFinder, NeverReportsTheSixPointsAtEitherEnd) {
  // A peak at point 6 (the first examined is 7) and one at point N - 5.
  Sweep early(60), late(60), inside(60);
  early.gaussian(1, 6, 1e-4, 1.0);
  late.gaussian(1, 55, 1e-4, 1.0);
  inside.gaussian(1, 7, 1e-4, 1.0);
  inside.gaussian(1, 54, 1e-4, 1.0);
  early.find();
  late.find();
  inside.find();
  EXPECT_EQ(early.s.PeakCount, 0);
  EXPECT_EQ(late.s.PeakCount, 0);
  EXPECT_EQ(inside.s.PeakCount, 2);
}

TEST(PeakFinder, FlatTopsAndLevelShouldersFollowTheFourTests) {
  const std::vector<double> twoEqual = {1, 2, 3, 4, 5, 5, 4, 3, 2, 1};
  const std::vector<double> threeEqual = {1, 2, 3, 4, 5, 5, 5, 4, 3, 2, 1};
  const std::vector<double> levelShoulder = {3, 2, 3, 4, 9, 4, 3, 2, 1};  // A(i-4) = A(i-2)
  auto count = [](const std::vector<double>& shape) {
    Sweep w(40);
    w.e.Ymax = 10;
    for (std::size_t k = 0; k < shape.size(); ++k) w.s.YData(1, 15 + k) = shape[k];
    w.find();
    return w.s.PeakCount;
  };
  EXPECT_EQ(count(twoEqual), 2);
  EXPECT_EQ(count(threeEqual), 1);
  EXPECT_EQ(count(levelShoulder), 0);
}

TEST(PeakFinder, ThresholdIsTwoPercentOfThePlottedRange) {
  auto found = [](double height, double ymax) {
    Sweep w(60);
    w.e.Ymax = ymax;
    w.gaussian(1, 30, height, 2.0);
    w.find();
    return w.s.PeakCount;
  };
  EXPECT_EQ(found(0.2, 10), 0);
  EXPECT_EQ(found(0.21, 10), 1);
  EXPECT_EQ(found(0.2, 9), 1);  // a narrower Y range lowers the threshold
}

TEST(PeakFinder, NegativePeaksAreFoundWithTheirSign) {
  Sweep w(121);
  w.gaussian(1, 67, -6.3e-5, 5.0);
  w.find();
  ASSERT_EQ(w.s.PeakCount, 1);
  EXPECT_EQ(w.lines[1], "Peak  1 :     Ep = -0.03    Ip = -6.3E-05 ");
}

// A cycle of 242 points: a forward peak at -0.03 V, a reverse one at 0.03 V.
Sweep CyclicVoltammogram(double technique) {
  Sweep w(242, 1);
  for (int i = 122; i <= 242; ++i) w.s.XData(i) = w.s.XData(243 - i);
  w.e.Technique = technique;
  w.gaussian(1, 67, 1e-4, 6.0);
  w.gaussian(1, 188, -8e-5, 6.0);
  w.s.YData(1, 121) = 2e-5;  // the current where the scan turns
  return w;
}

TEST(PeakFinder, CyclicScanReportsCurrentRatioWithSwitchingTermAndSeparation) {
  Sweep w = CyclicVoltammogram(1);
  w.find();
  ASSERT_EQ(w.s.PeakCount, 2);
  // |-8e-5 / 1e-4| + 0.485 * |2e-5 / 1e-4| + 0.08 = 0.8 + 0.097 + 0.08
  ASSERT_GE(w.lines.size(), 5u);
  EXPECT_EQ(w.lines[3].substr(0, 12), "I pc/I pa = ");
  EXPECT_CLOSE(std::stod(w.lines[3].substr(12)), 0.977, 1e-9);
  EXPECT_EQ(w.lines[4].substr(0, 12), "Ep2 - Ep1 = ");
  EXPECT_CLOSE(std::stod(w.lines[4].substr(12)), 0.06, 1e-9);
}

TEST(PeakFinder, ReversibilityLinesOnlyForASweepWithExactlyTwoPeaks) {
  Sweep pulse = CyclicVoltammogram(4);
  pulse.find();
  EXPECT_EQ(pulse.s.PeakCount, 2);
  EXPECT_FALSE(pulse.printed("I pc/I pa = "));

  Sweep three = CyclicVoltammogram(1);
  three.gaussian(1, 30, 5e-5, 3.0);
  three.find();
  EXPECT_EQ(three.s.PeakCount, 3);
  EXPECT_FALSE(three.printed("I pc/I pa = "));
  EXPECT_FALSE(three.printed("Ep2 - Ep1 = "));
}

TEST(PeakFinder, CyclicAreaIsForwardMinusReverseOverTheWholeRange) {
  Sweep w(242, 1);
  for (int i = 1; i <= 242; ++i) w.s.YData(1, i) = i <= 121 ? 1.0 : -1.0;
  w.find();
  // start 3, turn 121, end 240: (119 * 1) - (1 - 119) = 237 points of 5 mV
  EXPECT_EQ(w.lines.back().substr(0, 14), "Peak Area =   ");
  EXPECT_CLOSE(std::stod(w.lines.back().substr(14)), 237 * 0.005, 1e-12);
}

TEST(PeakFinder, TurningPointNeighbourhoodIsNotSearched) {
  Sweep w(242, 1);
  for (int i = 122; i <= 242; ++i) w.s.XData(i) = w.s.XData(243 - i);
  w.gaussian(1, 119, 1e-4, 1.0);  // within 4 points of the turn at 121
  w.find();
  EXPECT_EQ(w.s.PeakCount, 0);
}

TEST(PeakFinder, MoreThanTwentyPeaksKeepsTheFirstTwentyAndSaysSo) {
  Sweep w(400);
  for (int p = 0; p < 25; ++p) w.gaussian(1, 20 + 15 * p, 1e-4, 1.5);
  w.find();
  EXPECT_EQ(w.s.PeakCount, 20);
  EXPECT_CLOSE(w.s.PeakPotential(1, 20), w.s.XData(20 + 15 * 19), 1e-12);
  EXPECT_TRUE(w.printed("More than 20 peaks"));
  EXPECT_TRUE(w.printed("Peak Area = "));
}

TEST(PeakFinder, EveryCurveIsSearchedAndACurveWithoutPeaksStillHasItsArea) {
  Sweep w(121);
  w.e.NCurves = 2;
  w.gaussian(2, 50, 1e-4, 4.0);
  w.find();
  ASSERT_EQ(w.lines.size(), 5u);
  EXPECT_EQ(w.lines[0], "Curve  1 :");
  EXPECT_EQ(w.lines[1], "Peak Area =    0 ");
  EXPECT_EQ(w.lines[2], "Curve  2 :");
  EXPECT_EQ(w.s.PeakCount, 1);
}

TEST(PeakFinder, TooFewPointsSkipTheSearchWithoutFault) {
  Sweep w(5);
  w.gaussian(1, 3, 1e-4, 1.0);
  EXPECT_NO_THROW(w.find());
  EXPECT_EQ(w.s.PeakCount, 0);
}

}  // namespace
}  // namespace voltrix
