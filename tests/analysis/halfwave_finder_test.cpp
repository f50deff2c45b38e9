#include "analysis/halfwave_finder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "expect_close.h"

namespace voltrix {
namespace {

struct Waves {
  Experiment e;
  CurveStore s;
  std::vector<std::string> lines;

  Waves(int points, int curves) {
    e.NData = points;
    e.NCurves = curves;
    for (int i = 1; i <= points; ++i) s.XData(i) = 0.3 - 0.005 * (i - 1);
  }
  // A reversible DC wave: Id / (1 + exp(n f (E - E1/2))), reduction current positive.
  void nernstWave(int row, double id, double halfWave) {
    const double f = 38.923;
    for (int i = 1; i <= Count(e.NData); ++i) s.YData(row, i) = id / (1 + std::exp(f * (s.XData(i) - halfWave)));
  }
  void find() {
    FindHalfWave(e, s, [this](const std::string& l) { lines.push_back(l); });
  }
};

double NumberAfter(const std::string& line, const std::string& label) {
  const auto at = line.find(label);
  EXPECT_NE(at, std::string::npos) << line;
  return std::stod(line.substr(at + label.size()));
}

TEST(HalfWaveFinder, ReversibleWaveGivesItsHalfWavePotentialAndHeight) {
  Waves w(121, 1);
  w.nernstWave(1, 2.4344e-4, -0.05);
  w.find();
  ASSERT_EQ(w.lines.size(), 1u);
  EXPECT_EQ(w.lines[0].substr(0, 28), "Peak  1 :     E1/2 = -0.05  ");
  // The wave spans from about 0 to its limiting current.
  EXPECT_CLOSE(NumberAfter(w.lines[0], "Id = "), 2.4344e-4, 1e-3);
}

TEST(HalfWaveFinder, LabelCountsCurvesAndEachCurveIsMeasuredAlone) {
  Waves w(121, 2);
  w.nernstWave(1, 1e-4, 0.0);
  w.nernstWave(2, 3e-4, -0.1);
  w.find();
  ASSERT_EQ(w.lines.size(), 2u);
  EXPECT_EQ(w.lines[1].substr(0, 10), "Peak  2 : ");
  EXPECT_CLOSE(NumberAfter(w.lines[0], "E1/2 = "), 0.0, 1e-12);
  EXPECT_CLOSE(NumberAfter(w.lines[1], "E1/2 = "), -0.1, 1e-9);
  EXPECT_CLOSE(NumberAfter(w.lines[1], "Id = "), 3e-4, 1e-3);
}

TEST(HalfWaveFinder, FlatCurveReportsTheFirstPointAndNoHeight) {
  Waves w(50, 1);
  for (int i = 1; i <= 50; ++i) w.s.YData(1, i) = 5e-6;
  w.find();
  EXPECT_CLOSE(NumberAfter(w.lines[0], "E1/2 = "), 0.3, 1e-12);
  EXPECT_EQ(NumberAfter(w.lines[0], "Id = "), 0.0);
}

TEST(HalfWaveFinder, FirstCrossingInIndexOrderOnARisingAndFallingWave) {
  Waves w(100, 1);
  for (int i = 1; i <= 100; ++i) w.s.YData(1, i) = i <= 50 ? i : 101 - i;  // 1 .. 50 .. 1
  w.find();
  // Half of 49 above 1 is 24.5; the band 23.275 to 25.725 first holds point 25.
  EXPECT_CLOSE(NumberAfter(w.lines[0], "E1/2 = "), w.s.XData(25), 1e-12);
}

TEST(HalfWaveFinder, StepTooSteepForTheGridKeepsTheValueBefore) {
  Waves w(40, 2);
  w.nernstWave(1, 1e-4, 0.2);
  for (int i = 1; i <= 40; ++i) w.s.YData(2, i) = i <= 20 ? 0 : 1e-4;  // no point near half height
  w.find();
  EXPECT_CLOSE(NumberAfter(w.lines[0], "E1/2 = "), 0.2, 1e-9);
  EXPECT_EQ(NumberAfter(w.lines[1], "E1/2 = "), NumberAfter(w.lines[0], "E1/2 = "));

  Waves first(40, 1);
  for (int i = 1; i <= 40; ++i) first.s.YData(1, i) = i <= 20 ? 0 : 1e-4;
  first.find();
  // No value at all on the first curve of the command.
  // Zones at 14 and 28: "Peak  1 : " + 4 blanks, "E1/2 = " + 7 blanks, "Id = ".
  EXPECT_EQ(first.lines[0], "Peak  1 : " + std::string(4, ' ') + "E1/2 = " + std::string(7, ' ') + "Id =  0.0001 ");
}

TEST(HalfWaveFinder, CurveCrossingZeroIsMeasuredOnItsAbsoluteValue) {
  Waves w(101, 1);
  for (int i = 1; i <= 101; ++i) w.s.YData(1, i) = (i - 41) * 1e-6;  // -40e-6 .. 60e-6
  w.find();
  // |y| runs from 0 (point 41) to 60e-6 (point 101).
  EXPECT_CLOSE(NumberAfter(w.lines[0], "Id = "), 6e-5, 1e-9);
  // The band is 28.5e-6 to 31.5e-6 above 0; point 10 (|y| = 31e-6) is the first in it.
  EXPECT_CLOSE(NumberAfter(w.lines[0], "E1/2 = "), w.s.XData(10), 1e-12);
}

}  // namespace
}  // namespace voltrix
