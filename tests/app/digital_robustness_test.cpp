// Random but plausible inputs through the forms and "&Simulate", a third of
// the runs analytical: whatever is typed, the program survives, every curve
// stays finite, and every failure ends in one of the run's messages.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "support/session.h"

namespace voltrix::test {
namespace {

// Mechanisms a chemist would type; "?" boxes are filled at random.
const char* const kMechanisms[] = {
    "", "charge(3)=B; charge(4)=C", "charge(3)=B; charge(4)=C; charge(5)=C; charge(6)=D", "charge(3)=C; charge(4)=D",
    "chem(1)=C; chem(2)=A", "chem(1)=B; chem(2)=C", "chem(1)=B; chem(2)=A", "chem2(1)=B; chem2(2)=B; chem2(3)=C",
    "chem(1)=B; chem(2)=C; chem2(1)=B; chem2(2)=Z; chem2(3)=A; chem2(4)=Y",
    "charge(1)=?; charge(2)=?; charge(3)=?; charge(4)=?; charge(5)=?; chem(1)=?; chem(2)=?; chem(5)=?; chem2(1)=?; chem2(3)=?"};

TEST(Robustness, RandomInputsThroughTheFormsNeverBreakARun) {
  std::mt19937 rng(20261122);
  auto uniform = [&](double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(rng); };
  auto text = [](double x) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.4g", x);
    return std::string(digits);
  };
  auto decades = [&](double lo, double hi) { return text(std::pow(10.0, uniform(lo, hi))); };
  auto one = [&](int n) { return std::to_string(1 + rng() % n); };
  const int runs = 500;
  int withCurrent = 0, failed = 0;
  for (int run = 0; run < runs; ++run) {
    std::string mechanism = kMechanisms[rng() % 10];
    for (std::size_t at; (at = mechanism.find('?')) != std::string::npos;) mechanism.replace(at, 1, std::string(1, "ABCDEFG"[rng() % 7]));
    std::string script = mechanism.empty() ? "" : "set FormMech." + mechanism;
    for (std::size_t at = 0; (at = script.find("; ", at)) != std::string::npos; at += 2) script.insert(at + 2, "set FormMech.");
    if (rng() % 3 == 0) script += "; click FormMech.CheckDigital; click FormMech.mech(" + one(8) + ")";
    const double start = uniform(-1, 1), end = uniform(-1, 1), tp = std::pow(10.0, uniform(-3, -0.5));
    const int technique = 1 + static_cast<int>(rng() % 5);  // a sweep now and then finer than the store holds:
    const double step =
        technique > 1 || rng() % 5 ? std::max(std::fabs(end - start), 0.01) / (1 + rng() % 60) : std::pow(10.0, uniform(-3.5, -2.5));
    script += "; click FormTech.optTech(" + std::to_string(technique) + "); click FormIns.optElectrode(" + one(6) + "); set FormMech.NEL(1)=" +
              one(3) + "; set FormMech.NEL(2)=" + one(3) + "; set FormIns.Estart=" + text(start) +
              "; set FormIns.Eend=" + text(end) + "; set FormIns.Estep=" + text(rng() % 30 ? step : 0) +
              "; set FormIns.V=" + decades(-3, 1) + "; set FormIns.tp=" + text(tp) + "; set FormIns.td=" +
              text(rng() % 10 ? tp * uniform(1, 6) : tp) + "; set FormIns.Epulse=" + text(uniform(-0.1, 0.1)) +
              "; set FormIns.txtRu=" + (rng() % 10 < 7 ? "0" : decades(-1, 4)) + "; set FormIns.radius=" + decades(-5, 0) +
              "; set FormIns.ComboScan=" + (rng() % 3 ? "single" : "cycle") + "; set FormExpr.CheckPreEqu=" + std::to_string(rng() % 2);
    for (int i = 1; i <= 6; ++i)
      script += "; set FormExpr.D(" + std::to_string(i) + ")=" + (rng() % 50 ? decades(-7, -4) : "0") + "; set FormExpr.C(" +
                std::to_string(i) + ")=" + (rng() % 5 < 2 ? "0" : decades(-6, 0));
    for (int r = 1; r <= 3; ++r)
      script += "; set FormExpr.ks(" + std::to_string(r) + ")=" + decades(-6, 6) + "; set FormExpr.alph(" + std::to_string(r) +
                ")=" + text(uniform(0, 1)) + "; set FormExpr.Eze(" + std::to_string(r) + ")=" + text(uniform(-0.6, 0.6));
    for (int q = 1; q <= 2; ++q)
      script += "; set FormExpr.kf(" + std::to_string(q) + ")=" + (rng() % 10 ? decades(-4, 8) : "0") + "; set FormExpr.kb(" +
                std::to_string(q) + ")=" + (rng() % 10 ? decades(-4, 8) : "0");
    Session s(script + "; menu mnuSimulate");
    std::istringstream messages(s.err.str());
    for (std::string m; std::getline(messages, m);)
      ASSERT_TRUE(m.rfind("message: CV Error: ", 0) == 0 || m.rfind("message: Error: ", 0) == 0 ||
                  m.rfind("message: Analytical simulation Error: ", 0) == 0) << run << ": " << m;
    for (int i = 0; i <= kMaxPoints; ++i)
      for (int row = 0; row <= 8; ++row)
        ASSERT_TRUE(std::isfinite(s.s.XData(i)) && std::isfinite(s.s.YSim(row, i)) && std::isfinite(s.s.SurfC(row % 8, i)) &&
                    std::isfinite(s.s.YData(row % 7, i))) << run;
    withCurrent += s.s.YSim(1, 2) != 0;
    failed += !s.err.str().empty();
  }
  // The draw exercises both roads: most runs give a curve, some end in a message.
  EXPECT_GT(withCurrent, runs / 3);
  EXPECT_GT(failed, 0);
}

}  // namespace
}  // namespace voltrix::test
