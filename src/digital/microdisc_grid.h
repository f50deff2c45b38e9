#pragma once
// The space around a disc electrode of radius a in oblate spheroidal
// coordinates: r = a sqrt((1 + xi^2)(1 - eta^2)), z = a xi eta. The disc is
// xi = 0, the insulating plane eta = 0 and the axis eta = 1. Steady
// diffusion to the disc depends on arctan(xi) alone and the edge
// singularity unfolds, so nodes stand at even steps of phi = arctan(xi),
// from the disc (0) to infinity (pi/2), and of theta = arcsin(eta), from the
// edge (0) to the axis (pi/2), each graded towards the disc and its edge.
//
// Finite volumes: node (i, j) owns the cell between the midpoints of its
// neighbours (half cells at the disc, the plane and the axis). Integrated
// over a cell, D grad^2 c = dc/dt becomes
//   mass(i,j) dc/dt = (D/a^2) [etaWidth_j (flux through the xi faces)
//                             + xiWidth_i (flux through the eta faces)],
// where a xi face passes xiLink_i (c_i+1 - c_i), which is exact for the
// steady field, and an eta face etaLink_j (c_j+1 - c_j).
#include <vector>

namespace voltrix {

struct MicrodiscGrid {
  int rows = 0;     // nodes along phi from the disc; node `rows` is at infinity, in the bulk
  int columns = 0;  // nodes along theta from the edge to the axis
  std::vector<double> phi, theta;
  std::vector<double> xiWidth, xiMoment, xiLink;  // per row: width, integral of xi^2, link to the next row
  std::vector<double> etaWidth, etaMoment, etaLink;  // per column: width, integral of eta^2, link to the next column
  std::vector<double> discWeight;  // per column: integral of eta over the cell; they add up to 1/2

  // The cell's integral of xi^2 + eta^2, the weight of dc/dt in it.
  double mass(int i, int j) const { return etaWidth[j] * xiMoment[i] + xiWidth[i] * etaMoment[j]; }
};

// finestLayer: the thinnest diffusion or reaction layer the run must
// resolve, widestLayer: how far diffusion reaches in the whole run, both over
// the radius.
MicrodiscGrid LayOutMicrodiscGrid(double finestLayer, double widestLayer);

// Node positions from 0 to end: the first spacing `first`, each next one
// `growth` times wider up to `widest`, all scaled to land on end.
std::vector<double> GradedNodes(double first, double growth, double widest, double end);
// The same graded from both ends, the last spacing `last`.
std::vector<double> GradedBothWays(double first, double last, double growth, double widest, double end);

}  // namespace voltrix
