#include "analysis/theoretical_peak.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "expect_close.h"

namespace voltrix {
namespace {

// The default chemistry at 25 Celsius: 1 mM of A, D = 1e-5 cm2/s for both
// forms, 1 cm2, one electron, a fast reaction at 0 V.
Experiment Defaults(int technique, int electrode) {
  Experiment e;
  e.Technique = technique;
  e.Electrode = electrode;
  e.Mechanism = 1;
  e.NCharge = 1;
  e.NEL(1) = 1;
  e.alph(1) = 0.5;
  e.ks(1) = 1e4;
  e.Eze(1) = 0;
  e.D(1) = 1e-5;
  e.D(2) = 1e-5;
  e.C(1) = 1e-3;
  e.ARE = 1;
  e.V = 0.01;
  e.td = 0.5;
  e.tp = 0.05;
  e.Epulse = -0.05;
  e.radius = 0.2821;
  e.leng = 0.01;
  e.omega = 100 * 3.141592654 / 30;
  e.Vis = 0.01;
  e.fRT = 96484.6 / 8.31441 / 298.14;
  e.RTF = 1 / e.fRT;
  return e;
}

std::vector<std::string> Report(const Experiment& e) {
  std::vector<std::string> lines;
  TheoreticalPeakReport(e, [&](const std::string& l) { lines.push_back(l); });
  return lines;
}

TheoreticalPeak Values(const Experiment& e, int r = 1) {
  TheoreticalPeak v;
  std::vector<std::string> faults;
  TheoreticalValues(e, r, v, faults);
  EXPECT_TRUE(faults.empty());
  return v;
}

TEST(TheoreticalPeak, LinearSweepOnAPlaneFollowsRandlesSevcik) {
  const TheoreticalPeak v = Values(Defaults(1, 1));
  // ip = 2.69e5 n^1.5 A D^0.5 C v^0.5 at 25 C (C in mol/cm3), to the 3 digits of its constant.
  ASSERT_TRUE(v.Ir);
  EXPECT_CLOSE(*v.Ir, 2.69e5 * 1e-6 * std::sqrt(1e-5) * std::sqrt(0.01), 2e-3);
  // and agrees with the simulated peak of the reference sweep, 8.5007e-5 A.
  EXPECT_CLOSE(*v.Ir, 8.5007e-5, 1e-3);
  // Equal D: E0 is Eze, and the peak lies 1.109 RT/F beyond it (28.5 mV).
  EXPECT_CLOSE(*v.Er, -1.109 * 0.0256917497, 1e-8);
  // The irreversible peak is lower by 0.4958 sqrt(alpha) / 0.4463.
  EXPECT_CLOSE(*v.Ii / *v.Ir, 0.4958 * std::sqrt(0.5) / 0.4463, 1e-12);
  ASSERT_TRUE(v.Ei);
}

TEST(TheoreticalPeak, ReportLinesUseTheirFormatsAndZones) {
  const std::vector<std::string> lines = Report(Defaults(1, 1));
  ASSERT_EQ(lines.size(), 2u);
  // Print zones every 14 characters: the label at 14, "Ip = " at 28.
  EXPECT_EQ(lines[0], "Rev Peak  1 : Ep = -0.0285  Ip = 8.4955E-5");
  // "Irrev Peak  1 :" takes 15 characters, so its label moves to the zone at 28.
  EXPECT_EQ(lines[1], "Irrev Peak  1 :" + std::string(13, ' ') + "Ep = 0.771    Ip = 6.6735E-5");
}

TEST(TheoreticalPeak, DirectCurrentOnAPlaneIsTheCottrellCurrentForBothLines) {
  const std::vector<std::string> lines = Report(Defaults(2, 1));
  ASSERT_EQ(lines.size(), 2u);
  // Cottrell at t drop 0.5 s: the plateau of the reference DC run, 2.4344e-4 A.
  EXPECT_NE(lines[0].find("E1/2 = 0."), std::string::npos);
  EXPECT_NE(lines[0].find("Ip = 2.4344E-4"), std::string::npos);
  EXPECT_NE(lines[1].find("Ip = 2.4344E-4"), std::string::npos);
}

TEST(TheoreticalPeak, SquareWaveIsExactlyTwoPointFourTimesDifferentialPulse) {
  const TheoreticalPeak dp = Values(Defaults(4, 1)), sw = Values(Defaults(5, 1));
  EXPECT_DOUBLE_EQ(*sw.Ir, *dp.Ir * 2.4);
  // A negative pulse makes s < 1, so the differential pulse current is positive.
  EXPECT_GT(*dp.Ir, 0);
  Experiment up = Defaults(4, 1);
  up.Epulse = 0.05;
  EXPECT_LT(*Values(up).Ir, 0);
  // Peak potentials: E0 - Epulse / 2 for differential pulse, E0 for square wave.
  EXPECT_DOUBLE_EQ(*dp.Er, 0.025);
  EXPECT_DOUBLE_EQ(*sw.Er, 0.0);
}

TEST(TheoreticalPeak, LabelFollowsTheTechniqueAlone) {
  for (int electrode : {1, 2, 7}) {
    EXPECT_NE(Report(Defaults(1, electrode))[0].find("Ep = "), std::string::npos);
    EXPECT_NE(Report(Defaults(2, electrode))[0].find("E1/2 = "), std::string::npos);
    EXPECT_NE(Report(Defaults(3, electrode))[0].find("E1/2 = "), std::string::npos);
    EXPECT_NE(Report(Defaults(4, electrode))[0].find("Ep = "), std::string::npos);
    EXPECT_NE(Report(Defaults(5, electrode))[0].find("Ep = "), std::string::npos);
  }
}

TEST(TheoreticalPeak, ValuesOfTheReactionBeforeCarryOver) {
  Experiment e = Defaults(1, 1);
  TheoreticalPeak v;
  std::vector<std::string> faults;
  TheoreticalValues(e, 1, v, faults);
  const TheoreticalPeak first = v;
  e.Electrode = 2;  // a sphere sets only the current
  TheoreticalValues(e, 1, v, faults);
  EXPECT_CLOSE(*v.Ir, 96.4846 * 1e-3 * 1e-5 / 0.2821, 1e-9);  // steady state n F A C D / r
  EXPECT_EQ(*v.Er, *first.Er);
  EXPECT_EQ(*v.Ei, *first.Ei);
  EXPECT_EQ(*v.Ii, *first.Ii);
}

TEST(TheoreticalPeak, UnsetValuesPrintEmpty) {
  // A thin film in DC sets nothing: both lines stand with empty values.
  const std::vector<std::string> lines = Report(Defaults(2, 7));
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0], "Rev Peak  1 : E1/2 = " + std::string(7, ' ') + "Ip = ");
  EXPECT_EQ(lines[1], "Irrev Peak  1 :" + std::string(13, ' ') + "E1/2 = " + std::string(7, ' ') + "Ip = ");
  // A digital mechanism sets nothing either.
  Experiment digital = Defaults(1, 1);
  digital.Mechanism = 0;
  EXPECT_EQ(Report(digital)[0], "Rev Peak  1 : Ep = " + std::string(9, ' ') + "Ip = ");
}

