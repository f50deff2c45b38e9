#include "digital/exact_layout.h"

#include <algorithm>
#include <cmath>

#include "digital/exact_cell.h"
#include "digital/microdisc_cell.h"
#include "model/checked.h"

namespace voltrix {

namespace {

// The first spacing is this part of the thinnest layer that matters (the
// diffusion layer of the shortest sampled time, the reaction layer of the
// fastest homogeneous step, the electrode radius, the disk's convective
// layer); the grid reaches this many diffusion lengths of the whole run and
// widens by this ratio from node to node. Against the closed forms of the
// sphere, the cylinder and the Cottrell and Randles-Sevcik currents these
// keep the error below 0.15 % with some 20 to 40 nodes.
constexpr double kLayerPart = 0.05;
constexpr double kRadiusPart = 0.02;
constexpr double kDiffusionLengths = 6;
constexpr double kGridExpansion = 1.25;
// The disk's steady profile falls off as exp(-(x/L)^3), L = (3D/a)^1/3;
// where the flow carries more than diffusion the spacing stays a small part
// of L, so that the flux between nodes stays second order. Beyond 4 L of a
// species it is flat, and only species of larger D ask for the same.
constexpr double kConvectiveLengths = 4;
constexpr double kConvectiveSpacing = 0.1;

struct Diffusivities {
  double smallest = 0, largest = 0;
};

Diffusivities Range(const ReactionSet& set) {
  Diffusivities d{set.D[1], set.D[1]};
  for (int i = 2; i <= set.species; ++i) {
    d.smallest = std::min(d.smallest, set.D[i]);
    d.largest = std::max(d.largest, set.D[i]);
  }
  return d;
}

// The fastest pseudo-first-order rate of the homogeneous steps, 1/s: a
// second-order constant times the largest bulk concentration.
double FastestRate(const ReactionSet& set) {
  double cmax = 0;
  for (int i = 1; i <= set.species; ++i) cmax = std::max(cmax, set.bulk[i]);
  double k = 0;
  for (const ChemicalStep& s : set.chemical) {
    k = std::max(k, std::fabs(s.kf) * (s.a && s.b ? cmax : 1));
    k = std::max(k, std::fabs(s.kb) * (s.c && s.d ? cmax : 1));
  }
  return k;
}

CellGeometry GeometryOf(int electrode) {
  switch (electrode) {
    case 2:
    case 3: return CellGeometry::Spherical;
    case 5:
    case 6: return CellGeometry::Cylindrical;
    default: return CellGeometry::Planar;
  }
}

double Positive(double value, const char* what) {
  if (!(value > 0)) Raise(ErrorKind::InvalidArgument, std::string(what) + " must be greater than 0");
  return value;
}

double ConvectionOf(const Experiment& e) {
  if (Count(e.Electrode) != 8) return 0;
  return LevichFlow(Positive(e.omega.value(), "The rotation rate"), Positive(e.Vis.value(), "The viscosity Vis"));
}

}  // namespace

double LevichFlow(double omega, double nu) { return Checked(0.51023 * Pow(omega, 1.5) / Sqrt(nu)); }

GridRequest ChooseGrid(const Experiment& e, const ReactionSet& set, const ProgramScales& scales) {
  const Diffusivities D = Range(set);
  GridRequest g;
  g.geometry = GeometryOf(Count(e.Electrode));
  g.expansion = kGridExpansion;
  g.finestSpacing = kLayerPart * Sqrt(Checked(D.smallest * scales.resolvedTime));
  g.extent = kDiffusionLengths * Sqrt(Checked(D.largest * scales.totalTime));
  const double k = FastestRate(set);
  if (k > 0) g.finestSpacing = std::min(g.finestSpacing, kLayerPart * Sqrt(Div(D.smallest, k)));
  if (g.geometry != CellGeometry::Planar) {
    g.radius = Positive(e.radius.value(), "The electrode radius");
    g.finestSpacing = std::min(g.finestSpacing, kRadiusPart * g.radius);
  }
  const double a = ConvectionOf(e);
  if (a > 0) {
    const double thinnest = std::cbrt(3 * D.smallest / a);
    g.finestSpacing = std::min(g.finestSpacing, kLayerPart * thinnest);
    g.largestSpacing = kConvectiveSpacing * thinnest;
    g.largestSpacingPerDistance = kConvectiveSpacing / kConvectiveLengths;
    g.extent = std::min(g.extent, kConvectiveLengths * std::cbrt(3 * D.largest / a));
  }
  if (Count(e.Electrode) == 7 && Positive(e.leng.value(), "The film thickness") <= g.extent) {
    g.extent = e.leng.value();
    g.far = FarSide::Wall;
  }
  g.finestSpacing = std::min(g.finestSpacing, g.extent / 20);
  return g;
}

StretchCut StretchCutFor(const Experiment& e) {
  if (Count(e.Electrode) != 4) return StretchCut::Graded;
  return e.Ru.value() > 0 ? StretchCut::Halves : StretchCut::Whole;
}

std::unique_ptr<TransportCell> MakeExactCell(const Experiment& e, const ReactionSet& set, const ProgramScales& scales) {
  if (Count(e.Electrode) == 4)
    return MakeMicrodiscCell(e, set, CellTiming{scales.shortestStep, scales.totalTime}, scales.outline);
  OneDimensionalCellSetup setup;
  setup.grid = LayOutExpandingGrid(ChooseGrid(e, set, scales));
  setup.area = e.ARE.value();
  setup.convection = ConvectionOf(e);
  setup.outline = scales.outline;
  return std::make_unique<OneDimensionalCell>(set, std::move(setup));
}

}  // namespace voltrix
