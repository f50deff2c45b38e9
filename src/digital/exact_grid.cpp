#include "digital/exact_grid.h"

#include <cmath>

#include "model/checked.h"

namespace voltrix {

namespace {

// Fewest nodes a grid gets, so that the three-point slope and the first box
// always stand on distinct nodes.
constexpr int kMinGridNodes = 8;

int NodeCount(const GridRequest& r) {
  const double q = r.expansion;
  const double nodes = std::ceil(Log(1 + (q - 1) * Div(r.extent, r.finestSpacing)) / Log(q));
  if (!(nodes <= kMaxGridNodes)) Raise(ErrorKind::InvalidArgument, "The grid would need too many nodes");
  return std::max(kMinGridNodes, static_cast<int>(nodes));
}

// Position of the point at index s (a node for whole s, a face for halves).
double Position(double h, double q, double s) { return h * std::expm1(s * std::log(q)) / (q - 1); }

// Box content of [a, b] per unit electrode area.
double Volume(CellGeometry g, double r0, double a, double b) {
  const double ra = r0 + a, rb = r0 + b;
  switch (g) {
    case CellGeometry::Planar: return b - a;
    case CellGeometry::Cylindrical: return (b - a) * (ra + rb) / (2 * r0);
    case CellGeometry::Spherical: return (b - a) * (ra * ra + ra * rb + rb * rb) / (3 * r0 * r0);
  }
  return b - a;
}

// Steady flux density at the electrode per unit difference between two
// nodes: the exact solution between them (linear, logarithmic, 1/r).
double Conductance(CellGeometry g, double r0, double a, double b) {
  switch (g) {
    case CellGeometry::Planar: return 1 / (b - a);
    case CellGeometry::Cylindrical: return 1 / (r0 * std::log1p((b - a) / (r0 + a)));
    case CellGeometry::Spherical: return (r0 + a) * (r0 + b) / (r0 * r0 * (b - a));
  }
  return 1 / (b - a);
}

// A coordinate in which the steady profile is linear, with slope 1 at the
// surface: the surface gradient in it is the gradient in x.
double SteadyCoordinate(CellGeometry g, double r0, double x) {
  switch (g) {
    case CellGeometry::Planar: return x;
    case CellGeometry::Cylindrical: return r0 * std::log1p(x / r0);
    case CellGeometry::Spherical: return r0 * x / (r0 + x);
  }
  return x;
}

void CheckRequest(const GridRequest& r) {
  if (!(r.finestSpacing > 0) || !(r.extent > 0)) Raise(ErrorKind::InvalidArgument, "The grid needs a size above 0");
  if (r.geometry != CellGeometry::Planar && !(r.radius > 0))
    Raise(ErrorKind::InvalidArgument, "The electrode radius must be greater than 0");
  if (!(r.expansion > 1)) Raise(ErrorKind::InvalidArgument, "The grid must expand");
}

}  // namespace

void ThreePointSlope(double d1, double d2, double weights[3]) {
  weights[0] = -(d1 + d2) / (d1 * d2);
  weights[1] = d2 / (d1 * (d2 - d1));
  weights[2] = -d1 / (d2 * (d2 - d1));
}

ExpandingGrid LayOutExpandingGrid(const GridRequest& r) {
  CheckRequest(r);
  ExpandingGrid grid;
  grid.geometry = r.geometry;
  grid.far = r.far;
  const int last = NodeCount(r);
  const double q = r.expansion;
  const double h = Checked(r.extent * (q - 1) / std::expm1(last * std::log(q)));
  grid.last = last;
  grid.x.resize(last + 1);
  for (int i = 0; i <= last; ++i) grid.x[i] = Position(h, q, i);
  grid.x[last] = r.extent;
  grid.volume.assign(last + 1, 0.0);
  for (int i = 1; i <= last; ++i) {
    const double outer = i == last ? r.extent : Position(h, q, i + 0.5);
    grid.volume[i] = Checked(Volume(r.geometry, r.radius, Position(h, q, i - 0.5), outer));
  }
  grid.conductance.assign(last + 1, 0.0);
  for (int i = 0; i < last; ++i)
    grid.conductance[i] = Checked(Conductance(r.geometry, r.radius, grid.x[i], grid.x[i + 1]));
  ThreePointSlope(SteadyCoordinate(r.geometry, r.radius, grid.x[1]),
                  SteadyCoordinate(r.geometry, r.radius, grid.x[2]), grid.gradient);
  for (double& w : grid.gradient) w = Checked(w);
  return grid;
}

}  // namespace voltrix
