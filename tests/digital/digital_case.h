#pragma once
// A committed experiment for the digital engine, as the forms would leave
// it, without the forms: a typed A + 1 e = B on a planar electrode at 25 C,
// 1 mM of A, D 1e-5 cm2/s, swept from 0.3 V to -0.3 V in 5 mV steps.
#include <cmath>
#include <string>
#include <vector>

#include "analytic/run_steps.h"
#include "digital/mechanism_compiler.h"
#include "digital/run_digital.h"
#include "model/checked.h"
#include "model/curve_store.h"
#include "model/experiment.h"
#include "model/headless_platform.h"

namespace voltrix::test {

constexpr double kF = 96484.6;
constexpr double kR = 8.31441;

struct DigitalCase {
  Experiment e;
  CurveStore s;
  RecordingMessageBox messages;
  MechanismInput mech;

  DigitalCase() {
    typed({"A", "B"});
    const std::pair<Field*, double> fields[] = {
        {&e.Technique, 1}, {&e.Electrode, 1}, {&e.Cycles, 0.5},    {&e.Estart, 0.3}, {&e.Eend, -0.3},       {&e.Estep, 0.005},
        {&e.td, 0.05},  // 0.1 V/s
        {&e.tp, 0.05},     {&e.Epulse, -0.05}, {&e.ARE, 1},        {&e.radius, 0.2821}, {&e.TempK, 298.14}};
    for (auto [field, value] : fields) *field = value;
    for (int r = 1; r <= 3; ++r)
      for (auto [field, value] : {std::pair{&e.alph(r), 0.5}, {&e.ks(r), 1e4}, {&e.NEL(r), 1.0}, {&e.Eze(r), 0.0}}) *field = value;
    for (int i = 1; i <= 6; ++i) e.D(i) = 1e-5;
    for (int i = 1; i <= 6; ++i) e.C(i) = i == 1 ? 1e-3 : 0;
  }

  double fRT() const { return (kF / kR) / e.TempK.value(); }

  // Typed reactions: charge "A","B" pairs, chem pairs, chem2 quadruples.
  void typed(const std::vector<std::string>& charge, const std::vector<std::string>& chem = {},
             const std::vector<std::string>& chem2 = {}) {
    mech = MechanismInput{};
    mech.nel = {"", "1", "1", "1"};
    for (std::size_t i = 0; i < charge.size(); ++i) mech.charge[i + 1] = charge[i];
    for (std::size_t i = 0; i < chem.size(); ++i) mech.chem[i + 1] = chem[i];
    for (std::size_t i = 0; i < chem2.size(); ++i) mech.chem2[i + 1] = chem2[i];
  }

  // The potential axis as the run start lays it out.
  void layOutAxis() {
    e.fRT = fRT();
    e.RTF = 1 / fRT();
    BuildPotentialGrid(e, s.XData);
  }

  void run() {
    CompileMechanism(mech, e);
    layOutAxis();
    s.YSim.fill(0);
    RunDigital(e, s, messages);
  }

  int points() const { return static_cast<int>(e.NData.value()); }
  double current(int r, int t) const { return s.YSim(r, t); }
  double total(int t) const {
    double sum = 0;
    for (int r = 1; r <= Count(e.NCharge); ++r) sum += s.YSim(r, t);
    return sum;
  }
  // Index of the largest (sign = 1) or smallest (sign = -1) total current in [from, to].
  int extremum(int from, int to, int sign) const {
    int best = from;
    for (int t = from; t <= to; ++t)
      if (sign * total(t) > sign * total(best)) best = t;
    return best;
  }
};

// Peak current of a reversible sweep, A: 0.4463 n F A C sqrt(n F v D / RT), C in M.
inline double RandlesSevcik(double n, double area, double concMolar, double D, double v, double fRT) {
  return 0.4463 * n * kF * area * concMolar * 1e-3 * std::sqrt(n * fRT * v * D);
}

}  // namespace voltrix::test