TEST(TheoreticalPeak, CatalyticMechanismUsesTheRateConstantWhateverTheTechnique) {
  for (int technique = 1; technique <= 5; ++technique) {
    Experiment e = Defaults(technique, 3);
    e.Mechanism = 7;
    e.kf(1) = 100;
    const TheoreticalPeak v = Values(e);
    // n F A C sqrt(D kf): 96.4846e-3 * sqrt(1e-3)
    EXPECT_CLOSE(*v.Ir, 96.4846e-3 * std::sqrt(1e-5 * 100), 1e-9);
    EXPECT_EQ(*v.Er, 0.0);
    EXPECT_FALSE(v.Ii);
    EXPECT_FALSE(v.Ei);
  }
}

TEST(TheoreticalPeak, ZeroDenominatorsAndBadLogarithmsLeaveValuesEmptyWithANote) {
  Experiment e = Defaults(1, 1);
  e.D(2) = 0;  // ln(D(2) / D(1)) of 0
  const std::vector<std::string> lines = Report(e);
  ASSERT_GE(lines.size(), 3u);
  EXPECT_EQ(lines[0], "Rev Peak  1 : Ep = " + std::string(9, ' ') + "Ip = 8.4955E-5");
  bool noted = false;
  for (const auto& l : lines) {
    EXPECT_EQ(l.find("nan"), std::string::npos) << l;
    EXPECT_EQ(l.find("inf"), std::string::npos) << l;
    if (l.rfind("Rev Peak 1: E not computed (Invalid argument", 0) == 0) noted = true;
  }
  EXPECT_TRUE(noted);

  for (auto spoil : {+[](Experiment& x) { x.ks(1) = 0; }, +[](Experiment& x) { x.NEL(1) = 0; },
                     +[](Experiment& x) { x.D(1) = 0; }, +[](Experiment& x) { x.omega = 0; },
                     +[](Experiment& x) { x.radius = 0; }, +[](Experiment& x) { x.td = 0; },
                     +[](Experiment& x) { x.tp = 0; }}) {
    for (int technique = 1; technique <= 5; ++technique)
      for (int electrode = 1; electrode <= 8; ++electrode) {
        Experiment bad = Defaults(technique, electrode);
        spoil(bad);
        for (const auto& l : Report(bad)) {
          EXPECT_EQ(l.find("nan"), std::string::npos) << l;
          EXPECT_EQ(l.find("inf"), std::string::npos) << l;
        }
      }
  }
}

}  // namespace
}  // namespace voltrix
