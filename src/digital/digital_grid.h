#pragma once
// The dimensionless problem of a digital run: the time structure of each
// technique, the exponentially expanding box grid and its geometry.
namespace voltrix {

struct Experiment;

struct TimeStructure {
  double dt = 0;         // length of one substep, s
  double NSub = 1;       // substeps of one data point, not rounded
  double SubFirst = 1;   // first substep computed
  double SubSample = 1;  // substep of a first sample
  double PulseHalf = 0;  // half the square wave amplitude
};

// 1 sweep, 2 DC, 3 normal pulse, 4 differential pulse, 5 square wave. Any
// other number runs as a sweep.
TimeStructure MakeTimeStructure(int technique, double td, double tp, double Epulse);

// Dimensionless diffusion coefficient of the reference species: 100 without
// chemistry, else set by the rate of chemical reaction 1 against the time of
// one potential step.
double ReferenceDiffusion(const Experiment& e);

// Number of boxes: grows with the log of sqrt(DMbase NData). Raises
// Subscript out of range above 99.
int BoxCount(double DMbase, double NData);

// Box edges and midpoints in units of the first box; each box is wider than
// the one before by e^0.5.
double XEdge(int j);
double XMid(int j);

enum class GridFamily { Planar, Cylindrical, Spherical };
// Planar for planar, thin film and rotating disk; spherical for spherical,
// hemispherical and microdisc; cylindrical for the two cylinders.
GridFamily FamilyOf(int electrode);

// Exchange area of each face over the box volume, over the midpoint distance:
// GeoLo(j), GeoUp(j) for j = 1..N. r0 is the radius in units of box 1.
void GeometryFactors(GridFamily family, double r0, int N, double* GeoLo, double* GeoUp);

}  // namespace voltrix
