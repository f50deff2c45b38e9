// "Accurate physics" on the digital path, through the forms: the thin film
// and the rotating disk become available, a mechanism that cannot be meant
// is refused by name, and random inputs never break a run. The forms start
// at 1 mM, D 1e-5 cm2/s, 1 cm2, 25 C, 0.01 V/s.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <tuple>

#include "app/commands.h"
#include "support/headless_workbench.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_tech.h"
#include "ui/workbench.h"

namespace voltrix::test {
namespace {

struct Started : HeadlessWorkbench {
  Started() { BindMenuCommands(wb); }
  Control& mech(const char* name, int index = -1) { return wb.formMech().control(name, index); }
  bool filmAndDiskAvailable() {
    return wb.formIns().control("optElectrode", 7).enabled() && wb.formIns().control("optElectrode", 8).enabled();
  }
  double peak() const {
    double top = 0;
    for (int i = 1; i <= static_cast<int>(wb.experiment.NData.value()); ++i) top = std::max(top, wb.store.YData(1, i));
    return top;
  }
};

TEST(AccurateDigital, FilmAndDiskFollowBothBoxes) {
  Started s;
  const struct {
    int digital, accurate;
    bool available;
  } steps[] = {{1, 0, false}, {1, 1, true}, {0, 1, true}, {0, 0, true}, {1, 0, false}, {1, 1, true}};
  for (const auto& step : steps) {
    s.mech("CheckDigital").setValue(step.digital);
    s.mech("CheckAccurate").setValue(step.accurate);
    EXPECT_EQ(s.filmAndDiskAvailable(), step.available) << step.digital << step.accurate;
  }
  // The digital run now has a film of its own: 2 um of it exhausts itself.
  s.wb.formIns().control("optElectrode", 7).setValue(1);
  s.wb.formIns().control("leng").setText("0.0002");
  ASSERT_TRUE(RunMenuCommand(s.wb, "mnuSimulate"));
  EXPECT_TRUE(s.messages().empty());
  EXPECT_GT(s.peak(), 0);
  EXPECT_LT(s.peak(), 0.05 * 0.4463 * 96.4846 * 1e-3 * std::sqrt(0.01 * 1e-5 * 96484.6 / 8.31441 / 298.14));
}

TEST(AccurateDigital, RefusesAReactionThatCannotBeMeant) {
  Started s;
  s.mech("charge", 2).setText("A");
  ASSERT_TRUE(RunMenuCommand(s.wb, "mnuSimulate"));  // the classic compile takes it
  EXPECT_TRUE(s.messages().empty());
  s.mech("CheckAccurate").setValue(1);
  ASSERT_TRUE(RunMenuCommand(s.wb, "mnuSimulate"));
  ASSERT_EQ(s.messages().size(), 1u);
  EXPECT_EQ(s.messages()[0], "Error: The charge reaction A+1e=A has the same species on both sides.");
  EXPECT_EQ(s.peak(), 0);
}

// A run far beyond any sensible work, 3751 pulses of 1 ms at a disc of
// 2 cm, is refused before a point is computed, with what to change.
TEST(AccurateDigital, RefusesAMicrodiscRunBeyondItsBudgetAtOnce) {
  Started s;
  s.mech("CheckAccurate").setValue(1);
  s.wb.formTech().control("optTech", 4).setValue(1);
  s.wb.formIns().control("optElectrode", 4).setValue(1);
  s.wb.formIns().control("radius").setText("1");
  s.wb.formIns().control("Estep").setText("0.00016");
  s.wb.formIns().control("V").setText("0.001");
  s.wb.formIns().control("tp").setText("0.001");
  ASSERT_TRUE(RunMenuCommand(s.wb, "mnuSimulate"));
  ASSERT_EQ(s.messages().size(), 1u);
  const std::string& m = s.messages()[0];
  EXPECT_EQ(m.rfind("CV Error: The exact microdisc would need more than ", 0), 0u) << m;
  EXPECT_NE(m.find(" time steps for this run; use a larger E step or a smaller radius!"), std::string::npos) << m;
  for (int i = 1; i <= kMaxPoints; ++i) ASSERT_EQ(s.wb.store.SurfC(1, i), 0) << i;  // not one point sampled
}

constexpr int kRandomRuns = 50;

bool KnownMessage(const std::string& m) {
  for (const char* prefix : {"CV Error: ", "Error: ", "Analytical simulation Error: "})
    if (m.rfind(prefix, 0) == 0) return true;
  return false;
}

// Technique and mechanism go through all 25 pairings twice; the electrode,
// the chemistry and the resistance are drawn, the boxes over decades.
// Every mechanism that can be meant gives current with every technique.
TEST(AccurateDigital, RandomInputsNeverBreakARun) {
  Started s;
  s.mech("CheckAccurate").setValue(1);
  std::mt19937 rng(20261123);
  auto uniform = [&](double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(rng); };
  auto pick = [&](int count) { return std::uniform_int_distribution<int>(0, count - 1)(rng); };
  auto decades = [&](double lo, double hi) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", std::pow(10.0, uniform(lo, hi)));
    return std::string(text);
  };
  // Three that can be meant, then a reaction with the same species on both
  // sides and one with an empty side.
  const char* mechanisms[][6] = {
      {"A", "B"}, {"A", "B", "B", "C"}, {"A", "B", "B", "C", "C", "D"}, {"A", "A"}, {"A", ""}};
  int withCurrent[6][3] = {}, failed = 0;
  for (int run = 0; run < kRandomRuns; ++run) {
    s.platform.messages.shown.clear();
    const int technique = 1 + run % 5, mechanism = run / 5 % 5;
    s.wb.formTech().control("optTech", technique).setValue(1);
    for (int i = 0; i < 6; ++i) s.mech("charge", i + 1).setText(mechanisms[mechanism][i] ? mechanisms[mechanism][i] : "");
    s.mech("chem2", 1).setText(pick(3) ? "" : "B");  // B = C, or B + B = C
    s.mech("chem2", 2).setText("B");
    s.mech("chem2", 3).setText("C");
    s.wb.formIns().control("optElectrode", 1 + pick(8)).setValue(1);
    s.wb.formIns().control("Estep").setText(std::to_string(uniform(0.005, 0.05)));
    s.wb.formIns().control("txtRu").setText(pick(4) ? "0" : decades(0, 4));
    // Box, exponents of 10 it is drawn between.
    const std::tuple<Control*, double, double> draws[] = {
        {&s.wb.formIns().control("V"), -3, 1},      {&s.wb.formIns().control("tp"), -3, -1},
        {&s.wb.formIns().control("radius"), -5, 0}, {&s.wb.formIns().control("leng"), -5, -1},
        {&s.wb.formExpr().control("ks", 1), -6, 6}, {&s.wb.formExpr().control("kf", 1), -4, 8},
        {&s.wb.formExpr().control("D", 1), -7, -4}, {&s.wb.formExpr().control("D", 2), -7, -4},
        {&s.wb.formExpr().control("D", 3), -7, -4}, {&s.wb.formExpr().control("D", 4), -7, -4}};
    for (const auto& [box, lo, hi] : draws) box->setText(decades(lo, hi));
    ASSERT_TRUE(RunMenuCommand(s.wb, "mnuSimulate")) << run;
    for (const std::string& m : s.messages()) ASSERT_TRUE(KnownMessage(m)) << run << ": " << m;
    for (int i = 0; i <= kMaxPoints; ++i)
      for (int row = 0; row <= 8; ++row) ASSERT_TRUE(std::isfinite(s.wb.store.YSim(row, i))) << run;
    if (mechanism < 3 && s.peak() != 0) ++withCurrent[technique][mechanism];
    failed += !s.messages().empty();
  }
  for (int technique = 1; technique <= 5; ++technique)
    for (int mechanism = 0; mechanism < 3; ++mechanism)
      EXPECT_GT(withCurrent[technique][mechanism], 0) << "technique " << technique << ", mechanism " << mechanism;
  EXPECT_GT(failed, 0);
}

}  // namespace
}  // namespace voltrix::test
