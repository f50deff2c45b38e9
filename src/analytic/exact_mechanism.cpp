#include "analytic/exact_mechanism.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "model/checked.h"

namespace voltrix {

namespace {

struct ChemicalStep {
  int a = 0, c = 0;  // a -> c at kf, c -> a at kb (1/s)
  double kf = 0, kb = 0;
};

std::string Letter(int s) { return std::string(1, static_cast<char>('A' + s - 1)); }

// Species pairs of the charge reactions as the mechanism compiler maps them.
void ReadCharges(const Experiment& e, ExactMechanism& m) {
  for (int r = 1; r <= Count(e.NCharge); ++r) {
    ExactCharge c;
    c.ox = e.ChargeMap(r, 1);
    c.red = e.ChargeMap(r, 2);
    c.n = e.NEL(r).value();
    c.E0 = e.Eze(r).value();
    c.ks = e.ks(r).value();
    c.alpha = e.alph(r).value();
    if (c.ox < 1 || c.red < 1) Raise(ErrorKind::InvalidArgument, "The mechanism has no charge reaction");
    if (!(c.n > 0)) Raise(ErrorKind::InvalidArgument, "An electron number must be greater than 0");
    m.charge.push_back(c);
  }
}

bool HasChemistry(const Experiment& e) {
  const int mech = Count(e.Mechanism);
  return mech >= 5 && mech <= 8 && Count(e.NChem) >= 1;
}

ChemicalStep ReadStep(const Experiment& e) {
  ChemicalStep s{e.ChemMap(1, 1), e.ChemMap(1, 2), e.kf(1).value(), e.kb(1).value()};
  // C = A + pD with D in excess: the back reaction is pseudo-first order.
  if (Count(e.Mechanism) == 8) s.kb = Checked(s.kb * Pow(e.C(4).value(), e.pl(1).value()));
  if (s.kf < 0 || s.kb < 0) Raise(ErrorKind::InvalidArgument, "A chemical rate constant must not be negative");
  return s;
}

TransportChannel Single(double D, int s) {
  TransportChannel c;
  c.D = D;
  c.in[s] = 1;
  c.out[s] = 1;
  return c;
}

// a <-> c: the total diffuses freely; the distance from equilibrium
// kf a - kb c decays at kf + kb.
void AddCoupledPair(const Experiment& e, const ChemicalStep& s, ExactMechanism& m) {
  const double Da = e.D(s.a).value(), Dc = e.D(s.c).value();
  if (Da != Dc)
    Raise(ErrorKind::InvalidArgument, "Accurate physics has no closed-form model of a chemical step between species "
                                      "of unequal diffusion coefficients (" + Letter(s.a) + " and " + Letter(s.c) +
                                      "); give both the same D or use the digital simulation");
  const double k = s.kf + s.kb;
  TransportChannel total, distance;
  total.D = distance.D = Da;
  total.in[s.a] = total.in[s.c] = 1;
  total.out[s.a] = s.kb / k;
  total.out[s.c] = s.kf / k;
  distance.damping = k;
  distance.in[s.a] = s.kf / k;
  distance.in[s.c] = -s.kb / k;
  distance.out[s.a] = 1;
  distance.out[s.c] = -1;
  m.channels.push_back(total);
  m.channels.push_back(distance);
}

bool Involved(const ExactMechanism& m, int s) {
  for (const ExactCharge& c : m.charge)
    if (c.ox == s || c.red == s) return true;
  return false;
}

void BuildChannels(const Experiment& e, ExactMechanism& m) {
  ChemicalStep step;
  if (HasChemistry(e)) step = ReadStep(e);
  const bool coupled = step.kf + step.kb > 0;
  if (coupled) AddCoupledPair(e, step, m);
  for (int s = 1; s <= Count(e.NSpecies); ++s) {
    if (coupled && (s == step.a || s == step.c)) continue;
    if (!Involved(m, s)) continue;
    if (!(e.D(s).value() > 0))
      Raise(ErrorKind::InvalidArgument, "Species " + Letter(s) + " needs a diffusion coefficient above 0");
    m.channels.push_back(Single(e.D(s).value(), s));
  }
}

}  // namespace

double ExactMechanism::largestN() const {
  double n = 1;
  for (const ExactCharge& c : charge) n = std::max(n, c.n);
  return n;
}

double ExactMechanism::channelBulk(const TransportChannel& c, double t) const {
  double start = 0;
  for (int s = 1; s <= kMaxSpecies; ++s) start += c.in[s] * bulk[s];
  return start * std::exp(-c.damping * t);
}

ExactMechanism ReadExactMechanism(const Experiment& e) {
  ExactMechanism m;
  m.fRT = e.fRT.value();
  for (int s = 1; s <= Count(e.NSpecies); ++s) {
    m.bulk[s] = e.C(s).value();
    if (m.bulk[s] < 0) Raise(ErrorKind::InvalidArgument, "Species " + Letter(s) + " has a negative concentration");
  }
  ReadCharges(e, m);
  BuildChannels(e, m);
  return m;
}

}  // namespace voltrix
