#include "analytic/electrode_responses.h"

#include "analytic/scaled_erfc.h"
#include "model/checked.h"
#include "model/experiment.h"

namespace voltrix {

namespace {

struct Rates {
  double kc;  // cathodic, cm/s
  double ka;  // anodic, cm/s
};

Rates RateStep(const Experiment& e, double E, double ks, double alpha, double n, double E0) {
  const double a = Checked((n * e.fRT) * (E - E0));
  return {Checked(ks * Exp(-alpha * a)), Checked(ks * Exp((1 - alpha) * a))};
}

// n * (kc * Cox - ka * Cred): the flux the kinetics alone would carry.
double KineticFlux(const Rates& k, double n, double Cox, double Cred) {
  return Checked(n * (k.kc * Cox - k.ka * Cred));
}

}  // namespace

double PlanarResponse(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                      double Sox, double t, double Cred, double Sred) {
  const Rates k = RateStep(e, E, ks, alpha, n, E0);
  const double lambda = Checked(Div(k.kc, Sox) + Div(k.ka, Sred));
  const double y = Checked(lambda * Sqrt(t));
  return Checked(KineticFlux(k, n, Cox, Cred) * ScaledErfc(y));
}

double SphericalResponse(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                         double Sox, double t, double Cred, double Sred) {
  const Rates k = RateStep(e, E, ks, alpha, n, E0);
  const double g = Div(Sox, e.radius);
  const double lambda = Checked(Div(k.kc, Sox) + Div(k.ka, Sred) + g);
  const double w = Div(g, lambda);
  const double y = Checked(lambda * Sqrt(t));
  return Checked(KineticFlux(k, n, Cox, Cred) * ((1 - w) * ScaledErfc(y) + w));
}

double RotatingDiskResponse(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                            double Dox, double Cred, double Dred) {
  const Rates k = RateStep(e, E, ks, alpha, n, E0);
  const double kinetic = Checked(Pow(Dox, -2.0 / 3.0) * k.kc + Pow(Dred, -2.0 / 3.0) * k.ka);
  const double mass = Checked((0.62 * Pow(e.Vis, -1.0 / 6.0)) * Sqrt(e.omega));
  return Div(KineticFlux(k, n, Cox, Cred), Checked(1 + Div(kinetic, mass)));
}

double DiffPulsePlanar(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                       double Sox, double tp, double td, double Cred, double Sred, double pulse) {
  // The pulsed term is sampled later by an empirical power law of the cycle.
  const double t2 = Checked(tp * Pow(Div(td + tp, td), 0.15));
  return Checked(PlanarResponse(e, E + pulse, ks, alpha, n, E0, Cox, Sox, t2, Cred, Sred) -
                 PlanarResponse(e, E, ks, alpha, n, E0, Cox, Sox, tp, Cred, Sred));
}

double DiffPulseSpherical(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                          double Sox, double tp, double td, double Cred, double Sred, double pulse) {
  // Here the base term carries the time correction, and 1 is added to td.
  const double t1 = Div(tp * (td + 1), (td + tp) + 1);
  return Checked(SphericalResponse(e, E + pulse, ks, alpha, n, E0, Cox, Sox, tp, Cred, Sred) -
                 SphericalResponse(e, E, ks, alpha, n, E0, Cox, Sox, t1, Cred, Sred));
}

double SquareWavePlanar(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                        double Sox, double tp, double Cred, double Sred, double pulse) {
  return Checked(PlanarResponse(e, E + pulse, ks, alpha, n, E0, Cox, Sox, tp, Cred, Sred) -
                 PlanarResponse(e, E, ks, alpha, n, E0, Cox, Sox, tp, Cred, Sred));
}

double SquareWaveSpherical(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                           double Sox, double tp, double Cred, double Sred, double pulse) {
  return Checked(SphericalResponse(e, E + pulse, ks, alpha, n, E0, Cox, Sox, tp, Cred, Sred) -
                 SphericalResponse(e, E, ks, alpha, n, E0, Cox, Sox, tp, Cred, Sred));
}

}  // namespace voltrix
