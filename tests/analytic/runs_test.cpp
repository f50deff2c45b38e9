// Whole analytical runs from the forms down to YData: the reference curves
// to five significant digits, the physics a chemist checks on paper, and the
// messages of every road by which a run fails.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>
#include <string>

#include "analytic_run.h"
#include "support/session.h"
#include "support/expect_close.h"

namespace voltrix::test {
namespace {

constexpr double kF = 96484.6, kPi = 3.141592654;
constexpr double kC = 1e-6;  // 1 mM in mol/cm^3
constexpr double kD = 1e-5;

// The program's reference runs: mechanism 1, 0.3 to -0.3 V in 5 mV, 10 mV/s,
// td 0.5 s, tp 0.05 s, Epulse -0.05 V, radius 0.2821 cm, 1 mM, D 1e-5, ks 1e4.
TEST(ReferenceRun, EveryTechniqueAtPlanarAndSphericalElectrodes) {
  const struct {
    const char* script;
    double largest;
    int point;
    double x, last;  // last: the value at point 121
  } rows[] = {
      {"", 8.5007e-5, 67, -0.03, 0},
      {"set FormIns.ComboScan=cycle", 8.5007e-5, 67, -0.03, 0},
      {"set FormIns.Estep=0.001", 1.8952e-4, 0, 0, 0},  // td follows as Estep / V
      {"set FormIns.Estep=0.01", 6.0453e-5, 0, 0, 0},
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
    if (row.point) {
      EXPECT_EQ(r.peak(), row.point) << row.script;
      EXPECT_NEAR(r.s.XData(r.peak()), row.x, 1e-12) << row.script;
    }
    if (row.last != 0) {
      EXPECT_DIGITS(r.y(121), row.last, 5) << row.script;
    }
  }
  AnalyticRun cycle;  // the return peak of the cycle
  cycle.scan("cycle");
  cycle.run();
  ASSERT_EQ(cycle.points(), 242);
  EXPECT_DIGITS(cycle.smallest().value, -6.3417e-5, 5);
  EXPECT_EQ(cycle.smallest().point, 188);
  EXPECT_NEAR(cycle.smallest().x, 0.03, 1e-12);
}

// The semi-differentiation takes its scale from the potential step; its
// 0.25 / sqrt(pi h) is the exact half-order scale of the time step at
// h0 = 1 / (64 pi) V. So the peak times sqrt(h / h0) converges to
// Randles-Sevcik, 0.4463 nFAC sqrt(nFvD / RT) (Bard and Faulkner 2001, 6.2.19),
// and the peak potential to E1/2 - 28.5 mV.
TEST(SweepPhysics, ReversiblePeakConvergesToRandlesSevcik) {
  const double h0 = 1 / (64 * kPi);
  AnalyticRun r;
  r.run();
  const double rs = 0.4463 * kF * kC * std::sqrt(r.wb.experiment.fRT * 0.01 * kD);
  EXPECT_CLOSE(r.largest().value, rs, 2e-3);
  double previousError = 1;
  for (const char* step : {"0.002", "0.001", "0.0005"}) {
    AnalyticRun fine;
    fine.ins("Estep", step);
    fine.run();
    const double error = std::fabs(fine.largest().value * std::sqrt(std::stod(step) / h0) / rs - 1);
    EXPECT_LT(error, previousError) << step;
    previousError = error;
    EXPECT_NEAR(fine.largest().x, -0.0285, std::stod(step)) << step;
  }
  EXPECT_LT(previousError, 3e-4);
  // At a fixed step the peak follows sqrt(v) and C.
  AnalyticRun fast, dilute;
  fast.ins("V", "0.04");
  fast.run();
  dilute.expr("C", 1, "2e-4");
  dilute.run();
  EXPECT_CLOSE(fast.largest().value / r.largest().value, 2, 1e-3);
  EXPECT_CLOSE(dilute.largest().value / r.largest().value, 0.2, 1e-9);
}

// Plateaus and peaks of the closed forms at 25 C, 1 mM, D 1e-5 cm2/s:
// Cottrell nFAC sqrt(D / (pi t)) (5.2.11), Levich 0.62 nFAC D^2/3 nu^-1/6
// w^1/2 (9.3.22), the thin-layer peak n^2 F^2 v A l C / 4RT (11.7.6), all of
// Bard and Faulkner (2001); the catalytic plateau nFAC sqrt(D kf) (Saveant
// and Vianello 1965).
TEST(RunPhysics, PlateausAndPeaksOfTheClosedForms) {
  const struct {
    const char* script;
    int row, point;  // row 0: the curve; point 0: its largest value
    double expected, rel;
  } cases[] = {
      {"click FormTech.optTech(2); set FormIns.V=0.005", 0, 121, 1.7214050e-4, 1e-5},        // Cottrell at td 1 s
      {"click FormTech.optTech(3); set FormIns.tp=0.2", 0, 121, 3.8491786e-4, 1e-5},         // Cottrell at tp 0.2 s
      {"click FormTech.optTech(2); click FormIns.optElectrode(8); set FormIns.TextRrate=400", 0, 121, 9.6790783e-5,
       1e-5},                                                                               // Levich, 0.25 cm2
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
    const double expected = c.expected != 0 ? c.expected : planar.y(121) + 3.4202269e-6;
    EXPECT_CLOSE(value, expected, c.rel) << c.script;
    // A DC curve is the sum of its reaction rows and the catalytic row.
    double rows = r.e.Mechanism == 7 ? r.s.YSim(8, 60) : 0;
    for (int k = 1; k <= Count(r.e.NCharge); ++k) rows += r.s.YSim(k, 60);
    if (r.e.Technique == 2) {
      EXPECT_CLOSE(r.y(60), rows, 1e-15) << c.script;
    }
  }
}

// Mechanism 8, C = A + pD before A + ne = B, is mechanism 1 with E0 shifted by
// (RT/nF)(ln Keq - p ln C(D)); the pair that reacts is C(2), C(3).
TEST(RunPhysics, PrecedingEquilibriumShiftsTheStandardPotential) {
  AnalyticRun m8, m1;
  m8.mechanism(8);
  m8.technique(2);
  m8.expr("C", 2, "1e-3");
  m8.expr("C", 4, "0.1");
  m8.expr("kf", 1, "0.1");
  m8.expr("kb", 1, "1");
  m8.wb.formExpr().control("pl", 1).setText("2");
  m8.run();
  const double shift = m8.wb.experiment.RTF * (std::log(0.1) - 2 * std::log(0.1));  // 59 mV
  m1.technique(2);
  m1.expr("Eze", 1, std::to_string(shift));
  m1.run();
  for (int i : {1, 40, 50, 60, 121}) EXPECT_CLOSE(m8.y(i), m1.y(i), 1e-4) << i;
}

// The factor of the catalytic pulse acts on the sum only; a pulse at a thin
// film carries nothing, so even noise leaves the curve flat; row 2 of a
// single reaction is row 1.
TEST(RunPhysics, RowsThatOnlyTheSumCarries) {
  AnalyticRun plain, cat, film;
  plain.technique(4);
  plain.run();
  cat.technique(4);
  cat.mechanism(7);
  cat.run();
  const double factor = std::sqrt(cat.wb.experiment.kf(1) * 0.05) / 1.38;
  for (int i : {1, 56, 121}) {
    EXPECT_EQ(cat.sim(1, i), plain.sim(1, i));
    EXPECT_CLOSE(cat.y(i), plain.y(i) * factor, 1e-12);
    EXPECT_EQ(plain.sim(2, i), plain.sim(1, i));
  }
  film.technique(3);
  film.electrode(7);
  film.ins("Noise", "5");
  film.run();
  ASSERT_EQ(film.wb.experiment.Code, 37);
  for (int i = 1; i <= 121; ++i) ASSERT_EQ(film.y(i), 0);
}

// Double-layer charging Cdl A v: cathodic (positive) on a negative-going
// scan, anodic on the way back; a DC run charges with the distance moved.
TEST(RunPhysics, ChargingCurrentFollowsTheScan) {
  const double Q = 2e-5 * 1 * 0.01;
  const struct {
    int technique;
    const char* scan;
    std::function<double(double x, int i)> charge;
  } cases[] = {{1, "cycle", [&](double, int i) { return i <= 121 ? Q : -Q; }},
               {1, "2 cycles", [&](double, int i) { return (i - 1) / 121 % 2 ? -Q : Q; }},
               {1, "single", [&](double, int) { return Q; }},
               {2, "single", [&](double x, int) { return (0.3 - x) * Q; }}};
  for (const auto& c : cases) {
    AnalyticRun clean, charged;
    for (AnalyticRun* r : {&clean, &charged}) {
      r->technique(c.technique);
      r->scan(c.scan);
    }
    charged.ins("Cdl", "2e-5");
    clean.run();
    charged.run();
    for (int i = 1; i <= clean.points(); ++i)
      ASSERT_NEAR(charged.y(i) - clean.y(i), c.charge(clean.x(i), i), 1e-15) << c.scan << " " << i;
  }
}

// Noise is seeded from NData alone: the same pattern for the same length,
// scaled by the curve's extreme, normal with a standard deviation of 0.25 %
// of it per percent of noise; a fit run carries none and lands in row 2.
TEST(RunPhysics, NoiseIsNormalAndScaledByTheExtreme) {
  auto noiseOf = [](const char* c1) {
    AnalyticRun clean, noisy;
    for (AnalyticRun* r : {&clean, &noisy}) {
      r->technique(2);
      r->ins("Estep", "0.00015");  // 4000 points
      r->ins("Eend", "-0.29985");
      r->expr("C", 1, c1);
    }
    noisy.ins("Noise", "4");
    clean.run();
    noisy.run();
    std::vector<double> unit;
    for (int i = 1; i <= noisy.points(); ++i) unit.push_back((noisy.y(i) - clean.y(i)) / (0.01 * clean.largest().value));
    return unit;
  };
  const std::vector<double> a = noiseOf("1e-3"), b = noiseOf("3e-4");
  ASSERT_EQ(a.size(), 4000u);
  double mean = 0, square = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    ASSERT_NEAR(a[i], b[i], 1e-6);
    mean += a[i] / 4000;
    square += a[i] * a[i] / 4000;
  }
  EXPECT_NEAR(mean, 0, 0.05);
  EXPECT_NEAR(std::sqrt(square - mean * mean), 1, 0.05);
  AnalyticRun fit, quiet;
  fit.ins("Noise", "10");
  fit.wb.formExpr().OK();
  fit.wb.experiment.AutoFitFlag = true;
  RunSimulation(fit.wb);
  quiet.run();
  EXPECT_EQ(fit.wb.experiment.CurNo, 2);
  for (int i = 1; i <= 121; ++i) ASSERT_EQ(fit.wb.store.YData(2, i), quiet.y(i));
}

// Every road by which a run fails ends in one message with its own
// description, keeps First and Last, and puts no NaN or infinity anywhere.
TEST(RunFailures, EachRoadHasItsOwnMessage) {
  const struct {
    const char* script;
    const char* description;
  } cases[] = {
      {"set FormIns.Estep=0", "Division by zero"},
      {"set FormIns.Estep=1e-9", "Overflow"},  // no 16-bit count
      {"set FormIns.Estart=0; set FormIns.Eend=-4; set FormIns.Estep=0.001", "Subscript out of range"},
      {"set FormIns.Estep=0.0003; set FormIns.ComboScan=cycle", "Subscript out of range"},  // NHalf 2001
      {"set FormIns.Estep=0.0006; set FormIns.ComboScan=2 cycles", "Subscript out of range"},
      {"click FormMech.mech(8)", "Invalid argument (logarithm of a number not above 0)"},  // C(4) = 0
      {"click FormIns.optElectrode(7); set FormIns.leng=0", "Invalid argument (logarithm of a number not above 0)"},
      {"click FormIns.optElectrode(7); set FormExpr.D(1)=-1e-5", "Invalid argument (square root of a negative number)"},
      {"set FormExpr.D(2)=0", "Division by zero"},
      {"click FormTech.optTech(2); click FormIns.optElectrode(2); set FormIns.radius=0", "Division by zero"},
      {"click FormIns.optElectrode(5); set FormIns.radius=0", "Division by zero"},
      {"set FormExpr.Eze(1)=50", "Overflow (exponential too large)"},
  };
  for (const auto& c : cases) {
    Session r(kAnalytical + "menu mnuSimulate; " + c.script + "; menu mnuSimulate");  // a good run first
    EXPECT_EQ(r.err.str().substr(0, r.err.str().find('\n')),
              std::string("message: Analytical simulation Error: ") + c.description +
                  "! Please try again by other initial values.");
    EXPECT_EQ(r.e.Last, 121) << c.script;  // the range of the good run stands
    EXPECT_EQ(r.e.CurNo, 1) << c.script;
    for (int row = 0; row <= 8; ++row)
      for (int i = 0; i <= 4000; ++i) ASSERT_TRUE(std::isfinite(r.s.YSim(row, i))) << c.script;
  }
  // The longest runs that fit: 4000 points in each scan mode.
  for (const auto& [scan, eend] : {std::pair{"single", "-3.699"}, {"cycle", "-1.699"}, {"2 cycles", "-0.699"}}) {
    AnalyticRun r;
    r.technique(2);
    r.ins("Eend", eend);
    r.ins("Estep", "0.001");
    r.scan(scan);
    r.run();
    EXPECT_TRUE(r.messages().empty()) << scan;
    EXPECT_EQ(r.wb.experiment.Last, 4000) << scan;
  }
}

}  // namespace
}  // namespace voltrix::test
