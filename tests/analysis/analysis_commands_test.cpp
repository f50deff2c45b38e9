// The "&Analysis" reports as the menu prints them: peaks of a curve with their
// potential, current and area, half-wave potentials, and the closed-form peak
// values of Bard and Faulkner (2001) for each technique and electrode.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "support/expect_close.h"
#include "support/session.h"

namespace voltrix::test {
namespace {

void Gauss(Session& s, int row, int centre, double height, double width) {
  for (int i = 1; i <= s.points(); ++i) s.s.YData(row, i) += height * std::exp(-0.5 * std::pow((i - centre) / width, 2));
}

// A run lays out the axis (0.3 V down in 5 mV steps), then the curve is
// replaced by a shape of known peaks; the threshold is 2 % of Ymax - Ymin.
std::string Report(const std::string& script, double ymax, const std::function<void(Session&)>& shape,
                   const char* menu = "mnuFindPeak") {
  Session s(script + "; menu mnuSimulate");
  s.s.YData.fill(0);
  s.e.Ymin = 0;
  s.e.Ymax = ymax;
  shape(s);
  s.out.str("");
  s.run(std::string("menu ") + menu);
  return s.out.str();
}

struct Peak {
  int centre;
  double height, width;
};

TEST(PeakFinder, PeaksOfKnownShapes) {
  const std::string cycle = "set FormIns.ComboScan=cycle";
  const std::vector<Peak> cv = {{67, 1e-4, 6}, {188, -8e-5, 6}};  // forward at -0.03 V, back at 0.03 V
  const auto raw = [](const std::vector<double>& v) {
    return [v](Session& s) { std::copy(v.begin(), v.end(), s.s.YData.row(1) + 15); };
  };
  const struct {
    std::string script;
    double ymax;
    std::vector<Peak> peaks;
    std::function<void(Session&)> extra;
    const char* report;  // the part of the report after "Curve  1 :\n"
  } cases[] = {
      {"", 1e-4, {{67, 8.5e-5, 6}}, nullptr, "Curve  1 :\nPeak  1 :     Ep = -0.03    Ip =  8.5E-05 \nPeak Area =   "},
      {"", 1e-4, {{67, -6.3e-5, 5}}, nullptr, "Peak  1 :     Ep = -0.03    Ip = -6.3E-05 \n"},
      // The first six and the last six points are never peaks.
      {"", 1e-4, {{6, 1e-4, 1}, {116, 1e-4, 1}}, nullptr, "Curve  1 :\nPeak Area =   "},
      {"", 1e-4, {{7, 1e-4, 1}, {115, 1e-4, 1}}, nullptr,
       "Curve  1 :\nPeak  1 :     Ep =  0.27    Ip =  0.0001 \nPeak  2 :     Ep = -0.27    Ip =  0.0001 \nPeak Area"},
      {"", 10, {{30, 0.2, 2}}, nullptr, "Curve  1 :\nPeak Area =   "},  // below 2 % of 10
      {"", 10, {{30, 0.21, 2}}, nullptr, "Peak  1 :     Ep =  0.155   Ip =  0.21 \n"},
      // Two equal points at the top are two peaks, three are one; a level
      // shoulder (A(i-4) = A(i-2)) is none.
      {"", 10, {}, raw({1, 2, 3, 4, 5, 5, 4, 3, 2, 1}), "Peak  1 :     Ep =  0.21    Ip =  5 \nPeak  2 :     Ep =  0.205   Ip =  5 \nPeak Area"},
      {"", 10, {}, raw({1, 2, 3, 4, 5, 5, 5, 4, 3, 2, 1}), "Curve  1 :\nPeak  1 :     Ep =  0.205   Ip =  5 \nPeak Area"},
      {"", 10, {}, raw({3, 2, 3, 4, 9, 4, 3, 2, 1}), "Curve  1 :\nPeak Area =   "},
      // A cycle: I pc / I pa = |Ip2 / Ip1| + 0.485 |Isp / Ip1| + 0.08
      // (Nicholson 1966) with the current where the scan turns, 2e-5 here.
      {cycle, 1e-4, cv, [](Session& s) { s.s.YData(1, 121) = 2e-5; },
       "Peak  2 :     Ep =  0.03    Ip = -8E-05 \nI pc/I pa =  0.977 \nEp2 - Ep1 =  0.06 \nPeak Area"},
      {cycle + "; click FormTech.optTech(4)", 1e-4, cv, nullptr, "Peak  2 :     Ep =  0.03    Ip = -8E-05 \nPeak Area"},
      {cycle, 1e-4, {{67, 1e-4, 6}, {188, -8e-5, 6}, {30, 5e-5, 3}}, nullptr, "Peak  3 :     Ep =  0.03    Ip = -8E-05 \nPeak Area"},
      {cycle, 1e-4, {{119, 1e-4, 1}}, nullptr, "Curve  1 :\nPeak Area =   "},  // the turn is not searched
      // Forward minus reverse over the whole range: (119 - (1 - 119)) points of 5 mV.
      {cycle, 1e-4, {}, [](Session& s) { for (int i = 1; i <= 242; ++i) s.s.YData(1, i) = i <= 121 ? 1 : -1; }, "Peak Area =    1.185 \n"},
      {"set FormIns.Estep=0.0015", 1e-4, {}, [](Session& s) { for (int p = 0; p < 25; ++p) Gauss(s, 1, 20 + 15 * p, 1e-4, 1.5); },
       "Peak  20 :    Ep = -0.156   Ip =  0.0001 \nMore than 20 peaks on this curve: only the first 20 are listed.\n"},
      {"set formOption.overlap=1; menu mnuSimulate", 1e-4, {}, [](Session& s) { Gauss(s, 2, 50, 1e-4, 4); },
       "Curve  1 :\nPeak Area =    0 \nCurve  2 :\nPeak  1 :     Ep =  0.055   Ip =  0.0001 \n"},
  };
  for (const auto& c : cases) {
    const std::string report = Report(c.script, c.ymax, [&](Session& s) {
      for (const Peak& p : c.peaks) Gauss(s, 1, p.centre, p.height, p.width);
      if (c.extra) c.extra(s);
    });
    EXPECT_NE(report.find(c.report), std::string::npos) << c.script << "\n" << report;
  }
  // The area of a Gaussian is its height times its width times sqrt(2 pi).
  const std::string area = Report("", 1e-4, [](Session& s) { Gauss(s, 1, 67, 8.5e-5, 6); });
  EXPECT_CLOSE(std::stod(area.substr(area.find("Peak Area = ") + 14)), 8.5e-5 * 6 * 0.005 * std::sqrt(2 * M_PI), 1e-6);
}

// E1/2 is the first point, in index order, within 5 % of half the height of
// |I| above its lowest value; Id is that height.
TEST(HalfWaveFinder, FirstPointNearHalfHeight) {
  const auto wave = [](int row, double id, double half) {  // a reversible DC wave (Heyrovsky and Ilkovic 1935)
    return [=](Session& s) { for (int i = 1; i <= 121; ++i) s.s.YData(row, i) = id / (1 + std::exp(38.923 * (s.s.XData(i) - half))); };
  };
  const auto values = [](const std::vector<double>& v) {
    return [v](Session& s) { std::copy(v.begin(), v.end(), s.s.YData.row(1) + 1); };
  };
  std::vector<double> crossing(101), peaked(100);
  for (int i = 1; i <= 101; ++i) crossing[i - 1] = (i - 41) * 1e-6;  // |I| from 0 at point 41 to 60e-6
  for (int i = 1; i <= 100; ++i) peaked[i - 1] = i <= 50 ? i : 101 - i;
  const struct {
    std::function<void(Session&)> curve;
    const char* report;
  } cases[] = {
      {wave(1, 2.4344e-4, -0.05), "Peak  1 :     E1/2 = -0.05  Id =  0.000243"},
      {values({0, 100, 52.6, 47.4, 47.6}), "Peak  1 :     E1/2 =  0.28  Id =  100 \n"},  // inside the band: 0.95 to 1.05
      {values(std::vector<double>(121, 5e-6)), "Peak  1 :     E1/2 =  0.3   Id =  0 \n"},  // flat: the first point
      {values(peaked), "Peak  1 :     E1/2 =  0.185               Id =  50 \n"},  // the rising side: 24 of 50 at point 24
      {values(crossing), "Peak  1 :     E1/2 =  0.255               Id =  6E-05 \n"},  // point 10: |I| = 31e-6 in 28.5e-6 to 31.5e-6
      {values({0, 0, 0, 1, 1}), "Peak  1 :     E1/2 =        Id =  1 \n"},  // too steep: no point near half height
  };
  for (const auto& c : cases) {
    const std::string report = Report("", 1e-4, c.curve, "mnuFindHalfwaveE");
    EXPECT_EQ(report.substr(0, std::string(c.report).size()), c.report) << report;
  }
  // Curves are counted; the value of curve 1 stands for a curve that has none.
  const std::string two = Report("set formOption.overlap=1; menu mnuSimulate", 1e-4, [&](Session& s) {
    wave(1, 1e-4, 0.2)(s);
    std::fill(s.s.YData.row(2) + 60, s.s.YData.row(2) + 122, 1e-4);
  }, "mnuFindHalfwaveE");
  EXPECT_EQ(two.substr(two.find("Peak  2")), "Peak  2 :     E1/2 =  0.2   Id =  0.0001 \n");
  EXPECT_EQ(two.rfind("Peak  1 :     E1/2 =  0.2   Id =  9.8", 0), 0u);
}

// The closed-form peak values of each technique and electrode, as printed.
TEST(TheoreticalPeak, ClosedFormsOfEachTechniqueAndElectrode) { CheckTranscript("analysis/theoretical_peak.txt"); }

}  // namespace
}  // namespace voltrix::test
