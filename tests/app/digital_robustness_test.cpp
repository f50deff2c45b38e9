// Random but plausible inputs through the forms and "&Simulate" in digital
// mode: whatever is typed, the program survives, every curve stays finite,
// and every failure ends in one of the run's messages.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "support/session.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"

namespace voltrix::test {
namespace {

// Mechanisms a chemist would type: charge, first-order and second-order boxes.
struct Typed {
  std::vector<const char*> charge, chem, chem2;
};
const Typed kMechanisms[] = {{{"A", "B"}, {}, {}},
                             {{"A", "B", "B", "C"}, {}, {}},
                             {{"A", "B", "B", "C", "C", "D"}, {}, {}},
                             {{"A", "B", "C", "D"}, {}, {}},
                             {{"A", "B"}, {"C", "A"}, {}},
                             {{"A", "B"}, {"B", "C"}, {}},
                             {{"A", "B"}, {"B", "A"}, {}},
                             {{"A", "B"}, {}, {"B", "B", "C"}},
                             {{"A", "B"}, {"B", "C"}, {"B", "Z", "A", "Y"}}};

TEST(DigitalRobustness, RandomInputsThroughTheFormsNeverBreakARun) {
  Session s;
  std::mt19937 rng(20261122);
  auto uniform = [&](double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(rng); };
  auto decades = [&](double lo, double hi) { return std::pow(10.0, uniform(lo, hi)); };
  auto number = [](double x) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", x);
    return std::string(text);
  };
  auto set = [&](Form& form, const char* name, int index, const std::string& text) { form.control(name, index).setText(text); };
  FormMech& mech = s.wb.formMech();
  FormIns& ins = s.wb.formIns();
  FormExpr& expr = s.wb.formExpr();
  const int runs = 500;
  int withCurrent = 0, failed = 0;
  for (int run = 0; run < runs; ++run) {
    s.err.str("");
    const int technique = 1 + static_cast<int>(rng() % 5), pick = static_cast<int>(rng() % 10);
    s.wb.formNamed("FormTech")->control("optTech", technique).setValue(1);
    const char* const letters[] = {"", "A", "B", "C", "D", "E", "F", "G"};
    const bool random = pick == 9;  // boxes filled at random
    auto type = [&](const char* name, int boxes, const std::vector<const char*>& typed) {
      for (int i = 1; i <= boxes; ++i)
        set(mech, name, i, random ? letters[rng() % 8] : i <= static_cast<int>(typed.size()) ? typed[i - 1] : "");
    };
    const Typed& typed = kMechanisms[random ? 0 : pick];
    type("charge", 6, typed.charge);
    type("chem", 8, typed.chem);
    type("chem2", 12, typed.chem2);
    for (int r = 1; r <= 3; ++r) mech.control("NEL", r).setListIndex(static_cast<int>(rng() % 3));
    const double start = uniform(-1, 1), end = uniform(-1, 1), tp = rng() % 30 ? decades(-3, -0.5) : 0;
    double step = std::max(std::fabs(end - start), 0.01) / static_cast<double>(1 + rng() % 60);
    if (technique == 1 && rng() % 5 == 0) step = decades(-3.5, -2.5);  // now and then finer than the store holds
    ins.control("optElectrode", 1 + static_cast<int>(rng() % 6)).setValue(1);
    set(ins, "Estart", -1, number(start));
    set(ins, "Eend", -1, number(end));
    set(ins, "Estep", -1, number(rng() % 30 ? step : 0));
    set(ins, "V", -1, number(decades(-3, 1)));
    set(ins, "tp", -1, number(tp));
    set(ins, "td", -1, number(rng() % 10 ? tp * uniform(1, 6) : tp));  // a few pulse times a drop
    set(ins, "Epulse", -1, number(uniform(-0.1, 0.1)));
    set(ins, "txtRu", -1, number(rng() % 10 < 7 ? 0 : decades(-1, 4)));
    set(ins, "radius", -1, number(decades(-5, 0)));
    ins.control("ComboScan").setListIndex(static_cast<int>(rng() % 3));
    for (int i = 1; i <= 6; ++i) {
      set(expr, "D", i, number(rng() % 50 ? decades(-7, -4) : 0));
      set(expr, "C", i, rng() % 5 < 2 ? "0" : number(decades(-6, 0)));
    }
    for (int r = 1; r <= 3; ++r) {
      set(expr, "ks", r, number(decades(-6, 6)));
      set(expr, "alph", r, number(uniform(0, 1)));
      set(expr, "Eze", r, number(uniform(-0.6, 0.6)));
    }
    for (int q = 1; q <= 4; ++q) {
      set(expr, "kf", q, number(rng() % 10 ? decades(-4, 8) : 0));
      set(expr, "kb", q, number(rng() % 10 ? decades(-4, 8) : 0));
    }
    expr.control("CheckPreEqu").setValue(static_cast<int>(rng() % 2));
    s.run("menu mnuSimulate");
    ASSERT_TRUE(s.e.Digital);
    std::istringstream messages(s.err.str());
    for (std::string m; std::getline(messages, m);)
      ASSERT_TRUE(m.rfind("message: CV Error: ", 0) == 0 || m.rfind("message: Error: ", 0) == 0 ||
                  m.rfind("message: Analytical simulation Error: ", 0) == 0)
          << run << ": " << m;
    for (int i = 0; i <= kMaxPoints; ++i) {
      ASSERT_TRUE(std::isfinite(s.s.XData(i))) << run;
      for (int row = 0; row <= 8; ++row) ASSERT_TRUE(std::isfinite(s.s.YSim(row, i))) << run;
      for (int row = 0; row <= 7; ++row) ASSERT_TRUE(std::isfinite(s.s.SurfC(row, i))) << run;
      for (int row = 0; row <= 6; ++row) ASSERT_TRUE(std::isfinite(s.s.YData(row, i))) << run;
    }
    withCurrent += s.s.YSim(1, 2) != 0;
    failed += !s.err.str().empty();
  }
  // The draw exercises both roads: most runs give a curve, some end in a message.
  EXPECT_GT(withCurrent, runs / 3);
  EXPECT_GT(failed, 0);
}

}  // namespace
}  // namespace voltrix::test
