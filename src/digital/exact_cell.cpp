#include "digital/exact_cell.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "model/checked.h"

namespace voltrix {

namespace {

constexpr double kFaradayPerLitre = 96484.6 * 0.001;  // flux in mol/L cm/s to A/cm2
// Factors kept for reuse: enough for the distinct steps of a pulse
// technique's two holds, within some 4 MB.
constexpr std::size_t kMostCachedFactors = 256;
constexpr double kCacheBytes = 4e6;
constexpr int kNewtonPasses = 30;
constexpr double kNewtonTolerance = 1e-11;  // of the largest bulk concentration
constexpr double kJumpTolerance = 1e-9;     // V
constexpr double kFarOverpotential = 600;   // in RT/nF

// z / (e^z - 1): the exponentially fitted weight of a face's downstream
// neighbour under a flow of cell Peclet number z; 1 without flow.
double Bernoulli(double z) {
  if (std::fabs(z) < 1e-10) return 1 - z / 2;
  if (z > 700) return 0;
  return z / std::expm1(z);
}

bool IsLinear(const ReactionSet& set) {
  for (const ChemicalStep& s : set.chemical)
    if ((s.a && s.b) || (s.c && s.d)) return false;
  return true;
}

// Net homogeneous rates (mol/L s) and their derivative at node values c
// (0-based species). A concentration the second-order formula has taken
// below 0 reacts as none: so every step keeps a solution, where a negative
// amount consumed by a square law would run away.
void NodeRates(const ReactionSet& set, const double* c, int n, SpeciesVector& rate, SpeciesMatrix& jac) {
  double c1[kMaxSpecies + 1] = {}, r1[kMaxSpecies + 1], j1[kMaxSpecies + 1][kMaxSpecies + 1];
  for (int p = 0; p < n; ++p) c1[p + 1] = std::max(c[p], 0.0);
  HomogeneousRates(set, c1, r1, j1);
  for (int p = 0; p < n; ++p) {
    rate.v[p] = r1[p + 1];
    for (int q = 0; q < n; ++q) jac.a[p][q] = j1[p + 1][q + 1];
  }
}

}  // namespace

OneDimensionalCell::OneDimensionalCell(const ReactionSet& set, OneDimensionalCellSetup setup)
    : set_(set),
      setup_(std::move(setup)),
      n_(set.species),
      last_(setup_.grid.last),
      linear_(IsLinear(set)),
      system_(setup_.grid.last, set.species),
      budget_("The exact simulation", "use a larger E step") {
  const std::size_t size = static_cast<std::size_t>(last_ + 1) * n_;
  now_.assign(size, 0);
  before_ = trial_ = iterate_ = history_ = now_;
  for (int p = 0; p < n_; ++p) D_[p] = set.D[p + 1];
  layOutTransport();
  chooseCurrentReadings();
  SpeciesVector unused;
  const std::vector<double> zero(n_, 0.0);
  if (linear_) {
    NodeRates(set_, zero.data(), n_, unused, linearJacobian_);
    const double bytes = sizeof(double) * (last_ + 1.0) * n_ * n_ + sizeof(CachedFactor);
    cacheCapacity_ = std::clamp<std::size_t>(static_cast<std::size_t>(kCacheBytes / bytes), 1, kMostCachedFactors);
    cache_.reserve(cacheCapacity_);
    system_.diagonal = set_.chemical.empty();
  } else {
    jacobian_.resize(last_ + 1);
  }
  measureWork();
  renew();
}

// Per node, a solve applies two blocks (one multiply-add per species and
// link without homogeneous reactions), a factor inverts one, and forming
// the right-hand sides, the rates and the currents costs some thirty
// operations per unknown. Every step solves once; a second-order one
// forms its reactions and factors at least once as well.
void OneDimensionalCell::measureWork() {
  const double nodes = last_ + 1.0, n = n_;
  const double forming = 30 * n;
  solveWork_ = nodes * ((system_.diagonal ? 2 * n : 2 * n * n) + forming);
  factorWork_ = nodes * (system_.diagonal ? 4 * n : n * n * n + 2 * n * n);
  reactionWork_ = linear_ ? 0 : nodes * (n * n + forming);
  budget_.setStepWork(solveWork_);
  budget_.expect(setup_.outline.steps * (solveWork_ + (linear_ ? 0 : reactionWork_ + factorWork_)));
}

// Rates of exchange with the two neighbours, per unit of the node's
// content: D times the face conductance over the box volume, weighted for
// the flow where the electrode rotates. Their sum leaves the node, so a
// uniform solution stays uniform also under the flow.
void OneDimensionalCell::layOutTransport() {
  const ExpandingGrid& g = setup_.grid;
  low_.assign(now_.size(), 0.0);
  up_.assign(now_.size(), 0.0);
  auto peclet = [&](int face, double D) {
    const double mid = (g.x[face] + g.x[face + 1]) / 2;
    return -setup_.convection * mid * mid * (g.x[face + 1] - g.x[face]) / D;
  };
  for (int i = 1; i <= last_; ++i) {
    if (g.far == FarSide::Bulk && i == last_) continue;  // the solution beyond reacts but is not carried
    for (int p = 0; p < n_; ++p) {
      const double D = D_[p];
      low_[i * n_ + p] = Checked(D * g.conductance[i - 1] * Bernoulli(-peclet(i - 1, D)) / g.volume[i]);
      if (i < last_) up_[i * n_ + p] = Checked(D * g.conductance[i] * Bernoulli(peclet(i, D)) / g.volume[i]);
    }
  }
}

void OneDimensionalCell::chooseCurrentReadings() {
  int uses[kMaxSpecies + 1] = {};
  for (const ChargeStep& s : set_.charge) {
    ++uses[s.ox];
    ++uses[s.red];
  }
  readings_.clear();
  for (const ChargeStep& s : set_.charge) {
    CurrentReading r;
    if (uses[s.ox] == 1) {
      r = {s.ox - 1, 1};
    } else if (uses[s.red] == 1) {
      r = {s.red - 1, -1};
    }
    readings_.push_back(r);
  }
}

void OneDimensionalCell::renew() {
  for (int i = 0; i <= last_; ++i)
    for (int p = 0; p < n_; ++p) now_[i * n_ + p] = set_.bulk[p + 1];
  before_ = now_;
  steps_ = 0;
}

OneDimensionalCell::Scheme OneDimensionalCell::schemeFor(double Ebegin, double dt) const {
  Scheme s;
  s.dt = dt;
  s.restart = steps_ == 0 || std::fabs(Ebegin - lastE_) > kJumpTolerance;
  if (!s.restart) {
    s.w = dt / lastStep_;
    s.a0 = (1 + 2 * s.w) / (1 + s.w);
  }
  return s;
}

// The known part of the step: c(now) for backward Euler, and for the
// variable-step BDF2 (1 + w) c(now) - w^2 / (1 + w) c(before); from entry
// `from` on, into `out`.
void OneDimensionalCell::formHistory(const Scheme& s, double* __restrict out, std::size_t from) {
  const double a = s.restart ? 1 : 1 + s.w, b = s.restart ? 0 : s.w * s.w / (1 + s.w);
  const double* __restrict now = now_.data();
  const double* __restrict before = before_.data();
  const std::size_t size = now_.size();
  for (std::size_t k = from; k < size; ++k) out[k - from] = a * now[k] - b * before[k];
}

// Beyond some 600 RT/nF from E0 one side of a couple is gone to the last
// digit whatever the overpotential; the potential is held there so that the
// rates stay finite.
void OneDimensionalCell::setElectrodeRates(double E) {
  for (std::size_t r = 0; r < set_.charge.size(); ++r) {
    const ChargeStep& step = set_.charge[r];
    const double reach = kFarOverpotential / (step.n * set_.fRT);
    const ElectrodeRates k = RatesAt(step, set_.fRT, std::clamp(E, step.E0 - reach, step.E0 + reach));
    kred_[r] = k.kred;
    kox_[r] = k.kox;
  }
}

void OneDimensionalCell::setTransportRows(double dt) {
  if (dt == transportDt_) return;
  for (int i = 1; i <= last_; ++i)
    for (int p = 0; p < n_; ++p) {
      system_.L(i, p) = -dt * low_[i * n_ + p];
      system_.U(i, p) = -dt * up_[i * n_ + p];
    }
  transportDt_ = dt;
}

// Interior rows a0 c - dt (transport + reactions) = history, the reactions
// linearised about `around` (exact when they are first order).
void OneDimensionalCell::assembleInterior(const Scheme& s, const std::vector<double>& around) {
  SpeciesVector rate;
  SpeciesMatrix jac = linearJacobian_;
  for (int i = 1; i <= last_; ++i) {
    const double* c = &around[i * n_];
    if (!linear_) {
      NodeRates(set_, c, n_, rate, jac);
      jacobian_[i] = jac;
    }
    double* M = system_.M(i);
    for (int p = 0; p < n_; ++p) {
      double lin = 0;
      for (int q = 0; q < n_; ++q) {
        M[p * n_ + q] = -s.dt * jac.a[p][q];
        lin += jac.a[p][q] * c[q];
      }
      M[p * n_ + p] += s.a0 + s.dt * (low_[i * n_ + p] + up_[i * n_ + p]);
      system_.r(i, p) = history_[i * n_ + p] + (linear_ ? 0.0 : s.dt * (rate.v[p] - lin));
    }
  }
}

// The right-hand sides of a chord pass: the reactions at `around`, their
// derivative kept from the last factor.
void OneDimensionalCell::assembleReactionRhs(const Scheme& s, const std::vector<double>& around) {
  SpeciesVector rate;
  SpeciesMatrix unused;
  for (int i = 1; i <= last_; ++i) {
    const double* c = &around[i * n_];
    NodeRates(set_, c, n_, rate, unused);
    const SpeciesMatrix& jac = jacobian_[i];
    for (int p = 0; p < n_; ++p) {
      double lin = 0;
      for (int q = 0; q < n_; ++q) lin += jac.a[p][q] * c[q];
      system_.r(i, p) = history_[i * n_ + p] + s.dt * (rate.v[p] - lin);
    }
  }
}

// The surface row D c'(0) = (net consumption by the electron transfers),
// species by species, with the three-point slope; its c(2) is eliminated
// with row 1 so that the system stays tridiagonal.
void OneDimensionalCell::assembleSurface(SpeciesMatrix& P, SpeciesMatrix& Q, SpeciesVector& s) const {
  const double* w = setup_.grid.gradient;
  P = SpeciesMatrix{};
  for (std::size_t r = 0; r < set_.charge.size(); ++r) {
    const int o = set_.charge[r].ox - 1, d = set_.charge[r].red - 1;
    P.a[o][o] -= kred_[r];
    P.a[o][d] += kox_[r];
    P.a[d][o] += kred_[r];
    P.a[d][d] -= kox_[r];
  }
  const double* M1 = system_.M(1);
  for (int p = 0; p < n_; ++p) {
    const double e = D_[p] * w[2] / system_.U(1, p);
    P.a[p][p] += D_[p] * w[0] - e * system_.L(1, p);
    for (int q = 0; q < n_; ++q) Q.a[p][q] = -e * M1[p * n_ + q];
    Q.a[p][p] += D_[p] * w[1];
    s.v[p] = -e * system_.r(1, p);
  }
}

// The state the step is expected to reach, from the last two: a start for
// Newton's method that is right to the step's first order.
void OneDimensionalCell::predict(const Scheme& s) {
  if (s.restart) {
    iterate_ = now_;
    return;
  }
  for (std::size_t k = 0; k < now_.size(); ++k) iterate_[k] = now_[k] + s.w * (now_[k] - before_[k]);
}

const OneDimensionalCell::CachedFactor& OneDimensionalCell::cachedFactor(const Scheme& s) {
  // A run mostly repeats its last step.
  if (lastHit_ < cache_.size() && cache_[lastHit_].dt == s.dt && cache_[lastHit_].a0 == s.a0) return cache_[lastHit_];
  for (std::size_t k = 0; k < cache_.size(); ++k)
    if (cache_[k].dt == s.dt && cache_[k].a0 == s.a0) {
      lastHit_ = k;
      return cache_[k];
    }
  if (cache_.size() < cacheCapacity_) {
    cache_.emplace_back();
  } else {
    std::swap(cache_[nextCacheSlot_], cache_.back());
    nextCacheSlot_ = (nextCacheSlot_ + 1) % cacheCapacity_;
  }
  CachedFactor& f = cache_.back();
  lastHit_ = cache_.size() - 1;
  budget_.spend(factorWork_);
  assembleInterior(s, now_);  // its right-hand sides are not used
  SpeciesMatrix P;
  SpeciesVector unused;
  assembleSurface(P, f.Q, unused);
  system_.factor(f.Q, f.factor);
  f.dt = s.dt;
  f.a0 = s.a0;
  return f;
}

void OneDimensionalCell::solveLinear(const Scheme& s) {
  budget_.spend(solveWork_);
  setTransportRows(s.dt);
  const CachedFactor& f = cachedFactor(s);
  formHistory(s, &system_.r(1, 0), static_cast<std::size_t>(n_));
  SpeciesMatrix P, Q;
  SpeciesVector sv;
  assembleSurface(P, Q, sv);
  system_.solve(f.factor, P, sv, trial_);
}

// Newton's method on the second-order terms from a predicted state. The
// derivative is kept while the passes converge fast (a chord), and made
// afresh when they slow down.
void OneDimensionalCell::solveNonlinear(const Scheme& s) {
  formHistory(s, history_.data(), 0);
  setTransportRows(s.dt);
  predict(s);
  const double tolerance = kNewtonTolerance * LargestBulk(set_);
  double previous = 0;
  bool current = false;
  SpeciesMatrix P, Q;
  SpeciesVector sv;
  for (int pass = 0; pass < kNewtonPasses; ++pass) {
    budget_.spend(solveWork_ + reactionWork_ + (current ? 0 : factorWork_));
    if (!current) {
      assembleInterior(s, iterate_);
      assembleSurface(P, Q, sv);
      system_.factor(Q, factor_);
      current = true;
    } else {
      assembleReactionRhs(s, iterate_);
      assembleSurface(P, Q, sv);
    }
    system_.solve(factor_, P, sv, trial_);
    double change = 0;
    for (std::size_t k = 0; k < trial_.size(); ++k) change = std::max(change, std::fabs(trial_[k] - iterate_[k]));
    std::swap(iterate_, trial_);
    if (change <= tolerance) {
      trial_ = iterate_;
      return;
    }
    if (pass > 0 && change > 0.1 * previous) current = false;
    previous = change;
  }
  Raise(ErrorKind::InvalidOperation, "The second-order reactions found no balance within a time step");
}

CellCurrents OneDimensionalCell::trial(double Ebegin, double Eend, double dt) {
  if (!(dt > 0)) Raise(ErrorKind::InvalidArgument, "A time step must be greater than 0");
  trialScheme_ = schemeFor(Ebegin, dt);
  trialE_ = Eend;
  setElectrodeRates(Eend);
  if (linear_)
    solveLinear(trialScheme_);
  else
    solveNonlinear(trialScheme_);
  return currents(trial_);
}

void OneDimensionalCell::accept() {
  std::swap(before_, now_);
  std::swap(now_, trial_);
  steps_ = trialScheme_.restart ? 1 : steps_ + 1;
  lastStep_ = trialScheme_.dt;
  lastE_ = trialE_;
}

double OneDimensionalCell::surfaceConcentration(int species) const {
  if (species < 1 || species > n_) Raise(ErrorKind::SubscriptOutOfRange);
  return now_[species - 1];
}

double OneDimensionalCell::surfaceFlux(const std::vector<double>& c, int p) const {
  const double* w = setup_.grid.gradient;
  return D_[p] * (w[0] * c[p] + w[1] * c[n_ + p] + w[2] * c[2 * n_ + p]);
}

CellCurrents OneDimensionalCell::currents(const std::vector<double>& c) const {
  CellCurrents out;
  for (std::size_t r = 0; r < set_.charge.size(); ++r) {
    const ChargeStep& step = set_.charge[r];
    const CurrentReading& read = readings_[r];
    const double rate = read.species >= 0 ? read.sign * surfaceFlux(c, read.species)
                                          : kred_[r] * c[step.ox - 1] - kox_[r] * c[step.red - 1];
    const double I = Checked(step.n * kFaradayPerLitre * setup_.area * rate);
    out.reaction[r + 1] = I;
    out.total = Checked(out.total + I);
  }
  return out;
}

}  // namespace voltrix
