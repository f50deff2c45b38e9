// Whole runs from the forms against what a chemist can check on paper:
// Randles-Sevcik, Cottrell, Levich, spherical steady state, the catalytic
// plateau, capacitive current.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "analytic_run.h"
#include "support/expect_close.h"

namespace voltrix::test {
namespace {

constexpr double kF = 96484.6, kPi = 3.141592654;
constexpr double kC = 1e-6;  // 1 mM in mol/cm^3
constexpr double kD = 1e-5;

double Fr(const AnalyticRun& r) { return r.wb.experiment.fRT; }

// The semi-differentiation takes its scale from the potential step: its
// 0.25 / sqrt(pi h) equals the exact half-order scale of the time step at
// h0 = 1 / (64 pi) V, about 5 mV. So at the default 5 mV step the peak is
// Randles-Sevcik, 0.4463 nFAC sqrt(nFvD/RT), and for smaller steps the
// peak times sqrt(h / h0) converges to it while the peak potential moves to
// E1/2 - 28.5 mV.
TEST(SweepPhysics, ReversiblePeakIsRandlesSevcik) {
  const double h0 = 1 / (64 * kPi);
  AnalyticRun r;
  r.run();
  const double rs = 0.4463 * kF * kC * std::sqrt(Fr(r) * 0.01 * kD);
  EXPECT_CLOSE(r.largest().value, rs, 2e-3);

  double previousError = 1;
  for (const char* step : {"0.002", "0.001", "0.0005"}) {
    SCOPED_TRACE(step);
    AnalyticRun fine;
    fine.ins("Estep", step);
    fine.run();
    const auto peak = fine.largest();
    const double error = std::fabs(peak.value * std::sqrt(std::stod(step) / h0) / rs - 1);
    EXPECT_LT(error, previousError);
    previousError = error;
    EXPECT_NEAR(peak.x, -0.0285, std::stod(step));
  }
  EXPECT_LT(previousError, 3e-4);
}

// Peak current in proportion to sqrt(v) and to C at a fixed step.
TEST(SweepPhysics, PeakScalesWithRootOfScanRateAndWithConcentration) {
  AnalyticRun slow, fast, dilute;
  slow.run();
  fast.ins("V", "0.04");
  fast.run();
  dilute.expr("C", 1, "2e-4");
  dilute.run();
  EXPECT_CLOSE(fast.largest().value / slow.largest().value, 2, 1e-3);
  EXPECT_CLOSE(dilute.largest().value / slow.largest().value, 0.2, 1e-9);
}

// DC samples at td, normal pulse at tp: both plateaus are Cottrell currents
// nFAC sqrt(D / (pi t)). The kernel's own root of pi and ks = 1e4 allow 1e-5.
TEST(PlateauPhysics, DcAndNormalPulseFollowCottrellAtTheirSamplingTimes) {
  const struct {
    int technique;
    const char* box;
    const char* time;
    double t;
  } cases[] = {{2, "V", "0.005", 1.0}, {2, "V", "0.05", 0.1}, {3, "tp", "0.05", 0.05}, {3, "tp", "0.2", 0.2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.box) + " " + c.time);
    AnalyticRun r;
    r.technique(c.technique);
    r.ins(c.box, c.time);
    r.run();
    ASSERT_DOUBLE_EQ(c.technique == 2 ? r.wb.experiment.td : r.wb.experiment.tp, c.t);
    EXPECT_CLOSE(r.y(121), kF * kC * std::sqrt(kD / (kPi * c.t)), 1e-5);
  }
}

// Rotating disk: the DC plateau is Levich, 0.62 nFAC D^(2/3) nu^(-1/6) w^(1/2),
// with the area the geometry step gives the disk.
TEST(PlateauPhysics, RotatingDiskFollowsLevich) {
  AnalyticRun r;
  r.technique(2);
  r.electrode(8);
  r.ins("TextRrate", "400");
  r.run();
  const Experiment& e = r.wb.experiment;
  ASSERT_EQ(e.Code, 28);
  EXPECT_CLOSE(e.omega, 400 * kPi / 30, 1e-12);
  const double levich =
      0.62 * kF * e.ARE * kC * std::pow(kD, 2.0 / 3) * std::pow(e.Vis.value(), -1.0 / 6) * std::sqrt(e.omega.value());
  EXPECT_CLOSE(r.y(121), levich, 1e-5);
  // The plateau doubles for four times the rotation rate.
  AnalyticRun fast;
  fast.technique(2);
  fast.electrode(8);
  fast.ins("TextRrate", "1600");
  fast.run();
  EXPECT_CLOSE(fast.y(121) / r.y(121), 2, 1e-5);
}

// A sweep at a sphere carries the planar sweep plus the steady flux nFADC/r,
// switched on past Estart and off above E0.
TEST(SweepPhysics, SphereAddsSteadyStateFlux) {
  AnalyticRun planar, sphere;
  planar.run();
  sphere.electrode(2);
  sphere.run();
  const Experiment& e = sphere.wb.experiment;
  ASSERT_EQ(e.Code, 12);
  ASSERT_EQ(e.ARE, planar.wb.experiment.ARE);  // 4 pi r^2 is 1 cm^2 to the digits kept
  const double steady = kF * e.ARE * kD * kC / e.radius;
  EXPECT_CLOSE(sphere.y(121) - planar.y(121), steady, 1e-4);
  EXPECT_NEAR(sphere.y(1) - planar.y(1), 0, 1e-20);
  // The per-reaction row does not carry it.
  EXPECT_DOUBLE_EQ(sphere.sim(1, 121), planar.sim(1, 121));
}

// A sweep at a thin film is a thin-layer wave: its peak is
// n^2 F^2 v A l C / (4 RT). Central differences on the potential grid
// flatten the top by about 0.4 % at 5 mV and 0.01 % at 1 mV.
TEST(SweepPhysics, ThinFilmPeakIsTheThinLayerPeak) {
  const struct {
    const char* step;
    double tolerance;
  } cases[] = {{"0.005", 6e-3}, {"0.001", 2e-4}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.step);
    AnalyticRun r;
    r.electrode(7);
    r.ins("Estep", c.step);
    r.run();
    ASSERT_EQ(r.wb.experiment.Code, 17);
    const Experiment& e = r.wb.experiment;
    const double thinLayer = kF * e.fRT * e.V * e.ARE * e.leng * kC / 4;
    EXPECT_CLOSE(r.largest().value, thinLayer, c.tolerance);
  }
}

