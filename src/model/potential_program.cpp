#include "model/potential_program.h"

#include <cmath>

#include "model/checked.h"

namespace voltrix {

namespace {

using XAxis = Table1<double, kMaxPoints + 1>;

class ProgramWriter {
 public:
  explicit ProgramWriter(PotentialProgram& p) : p_(p) {}
  void ramp(double duration, double from, double to, bool renew = false) {
    p_.stretches.push_back({duration, from, to, renew});
  }
  void hold(double duration, double E, bool renew = false) { ramp(duration, E, E, renew); }
  void sample(int point, double weight = 1) {
    p_.samples.push_back({static_cast<int>(p_.stretches.size()) - 1, point, weight});
  }

 private:
  PotentialProgram& p_;
};

double PositiveTime(double t) {
  if (!(t > 0)) Raise(ErrorKind::InvalidArgument, "A pulse or drop time must be greater than 0");
  return Checked(t);
}

// The pulse points in the scan direction, so it turns with the scan.
double ScanPulse(const Experiment& e, int i) { return i > Count(e.NHalf) ? -e.Epulse.value() : e.Epulse.value(); }

void Sweep(const Experiment& e, const XAxis& X, ProgramWriter& w) {
  w.hold(0, X(1));
  w.sample(1);
  for (int i = 2; i <= Count(e.NData); ++i) {
    w.ramp(Div(std::fabs(X(i) - X(i - 1)), e.V), X(i - 1), X(i));
    w.sample(i);
  }
}

void SampledDC(const Experiment& e, const XAxis& X, ProgramWriter& w) {
  const double td = PositiveTime(e.td);
  for (int i = 1; i <= Count(e.NData); ++i) {
    w.hold(td, X(i), true);
    w.sample(i);
  }
}

// The part of a drop before its pulse; a pulse as long as the drop has none.
double BaseTime(const Experiment& e) { return std::fmax(0.0, Checked(e.td - PositiveTime(e.tp))); }

void NormalPulse(const Experiment& e, const XAxis& X, ProgramWriter& w) {
  const double base = BaseTime(e), tp = e.tp.value();
  for (int i = 1; i <= Count(e.NData); ++i) {
    w.hold(base, X(1), true);
    w.hold(tp, Checked(X(i) + e.Epulse), false);
    w.sample(i);
  }
}

void DifferentialPulse(const Experiment& e, const XAxis& X, ProgramWriter& w) {
  const double base = BaseTime(e), tp = e.tp.value();
  for (int i = 1; i <= Count(e.NData); ++i) {
    w.hold(base, X(i), true);
    w.sample(i, -1);
    w.hold(tp, Checked(X(i) + ScanPulse(e, i)));
    w.sample(i, 1);
  }
}

void SquareWave(const Experiment& e, const XAxis& X, ProgramWriter& w) {
  const double tp = PositiveTime(e.tp);
  for (int i = 1; i <= Count(e.NData); ++i) {
    const double half = ScanPulse(e, i) / 2;
    w.hold(tp, Checked(X(i) + half));
    w.sample(i, 1);
    w.hold(tp, Checked(X(i) - half));
    w.sample(i, -1);
  }
}

}  // namespace

double PotentialProgram::totalTime() const {
  double t = 0;
  for (const ProgramStretch& s : stretches) t += s.duration;
  return t;
}

PotentialProgram BuildPotentialProgram(const Experiment& e, const XAxis& X) {
  PotentialProgram p;
  ProgramWriter w(p);
  switch (Count(e.Technique)) {
    case 1: Sweep(e, X, w); break;
    case 2: SampledDC(e, X, w); break;
    case 3: NormalPulse(e, X, w); break;
    case 4: DifferentialPulse(e, X, w); break;
    case 5: SquareWave(e, X, w); break;
    default: Raise(ErrorKind::InvalidArgument, "Unknown technique");
  }
  return p;
}

}  // namespace voltrix
