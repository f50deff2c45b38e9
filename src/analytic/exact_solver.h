#pragma once
// The surface fluxes of a mechanism's charge reactions, marched in time as
// the solution of its integral equations: each transport channel's surface
// value is its bulk value minus the convolution of its flux with a damped
// diffusion kernel, and Butler-Volmer holds at the end of every step. The
// flux is taken linear over a step (constant over the first step after a
// jump of potential), and the convolution is integrated exactly for it.
#include <vector>

#include "analytic/exact_kernels.h"
#include "analytic/exact_mechanism.h"

namespace voltrix {

// Net reduction flux of each charge reaction, mol/L * cm/s.
struct ReactionFluxes {
  double f[kMaxCharge] = {};
};

// Surface concentrations as P - M f, f the reaction fluxes: what the bulk
// and the history leave (P, mol/L) and the weight of each new flux (M, s/cm).
struct SurfaceValues {
  double P[kMaxSpecies + 1] = {};
  double M[kMaxSpecies + 1][kMaxCharge] = {};
  // A channel whose value has dropped by `drop` below its bulk before the
  // new fluxes, and drops by weight times its flux with them.
  void add(const TransportChannel& ch, const std::vector<double>& gains, double drop, double weight);
};

class SurfaceFluxSolver {
 public:
  SurfaceFluxSolver(const ExactMechanism& m, Geometry g, double size, const ModeSpan& span);
  // Back to the bulk solution with no current: a new drop.
  void renew();
  // Advances h seconds to potential E (V). `jump`: the potential stepped at
  // the start, so the flux before it says nothing about the step.
  void step(double h, double E, bool jump);
  const ReactionFluxes& fluxes() const { return flux_; }
  double time() const { return time_; }

 private:
  struct ChannelStep {
    std::vector<double> decay, fromPrevious, fromNew;
    double instant = 0;  // weight of the new flux on the surface value
  };
  struct StepCoefficients {
    double h = 0;
    bool jump = false;
    std::vector<ChannelStep> channel;
  };
  const StepCoefficients& coefficients(double h, bool jump);
  // The channel's modes decayed over the step with the old flux; returns
  // the drop of its surface value below the bulk before the new flux.
  double advanceHistory(int c, const ChannelStep& cs);
  void takeNewFlux(int c, const ChannelStep& cs);
  StepCoefficients buildCoefficients(double h, bool jump) const;

  const ExactMechanism& mech_;
  std::vector<KernelModes> kernel_;                 // per channel
  std::vector<std::vector<double>> state_;          // per channel, per mode
  std::vector<double> previous_;                    // channel flux at the last node
  std::vector<std::vector<double>> gain_;           // channel flux per reaction flux
  std::vector<StepCoefficients> cache_;
  size_t last_ = 0;
  ReactionFluxes flux_;
  double time_ = 0;
};

// Steady fluxes at a rotating disk at E after t seconds of bulk reaction:
// every channel in a Nernst layer whose thickness gives the Levich flux,
// D^(1/3) Vis^(1/6) omega^(-1/2) / 0.62.
ReactionFluxes SteadyDiskFluxes(const ExactMechanism& m, double E, double t, double Vis, double omega);

// Butler-Volmer for every reaction with the surface values c = P - M f:
// solves f_r = kred_r c_ox - kox_r c_red for f.
ReactionFluxes SolveElectrodeFluxes(const ExactMechanism& m, double E, const double* P,
                                    const double (*M)[kMaxCharge]);

}  // namespace voltrix
