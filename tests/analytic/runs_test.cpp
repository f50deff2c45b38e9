// Whole analytical runs from the forms down to YData: the reference curves
// to five significant digits, the physics a chemist checks on paper, and the
// messages of every road by which a run fails.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "analytic_run.h"
#include "support/expect_close.h"
#include "support/session.h"

namespace voltrix::test {
namespace {

// The program's reference runs: mechanism 1, 0.3 to -0.3 V in 5 mV, 10 mV/s,
// td 0.5 s, tp 0.05 s, Epulse -0.05 V, radius 0.2821 cm, 1 mM, D 1e-5, ks 1e4.
TEST(ReferenceRun, EveryTechniqueAtPlanarAndSphericalElectrodes) {
  const struct {
    const char* script;
    double largest;
    int point;
    double x, last;  // last: the value at point 121
  } rows[] = {
      {"", 8.5007e-5, 67, -0.03, 0},                     {"set FormIns.ComboScan=cycle", 8.5007e-5, 67, -0.03, 0},
      {"set FormIns.Estep=0.001", 1.8952e-4, 0, 0, 0},  {"set FormIns.Estep=0.01", 6.0453e-5, 0, 0, 0},  // td = Estep / V
      {"click FormTech.optTech(2)", 2.4344e-4, 121, -0.3, 2.4344e-4},
      {"click FormTech.optTech(2); click FormIns.optElectrode(2)", 2.4686e-4, 121, -0.3, 2.4686e-4},
      {"click FormTech.optTech(3)", 7.6983e-4, 121, -0.3, 7.6983e-4},
      {"click FormTech.optTech(3); click FormIns.optElectrode(2)", 7.7325e-4, 121, -0.3, 7.7325e-4},
      {"click FormTech.optTech(4)", 3.4357e-4, 56, 0.025, -5.4778e-6},
      {"click FormTech.optTech(4); click FormIns.optElectrode(2)", 3.4561e-4, 56, 0.025, -1.2720e-5},
      {"click FormTech.optTech(5)", 8.3413e-4, 61, 0, 3.5568e-8},
      {"click FormTech.optTech(5); click FormIns.optElectrode(2)", 8.3783e-4, 61, 0, 3.5726e-8},
  };
  for (const auto& row : rows) {
    Session r(kAnalytical + row.script + "; menu mnuSimulate");
    ASSERT_EQ(r.err.str(), "") << row.script;
    EXPECT_DIGITS(r.y(r.peak()), row.largest, 5) << row.script;
    EXPECT_TRUE(row.point == 0 || (r.peak() == row.point && std::fabs(r.s.XData(r.peak()) - row.x) < 1e-12)) << row.script;
    EXPECT_TRUE(row.last == 0 || MatchesDigits(r.y(121), row.last, 5)) << row.script;
  }
  AnalyticRun cycle;  // the return peak of the cycle
  cycle.scan("cycle");
  cycle.run();
  EXPECT_DIGITS(cycle.smallest().value, -6.3417e-5, 5);
  EXPECT_EQ(cycle.smallest().point, 188);
  EXPECT_NEAR(cycle.smallest().x, 0.03, 1e-12);
}

// At 25 C, 1 mM, D 1e-5 cm2/s: Randles-Sevcik 0.4463 nFAC sqrt(nFvD / RT),
// Cottrell nFAC sqrt(D / (pi t)), Levich 0.62 nFAC D^2/3 nu^-1/6 w^1/2, the
// thin-layer peak n^2 F^2 v A l C / 4RT, all of Bard and Faulkner (2001);
// the catalytic plateau nFAC sqrt(D kf) (Saveant and Vianello 1965).
TEST(RunPhysics, PlateausAndPeaksOfTheClosedForms) {
  const struct {
    const char* script;
    int row, point;  // row 0: the curve; point 0: its largest value
    double expected, rel;
  } cases[] = {
      {"", 0, 0, 8.4954824e-5, 1e-3},                           // Randles-Sevcik at 10 mV/s
      {"set FormIns.V=0.04", 0, 0, 2 * 8.5007e-5, 1e-3},       // the peak follows sqrt(v)
      {"set FormExpr.C(1)=2e-4", 0, 0, 0.2 * 8.5007e-5, 1e-4},  // and C
      // The semi-differentiation takes its scale from the potential step:
      // 0.25 / sqrt(pi h) is the exact half-order scale of the time step at
      // h0 = 1 / (64 pi) V, so a fine step gives Randles-Sevcik * sqrt(h0 / h).
      {"set FormIns.Estep=0.0005", 0, 0, 2.6794035e-4, 3e-4},
      {"click FormTech.optTech(2); set FormIns.V=0.005", 0, 121, 1.7214050e-4, 1e-5},  // Cottrell at td 1 s
      {"click FormTech.optTech(2); set FormMech.NEL(1)=2", 0, 121, 2 * 2.4344343e-4, 1e-5},  // two electrons
      {"click FormTech.optTech(3); set FormIns.tp=0.2", 0, 121, 3.8491786e-4, 1e-5},   // Cottrell at tp 0.2 s
      {"click FormTech.optTech(2); click FormIns.optElectrode(8); set FormIns.TextRrate=400", 0, 121, 9.6790783e-5, 1e-5},
      {"click FormIns.optElectrode(7); set FormIns.Estep=0.001", 0, 0, 9.3886754e-5, 2e-4},  // thin layer
      {"click FormMech.mech(7); click FormTech.optTech(2)", 8, 121, 9.648460e-4, 1e-5},     // catalytic, kf 10
      // Reaction 2 of mechanism 4 (E0 -0.1 V) at -0.3 V: half the Cottrell
      // current of C(3) = 0.5 mM over 1 + exp(f (E - E0)).
      {"click FormMech.mech(4); click FormTech.optTech(2); set FormExpr.C(3)=5e-4", 2, 121, 1.2167109e-4, 1e-5},
      {"click FormIns.optElectrode(2)", 0, 121, 0, 1e-4},  // the planar sweep plus nFADC/r
  };
  AnalyticRun planar;
  planar.run();
  for (const auto& c : cases) {
    Session r(kAnalytical + c.script + "; menu mnuSimulate");
    ASSERT_EQ(r.err.str(), "") << c.script;
    const double value = c.point == 0 ? r.y(r.peak()) : c.row == 0 ? r.y(c.point) : r.s.YSim(c.row, c.point);
    EXPECT_CLOSE(value, c.expected != 0 ? c.expected : planar.y(121) + 3.4202269e-6, c.rel) << c.script;
    // A DC curve is the sum of its reaction rows and the catalytic row.
    double rows = r.e.Mechanism == 7 ? r.s.YSim(8, 60) : 0;
    for (int k = 1; k <= Count(r.e.NCharge); ++k) rows += r.s.YSim(k, 60);
    EXPECT_TRUE(r.e.Technique != 2 || IsClose(r.y(60), rows, 1e-15)) << c.script;
  }
  // A thin-layer wave peaks at its formal potential (Bard and Faulkner 2001),
  // for the film the apparent one E0 + (RT/nF) ln(sqrt(pi) n l / sqrt(td D)):
  // 45.8 mV for two electrons, 0.01 cm, td 0.1 s.
  Session film(kAnalytical + "click FormIns.optElectrode(7); set FormIns.Estep=0.001; set FormMech.NEL(1)=2; menu mnuSimulate");
  EXPECT_NEAR(film.s.XData(film.peak()), 0.0458, 0.001);
}

// Mechanism 8, C = A + pD before A + ne = B, is mechanism 1 with E0 shifted by
// (RT/nF)(ln Keq - p ln C(D)), here 59 mV; the pair that reacts is C(2), C(3).
TEST(RunPhysics, PrecedingEquilibriumShiftsTheStandardPotential) {
  Session m8(kAnalytical + "click FormMech.mech(8); click FormTech.optTech(2); set FormExpr.C(2)=1e-3; set FormExpr.C(4)=0.1; "
             "set FormExpr.kf(1)=0.1; set FormExpr.kb(1)=1; set FormExpr.pl(1)=2; menu mnuSimulate");
  const double shift = m8.e.RTF * (std::log(0.1) - 2 * std::log(0.1));
  Session m1(kAnalytical + "click FormTech.optTech(2); set FormExpr.Eze(1)=" + std::to_string(shift) + "; menu mnuSimulate");
  for (int i : {1, 40, 50, 60, 121}) EXPECT_CLOSE(m8.y(i), m1.y(i), 1e-4) << i;
}

// The factor sqrt(kf tp) / 1.38 of the catalytic pulse acts on the sum only; a
// pulse at a thin film carries nothing, so even noise leaves the curve flat.
TEST(RunPhysics, RowsThatOnlyTheSumCarries) {
  Session plain(kAnalytical + "click FormTech.optTech(4); menu mnuSimulate");
  Session cat(kAnalytical + "click FormTech.optTech(4); click FormMech.mech(7); menu mnuSimulate");
  Session film(kAnalytical + "click FormTech.optTech(3); click FormIns.optElectrode(7); set FormIns.Noise=5; menu mnuSimulate");
  for (int i : {1, 56, 121}) {
    EXPECT_EQ(cat.s.YSim(1, i), plain.s.YSim(1, i));
    EXPECT_CLOSE(cat.y(i), plain.y(i) * std::sqrt(10 * 0.05) / 1.38, 1e-12);
  }
  for (int i = 1; i <= 121; ++i) ASSERT_EQ(film.y(i), 0);
}

// Double-layer charging Cdl A v: cathodic (positive) on a negative-going
// scan, anodic on the way back; a DC run charges with the distance moved.
TEST(RunPhysics, ChargingCurrentFollowsTheScan) {
  const double Q = 2e-5 * 1 * 0.01;
  const struct {
    const char* script;
    std::function<double(double x, int i)> charge;
  } cases[] = {{"set FormIns.ComboScan=cycle", [&](double, int i) { return i <= 121 ? Q : -Q; }},
               {"set FormIns.ComboScan=2 cycles", [&](double, int i) { return (i - 1) / 121 % 2 ? -Q : Q; }},
               {"", [&](double, int) { return Q; }},
               {"click FormTech.optTech(2)", [&](double x, int) { return (0.3 - x) * Q; }}};
  for (const auto& c : cases) {
    Session clean(kAnalytical + c.script + "; menu mnuSimulate");
    Session charged(kAnalytical + c.script + "; set FormIns.Cdl=2e-5; menu mnuSimulate");
    for (int i = 1; i <= clean.points(); ++i)
      ASSERT_NEAR(charged.y(i) - clean.y(i), c.charge(clean.s.XData(i), i), 1e-15) << c.script << " " << i;
  }
}

// Noise is seeded from NData alone: the same pattern for the same length,
// normal, with a standard deviation of 0.25 % of the curve's extreme per
// percent of noise.
TEST(RunPhysics, NoiseIsNormalAndScaledByTheExtreme) {
  const std::string longest = kAnalytical + "click FormTech.optTech(2); set FormIns.Estep=0.00015; set FormIns.Eend=-0.29985; ";
  std::vector<double> unit[2];
  for (const char* c : {"", "set FormExpr.C(1)=3e-4; "}) {
    Session clean(longest + c + "menu mnuSimulate"), noisy(longest + c + "set FormIns.Noise=4; menu mnuSimulate");
    for (int i = 1; i <= 4000; ++i) unit[*c != 0].push_back((noisy.y(i) - clean.y(i)) / (0.01 * clean.y(clean.peak())));
  }
  double mean = 0, square = 0;
  for (int i = 0; i < 4000; ++i) {
    ASSERT_NEAR(unit[0][i], unit[1][i], 1e-6);
    mean += unit[0][i] / 4000;
    square += unit[0][i] * unit[0][i] / 4000;
  }
  EXPECT_NEAR(mean, 0, 0.05);
  EXPECT_NEAR(std::sqrt(square - mean * mean), 1, 0.05);
}

// Every road by which a run fails ends in one message with its own
// description and keeps the range of the run before; 4000 points fit.
TEST(RunFailures, EachRoadHasItsOwnMessage) { CheckTranscript("analytic/run_failures.txt"); }

}  // namespace
}  // namespace voltrix::test
