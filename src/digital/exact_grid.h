#pragma once
// The expanding grid of the exact one-dimensional cells. Nodes widen
// geometrically away from the electrode, so that a few dozen of them reach
// from a fraction of the thinnest layer that matters out to where the
// solution is untouched. Every node but the surface one owns a box; volumes
// and face conductances are those of the electrode's true geometry, so a
// steady profile (linear, logarithmic, 1/r) is carried without error.
#include <cstddef>
#include <vector>

namespace voltrix {

enum class CellGeometry { Planar, Cylindrical, Spherical };

// How the last node meets the rest of the solution: the bulk beyond it, or
// a wall that nothing crosses (a thin film).
enum class FarSide { Bulk, Wall };

struct GridRequest {
  CellGeometry geometry = CellGeometry::Planar;
  double radius = 0;          // cm, curved geometries
  double finestSpacing = 0;   // cm: the first node's distance from the surface at most
  double extent = 0;          // cm: where the last node stands
  double expansion = 1.1;     // ratio of neighbouring spacings
  // The cap on a spacing at distance x: the larger of largestSpacing (cm)
  // and largestSpacingPerDistance times x; none while largestSpacing is 0.
  double largestSpacing = 0;
  double largestSpacingPerDistance = 0;
  FarSide far = FarSide::Bulk;
};

// Quantities are per unit area of the electrode, so that a box's content
// divided by its volume is a concentration and a face's conductance times D
// times a difference of concentrations is a flux density at the electrode.
struct ExpandingGrid {
  CellGeometry geometry = CellGeometry::Planar;
  FarSide far = FarSide::Bulk;
  int last = 0;                     // nodes 0 (the surface) to last
  std::vector<double> x;            // distance from the surface, cm
  std::vector<double> volume;       // box of node i (i >= 1), cm
  std::vector<double> conductance;  // face between i and i + 1, 1/cm
  double gradient[3] = {};          // dc/dx at the surface = sum of gradient[k] c(k), 1/cm
};

// Lays out nodes whose spacings start at most at finestSpacing and grow by
// the expansion ratio up to the cap, with x(last) = extent exactly.
// Raises InvalidArgument for a spacing or an extent that is not positive
// and when more than kMaxGridNodes would be needed.
constexpr std::size_t kMaxGridNodes = 4000;
ExpandingGrid LayOutExpandingGrid(const GridRequest& request);

// Weights of the three-point derivative at 0 from values at 0, d1 and d2,
// exact for quadratics in that coordinate.
void ThreePointSlope(double d1, double d2, double weights[3]);

}  // namespace voltrix
