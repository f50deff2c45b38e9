#include "analytic/exact_solver.h"

#include <cmath>

#include "model/checked.h"

namespace voltrix {

namespace {

// Weights of the flux at the start and at the end of a step of z = rate * h
// in the exact integral of exp(-rate (t_end - t)) over the step, divided by h.
struct LinearWeights {
  double previous, next;
};
LinearWeights ExponentialWeights(double z) {
  if (z < 1e-4) return {0.5 - z / 3 + z * z / 8, 0.5 - z / 6 + z * z / 24};
  const double decay = std::exp(-z);
  const double phi1 = (1 - decay) / z;
  const double phi2 = (1 - decay - z * decay) / (z * z);
  return {phi2, phi1 - phi2};
}

int Channels(const ExactMechanism& m) { return static_cast<int>(m.channels.size()); }
int Reactions(const ExactMechanism& m) { return static_cast<int>(m.charge.size()); }

// Consumption of channel c per unit flux of reaction r: the oxidised form
// is consumed, the reduced one formed.
double Gain(const TransportChannel& c, const ExactCharge& r) { return c.in[r.ox] - c.in[r.red]; }

// Gaussian elimination with partial pivoting on at most three unknowns.
void SolveSmall(int n, double (*a)[kMaxCharge + 1], double* x) {
  for (int col = 0; col < n; ++col) {
    int pivot = col;
    for (int row = col + 1; row < n; ++row)
      if (std::fabs(a[row][col]) > std::fabs(a[pivot][col])) pivot = row;
    for (int k = 0; k <= n; ++k) std::swap(a[col][k], a[pivot][k]);
    for (int row = col + 1; row < n; ++row) {
      const double factor = Div(a[row][col], a[col][col]);
      for (int k = col; k <= n; ++k) a[row][k] = Checked(a[row][k] - factor * a[col][k]);
    }
  }
  for (int row = n - 1; row >= 0; --row) {
    double sum = a[row][n];
    for (int k = row + 1; k < n; ++k) sum -= a[row][k] * x[k];
    x[row] = Div(sum, a[row][row]);
  }
}

}  // namespace

void SurfaceValues::add(const TransportChannel& ch, const std::vector<double>& gains, double drop, double weight) {
  for (int sp = 1; sp <= kMaxSpecies; ++sp) {
    if (ch.out[sp] == 0) continue;
    P[sp] -= ch.out[sp] * drop;
    for (size_t r = 0; r < gains.size(); ++r) M[sp][r] += ch.out[sp] * weight * gains[r];
  }
}

ReactionFluxes SolveElectrodeFluxes(const ExactMechanism& m, double E, const double* P,
                                    const double (*M)[kMaxCharge]) {
  const int n = Reactions(m);
  double a[kMaxCharge][kMaxCharge + 1] = {};
  for (int r = 0; r < n; ++r) {
    const ExactCharge& c = m.charge[r];
    const double x = Checked(c.n * m.fRT * (E - c.E0));
    const double kred = Checked(c.ks * Exp(-c.alpha * x)), kox = Checked(c.ks * Exp((1 - c.alpha) * x));
    // Each row divided by 1 + kred + kox keeps fast kinetics well scaled.
    const double scale = 1 / (1 + kred + kox);
    for (int q = 0; q < n; ++q)
      a[r][q] = Checked(((q == r ? 1.0 : 0.0) + kred * M[c.ox][q] - kox * M[c.red][q]) * scale);
    a[r][n] = Checked((kred * P[c.ox] - kox * P[c.red]) * scale);
  }
  ReactionFluxes out;
  SolveSmall(n, a, out.f);
  return out;
}

SurfaceFluxSolver::SurfaceFluxSolver(const ExactMechanism& m, Geometry g, double size, const ModeSpan& span)
    : mech_(m) {
  for (const TransportChannel& c : m.channels) {
    kernel_.push_back(DiffusionModes(g, c.D, size, span));
    std::vector<double> gains;
    for (const ExactCharge& r : m.charge) gains.push_back(Gain(c, r));
    gain_.push_back(gains);
  }
  renew();
}

void SurfaceFluxSolver::renew() {
  state_.assign(kernel_.size(), {});
  for (size_t c = 0; c < kernel_.size(); ++c) state_[c].assign(kernel_[c].rate.size(), 0.0);
  previous_.assign(kernel_.size(), 0.0);
  flux_ = ReactionFluxes{};
}

SurfaceFluxSolver::StepCoefficients SurfaceFluxSolver::buildCoefficients(double h, bool jump) const {
  StepCoefficients s;
  s.h = h;
  s.jump = jump;
  for (int c = 0; c < Channels(mech_); ++c) {
    const KernelModes& k = kernel_[c];
    const double damping = mech_.channels[c].damping;
    ChannelStep cs;
    cs.instant = InstantWeight(k, damping);
    for (size_t j = 0; j < k.rate.size(); ++j) {
      const double z = (k.rate[j] + damping) * h;
      const LinearWeights w = ExponentialWeights(z);
      const double fromPrevious = jump ? 0.0 : h * w.previous;
      const double fromNew = jump ? h * (w.previous + w.next) : h * w.next;
      cs.decay.push_back(std::exp(-z));
      cs.fromPrevious.push_back(fromPrevious);
      cs.fromNew.push_back(fromNew);
      cs.instant += k.weight[j] * fromNew;
    }
    s.channel.push_back(cs);
  }
  return s;
}

const SurfaceFluxSolver::StepCoefficients& SurfaceFluxSolver::coefficients(double h, bool jump) {
  // Sub-steps repeat, or repeat in the same order from one point to the
  // next: the last one used and the one after it are looked at first. Steps
  // that differ only by the rounding of the potential grid share coefficients.
  auto fits = [&](size_t i) { return std::fabs(cache_[i].h - h) <= 1e-12 * h && cache_[i].jump == jump; };
  for (size_t tries = 0; tries < cache_.size(); ++tries) {
    const size_t i = (last_ + tries) % cache_.size();
    if (fits(i)) {
      last_ = i;
      return cache_[i];
    }
  }
  cache_.push_back(buildCoefficients(h, jump));
  last_ = cache_.size() - 1;
  return cache_.back();
}

double SurfaceFluxSolver::advanceHistory(int c, const ChannelStep& cs) {
  const TransportChannel& ch = mech_.channels[c];
  const std::vector<double>& weight = kernel_[c].weight;
  std::vector<double>& y = state_[c];
  double history = 0;
  for (size_t j = 0; j < y.size(); ++j) {
    y[j] = cs.decay[j] * y[j] + cs.fromPrevious[j] * previous_[c];
    history += weight[j] * y[j];
  }
  return history - mech_.channelBulk(ch, time_);
}

void SurfaceFluxSolver::takeNewFlux(int c, const ChannelStep& cs) {
  double g = 0;
  for (size_t r = 0; r < mech_.charge.size(); ++r) g += gain_[c][r] * flux_.f[r];
  std::vector<double>& y = state_[c];
  for (size_t j = 0; j < y.size(); ++j) y[j] += cs.fromNew[j] * g;
  previous_[c] = g;
}

void SurfaceFluxSolver::step(double h, double E, bool jump) {
  const StepCoefficients& s = coefficients(h, jump);
  time_ += h;
  SurfaceValues surface;
  for (int c = 0; c < Channels(mech_); ++c)
    surface.add(mech_.channels[c], gain_[c], advanceHistory(c, s.channel[c]), s.channel[c].instant);
  flux_ = SolveElectrodeFluxes(mech_, E, surface.P, surface.M);
  for (int c = 0; c < Channels(mech_); ++c) takeNewFlux(c, s.channel[c]);
}

ReactionFluxes SteadyDiskFluxes(const ExactMechanism& m, double E, double t, double Vis, double omega) {
  SurfaceValues surface;
  for (const TransportChannel& ch : m.channels) {
    std::vector<double> gains;
    for (const ExactCharge& r : m.charge) gains.push_back(Gain(ch, r));
    const double delta = Div(Pow(ch.D, 1.0 / 3) * Pow(Vis, 1.0 / 6), 0.62 * Sqrt(omega));
    surface.add(ch, gains, -m.channelBulk(ch, t), LayerSteadyKernel(ch.D, delta, ch.damping));
  }
  return SolveElectrodeFluxes(m, E, surface.P, surface.M);
}

}  // namespace voltrix
