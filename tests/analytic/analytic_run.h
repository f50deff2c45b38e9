#pragma once
// A headless workbench set up through its forms for analytical runs: the
// reference run is mechanism 1, linear sweep, planar electrode, 0.3 to -0.3 V
// in 5 mV steps at 10 mV/s, C(1) 1 mM, C(2) 0, D 1e-5, ks 1e4, alpha 0.5,
// E0 0, one electron, 25 Celsius. The form defaults hold all of that except
// E0 (0.1 V there) and pre-equilibration, which would give B a trace of
// C(1) * exp(-fRT * 0.3); the reference has C(2) = 0.
#include <cmath>
#include <string>

#include "run/run_simulation.h"
#include "support/headless_workbench.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_tech.h"

namespace voltrix::test {

struct AnalyticRun : HeadlessWorkbench {
  AnalyticRun() {
    wb.formMech().control("CheckDigital").click();  // analytical mode
    expr("Eze", 1, "0");
    wb.formExpr().control("CheckPreEqu").setValue(0);
  }
  void ins(const std::string& name, const std::string& text) { wb.formIns().control(name).setText(text); }
  void expr(const std::string& name, int i, const std::string& text) { wb.formExpr().control(name, i).setText(text); }
  void technique(int t) { wb.formTech().control("optTech", t).setValue(1); }
  void electrode(int el) { wb.formIns().control("optElectrode", el).setValue(1); }
  void mechanism(int m) { wb.formMech().control("mech", m).setValue(1); }
  void scan(const std::string& text) { wb.formIns().control("ComboScan").setText(text); }

  // The commit chain, then the run, as "&Simulate" does before drawing.
  void run() {
    wb.formExpr().OK();
    RunSimulation(wb);
  }

  int points() const { return static_cast<int>(wb.experiment.NData.value()); }
  double x(int i) { return wb.store.XData(i); }
  double y(int i) { return wb.store.YData(static_cast<long>(wb.experiment.CurNo.value()), i); }
  double sim(int row, int i) { return wb.store.YSim(row, i); }

  struct Extreme {
    double value = 0;
    int point = 0;
    double x = 0;
  };
  // The point of largest size (first one on ties), or of the smallest value.
  Extreme largest() {
    Extreme best;
    for (int i = 1; i <= points(); ++i)
      if (std::fabs(y(i)) > std::fabs(best.value)) best = {y(i), i, x(i)};
    return best;
  }
  Extreme smallest() {
    Extreme best{y(1), 1, x(1)};
    for (int i = 2; i <= points(); ++i)
      if (y(i) < best.value) best = {y(i), i, x(i)};
    return best;
  }
  bool allFinite() {
    for (int i = 0; i <= 4000; ++i)
      for (int row = 0; row <= 8; ++row)
        if (!std::isfinite(wb.store.YSim(row, i)) || !std::isfinite(wb.store.YData(row % 7, i))) return false;
    return true;
  }
};

}  // namespace voltrix::test
