#include "digital/exact_grid.h"

#include <cmath>

#include "model/checked.h"

namespace voltrix {

namespace {

// Fewest nodes a grid gets, so that the three-point slope and the first box
// always stand on distinct nodes.
constexpr std::size_t kMinGridNodes = 8;

// Spacings from the first, each q times the one before, within the cap,
// until the extent is passed; then scaled so that the last node stands at
// the extent.
std::vector<double> Spacings(const GridRequest& r, double first) {
  auto cap = [&](double x) {
    return r.largestSpacing > 0 ? std::max(r.largestSpacing, r.largestSpacingPerDistance * x) : r.extent;
  };
  std::vector<double> spacings;
  double x = 0;
  for (double h = first; x < r.extent; h = std::min(h * r.expansion, cap(x))) {
    if (spacings.size() >= kMaxGridNodes) Raise(ErrorKind::InvalidArgument, "The grid would need too many nodes");
    spacings.push_back(h);
    x += h;
  }
  for (double& h : spacings) h *= r.extent / x;
  return spacings;
}

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
  std::vector<double> h = Spacings(r, r.finestSpacing);
  if (h.size() < kMinGridNodes)
    h = Spacings(r, r.extent * (r.expansion - 1) / std::expm1(kMinGridNodes * std::log(r.expansion)));
  ExpandingGrid grid;
  grid.geometry = r.geometry;
  grid.far = r.far;
  grid.last = static_cast<int>(h.size());
  grid.x.assign(grid.last + 1, 0.0);
  for (int i = 0; i < grid.last; ++i) grid.x[i + 1] = grid.x[i] + h[i];
  grid.x[grid.last] = r.extent;
  // The face between nodes i and i + 1 divides their gap as the square
  // roots of the spacings on either side: the midpoint of a uniform stretch,
  // the midpoint in the index of a geometric one.
  std::vector<double> face(grid.last);
  for (int i = 0; i < grid.last; ++i) {
    const double before = i == 0 ? h[0] / r.expansion : h[i - 1];
    face[i] = grid.x[i] + h[i] / (1 + std::sqrt(h[i] / before));
  }
  grid.volume.assign(grid.last + 1, 0.0);
  for (int i = 1; i <= grid.last; ++i) {
    const double outer = i == grid.last ? r.extent : face[i];
    grid.volume[i] = Checked(Volume(r.geometry, r.radius, face[i - 1], outer));
  }
  grid.conductance.assign(grid.last + 1, 0.0);
  for (int i = 0; i < grid.last; ++i)
    grid.conductance[i] = Checked(Conductance(r.geometry, r.radius, grid.x[i], grid.x[i + 1]));
  ThreePointSlope(SteadyCoordinate(r.geometry, r.radius, grid.x[1]), SteadyCoordinate(r.geometry, r.radius, grid.x[2]),
                  grid.gradient);
  for (double& w : grid.gradient) w = Checked(w);
  return grid;
}

}  // namespace voltrix
