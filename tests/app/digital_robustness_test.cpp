// Random but plausible inputs through the forms and "&Simulate" in digital
// mode: whatever is typed, the program survives, every curve stays finite,
// and every failure ends in one of the run's messages.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "app/commands.h"
#include "support/headless_workbench.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_tech.h"
#include "ui/workbench.h"

namespace voltrix::test {
namespace {

class Draw {
 public:
  explicit Draw(unsigned seed) : rng_(seed) {}
  double uniform(double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(rng_); }
  int pick(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng_); }
  bool chance(double p) { return uniform(0, 1) < p; }
  // 10^x for x uniform in [lo, hi]: rate constants over many decades.
  double decades(double lo, double hi) { return std::pow(10.0, uniform(lo, hi)); }
  std::string number(double x) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", x);
    return text;
  }
  std::string letter() {
    static const char* names[] = {"", "A", "B", "C", "D", "E", "F", "G"};
    return names[pick(0, 7)];
  }

 private:
  std::mt19937 rng_;
};

// Mechanisms a chemist would type: the eight classic schemes in letters,
// a chain, second-order steps, and boxes filled at random.
void TypeMechanism(FormMech& mech, Draw& d) {
  for (int i = 1; i <= 6; ++i) mech.control("charge", i).setText("");
  for (int i = 1; i <= 8; ++i) mech.control("chem", i).setText("");
  for (int i = 1; i <= 12; ++i) mech.control("chem2", i).setText("");
  auto charge = [&](int r, const std::string& a, const std::string& b) {
    mech.control("charge", 2 * r - 1).setText(a);
    mech.control("charge", 2 * r).setText(b);
  };
  auto chem = [&](int r, const std::string& a, const std::string& b) {
    mech.control("chem", 2 * r - 1).setText(a);
    mech.control("chem", 2 * r).setText(b);
  };
  auto chem2 = [&](int r, const char* a, const char* b, const char* c, const char* e) {
    mech.control("chem2", 4 * r - 3).setText(a);
    mech.control("chem2", 4 * r - 2).setText(b);
    mech.control("chem2", 4 * r - 1).setText(c);
    mech.control("chem2", 4 * r).setText(e);
  };
  switch (d.pick(0, 9)) {
    case 0: charge(1, "A", "B"); break;
    case 1: charge(1, "A", "B"); charge(2, "B", "C"); break;
    case 2: charge(1, "A", "B"); charge(2, "B", "C"); charge(3, "C", "D"); break;
    case 3: charge(1, "A", "B"); charge(2, "C", "D"); break;
    case 4: charge(1, "A", "B"); chem(1, "C", "A"); break;
    case 5: charge(1, "A", "B"); chem(1, "B", "C"); break;
    case 6: charge(1, "A", "B"); chem(1, "B", "A"); break;
    case 7: charge(1, "A", "B"); chem2(1, "B", "B", "C", ""); break;
    case 8: charge(1, "A", "B"); chem2(1, "B", "Z", "A", "Y"); chem(1, "B", "C"); break;
    default:
      for (int i = 1; i <= 6; ++i) mech.control("charge", i).setText(d.letter());
      for (int i = 1; i <= 8; ++i)
        if (d.chance(0.3)) mech.control("chem", i).setText(d.letter());
      for (int i = 1; i <= 12; ++i)
        if (d.chance(0.2)) mech.control("chem2", i).setText(d.letter());
      break;
  }
  for (int r = 1; r <= 3; ++r) mech.control("NEL", r).setListIndex(d.pick(0, 2));
}

void SetInstrument(FormIns& ins, Draw& d, int technique) {
  ins.control("optElectrode", d.pick(1, 8)).setValue(1);
  const double start = d.uniform(-1, 1);
  const double end = d.uniform(-1, 1);
  // Mostly short axes, now and then one finer than the store can hold.
  double step = std::max(std::fabs(end - start), 0.01) / d.pick(1, 60);
  if (technique == 1 && d.chance(0.2)) step = d.decades(-3.5, -2.5);
  if (d.chance(0.03)) step = 0;
  ins.control("Estart").setText(d.number(start));
  ins.control("Eend").setText(d.number(end));
  ins.control("Estep").setText(d.number(step));
  ins.control("V").setText(d.number(d.decades(-3, 1)));
  // Pulse runs take td / tp substeps a point: keep td a few tp.
  const double tp = d.chance(0.03) ? 0 : d.decades(-3, -0.5);
  ins.control("tp").setText(d.number(tp));
  ins.control("td").setText(d.number(d.chance(0.1) ? tp : tp * d.uniform(1, 6)));
  ins.control("Epulse").setText(d.number(d.uniform(-0.1, 0.1)));
  ins.control("txtRu").setText(d.number(d.chance(0.7) ? 0 : d.decades(-1, 4)));
  ins.control("radius").setText(d.number(d.decades(-5, 0)));
  ins.control("ComboScan").setListIndex(d.pick(0, 2));
}

