// A digital run against what a chemist can check: Randles-Sevcik, the
// Nernst surface ratio, Cottrell currents of the pulse techniques, the
// sphere, the catalytic plateau and conservation of matter.
#include <gtest/gtest.h>

#include "digital/digital_grid.h"
#include "digital/electrode_relation.h"
#include "digital_case.h"
#include "support/expect_close.h"

namespace voltrix::test {
namespace {

constexpr double kPi = 3.141592654;

// n F A C sqrt(D / (pi t)) for 1 mM, D 1e-5, A 1: the limiting current of a
// potential step after time t.
double Cottrell(double t) { return kF * 1e-6 * std::sqrt(1e-5 / (kPi * t)); }

std::string RunMessage(const std::string& description) {
  return "CV Error: " + description + "! Please try again by other initial values.";
}

TEST(DigitalGrid, BoxCountAndFirstMidpoint) {
  EXPECT_EQ(BoxCount(100, 121), 14);
  EXPECT_EQ(BoxCount(100, 242), 15);
  EXPECT_DIGITS(XMid(1), 0.4378, 4);
  EXPECT_EQ(XEdge(1), 0.0);
  EXPECT_DOUBLE_EQ(XEdge(2), 1.0);
  // Each box is e^0.5 wider than the one before.
  EXPECT_CLOSE((XEdge(6) - XEdge(5)) / (XEdge(5) - XEdge(4)), std::exp(0.5), 1e-12);
}

TEST(DigitalGrid, TimeStructureOfThePulseTechniques) {
  const TimeStructure dpSame = MakeTimeStructure(4, 0.05, 0.05, -0.05);
  EXPECT_EQ(dpSame.NSub, 4);
  EXPECT_EQ(dpSame.SubSample, -1);
  const TimeStructure npSame = MakeTimeStructure(3, 0.05, 0.05, -0.05);
  EXPECT_EQ(npSame.NSub, 10);
  EXPECT_EQ(npSame.SubFirst, 1);
  const TimeStructure sw = MakeTimeStructure(5, 0.5, 0.02, -0.05);
  EXPECT_EQ(sw.dt, 0.02);
  EXPECT_EQ(sw.PulseHalf, -0.025);
  const TimeStructure dp = MakeTimeStructure(4, 0.5, 0.05, -0.05);
  EXPECT_DOUBLE_EQ(dp.dt, 0.0125);
  EXPECT_DOUBLE_EQ(dp.NSub, 40);
  EXPECT_DOUBLE_EQ(dp.SubSample, 35);
}

TEST(ReversibleCouple, ForwardPeakMatchesRandlesSevcik) {
  DigitalCase c;  // 0.1 V/s, Estep 0.005
  c.run();
  ASSERT_TRUE(c.messages.shown.empty());
  const int peak = c.extremum(1, c.points(), 1);
  // 28.5 mV beyond the standard potential, on a 5 mV axis.
  EXPECT_NEAR(c.s.XData(peak), -0.0285, 0.005);
  // The box grid with one implicit step per 5 mV stays within a few percent.
  EXPECT_CLOSE(c.total(peak), RandlesSevcik(1, 1, 1e-3, 1e-5, 0.1, c.fRT()), 0.05);
}

TEST(ReversibleCouple, ReversePeakOfAFullCycle) {
  DigitalCase c;
  c.e.Cycles = 1;
  c.run();
  ASSERT_EQ(c.points(), 242);
  const int cathodic = c.extremum(1, 121, 1);
  const int anodic = c.extremum(122, 242, -1);
  EXPECT_LT(c.total(anodic), 0);  // oxidation of B back to A
  EXPECT_NEAR(c.s.XData(anodic), 0.0285, 0.005);
  // Peak separation of a reversible one-electron couple: about 58 mV.
  EXPECT_NEAR(c.s.XData(anodic) - c.s.XData(cathodic), 0.058, 0.006);
}

TEST(ReversibleCouple, SurfaceFollowsNernstAndConservesMatter) {
  DigitalCase c;
  c.run();
  for (int t = 20; t <= 100; t += 10) {
    const double E = c.s.XData(t);
    EXPECT_CLOSE(c.s.SurfC(1, t) / c.s.SurfC(2, t), std::exp(c.fRT() * E), 1e-3) << "E " << E;
    // Equal D: what A loses at the surface, B gains.
    EXPECT_CLOSE(c.s.SurfC(1, t) + c.s.SurfC(2, t), 1e-3, 1e-9);
  }
}

TEST(PulseTechniques, LimitingCurrentsAreCottrellCurrents) {
  DigitalCase dc;
  dc.e.Technique = 2;
  dc.e.td = 0.5;
  dc.run();
  // Ten implicit substeps per drop: within 1.5 %.
  EXPECT_CLOSE(dc.total(dc.points()), Cottrell(0.5), 0.015);

  DigitalCase np;
  np.e.Technique = 3;
  np.e.td = 0.5;
  np.run();
  EXPECT_CLOSE(np.total(np.points()), Cottrell(0.05), 0.015);
}

TEST(PulseTechniques, DifferentialPulsePeak) {
  DigitalCase dp;
  dp.e.Technique = 4;
  dp.e.td = 0.5;
  dp.run();
  const int peak = dp.extremum(1, dp.points(), 1);
  // A pulse of -50 mV peaks at E0 + 25 mV.
  EXPECT_NEAR(dp.s.XData(peak), 0.025, 0.0026);
  // The pulse lasts the last five substeps of tp / 4; the closed form for a
  // reversible couple is the Cottrell current of that time times
  // (s - 1) / (s + 1), s = exp(nF |dE| / 2RT).
  const double s = std::exp(dp.fRT() * 0.025);
  EXPECT_CLOSE(dp.total(peak), Cottrell(5 * 0.05 / 4) * (s - 1) / (s + 1), 0.04);
}

TEST(PulseTechniques, SquareWavePeaksAtTheStandardPotential) {
  DigitalCase sw;
  sw.e.Technique = 5;
  sw.e.Eze(1) = -0.1;
  sw.run();
  ASSERT_TRUE(sw.messages.shown.empty());
  // Forward minus backward current of a reversible couple is symmetric
  // about E0.
  EXPECT_NEAR(sw.s.XData(sw.extremum(1, sw.points(), 1)), -0.1, 0.0026);
}

TEST(PulseTechniques, DropAsLongAsThePulse) {
  // Normal pulse: samples at substeps 1 and 10, the row holds the end.
  DigitalCase np;
  np.e.Technique = 3;
  np.e.td = 0.05;
  np.run();
  EXPECT_CLOSE(np.total(np.points()), Cottrell(0.05), 0.015);
  // Differential pulse: the pulse is on in all four substeps and nothing is
  // subtracted, so the row is the end-of-pulse current (four implicit
  // substeps overshoot Cottrell by some 6 %).
  DigitalCase dp;
  dp.e.Technique = 4;
  dp.e.td = 0.05;
  dp.run();
  EXPECT_CLOSE(dp.total(dp.points()), Cottrell(0.05), 0.08);
  EXPECT_GT(dp.total(dp.points()), Cottrell(0.05));
}

TEST(PulseTechniques, SubstepCountThatIsNotWholeSamplesNothing) {
  DigitalCase np;
  np.e.Technique = 3;
  np.e.td = 0.5;
  np.e.tp = 0.035;  // 142.857 substeps
  np.run();
  EXPECT_TRUE(np.messages.shown.empty());
  double largest = 0;
  for (int t = 1; t <= np.points(); ++t) largest = std::max(largest, std::fabs(np.total(t)));
  EXPECT_EQ(largest, 0.0);
  // The substeps still ran: the surface is depleted at the end.
  EXPECT_LT(np.s.SurfC(1, np.points()), 1e-5);
}

TEST(Electrodes, SlowSweepOnASphereReachesItsSteadyState) {
  DigitalCase c;
  c.e.Electrode = 2;
  c.e.radius = 0.01;
  c.e.Estep = 0.001;
  c.e.td = 1;  // 1 mV/s
  c.run();
  const double steady = kF * 1e-6 * 1e-5 / 0.01;  // n F A D C / r
  const int end = c.points();
  EXPECT_CLOSE(c.total(end), steady, 0.05);
  // A plateau, not a peak: flat over the last 50 mV.
  EXPECT_CLOSE(c.total(end), c.total(end - 50), 0.02);
}

TEST(Electrodes, StepOnASphereFollowsCottrellPlusSteadyState) {
  DigitalCase c;
  c.e.Electrode = 3;  // hemisphere: the same grid family
  c.e.Technique = 2;
  c.e.radius = 0.01;
  c.e.td = 10;
  c.run();
  // n F A D C (1 / r + 1 / sqrt(pi D t)); the first box is a thirtieth of
  // the radius and its inner face is planar, which costs some 6 %.
  const double exact = kF * 1e-6 * 1e-5 * (1 / 0.01 + 1 / std::sqrt(kPi * 1e-5 * 10));
  EXPECT_CLOSE(c.total(c.points()), exact, 0.07);
  // A planar electrode gives the Cottrell part alone.
  DigitalCase planar;
  planar.e.Technique = 2;
  planar.e.td = 10;
  planar.run();
  EXPECT_CLOSE(planar.total(planar.points()), Cottrell(10), 0.015);
}

TEST(Electrodes, GridFamiliesAndTheirPlanarLimit) {
  DigitalCase planar;
  planar.run();
  // Thin film and rotating disk have no grid of their own here.
  for (int electrode : {7, 8}) {
    DigitalCase c;
    c.e.Electrode = electrode;
    c.run();
    for (int t = 1; t <= c.points(); ++t) ASSERT_EQ(c.total(t), planar.total(t)) << electrode;
  }
  // A curved electrode much larger than the diffusion layer (some 0.02 cm
  // here) behaves as a plane: 2 cm radius, within 1.5 % at the peak.
  const int peak = planar.extremum(1, planar.points(), 1);
  for (int electrode : {2, 5}) {
    DigitalCase c;
    c.e.Electrode = electrode;
    c.e.radius = 2;
    c.run();
    EXPECT_CLOSE(c.total(peak), planar.total(peak), 0.015) << electrode;
    EXPECT_GT(c.total(peak), planar.total(peak));  // curvature only adds flux
  }
}

TEST(Chemistry, CatalyticRegenerationReachesThePlateau) {
  // A + e = B, B = A (EC'): n F A C sqrt(D k) for fast regeneration.
  DigitalCase c;
  c.typed({"A", "B"}, {"B", "A"});
  c.e.kf(1) = 1000;
  c.e.kb(1) = 0;
  c.run();
  ASSERT_TRUE(c.messages.shown.empty());
  const double plateau = kF * 1e-6 * std::sqrt(1e-5 * 1000);
  EXPECT_CLOSE(c.total(c.points()), plateau, 0.01);
}

TEST(Chemistry, SecondOrderCatalysisWithAnExcessOfCoreactant) {
  // B + Z = A + Y with Z 1000 times in excess: pseudo-first order.
  DigitalCase c;
  c.typed({"A", "B"}, {}, {"B", "Z", "A", "Y"});
  c.e.kf(1) = 1000;
  c.e.kb(1) = 0;
  c.e.C(3) = 1;  // Z, the largest: concentrations are relative to it
  c.run();
  ASSERT_TRUE(c.messages.shown.empty());
  const double plateau = kF * 1e-6 * std::sqrt(1e-5 * 1000);
  // Z is depleted by a few percent in the reaction layer.
  EXPECT_CLOSE(c.total(c.points()), plateau, 0.05);
  EXPECT_LT(c.total(c.points()), plateau);
}

TEST(Chemistry, FourSpeciesChainKeepsThreeBoundedWaves) {
  DigitalCase c;
  c.typed({"A", "B", "B", "C", "C", "D"});
  c.e.Eze(2) = -0.2;
  c.e.Eze(3) = -0.4;
  c.e.Eend = -0.8;
  c.e.Electrode = 2;
  c.e.radius = 0.01;
  c.e.td = 5;  // 1 mV/s
  CompileMechanism(c.mech, c.e);
  ASSERT_EQ(FindChain(c.e.ChargeMap), ChargeChain::Chain3);
  c.run();
  const int end = c.points();
  // Past all three waves every reaction carries the flux of A arriving.
  const double steady = kF * 1e-6 * 1e-5 / 0.01;
  for (int r = 1; r <= 3; ++r) EXPECT_CLOSE(c.current(r, end), steady, 0.07) << "reaction " << r;
  // All of A ends as D at the surface, and nothing exceeds the bulk.
  EXPECT_CLOSE(c.s.SurfC(4, end), 1e-3, 1e-3);
  for (int t = 1; t <= end; ++t)
    for (int i = 1; i <= 4; ++i) ASSERT_LE(c.s.SurfC(i, t), 1e-3 * (1 + 1e-9));
}

TEST(Chemistry, ChainCasesFollowTheOrderOfTyping) {
  DigitalCase c;
  c.typed({"A", "B", "B", "C", "C", "D"});
  CompileMechanism(c.mech, c.e);
  EXPECT_EQ(FindChain(c.e.ChargeMap), ChargeChain::Chain3);
  c.typed({"C", "D", "A", "B", "B", "C"});  // the same three, out of order
  CompileMechanism(c.mech, c.e);
  EXPECT_EQ(FindChain(c.e.ChargeMap), ChargeChain::None);
  c.typed({"A", "B", "B", "C", "E", "F"});
  CompileMechanism(c.mech, c.e);
  EXPECT_EQ(FindChain(c.e.ChargeMap), ChargeChain::Chain2);
  c.typed({"A", "B"});
  CompileMechanism(c.mech, c.e);
  EXPECT_EQ(FindChain(c.e.ChargeMap), ChargeChain::None);
  c.typed({"A", ""});  // empty right side, no reaction 2: 0 meets 0
  CompileMechanism(c.mech, c.e);
  EXPECT_EQ(FindChain(c.e.ChargeMap), ChargeChain::Chain2);
}

TEST(UncompensatedResistance, ShiftsThePeakByTheOhmicDrop) {
  DigitalCase plain;
  plain.run();
  DigitalCase resisted;
  resisted.e.Ru = 100;
  resisted.run();
  const int p0 = plain.extremum(1, plain.points(), 1);
  const int p1 = resisted.extremum(1, resisted.points(), 1);
  const double drop = 100 * plain.total(p0);  // about 26 mV
  const double shift = plain.s.XData(p0) - resisted.s.XData(p1);
  EXPECT_GT(shift, 0.5 * drop);
  EXPECT_LT(shift, 1.5 * drop);
  EXPECT_LT(resisted.total(p1), plain.total(p0));  // and lowers it
}

TEST(RunErrors, EndInOneMessageAndKeepThePointsBefore) {
  DigitalCase empty;
  empty.e.C(1) = 0;
  empty.run();
  EXPECT_EQ(empty.messages.shown, std::vector<std::string>{RunMessage("Division by zero")});

  DigitalCase coarse;  // a reaction so fast that the grid needs over 99 boxes
  coarse.typed({"A", "B"}, {"B", "C"});
  coarse.e.kf(1) = 1e45;
  coarse.run();
  EXPECT_EQ(coarse.messages.shown, std::vector<std::string>{RunMessage("Subscript out of range")});

  DigitalCase steep;  // 100 electrons: the rate constant overflows at -0.365 V
  steep.e.NEL(1) = 100;
  steep.e.Eend = -0.5;
  steep.run();
  ASSERT_EQ(steep.messages.shown.size(), 1u);
  EXPECT_EQ(steep.messages.shown[0].rfind("CV Error: Overflow", 0), 0u);
  EXPECT_NE(steep.total(100), 0.0);
  EXPECT_EQ(steep.total(steep.points()), 0.0);

  DigitalCase noPulse;
  noPulse.e.Technique = 4;
  noPulse.e.tp = 0;
  noPulse.run();
  EXPECT_EQ(noPulse.messages.shown, std::vector<std::string>{RunMessage("Division by zero")});
}

}  // namespace
}  // namespace voltrix::test
