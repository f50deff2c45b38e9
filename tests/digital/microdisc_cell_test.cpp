// The microdisc cell against the published theory of the disc, driven by a
// small loop of steps as the run driver would drive it.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "digital/transport_cell.h"
#include "expect_close.h"
#include "model/errors.h"

namespace voltrix {
namespace {

constexpr double kF = 96484.6;
constexpr double kFRT = kF / 8.31441 / 298.14;
constexpr double kD = 1e-5;     // cm2/s
constexpr double kBulk = 1e-3;  // mol/L

// A + n e = B, fast, only A present.
ReactionSet Couple(double n = 1) {
  ReactionSet set;
  set.species = 2;
  set.D[1] = set.D[2] = kD;
  set.bulk[1] = kBulk;
  set.fRT = kFRT;
  set.charge.push_back(ChargeStep{1, 2, n, 0.0, 1e4, 0.5});
  return set;
}

std::unique_ptr<TransportCell> Disc(const ReactionSet& set, double radius, double shortest, double total) {
  Experiment e;
  e.radius = radius;
  return MakeMicrodiscCell(e, set, CellTiming{shortest, total});
}

// Saito (1968): the steady current of a disc, 4 n F D C r.
double SteadyCurrent(double n, double radius) { return 4 * n * kF * kD * kBulk * 1e-3 * radius; }

// Shoup and Szabo (1982), i / (4 n F D C r) at tau = 4 D t / r^2, within 0.6 %.
double ShoupSzabo(double tau) {
  return 0.7854 + 0.8862 / std::sqrt(tau) + 0.2146 * std::exp(-0.7823 / std::sqrt(tau));
}

// Aoki, Akimoto, Tokuda, Matsuda and Osteryoung (1984): peak of a reversible
// sweep at a disc over 4 n F D C r, p = r sqrt(n F v / (R T D)).
double AokiPeak(double p) { return 0.34 * std::exp(-0.66 * p) + 0.66 - 0.13 * std::exp(-11 / p) + 0.351 * p; }

TEST(MicrodiscCell, PotentialStepFollowsShoupSzaboToTheSteadyState) {
  struct Disc_ {
    double radius, n;
  } discs[] = {{1e-4, 1}, {2.5e-3, 2}};
  struct Row {
    double tau, f, tolerance;
    const char* source;
  } rows[] = {
      {0.01, ShoupSzabo(0.01), 0.01, "Shoup & Szabo 1982"},
      {1, ShoupSzabo(1), 0.01, "Shoup & Szabo 1982"},
      {100, ShoupSzabo(100), 0.01, "Shoup & Szabo 1982"},
      {1e4, 1 + 0.71835e-2 + 0.05626e-6, 5e-4, "long-time series, Shoup & Szabo 1982"},
      {1e8, 1.0, 0.01, "Saito 1968, steady state"},
  };
  for (const Disc_& d : discs) {
    const double perTau = d.radius * d.radius / (4 * kD);
    auto cell = Disc(Couple(d.n), d.radius, 0.01 * perTau, 1e8 * perTau);
    double t = 0;
    for (const Row& row : rows) {
      const double current = cell->trial(-1, -1, row.tau * perTau - t).total;
      cell->accept();
      t = row.tau * perTau;
      EXPECT_CLOSE(current / SteadyCurrent(d.n, d.radius), row.f, row.tolerance) << row.source << " tau " << row.tau;
    }
  }
}

// p of a sweep at v: a cell and the peak of its forward sweep, 0.3 V to
// -0.3 V in 1 mV steps.
double ForwardPeak(double p, double radius) {
  const double v = p * p * kD / (radius * radius * kFRT), dE = 0.001, dt = dE / v;
  auto cell = Disc(Couple(), radius, dt, 600 * dt);
  double peak = 0;
  for (double E = 0.3; E > -0.3; E -= dE) {
    peak = std::max(peak, cell->trial(E, E - dE, dt).total);
    cell->accept();
  }
  return peak;
}

TEST(MicrodiscCell, ReversibleSweepGoesFromSteadyWaveToPlanarPeak) {
  const double radius = 5e-4;
  for (double p : {0.1, 1.0, 10.0, 100.0, 1000.0}) {
    const double psi = ForwardPeak(p, radius) / SteadyCurrent(1, radius);
    EXPECT_CLOSE(psi, AokiPeak(p), 0.01) << "Aoki et al. 1984, p " << p;
    // Randles (1948) and Sevcik (1948): 0.4463 n F A C sqrt(n F v D / R T) on
    // the disc's area, which the fast sweep approaches from above.
    if (p == 1000.0) {
      EXPECT_CLOSE(psi, 0.4463 * 3.141592654 / 4 * p, 0.01) << "Randles-Sevcik";
    }
  }
}

TEST(MicrodiscCell, SlowSweepTracesTheSteadyWaveBothWays) {
  const double radius = 5e-4, p = 0.02, dE = 0.002;
  const double v = p * p * kD / (radius * radius * kFRT), dt = dE / v;
  auto cell = Disc(Couple(), radius, dt, 600 * dt);
  double E = 0.3;
  for (int k = 0; k < 600; ++k) {
    const double next = k < 300 ? E - dE : E + dE;
    const double current = cell->trial(E, next, dt).total;
    cell->accept();
    E = next;
    // The steady reversible wave (e.g. Bard & Faulkner 2001): i = i_lim / (1 + exp(f (E - E0))).
    const double wave = SteadyCurrent(1, radius) / (1 + std::exp(kFRT * E));
    EXPECT_NEAR(current, wave, 0.01 * SteadyCurrent(1, radius)) << "at " << E << " V";
  }
}

// Steady currents at the standard potential and on the plateau give the
// half-wave potential of a reversible wave.
double HalfWavePotential(const ReactionSet& set, double radius) {
  const double t = 1e7 * radius * radius / kD;
  auto cell = Disc(set, radius, t, t);
  const double plateau = cell->trial(-0.6, -0.6, t).total;
  cell->renew();
  const double middle = cell->trial(0, 0, t).total;
  return -std::log(plateau / middle - 1) / kFRT;
}

TEST(MicrodiscCell, HalfWavePotentialOfTheSteadyWave) {
  ReactionSet slowProduct = Couple();
  slowProduct.D[2] = kD / 2;
  // B = C fast, K = 10; the kinetic offset goes as sqrt(D/k)/r, here below 0.2 mV.
  ReactionSet equilibrium = Couple();
  equilibrium.species = 3;
  equilibrium.D[3] = kD;
  equilibrium.chemical.push_back(ChemicalStep{2, 0, 3, 0, 1e9, 1e8});
  struct Row {
    const char* what;
    ReactionSet set;
    double shift;  // V
    const char* source;
  } rows[] = {
      {"plain couple", Couple(), 0.0, "Nernst"},
      {"D of B half of A's", slowProduct, std::log(0.5) / kFRT, "(RT/F) ln(DR/DO), Oldham & Zoski 1988"},
      {"equilibrium after the transfer", equilibrium, std::log(11.0) / kFRT, "(RT/F) ln(1 + K), Bard & Faulkner 2001"},
  };
  for (const Row& row : rows) EXPECT_NEAR(HalfWavePotential(row.set, 5e-4), row.shift, 5e-4) << row.what << ", " << row.source;
}

// Oldham and Zoski (1988): the steady current of a disc with Butler-Volmer
// kinetics, i / i_lim = 1 / (theta + (pi/kappa)(2 kappa theta + 3 pi) /
// (4 kappa theta + 3 pi^2)), theta = 1 + exp(f (E - E0)), kappa = pi k(E) r / 4 D.
TEST(MicrodiscCell, SlowElectronTransferFollowsOldhamZoski) {
  const double radius = 5e-4, E = -0.1, pi = 3.141592654, t = 1e7 * radius * radius / kD;
  for (double kappa : {0.1, 1.0, 10.0}) {
    ReactionSet set = Couple();
    set.charge[0].ks = kappa * 4 * kD / (pi * radius) / std::exp(0.5 * kFRT * -E);
    auto cell = Disc(set, radius, t, t);
    const double theta = 1 + std::exp(kFRT * E);
    const double expected = 1 / (theta + pi / kappa * (2 * kappa * theta + 3 * pi) / (4 * kappa * theta + 3 * pi * pi));
    EXPECT_CLOSE(cell->trial(E, E, t).total / SteadyCurrent(1, radius), expected, 0.01) << "kappa " << kappa;
  }
}

// A + e = B, B + B = C: A + B + 2 C keeps the bulk value of A everywhere
// when the three diffuse alike, the disc's surface included.
TEST(MicrodiscCell, DimerisationKeepsMatterAtTheSurface) {
  ReactionSet set = Couple();
  set.species = 3;
  set.D[3] = kD;
  set.chemical.push_back(ChemicalStep{2, 2, 3, 0, 1e4, 1});
  const double dE = 0.005, dt = dE / 0.1;
  auto cell = Disc(set, 5e-4, dt, 240 * dt);
  double E = 0.3, mostDimer = 0;
  for (int k = 0; k < 240; ++k) {
    const double next = k < 120 ? E - dE : E + dE;
    cell->trial(E, next, dt);
    cell->accept();
    E = next;
    const double matter = cell->surfaceConcentration(1) + cell->surfaceConcentration(2) + 2 * cell->surfaceConcentration(3);
    EXPECT_CLOSE(matter, kBulk, 1e-8) << "at " << E << " V";
    mostDimer = std::max(mostDimer, cell->surfaceConcentration(3));
  }
  EXPECT_GT(mostDimer, 0.05 * kBulk);  // the dimer did form
}

// A driver may try a step several times (resistance) and renew the solution
// for each drop: neither may leave a trace.
TEST(MicrodiscCell, TrialsAndRenewalLeaveNoTrace) {
  auto cell = Disc(Couple(), 5e-4, 0.01, 1);
  const double first = cell->trial(0.05, -0.05, 0.01).total;
  cell->trial(0.05, -0.2, 0.01);
  EXPECT_EQ(cell->trial(0.05, -0.05, 0.01).total, first);
  cell->accept();
  cell->trial(-0.05, -0.1, 0.01);
  cell->accept();
  cell->renew();
  EXPECT_EQ(cell->trial(0.05, -0.05, 0.01).total, first);
  EXPECT_THROW(Disc(Couple(), 0, 0.01, 1), RunError);
}

}  // namespace
}  // namespace voltrix
