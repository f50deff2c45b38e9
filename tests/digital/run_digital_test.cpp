// A digital run against what a chemist checks on paper: Randles-Sevcik,
// Nernst, the Cottrell currents of the pulse techniques, the sphere, the
// catalytic plateau, conservation of matter; and its grid, time structure
// and messages.
#include <gtest/gtest.h>

#include "digital/digital_grid.h"
#include "digital/electrode_relation.h"
#include "digital_case.h"
#include "support/session.h"
#include "support/expect_close.h"

namespace voltrix::test {
namespace {

constexpr double kPi = 3.141592654;

// n F A C sqrt(D / (pi t)) for 1 mM, D 1e-5, A 1 cm2 (Bard and Faulkner
// 2001).
double Cottrell(double t) { return kF * 1e-6 * std::sqrt(1e-5 / (kPi * t)); }
// n F A D C / r, the steady state at a sphere.
double Steady(double r) { return kF * 1e-6 * 1e-5 / r; }
// n F A C sqrt(D k), the catalytic plateau (Saveant and Vianello 1965).
double Catalytic(double k) { return kF * 1e-6 * std::sqrt(1e-5 * k); }

enum class Measure { Peak, PeakPotential, End };

// Through the forms, per cm2 of electrode: A + e = B, E0 0 V, 1 mM, 0.1 V/s.
TEST(DigitalRun, AgreesWithTheClosedFormsOfElectrochemistry) {
  const double fRT = DigitalCase().fRT(), s = std::exp(fRT * 0.025);
  const struct {
    const char* script;
    Measure measure;
    double expected, tolerance;  // relative for currents, in V for potentials
  } cases[] = {
      {"", Measure::Peak, RandlesSevcik(1, 1, 1e-3, 1e-5, 0.1, fRT), 0.05},
      {"", Measure::PeakPotential, -0.0285, 0.005},  // 28.5 mV past E0
      {"click FormTech.optTech(2); set FormIns.V=0.01", Measure::End, Cottrell(0.5), 0.015},
      {"click FormTech.optTech(2); set FormIns.V=0.0005", Measure::End, Cottrell(10), 0.015},
      {"click FormTech.optTech(2); set FormIns.V=0.01; set FormMech.NEL(1)=2", Measure::End, 2 * Cottrell(0.5), 0.015},
      {"click FormTech.optTech(3); set FormIns.V=0.01", Measure::End, Cottrell(0.05), 0.015},
      {"click FormTech.optTech(3)", Measure::End, Cottrell(0.05), 0.015},  // td = tp: samples at 1 and 10
      // The differential pulse lasts the last five substeps of tp / 4; a
      // reversible couple peaks at E0 - Epulse / 2 with (s - 1) / (s + 1) of
      // the Cottrell current, s = exp(nF |dE| / 2RT).
      {"click FormTech.optTech(4); set FormIns.V=0.01", Measure::Peak, Cottrell(5 * 0.05 / 4) * (s - 1) / (s + 1), 0.04},
      {"click FormTech.optTech(4); set FormIns.V=0.01", Measure::PeakPotential, 0.025, 0.0026},
      // td = tp: the pulse is on in all four substeps and nothing is
      // subtracted; four implicit substeps overshoot Cottrell by some 6 %.
      {"click FormTech.optTech(4)", Measure::End, Cottrell(0.05) * 1.06, 0.03},
      {"click FormTech.optTech(5); set FormExpr.Eze(1)=-0.1", Measure::PeakPotential, -0.1, 0.0026},
      {"click FormIns.optElectrode(2); set FormIns.radius=0.01; set FormIns.Estep=0.001; set FormIns.V=0.001",
       Measure::End, Steady(0.01), 0.05},  // 1 mV/s: a plateau
      // The first box is a thirtieth of the radius and its inner face is
      // planar, which costs some 6 %.
      {"click FormIns.optElectrode(3); click FormTech.optTech(2); set FormIns.radius=0.01; set FormIns.V=0.0005",
       Measure::End, Cottrell(10) + Steady(0.01), 0.07},
      {"set FormMech.chem(1)=B; set FormMech.chem(2)=A; set FormExpr.kf(1)=1000; set FormExpr.kb(1)=0", Measure::End,
       Catalytic(1000), 0.01},
      // B + Z = A + Y with Z in a thousandfold excess: pseudo-first order; Z
      // is depleted by a few percent in the reaction layer.
      {"set FormMech.chem2(1)=B; set FormMech.chem2(2)=Z; set FormMech.chem2(3)=A; set FormMech.chem2(4)=Y; "
       "set FormExpr.kf(1)=1000; set FormExpr.kb(1)=0; set FormExpr.C(3)=1",
       Measure::End, Catalytic(1000) * 0.97, 0.03},
  };
  for (const auto& c : cases) {
    Session d(kDigital + c.script + "; menu mnuSimulate");
    ASSERT_EQ(d.err.str(), "") << c.script;
    const int peak = d.peak();
    if (c.measure == Measure::PeakPotential) {
      EXPECT_NEAR(d.s.XData(peak), c.expected, c.tolerance) << c.script;
    } else {
      const double perArea = d.y(c.measure == Measure::Peak ? peak : d.points()) / d.e.ARE;
      EXPECT_CLOSE(perArea, c.expected, c.tolerance) << c.script;
    }
  }
}

// A whole cycle of the reversible couple: the anodic peak 28.5 mV above E0,
// some 58 mV from the cathodic one; at the surface the Nernst ratio, and what
// A loses B gains. A fast following equilibrium B = C of constant K = 1
// shifts a DC wave by (RT/F) ln(1 + K) (Bard and Faulkner 2001): half
// the limit at E0 + 17.8 mV, A + B + C at the bulk.
TEST(DigitalRun, ReversibleCouplesFollowNernstAndKeepMatter) {
  Session c(kDigital + "set FormIns.ComboScan=cycle; menu mnuSimulate");
  int cathodic = 1, anodic = 122;
  for (int t = 1; t <= 242; ++t) {
    cathodic = t <= 121 && c.y(t) > c.y(cathodic) ? t : cathodic;
    anodic = t > 121 && c.y(t) < c.y(anodic) ? t : anodic;
  }
  EXPECT_NEAR(c.s.XData(anodic), 0.0285, 0.005);
  EXPECT_NEAR(c.s.XData(anodic) - c.s.XData(cathodic), 0.058, 0.006);
  for (int t = 20; t <= 220; t += 10) {
    EXPECT_CLOSE(c.s.SurfC(1, t) / c.s.SurfC(2, t), std::exp(c.e.fRT * c.s.XData(t)), 1e-3) << t;
    EXPECT_CLOSE(c.s.SurfC(1, t) + c.s.SurfC(2, t), 1e-3, 1e-9) << t;
  }
  const double step = std::log(2.0) / c.e.fRT / 10;  // point 11 stands at E0 + (RT/F) ln 2
  Session ec("set FormMech.chem(1)=B; set FormMech.chem(2)=C; set FormExpr.kf(1)=1e5; set FormExpr.kb(1)=1e5; " + kDigital +
             "click FormTech.optTech(2); set FormIns.V=" + std::to_string(step) + "; set FormIns.Estep=" + std::to_string(step) +
             "; set FormIns.Estart=" + std::to_string(20 * step) + "; menu mnuSimulate");
  ASSERT_EQ(ec.err.str(), "");
  EXPECT_CLOSE(ec.y(11), ec.y(ec.points()) / 2, 0.01);
  for (int t : {1, 11, 30}) EXPECT_CLOSE(ec.s.SurfC(1, t) + ec.s.SurfC(2, t) + ec.s.SurfC(3, t), 1e-3, 1e-6) << t;
}

// Three consecutive couples, typed in order, take the Chain3 relation: past
// all three waves every reaction carries the flux of A arriving at a small
// sphere, A ends as D at the surface, and nothing exceeds the bulk.
TEST(DigitalRun, ThreeConsecutiveWavesStayBounded) {
  DigitalCase c;
  c.typed({"A", "B", "B", "C", "C", "D"});
  c.e.Eze(2) = -0.2;
  c.e.Eze(3) = -0.4;
  c.e.Eend = -0.8;
  c.e.Electrode = 2;
  c.e.radius = 0.01;
  c.e.td = 5;  // 1 mV/s
  c.run();
  ASSERT_EQ(FindChain(c.e.ChargeMap), ChargeChain::Chain3);
  for (int r = 1; r <= 3; ++r) EXPECT_CLOSE(c.current(r, c.points()), Steady(0.01), 0.07) << r;
  EXPECT_CLOSE(c.s.SurfC(4, c.points()), 1e-3, 1e-3);
  for (int t = 1; t <= c.points(); ++t)
    for (int i = 1; i <= 4; ++i) ASSERT_LE(c.s.SurfC(i, t), 1e-3 * (1 + 1e-9));
  for (auto [charge, chain] : {std::pair{std::vector<std::string>{"C", "D", "A", "B", "B", "C"}, ChargeChain::None},  // out of order
                                {std::vector<std::string>{"A", "B", "B", "C", "E", "F"}, ChargeChain::Chain2},
                                // an empty right side and no reaction 2: place 0 meets place 0
                                {std::vector<std::string>{"A", ""}, ChargeChain::Chain2}}) {
    c.typed(charge);
    CompileMechanism(c.mech, c.e);
    EXPECT_EQ(FindChain(c.e.ChargeMap), chain) << charge[0];
  }
}

// An uncompensated resistance shifts each point by Ru times the current of
// the point before: the peak moves by about the ohmic drop and falls.
TEST(DigitalRun, ResistanceShiftsThePeakByTheOhmicDrop) {
  const std::string strong = kDigital + "set FormExpr.C(1)=0.2; ";  // 0.2 M: some 27 mV across half an ohm
  Session plain(strong + "menu mnuSimulate"), resisted(strong + "set FormIns.txtRu=0.5; menu mnuSimulate");
  const double drop = 0.5 * plain.y(plain.peak());
  const double shift = plain.s.XData(plain.peak()) - resisted.s.XData(resisted.peak());
  EXPECT_GT(shift, 0.5 * drop);
  EXPECT_LT(shift, 1.5 * drop);
  EXPECT_LT(resisted.y(resisted.peak()), plain.y(plain.peak()));
}

TEST(DigitalGrid, BoxesAndTimeStructure) {
  EXPECT_EQ(std::pair(BoxCount(100, 121), BoxCount(100, 242)), std::pair(14, 15));
  EXPECT_DIGITS(XMid(1), (std::exp(0.25) - 1) / (std::exp(0.5) - 1), 12);
  EXPECT_CLOSE((XEdge(6) - XEdge(5)) / (XEdge(5) - XEdge(4)), std::exp(0.5), 1e-12);
  const struct {
    int technique;
    double td, tp;
    double dt, NSub, SubFirst, SubSample, PulseHalf;
  } cases[] = {{4, 0.05, 0.05, 0.0125, 4, 1, -1, 0},  {3, 0.05, 0.05, 0.005, 10, 1, 1, 0},
               {4, 0.5, 0.05, 0.0125, 40, 1, 35, 0},  {5, 0.5, 0.02, 0.02, 2, 1, 1, -0.025},
               {2, 0.5, 0.05, 0.05, 10, 1, 1, 0},     {1, 0.05, 0.05, 0.05, 1, 1, 1, 0}};
  for (const auto& c : cases) {
    const TimeStructure t = MakeTimeStructure(c.technique, c.td, c.tp, -0.05);
    EXPECT_EQ(std::vector<double>({t.dt, t.NSub, t.SubFirst, t.SubSample, t.PulseHalf}),
              std::vector<double>({c.dt, c.NSub, c.SubFirst, c.SubSample, c.PulseHalf})) << c.technique;
  }
  // Thin film and rotating disk run on the planar grid; a curved electrode
  // much larger than the diffusion layer behaves as a plane.
  DigitalCase planar;
  planar.run();
  const int peak = planar.extremum(1, planar.points(), 1);
  for (int electrode : {7, 8, 2, 5}) {
    DigitalCase c;
    c.e.Electrode = electrode;
    c.e.radius = 2;
    c.run();
    EXPECT_CLOSE(c.total(peak), planar.total(peak) * (electrode >= 7 ? 1 : 1.007), electrode >= 7 ? 0 : 0.007) << electrode;
  }
}

// Faults end in one message and keep the points before; a substep count that
// is not whole never meets its sample, and no charge reaction carries no
// current: both leave the curve flat without a message.
TEST(DigitalRun, FaultsAndFlatCurves) {
  const struct {
    const char* script;
    const char* description;  // nullptr: no message
    int lastWithCurrent;      // 0: a flat curve
  } cases[] = {
      {"set FormExpr.C(1)=0", "Division by zero", 0},  // nothing present
      {"set FormMech.chem(1)=B; set FormMech.chem(2)=C; set FormExpr.kf(1)=1e45", "Subscript out of range", 0},  // over 99 boxes
      {"click FormTech.optTech(4); set FormIns.tp=0", "Division by zero", 0},
      {"set FormMech.NEL(1)=100; set FormIns.Eend=-0.5", "Overflow", 132},  // ks exp(-alpha n f E) overflows at -0.36 V, point 133
      {"click FormTech.optTech(3); set FormIns.V=0.01; set FormIns.tp=0.035", nullptr, 0},  // 142.857 substeps
      {"set FormMech.charge(1)=; set FormMech.charge(2)=", nullptr, 0},
  };
  for (const auto& c : cases) {
    Session d(kDigital + c.script + "; menu mnuSimulate");
    const std::string first = d.err.str().substr(0, d.err.str().find('\n') + 1);
    EXPECT_EQ(first, c.description ? std::string("message: CV Error: ") + c.description + "! Please try again by other initial values.\n" : "")
        << c.script;
    for (int t = 1; t <= d.points(); ++t) ASSERT_EQ(d.s.YSim(1, t) != 0, t <= c.lastWithCurrent) << c.script << " " << t;
  }
}

}  // namespace
}  // namespace voltrix::test
