// The kernels against the closed forms of electrochemistry they reduce to:
// Cottrell, the Nernst half-wave point, spherical steady state, Levich.
#include "analytic/electrode_responses.h"

#include <gtest/gtest.h>

#include <cmath>

#include "model/errors.h"
#include "model/experiment.h"
#include "support/expect_close.h"

namespace voltrix {
namespace {

constexpr double kD = 1e-5, kC = 1e-3;
const double kS = std::sqrt(kD);

Experiment At25C() {
  Experiment e;
  e.fRT = (96484.6 / 8.31441) / 298.14;
  e.radius = 0.2821;
  e.Vis = 0.01;
  e.omega = 100 * 3.141592654 / 30;
  return e;
}

// Cottrell, n C sqrt(D / (pi t)): the limit far past E0 with fast kinetics.
// The routine's own root of pi (1.7724539) and ks = 1e4 leave about 1e-6.
TEST(PlanarResponse, DiffusionLimitIsCottrell) {
  const Experiment e = At25C();
  for (double t : {0.05, 0.5, 10.0}) {
    const double cottrell = kC * kS / std::sqrt(3.141592654 * t);
    EXPECT_CLOSE(PlanarResponse(e, -0.5, 1e4, 0.5, 1, 0, kC, kS, t, 0, kS), cottrell, 2e-6);
    EXPECT_CLOSE(PlanarResponse(e, -0.5, 1e4, 0.5, 2, 0, kC, kS, t, 0, kS), 2 * cottrell, 2e-6);
  }
}

// A reversible couple with equal D carries half the limiting current at E0,
// and the Nernst ratio elsewhere: i = i_lim / (1 + exp(nf(E - E0))).
TEST(PlanarResponse, ReversibleWaveFollowsNernst) {
  const Experiment e = At25C();
  const double limit = kC * kS / std::sqrt(3.141592654 * 0.5);
  for (double E : {-0.06, -0.02, 0.0, 0.03}) {
    const double nernst = limit / (1 + std::exp(e.fRT * E));
    EXPECT_CLOSE(PlanarResponse(e, E, 1e4, 0.5, 1, 0, kC, kS, 0.5, 0, kS), nernst, 1e-5) << E;
  }
}

TEST(PlanarResponse, OxidationIsNegativeAndNoSpeciesGivesNoCurrent) {
  const Experiment e = At25C();
  EXPECT_EQ(PlanarResponse(e, 0.2, 1e4, 0.5, 1, 0, 0, kS, 0.5, 0, kS), 0);
  const double anodic = PlanarResponse(e, 0.5, 1e4, 0.5, 1, 0, 0, kS, 0.5, kC, kS);
  EXPECT_CLOSE(anodic, -kC * kS / std::sqrt(3.141592654 * 0.5), 2e-6);
  // No kinetics, no current, and no error either.
  EXPECT_EQ(PlanarResponse(e, -0.3, 0, 0.5, 1, 0, kC, kS, 0.5, 0, kS), 0);
}

// Slow kinetics at short time: the current is the kinetic flux n ks C
// exp(-alpha n f (E - E0)) before depletion sets in.
TEST(PlanarResponse, SlowElectrodeIsKineticallyControlled) {
  const Experiment e = At25C();
  const double ks = 1e-6;
  const double kinetic = kC * ks * std::exp(-0.5 * e.fRT * -0.1);
  EXPECT_CLOSE(PlanarResponse(e, -0.1, ks, 0.5, 1, 0, kC, kS, 1e-3, 0, kS), kinetic, 1e-3);
}

TEST(SphericalResponse, ApproachesPlanarForALargeSphere) {
  Experiment e = At25C();
  const double planar = PlanarResponse(e, -0.02, 1e4, 0.5, 1, 0, kC, kS, 0.5, 0, kS);
  e.radius = 1e9;
  EXPECT_CLOSE(SphericalResponse(e, -0.02, 1e4, 0.5, 1, 0, kC, kS, 0.5, 0, kS), planar, 1e-8);
}

// Long times at a sphere: the steady diffusion-limited flux D C / r.
TEST(SphericalResponse, LongTimeIsSphericalSteadyState) {
  Experiment e = At25C();
  e.radius = 1e-3;  // a microsphere reaches steady state within seconds
  EXPECT_CLOSE(SphericalResponse(e, -0.5, 1e4, 0.5, 1, 0, kC, kS, 1e6, 0, kS), kD * kC / e.radius, 1e-3);
  // At any time the sphere carries the planar part plus D C / r.
  const double t = 0.5;
  EXPECT_CLOSE(SphericalResponse(e, -0.5, 1e4, 0.5, 1, 0, kC, kS, t, 0, kS),
               kC * kS / std::sqrt(3.141592654 * t) + kD * kC / e.radius, 1e-4);
}

// Levich: n C 0.62 D^(2/3) nu^(-1/6) omega^(1/2), no dependence on time.
TEST(RotatingDiskResponse, PlateauIsLevich) {
  const Experiment e = At25C();
  const double levich = kC * 0.62 * std::pow(kD, 2.0 / 3) * std::pow(e.Vis.value(), -1.0 / 6) * std::sqrt(e.omega.value());
  EXPECT_CLOSE(RotatingDiskResponse(e, -0.5, 1e4, 0.5, 1, 0, kC, kD, 0, kD), levich, 1e-6);
  // Half of it at E0 for a reversible couple with equal D.
  EXPECT_CLOSE(RotatingDiskResponse(e, 0, 1e4, 0.5, 1, 0, kC, kD, 0, kD), levich / 2, 1e-3);
}

TEST(RotatingDiskResponse, StillDiskIsDivisionByZero) {
  Experiment e = At25C();
  e.omega = 0;
  try {
    RotatingDiskResponse(e, -0.5, 1e4, 0.5, 1, 0, kC, kD, 0, kD);
    FAIL() << "no error";
  } catch (const RunError& err) {
    EXPECT_EQ(err.kind(), ErrorKind::DivisionByZero);
  }
}

TEST(PulseKernels, ZeroPulseAndZeroDropTime) {
  const Experiment e = At25C();
  // Same time for both terms: no pulse, no difference.
  EXPECT_EQ(SquareWavePlanar(e, 0.01, 1e4, 0.5, 1, 0, kC, kS, 0.05, 0, kS, 0), 0);
  EXPECT_EQ(SquareWaveSpherical(e, 0.01, 1e4, 0.5, 1, 0, kC, kS, 0.05, 0, kS, 0), 0);
  // The planar pulse samples later than the base term, so it is not 0.
  EXPECT_GT(std::fabs(DiffPulsePlanar(e, 0.01, 1e4, 0.5, 1, 0, kC, kS, 0.05, 0.5, 0, kS, 0)), 1e-9);
  EXPECT_THROW(DiffPulsePlanar(e, 0.01, 1e4, 0.5, 1, 0, kC, kS, 0.05, 0, 0, kS, -0.05), RunError);
  EXPECT_NO_THROW(DiffPulseSpherical(e, 0.01, 1e4, 0.5, 1, 0, kC, kS, 0.05, 0, 0, kS, -0.05));
}

// Reversible differential pulse at small amplitude: the peak stands at
// E0 - pulse/2 and the peak height follows (1 - s) / (1 + s) with
// s = exp(nf |pulse| / 2) times the Cottrell current.
TEST(PulseKernels, ReversibleDifferentialPulsePeak) {
  const Experiment e = At25C();
  const double tp = 0.05, td = 1e6;  // a long drop makes both sampling times tp
  const double pulse = -0.01;
  double best = 0, bestE = 0;
  for (double E = 0.05; E > -0.05; E -= 1e-4) {
    const double v = DiffPulsePlanar(e, E, 1e4, 0.5, 1, 0, kC, kS, tp, td, 0, kS, pulse);
    if (v > best) best = v, bestE = E;
  }
  const double s = std::exp(e.fRT * 0.005);
  EXPECT_NEAR(bestE, 0.005, 2e-4);
  EXPECT_CLOSE(best, kC * kS / std::sqrt(3.141592654 * tp) * (s - 1) / (s + 1), 1e-3);
}

TEST(KernelFaults, ZeroDiffusionAndRunawayExponentialRaise) {
  const Experiment e = At25C();
  auto kindOf = [](auto call) {
    try {
      call();
    } catch (const RunError& err) {
      return err.kind();
    }
    return ErrorKind::TypeMismatch;  // stands for "no error"
  };
  EXPECT_EQ(kindOf([&] { PlanarResponse(e, -0.1, 1e4, 0.5, 1, 0, kC, 0, 0.5, 0, kS); }), ErrorKind::DivisionByZero);
  EXPECT_EQ(kindOf([&] { SphericalResponse(e, -0.1, 1e4, 0.5, 1, 0, kC, kS, 0.5, 0, 0); }),
            ErrorKind::DivisionByZero);
  EXPECT_EQ(kindOf([&] { PlanarResponse(e, -40, 1e4, 0.5, 1, 0, kC, kS, 0.5, 0, kS); }), ErrorKind::Overflow);
  EXPECT_EQ(kindOf([&] { PlanarResponse(e, -0.1, 1e4, 0.5, 1, 0, kC, kS, -1, 0, kS); }),
            ErrorKind::InvalidArgument);
  EXPECT_EQ(kindOf([&] { RotatingDiskResponse(e, -0.1, 1e4, 0.5, 1, 0, kC, 0, 0, kD); }),
            ErrorKind::DivisionByZero);
}

}  // namespace
}  // namespace voltrix
