#include "digital/reaction_set.h"

#include <algorithm>
#include <string>

#include "model/checked.h"

namespace voltrix {

namespace {

[[noreturn]] void Refuse(const std::string& what) { Raise(ErrorKind::InvalidArgument, what); }

std::string ChargeName(const Experiment& e, int r) {
  const std::string& text = e.ChargeText(r);
  return text.empty() ? "charge reaction " + std::to_string(r) : "charge reaction " + text;
}

std::string ChemicalName(const Experiment& e, int q) {
  const std::string& text = e.ChemText(q);
  return text.empty() ? "chemical reaction " + std::to_string(q) : "chemical reaction " + text;
}

void ReadSpecies(const Experiment& e, ReactionSet& set) {
  set.species = Count(e.NSpecies);
  if (set.species < 1 || set.species > kMaxSpecies) Refuse("The mechanism has no species");
  bool present = false;
  for (int i = 1; i <= set.species; ++i) {
    set.D[i] = e.D(i).value();
    set.bulk[i] = e.C(i).value();
    if (!(set.D[i] > 0)) Refuse("Species " + e.SpeciesName(i) + " needs a diffusion coefficient above 0");
    if (set.bulk[i] < 0) Refuse("Species " + e.SpeciesName(i) + " has a negative concentration");
    present = present || set.bulk[i] > 0;
  }
  if (!present) Refuse("No species is present at the start");
}

void ReadCharge(const Experiment& e, ReactionSet& set) {
  for (int r = 1; r <= Count(e.NCharge); ++r) {
    ChargeStep s;
    s.ox = e.ChargeMap(r, 1);
    s.red = e.ChargeMap(r, 2);
    if (s.ox == 0 || s.red == 0) Refuse("The " + ChargeName(e, r) + " has an empty side");
    if (s.ox == s.red) Refuse("The " + ChargeName(e, r) + " has the same species on both sides");
    s.n = e.NEL(r).value();
    s.E0 = e.Eze(r).value();
    s.ks = e.ks(r).value();
    s.alpha = e.alph(r).value();
    if (!(s.n > 0)) Refuse("The " + ChargeName(e, r) + " needs an electron number above 0");
    set.charge.push_back(s);
  }
}

void ReadChemical(const Experiment& e, ReactionSet& set) {
  const int first = Count(e.NChem), second = Count(e.NChem2);
  for (int q = 1; q <= first; ++q) {
    ChemicalStep s{e.ChemMap(q, 1), 0, e.ChemMap(q, 2), 0, e.kf(q).value(), e.kb(q).value()};
    if (s.a == s.c) Refuse("The " + ChemicalName(e, q) + " has the same species on both sides");
    set.chemical.push_back(s);
  }
  const double cmax = LargestBulk(set);
  for (int r = 1; r <= second; ++r) {
    const int q = first + r;
    ChemicalStep s{e.Chem2Map(r, 1), e.Chem2Map(r, 2), e.Chem2Map(r, 3), e.Chem2Map(r, 4), e.kf(q).value(),
                   e.kb(q).value()};
    const bool sameSides = (s.a == s.c && s.b == s.d) || (s.a == s.d && s.b == s.c);
    if (sameSides) Refuse("The " + ChemicalName(e, q) + " has the same species on both sides");
    // A side of two species is second order; its constant is per unit of the
    // largest initial concentration.
    if (s.a != 0 && s.b != 0) s.kf = Div(s.kf, cmax);
    if (s.c != 0 && s.d != 0) s.kb = Div(s.kb, cmax);
    set.chemical.push_back(s);
  }
}

// An empty place contributes a factor of 1: a side's rate is k times the
// product of the concentrations standing on it.
double SideProduct(const double* c, int x, int y) { return (x ? c[x] : 1.0) * (y ? c[y] : 1.0); }

// d(net)/d(c of `place`) = `slope`: it is lost from the left side and
// gained on the right.
void AddSlope(const ChemicalStep& s, int place, double slope, double (*jac)[kMaxSpecies + 1]) {
  for (int x : {s.a, s.b})
    if (x) jac[x][place] -= slope;
  for (int x : {s.c, s.d})
    if (x) jac[x][place] += slope;
}

void AddStep(const ChemicalStep& s, const double* c, double* rate, double (*jac)[kMaxSpecies + 1]) {
  const double net = s.kf * SideProduct(c, s.a, s.b) - s.kb * SideProduct(c, s.c, s.d);
  for (int x : {s.a, s.b}) if (x) rate[x] -= net;
  for (int x : {s.c, s.d}) if (x) rate[x] += net;
  if (!jac) return;
  if (s.a) AddSlope(s, s.a, s.kf * (s.b ? c[s.b] : 1.0), jac);
  if (s.b) AddSlope(s, s.b, s.kf * (s.a ? c[s.a] : 1.0), jac);
  if (s.c) AddSlope(s, s.c, -s.kb * (s.d ? c[s.d] : 1.0), jac);
  if (s.d) AddSlope(s, s.d, -s.kb * (s.c ? c[s.c] : 1.0), jac);
}

}  // namespace

ReactionSet ReadReactionSet(const Experiment& e) {
  ReactionSet set;
  ReadSpecies(e, set);
  ReadCharge(e, set);
  ReadChemical(e, set);
  set.fRT = e.fRT.value();
  return set;
}

ElectrodeRates RatesAt(const ChargeStep& step, double fRT, double E) {
  const double x = Checked(step.n * fRT * (E - step.E0));
  return {Checked(step.ks * Exp(-step.alpha * x)), Checked(step.ks * Exp((1 - step.alpha) * x))};
}

void HomogeneousRates(const ReactionSet& set, const double* c, double* rate, double (*jac)[kMaxSpecies + 1]) {
  const int n = std::min(set.species, kMaxSpecies);
  for (int i = 0; i <= n; ++i) {
    rate[i] = 0;
    if (jac)
      for (int j = 0; j <= n; ++j) jac[i][j] = 0;
  }
  for (const ChemicalStep& s : set.chemical) AddStep(s, c, rate, jac);
}

double LargestBulk(const ReactionSet& set) {
  double cmax = 0;
  for (int i = 1; i <= set.species; ++i) cmax = std::max(cmax, set.bulk[i]);
  return cmax;
}

}  // namespace voltrix
