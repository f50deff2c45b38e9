#pragma once
// Closed-form current of one charge reaction at one potential. A value is a
// current density per unit concentration scale (n * rate * concentration);
// the run driver turns it into amperes. Positive values are reductions.
// Besides their arguments the kernels read fRT, radius, Vis and omega.
//
// Common arguments: E potential (V), ks standard rate constant (cm/s), alpha
// transfer coefficient, n electrons, E0 standard potential as prepared by the
// driver, Cox/Cred concentrations, Sox/Sred square roots of the diffusion
// coefficients (the coefficients themselves for the rotating disk), t time (s).
// Every arithmetic fault raises a RunError; no NaN or infinity is returned.
namespace voltrix {

struct Experiment;

// Butler-Volmer electrode under semi-infinite linear diffusion at time t.
double PlanarResponse(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                      double Sox, double t, double Cred, double Sred);

// The planar response with the spherical steady-state flux Dox/r added to
// the mass-transport rate.
double SphericalResponse(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                         double Sox, double t, double Cred, double Sred);

// Steady state at a rotating disk: kinetics in series with Levich transport.
// Dox, Dred are the diffusion coefficients, not their roots.
double RotatingDiskResponse(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                            double Dox, double Cred, double Dred);

// Current at the end of a pulse minus the current just before it.
double DiffPulsePlanar(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                       double Sox, double tp, double td, double Cred, double Sred, double pulse);
double DiffPulseSpherical(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                          double Sox, double tp, double td, double Cred, double Sred, double pulse);

// Forward minus reverse half-cycle current, both sampled after tp.
double SquareWavePlanar(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                        double Sox, double tp, double Cred, double Sred, double pulse);
double SquareWaveSpherical(const Experiment& e, double E, double ks, double alpha, double n, double E0, double Cox,
                           double Sox, double tp, double Cred, double Sred, double pulse);

}  // namespace voltrix
