// Accurate closed-form runs from the forms against published theory.
// Reversible couple unless a row says otherwise: D 1e-5 cm2/s, 1 mM, E0 0,
// 25 Celsius, planar, 1 cm2 (analytic_run.h).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "analytic_run.h"
#include "support/expect_close.h"

namespace voltrix::test {
namespace {

constexpr double kF = 96484.6, kPi = 3.141592654, kD = 1e-5, kC = 1e-6;
constexpr double kFrt = kF / (8.31441 * 298.14);  // F/RT at 25 Celsius, 1/V

std::string Text(double v) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.10g", v);
  return buffer;
}

struct Exact : AnalyticRun {
  Exact() { wb.formMech().control("CheckAccurate").setValue(1); }
  double nfac() const { return kF * wb.experiment.ARE * kC; }  // A per cm/s of flux
  void window(const char* start, const char* end, const char* step, const char* v) {
    for (auto [name, text] : {std::pair{"Estart", start}, {"Eend", end}, {"Estep", step}, {"V", v}}) ins(name, text);
  }
  // Vertex of the parabola through the extreme point of sign * y in [from, to].
  Extreme peak(double sign = 1, int from = 1, int to = 0) {
    to = to ? to : points();
    int k = from;
    for (int i = from; i <= to; ++i) k = sign * y(i) > sign * y(k) ? i : k;
    const double a = y(k - 1), b = y(k), c = y(k + 1), t = 0.5 * (a - c) / (a - 2 * b + c);
    return {b - 0.25 * (a - c) * t, k, x(k) + t * (x(k + 1) - x(k - 1)) / 2};
  }
  // Potential where the curve first reaches `level` (linear interpolation).
  double reaches(double level) {
    int i = 2;
    while (y(i) < level) ++i;
    return x(i - 1) + (level - y(i - 1)) * (x(i) - x(i - 1)) / (y(i) - y(i - 1));
  }
};

TEST(ExactSweep, RandlesSevcikPeakAtEveryStep) {
  // Randles 1948, Sevcik 1948: 0.4463 nFAC sqrt(nFvD/RT); Ep = E1/2 - 28.5/n
  // mV and E1/2 = E0 + (RT/2nF) ln(DR/DO) (Nicholson and Shain 1964).
  const struct { const char* step; double dRatio; } rows[] = {
      {"0.0001", 1}, {"0.001", 1}, {"0.01", 1}, {"0.001", 4}, {"0.001", 0.25}};
  for (const auto& row : rows) {
    Exact r;
    r.window("0.2", "-0.15", row.step, "0.01");
    r.expr("D", 2, Text(kD * row.dRatio));
    r.run();
    const auto p = r.peak();
    EXPECT_CLOSE(p.value, 0.4463 * r.nfac() * std::sqrt(kFrt * 0.01 * kD), 5e-3) << row.step;
    EXPECT_NEAR(p.x, -0.0285 + std::log(row.dRatio) / (2 * kFrt), 1e-3) << row.step << " " << row.dRatio;
  }
}

TEST(ExactSweep, NicholsonPeakSeparation) {
  // Nicholson 1965, alpha 0.5, psi = ks / sqrt(pi D nFv/RT), switching at E1/2 - 112.5 mV; below
  // psi 0.35 the forward peak lies past that, so those rows switch 100 mV later.
  const struct { double psi, separation; const char* switching; } rows[] = {
      {20, 61, "-0.1125"},  {7, 63, "-0.1125"},  {5, 65, "-0.1125"},    {4, 66, "-0.1125"},
      {3, 68, "-0.1125"},   {2, 72, "-0.1125"},  {1, 84, "-0.1125"},    {0.75, 92, "-0.1125"},
      {0.5, 105, "-0.1125"}, {0.35, 121, "-0.1125"}, {0.25, 141, "-0.2125"}, {0.1, 212, "-0.2125"}};
  for (const auto& row : rows) {
    Exact r;
    r.window("0.3125", row.switching, "0.0005", "0.1");
    r.scan("cycle");
    r.expr("ks", 1, Text(row.psi * std::sqrt(kPi * kD * kFrt * 0.1)));
    r.run();
    const int half = r.points() / 2;
    EXPECT_NEAR(r.peak(-1, half + 1).x - r.peak(1, 1, half).x, row.separation * 1e-3, 1e-3) << row.psi;
  }
}

TEST(ExactSweep, IrreversiblePeak) {
  // Nicholson and Shain 1964: ip = 0.4958 nFAC sqrt(alpha nFvD/RT),
  // Ep = E0 - (RT/alpha F)(0.780 + ln(sqrt(D)/ks) + ln sqrt(alpha F v/RT)), Ep - Ep/2 = -47.7/alpha mV.
  for (double alpha : {0.5, 0.3}) {
    Exact r;
    r.window("0", "-0.9", "0.0005", "0.1");
    r.expr("ks", 1, "1e-5");
    r.expr("alph", 1, Text(alpha));
    r.run();
    const double af = alpha * kFrt;
    const auto p = r.peak();
    EXPECT_CLOSE(p.value, 0.4958 * r.nfac() * std::sqrt(af * 0.1 * kD), 0.01);
    EXPECT_NEAR(p.x, -(0.780 + std::log(std::sqrt(kD) / 1e-5) + std::log(std::sqrt(af * 0.1))) / af, 1.5e-3);
    EXPECT_NEAR(p.x - r.reaches(p.value / 2), -0.0477 / alpha, 1e-3);
  }
}

TEST(ExactSweep, ThinLayerCatalyticFollowingReactionAndRotatingDisk) {
  Exact film;  // Hubbard 1969: peak n2F2vVC/4RT at E0, width at half height 90.6/n mV
  film.electrode(7);
  film.ins("leng", "0.001");
  film.window("0.3", "-0.3", "0.001", "0.001");
  film.run();
  const auto p = film.peak();
  EXPECT_CLOSE(p.value, film.nfac() * 0.001 * kFrt * 0.001 / 4, 0.005);
  EXPECT_NEAR(p.x, 0, 5e-4);
  EXPECT_NEAR(film.reaches(p.value / 2) - p.x, 0.0906 / 2, 5e-4);
  Exact cat;  // Saveant and Vianello 1965: plateau nFAC sqrt(D k), half-plateau at E0
  cat.mechanism(7);
  cat.expr("kf", 1, "1000");
  cat.expr("kb", 1, "0");
  cat.run();
  EXPECT_CLOSE(cat.y(cat.points()), cat.nfac() * std::sqrt(kD * 1000), 0.01);
  EXPECT_NEAR(cat.reaches(cat.y(cat.points()) / 2), 0, 1e-3);
  Exact ec;  // Nicholson and Shain 1964, kinetic zone: Ep = E0 - (RT/F)(0.780 - ln(k RT/F v)/2)
  ec.mechanism(6);
  ec.expr("kf", 1, "1e4");
  ec.expr("kb", 1, "0");
  ec.window("0.4", "-0.3", "0.0005", "0.01");
  ec.run();
  EXPECT_NEAR(ec.peak().x, (std::log(1e4 / (kFrt * 0.01)) / 2 - 0.780) / kFrt, 1e-3);
  Exact disk;  // Levich 1962 plateau; Koutecky-Levich 1/i = 1/iL + 1/ik on the foot of a slow wave
  disk.electrode(8);
  disk.expr("ks", 1, "1e-4");
  disk.ins("Eend", "-0.6");
  disk.run();
  const double levich = 0.62 * std::pow(kD, 2.0 / 3) * std::sqrt(100 * kPi / 30) / std::pow(0.01, 1.0 / 6);
  EXPECT_CLOSE(disk.y(disk.points()), disk.nfac() * levich, 1e-3);
  EXPECT_CLOSE(disk.y(111), disk.nfac() / (1 / levich + 1 / (1e-4 * std::exp(-0.5 * kFrt * disk.x(111)))), 1e-3);
}

TEST(ExactStep, CurrentAtTheEndOfAPotentialStep) {
  // DC: a new drop held at -0.5 V for td. Flux per unit concentration (cm/s)
  // at radius r (cm) and time t (s); the preceding equilibrium C = A has
  // kf 1/s, kb 1e4/s and C(C) 1 mM.
  auto shoupSzabo = [](double r, double t) {
    const double tau = 4 * kD * t / (r * r);
    return 4 * kD / (kPi * r) * (0.7854 + 0.8862 / std::sqrt(tau) + 0.2146 * std::exp(-0.7823 / std::sqrt(tau)));
  };
  const struct {
    const char* what;  // and source, tolerance
    int electrode, mechanism;
    double radius, td, cA, tolerance;
    std::function<double(double r, double t)> flux;
  } rows[] = {
      {"plane, Cottrell 1903", 1, 1, 0, 0.5, 1e-3, 1e-3, [](double, double t) { return std::sqrt(kD / (kPi * t)); }},
      {"sphere, Bard and Faulkner 2001", 2, 1, 1e-3, 0.5, 1e-3, 1e-3,
       [](double r, double t) { return kD * (1 / std::sqrt(kPi * kD * t) + 1 / r); }},
      {"disc at tau 0.1, Shoup and Szabo 1982", 4, 1, 1e-3, 2.5e-3, 1e-3, 0.01, shoupSzabo},
      {"disc at tau 1", 4, 1, 1e-3, 0.025, 1e-3, 0.01, shoupSzabo},
      {"disc at tau 10", 4, 1, 1e-3, 0.25, 1e-3, 0.01, shoupSzabo},
      {"cylinder at tau 0.01, Szabo et al. 1987", 5, 1, 1e-3, 1e-3, 1e-3, 2e-3, [](double r, double t) {
         const double tau = kD * t / (r * r);
         return kD / r * (1 / std::sqrt(kPi * tau) + 0.5 - 0.25 * std::sqrt(tau / kPi) + tau / 8);
       }},
      {"C = A kinetic current, Koutecky and Brdicka 1947: C K sqrt(D k) erfcx(K sqrt(k t))", 1, 5, 0, 0.5, 1e-7, 0.01,
       [](double, double t) {
         const double x = 1e-4 * std::sqrt(1e4 * t);
         return 1e-4 * std::sqrt(kD * 1e4) * std::exp(x * x) * std::erfc(x);
       }},
  };
  for (const auto& row : rows) {
    Exact r;
    r.technique(2);
    r.mechanism(row.mechanism);
    r.electrode(row.electrode);
    r.ins("Eend", "-0.5");
    r.ins("radius", Text(row.radius));
    r.ins("leng", "1");
    r.ins("V", Text(0.005 / row.td));
    r.expr("kf", 1, "1");
    r.expr("kb", 1, "1e4");
    r.expr("C", 3, "1e-3");
    r.expr("C", 1, Text(row.cA));
    r.run();
    EXPECT_CLOSE(r.y(r.points()), r.nfac() * row.flux(row.radius, row.td), row.tolerance) << row.what;
  }
}

TEST(ExactPulse, DifferentialPulseAndSquareWavePeaks) {
  Exact dpv;  // Parry and Osteryoung 1965: nFAC sqrt(D/pi tp) (1 - s)/(1 + s), s = exp(nF dE/2RT), tp << td
  dpv.technique(4);
  dpv.ins("tp", "0.01");
  dpv.ins("V", "0.005");
  dpv.run();
  const double s = std::exp(-0.05 * kFrt / 2);
  EXPECT_CLOSE(dpv.peak().value, dpv.nfac() * std::sqrt(kD / (kPi * 0.01)) * (1 - s) / (1 + s), 0.015);
  // O'Dea, Osteryoung and Osteryoung 1981: reversible half-period currents by
  // superposition, psi_m = sum (P_i - P_(i-1)) / sqrt(m - i + 1), P = 1/(1 + exp(nF(E - E0)/RT)).
  Exact swv;
  swv.technique(5);
  swv.run();
  double net = 0, previous = 0;
  std::vector<double> psi(2 * swv.points() + 1);
  for (int m = 1; m <= 2 * swv.points(); ++m) {
    const double P = 1 / (1 + std::exp(kFrt * (swv.x((m + 1) / 2) + (m % 2 ? -0.025 : 0.025))));
    for (int j = m; j <= 2 * swv.points(); ++j) psi[j] += (P - previous) / std::sqrt(j - m + 1.0);
    previous = P;
  }
  for (int i = 1; i <= swv.points(); ++i) net = std::fmax(net, psi[2 * i - 1] - psi[2 * i]);
  EXPECT_CLOSE(swv.peak().value, swv.nfac() * std::sqrt(kD / (kPi * 0.05)) * net, 0.015);
}

TEST(ExactRun, CombinationsWithoutAModelSaySoAndDrawNothing) {
  Exact pulseAtDisk, unequalD;
  pulseAtDisk.technique(5);
  pulseAtDisk.electrode(8);
  unequalD.mechanism(5);
  unequalD.expr("D", 3, "2e-5");
  for (Exact* r : {&pulseAtDisk, &unequalD}) {
    r->run();
    EXPECT_NE(r->messages().at(0).find("Accurate physics has no"), std::string::npos) << r->messages()[0];
    EXPECT_EQ(r->sim(1, 50), 0);
  }
}

}  // namespace
}  // namespace voltrix::test
