#pragma once
// Diffusion kernels of the electrode geometries as sums of exponentials. The
// surface concentration of a species is its bulk value minus the convolution
// of its consumption flux with the kernel K(t) of the geometry. Every kernel
// here is a superposition of decays, K(t) = integral of rho(s) exp(-s t) ds,
// so a handful of exponential modes carry the whole history and a time step
// costs the number of modes, not the number of earlier steps.
// Units: D in cm^2/s, lengths in cm, rates in 1/s, K(t) in 1/cm.
#include <vector>

namespace voltrix {

// Sphere and hemisphere share a kernel, as do cylinder and hemicylinder.
enum class Geometry { kPlanar, kSphere, kDisc, kCylinder, kFilm };

// What the modes must resolve: the shortest time step and the longest time
// over which history counts (s).
struct ModeSpan {
  double shortest = 0;
  double longest = 0;
};

// K(t) ~ sum of weight * exp(-rate * t). The modes above `fastest` settle
// within any step and act at once; InstantWeight gives their weight.
struct KernelModes {
  std::vector<double> rate, weight;
  double fastest = 0;
  double edge = 0;  // short-time admittance beyond the planar one (cm/s): D/r for a sphere
  double D = 0;
};

// size: radius of the sphere, disc or cylinder, or the film's thickness;
// unused for the plane.
KernelModes DiffusionModes(Geometry g, double D, double size, const ModeSpan& span);

// Integral over the modes above `fastest` of weight / (rate + damping) (s/cm).
double InstantWeight(const KernelModes& k, double damping);

// Integral of K(t) exp(-damping t) over all t in a Nernst layer of thickness
// delta (s/cm): the steady ratio of concentration drop to flux.
double LayerSteadyKernel(double D, double delta, double damping);

}  // namespace voltrix