// Mechanism 8, C = A + pD before A + ne = B: the equilibrium acts only as a
// shift of E0 by (RT/nF)(ln Keq - p ln C(D)), with the pair C(2), C(3).
TEST(MechanismPhysics, PrecedingEquilibriumShiftsTheStandardPotential) {
  AnalyticRun m8;
  m8.mechanism(8);
  m8.technique(2);
  m8.expr("C", 2, "1e-3");
  m8.expr("C", 4, "0.01");
  m8.run();
  ASSERT_TRUE(m8.messages().empty());
  const Experiment& e = m8.wb.experiment;
  const double shift = e.RTF * (std::log(e.Keq(1)) - e.pl(1) * std::log(e.C(4)));
  ASSERT_GT(std::fabs(shift), 0.05);

  AnalyticRun m1;
  m1.technique(2);
  m1.expr("C", 1, "1e-3");
  m1.expr("Eze", 1, std::to_string(shift));
  m1.run();
  ASSERT_NEAR(m1.wb.experiment.Eze(1), shift, 1e-6);
  EXPECT_CLOSE(m8.y(121), kF * kC * std::sqrt(kD / (kPi * 0.5)), 1e-4);
  // std::to_string keeps six decimals: a potential off by < 1 uV.
  for (int i : {1, 40, 60, 80, 121}) EXPECT_CLOSE(m8.y(i), m1.y(i), 1e-4) << i;
}

// Mechanism 7, A + ne = B with B = A: the catalytic plateau nFAC sqrt(D kf)
// stands in row 8 and is added to the sum for DC.
TEST(MechanismPhysics, CatalyticPlateauIsRootOfDk) {
  AnalyticRun r;
  r.mechanism(7);
  r.technique(2);
  r.run();
  ASSERT_TRUE(r.messages().empty());
  const double kf = r.wb.experiment.kf(1);
  EXPECT_CLOSE(r.sim(8, 121), kF * kC * std::sqrt(kD * kf), 1e-5);
  EXPECT_DOUBLE_EQ(r.y(121), r.sim(1, 121) + r.sim(8, 121));
}

TEST(MechanismPhysics, CatalyticPulseScalesOnlyTheSum) {
  AnalyticRun plain, cat;
  plain.technique(4);
  plain.run();
  cat.technique(4);
  cat.mechanism(7);
  cat.run();
  const double factor = std::sqrt(cat.wb.experiment.kf(1) * cat.wb.experiment.tp) / 1.38;
  for (int i : {1, 56, 121}) {
    EXPECT_DOUBLE_EQ(cat.sim(1, i), plain.sim(1, i));
    EXPECT_CLOSE(cat.y(i), plain.y(i) * factor, 1e-12);
  }
}

// Two reactions: each row is a Cottrell wave with its own species pair
// (reaction 2 takes species 3 and 4), and the curve is their sum.
TEST(MechanismPhysics, ReactionsAddUp) {
  AnalyticRun r;
  r.mechanism(4);  // A + ne = B, C + ne = D
  r.technique(2);
  r.expr("C", 3, "5e-4");
  r.run();
  ASSERT_TRUE(r.messages().empty());
  ASSERT_EQ(r.wb.experiment.NTotalRow, 3);
  const double cottrell = kF * kC * std::sqrt(kD / (kPi * 0.5));
  EXPECT_CLOSE(r.sim(1, 121), cottrell, 1e-5);
  // E0 of reaction 2 is -0.1 V, only 0.2 V before the end: Nernst still shows.
  EXPECT_CLOSE(r.sim(2, 121), 0.5 * cottrell / (1 + std::exp(Fr(r) * (-0.3 - -0.1))), 1e-5);
  for (int i : {1, 60, 121}) EXPECT_DOUBLE_EQ(r.y(i), r.sim(1, i) + r.sim(2, i));
}

