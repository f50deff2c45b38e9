// The set-up both digital benchmarks share: a reversible couple A/B, 1 mM,
// sweeping 0.3 V to -0.3 V, with one engine timed on it.
#pragma once

#include <benchmark/benchmark.h>

#include <cmath>
#include <string>
#include <utility>

#include "digital/mechanism_compiler.h"
#include "model/checked.h"
#include "model/curve_store.h"
#include "model/experiment.h"
#include "model/headless_platform.h"

namespace voltrix {

// Texts go into the boxes by move, as a typed string would.
inline void Type(std::string& box, std::string text) { box = std::move(text); }

struct DigitalBenchRun {
  using Engine = void (*)(Experiment&, CurveStore&, MessageBox&);

  Engine engine;
  Experiment e;
  CurveStore s;
  RecordingMessageBox messages;
  MechanismInput mech;

  explicit DigitalBenchRun(Engine timed) : engine(timed) {
    Type(mech.charge[1], "A");
    Type(mech.charge[2], "B");
    mech.nel = {"", "1", "1", "1"};
    e.Technique = 1;
    e.Electrode = 1;
    e.Estart = 0.3;
    e.Eend = -0.3;
    e.Estep = 0.005;
    e.td = 0.5;
    e.tp = 0.05;
    e.Epulse = -0.05;
    e.ARE = 1;
    e.TempK = 298.14;
    e.Cycles = 0.5;
    for (int r = 1; r <= 3; ++r) {
      e.alph(r) = 0.5;
      e.ks(r) = 1e4;
      e.NEL(r) = 1;
    }
    for (int i = 1; i <= 6; ++i) e.D(i) = 1e-5;
    e.C(1) = 1e-3;
  }

  // The reduced form dimerises, B + B = C, on a 242-point cycle.
  void dimerisation() {
    Type(mech.chem2[1], "B");
    Type(mech.chem2[2], "B");
    Type(mech.chem2[3], "C");
    e.kf(1) = 100;
    e.kb(1) = 0.01;
    e.td = 0.05;
    e.Cycles = 1;
  }

  // What the forms' chain would have committed before a run.
  void prepare() {
    CompileMechanism(mech, e);
    e.fRT = (96484.6 / 8.31441) / e.TempK.value();
    e.V = e.Estep.value() / e.td.value();
    const double dir = e.Eend.value() > e.Estart.value() ? 1 : -1;
    const int half = CInt(std::fabs(e.Eend.value() - e.Estart.value()) / e.Estep.value()) + 1;
    e.NHalf = half;
    e.NData = half * 2 * e.Cycles.value();
    for (int i = 1; i <= half; ++i) s.XData(i) = e.Estart.value() + e.Estep.value() * (i - 1) * dir;
    if (e.Cycles.value() >= 1)
      for (int i = 1; i <= half; ++i) s.XData(half + i) = s.XData(half - i + 1);
  }

  void run(benchmark::State& state) {
    prepare();
    for (auto _ : state) {
      engine(e, s, messages);
      benchmark::DoNotOptimize(s.YSim(1, 10));
    }
    if (!messages.shown.empty()) state.SkipWithError(messages.shown.front().c_str());
    state.counters["points"] = e.NData.value();
  }
};

}  // namespace voltrix