void SetChemistry(FormExpr& expr, Draw& d) {
  const bool noneAtAll = d.chance(0.03);
  for (int i = 1; i <= 6; ++i) {
    expr.control("D", i).setText(d.number(d.chance(0.02) ? 0 : d.decades(-7, -4)));
    expr.control("C", i).setText(noneAtAll || d.chance(0.4) ? "0" : d.number(d.decades(-6, 0)));
  }
  for (int r = 1; r <= 3; ++r) {
    expr.control("ks", r).setText(d.number(d.decades(-6, 6)));
    expr.control("alph", r).setText(d.number(d.uniform(0, 1)));
    expr.control("Eze", r).setText(d.number(d.uniform(-0.6, 0.6)));
  }
  for (int q = 1; q <= 4; ++q) {
    expr.control("kf", q).setText(d.number(d.chance(0.1) ? 0 : d.decades(-4, 8)));
    expr.control("kb", q).setText(d.number(d.chance(0.1) ? 0 : d.decades(-4, 8)));
  }
  expr.control("CheckPreEqu").setValue(d.pick(0, 1));
}

bool IsRunMessage(const std::string& m) {
  static const std::vector<std::string> prefixes = {
      "CV Error: ", "Analytical simulation Error: ", "Error: inverse matrix D=0",
      "Error: Species number cannot > 6.", "Error: chemical reaction number cannot > 4.",
      "Error: No data!"};
  for (const std::string& p : prefixes)
    if (m.rfind(p, 0) == 0) return true;
  return false;
}

bool AllFinite(const CurveStore& s) {
  for (int i = 0; i <= kMaxPoints; ++i) {
    if (!std::isfinite(s.XData(i))) return false;
    for (int row = 0; row <= 8; ++row)
      if (!std::isfinite(s.YSim(row, i))) return false;
    for (int row = 0; row <= 7; ++row)
      if (!std::isfinite(s.SurfC(row, i))) return false;
    for (int row = 0; row <= 6; ++row)
      if (!std::isfinite(s.YData(row, i))) return false;
  }
  return true;
}

TEST(DigitalRobustness, RandomInputsThroughTheFormsNeverBreakARun) {
  HeadlessWorkbench hw;
  BindMenuCommands(hw.wb);
  Workbench& wb = hw.wb;
  ASSERT_EQ(wb.formMech().control("CheckDigital").value(), 1);
  Draw d(20261122);
#ifdef __SANITIZE_ADDRESS__
  const int runs = 600;  // the instrumented build is many times slower
#else
  const int runs = 2000;
#endif
  int withCurrent = 0, failed = 0;
  for (int run = 0; run < runs; ++run) {
    hw.platform.messages.shown.clear();
    const int technique = d.pick(1, 5);
    wb.formTech().control("optTech", technique).setValue(1);
    TypeMechanism(wb.formMech(), d);
    SetInstrument(wb.formIns(), d, technique);
    SetChemistry(wb.formExpr(), d);
    ASSERT_TRUE(RunMenuCommand(wb, "mnuSimulate")) << "run " << run;
    ASSERT_TRUE(wb.experiment.Digital);
    for (const std::string& m : hw.messages()) ASSERT_TRUE(IsRunMessage(m)) << "run " << run << ": " << m;
    ASSERT_TRUE(AllFinite(wb.store)) << "run " << run;
    bool anyCurrent = false;
    for (int i = 1; i <= static_cast<int>(wb.experiment.NData.value()) && i <= kMaxPoints; ++i)
      anyCurrent = anyCurrent || wb.store.YSim(1, i) != 0;
    withCurrent += anyCurrent;
    failed += !hw.messages().empty();
  }
  // The draw is meant to exercise both roads: most runs give a curve, and
  // some end in a message.
  EXPECT_GT(withCurrent, runs / 3);
  EXPECT_GT(failed, 0);
}

}  // namespace
}  // namespace voltrix::test