TEST(MechanismPhysics, OneReactionSumEqualsItsRow) {
  AnalyticRun r;
  r.technique(2);
  r.run();
  ASSERT_EQ(r.wb.experiment.NTotalRow, 2);
  for (int i = 1; i <= 121; ++i) ASSERT_EQ(r.sim(2, i), r.sim(1, i));
}

// Pulses at a thin film carry no current, and with no Cdl even noise has
// nothing to scale.
TEST(MechanismPhysics, PulsesAtAThinFilmGiveAFlatCurve) {
  AnalyticRun r;
  r.technique(3);
  r.electrode(7);
  r.ins("Noise", "5");
  r.run();
  ASSERT_EQ(r.wb.experiment.Code, 37);
  for (int i = 1; i <= 121; ++i) ASSERT_EQ(r.y(i), 0);
}

// Capacitive current Cdl A v: positive (cathodic) on a negative-going scan,
// negative on the way back; a pulse run charges with the distance moved.
TEST(ChargingCurrent, FollowsScanDirection) {
  const double Q = 2e-5 * 1 * 0.01;
  AnalyticRun clean, charged;
  clean.scan("cycle");
  clean.run();
  charged.scan("cycle");
  charged.ins("Cdl", "2e-5");
  charged.run();
  for (int i = 1; i <= 121; ++i) ASSERT_NEAR(charged.y(i) - clean.y(i), Q, 1e-15) << i;
  for (int i = 122; i <= 242; ++i) ASSERT_NEAR(charged.y(i) - clean.y(i), -Q, 1e-15) << i;

  // A one-way negative scan is cathodic all along: Q on every point.
  AnalyticRun single, singleCharged;
  single.run();
  singleCharged.ins("Cdl", "2e-5");
  singleCharged.run();
  for (int i : {1, 67, 121}) EXPECT_NEAR(singleCharged.y(i) - single.y(i), Q, 1e-15) << i;

  AnalyticRun dc, dcCharged;
  dc.technique(2);
  dc.run();
  dcCharged.technique(2);
  dcCharged.ins("Cdl", "2e-5");
  dcCharged.run();
  EXPECT_EQ(dcCharged.y(1), dc.y(1));
  for (int i : {2, 60, 121}) EXPECT_NEAR(dcCharged.y(i) - dc.y(i), (0.3 - dc.x(i)) * Q, 1e-15) << i;
}

// The generator is seeded from NData alone: the same pattern for the same
// length, scaled by the curve's signed extreme, normal with standard
// deviation 0.25 % of it per percent of noise.
TEST(Noise, SameLengthSamePatternScaledByTheExtreme) {
  auto noiseOf = [](const char* c1) {
    AnalyticRun clean, noisy;
    for (AnalyticRun* r : {&clean, &noisy}) {
      r->technique(2);
      r->ins("Estep", "0.00015");  // 4001 would not fit: 0.6 / 0.00015 = 4000 steps
      r->ins("Eend", "-0.29985");
      r->expr("C", 1, c1);
    }
    noisy.ins("Noise", "4");
    clean.run();
    noisy.run();
    EXPECT_EQ(noisy.points(), 4000);
    const double big = clean.largest().value;
    std::vector<double> unit;
    for (int i = 1; i <= noisy.points(); ++i) unit.push_back((noisy.y(i) - clean.y(i)) / (4 * big * 0.0025));
    return unit;
  };
  const std::vector<double> a = noiseOf("1e-3"), b = noiseOf("3e-4");
  ASSERT_EQ(a.size(), 4000u);
  double mean = 0, square = 0;
  for (size_t i = 0; i < a.size(); ++i) {
    EXPECT_NEAR(a[i], b[i], 1e-6);
    mean += a[i] / a.size();
    square += a[i] * a[i] / a.size();
  }
  EXPECT_NEAR(mean, 0, 0.05);
  EXPECT_NEAR(std::sqrt(square - mean * mean), 1, 0.05);
}

TEST(Noise, FitRunsAreDeterministicAndLandInRowTwo) {
  AnalyticRun r;
  r.ins("Noise", "10");
  r.wb.formExpr().OK();
  r.wb.experiment.AutoFitFlag = true;
  RunSimulation(r.wb);
  EXPECT_EQ(r.wb.experiment.CurNo, 2);
  EXPECT_EQ(r.wb.experiment.NCurves, 2);
  AnalyticRun quiet;
  quiet.run();
  for (int i = 1; i <= 121; ++i) ASSERT_EQ(r.wb.store.YData(2, i), quiet.y(i));
}

}  // namespace
}  // namespace voltrix::test
