#include "digital/microdisc_grid.h"

#include <algorithm>
#include <cmath>

namespace voltrix {

namespace {

constexpr double kQuarterTurn = 1.5707963267948966;  // pi/2: phi and theta of infinity and the axis
constexpr double kPhiPerLayer = 0.2;    // first phi step in units of the finest layer
constexpr double kPhiGrowth = 1.2;
constexpr double kPhiWidest = 0.05;
constexpr double kPhiPerFarLayer = 0.2;  // last phi step times the widest layer
constexpr double kThetaPerRootLayer = 0.25;  // near the edge the layer scales as its square root
constexpr double kThetaGrowth = 1.2;
constexpr double kThetaWidest = 0.1;
constexpr double kThinnestLayer = 1e-7;

double Cube(double x) { return x * x * x; }

// Cell faces halfway between nodes, the ends at the ends.
std::vector<double> Faces(const std::vector<double>& nodes) {
  std::vector<double> faces(nodes.size() + 1);
  faces.front() = nodes.front();
  faces.back() = nodes.back();
  for (std::size_t k = 1; k < nodes.size(); ++k) faces[k] = 0.5 * (nodes[k - 1] + nodes[k]);
  return faces;
}

// Rows 0..rows-1 along xi; the node at phi = pi/2 is the bulk and owns no cell.
void LayOutRows(MicrodiscGrid& g, double first, double last) {
  g.phi = GradedBothWays(first, last, kPhiGrowth, kPhiWidest, kQuarterTurn);
  g.rows = static_cast<int>(g.phi.size()) - 1;
  std::vector<double> faces = Faces(g.phi);
  for (int i = 0; i < g.rows; ++i) {
    const double lo = std::tan(faces[i]), hi = std::tan(faces[i + 1]);
    g.xiWidth.push_back(hi - lo);
    g.xiMoment.push_back((Cube(hi) - Cube(lo)) / 3);
    // Steady flux between nodes: (1 + xi^2) dc/dxi is constant, c linear in phi.
    g.xiLink.push_back(1 / (g.phi[i + 1] - g.phi[i]));
  }
}

void LayOutColumns(MicrodiscGrid& g, double first) {
  g.theta = GradedNodes(first, kThetaGrowth, kThetaWidest, kQuarterTurn);
  g.columns = static_cast<int>(g.theta.size());
  std::vector<double> faces = Faces(g.theta);
  for (int j = 0; j < g.columns; ++j) {
    const double lo = std::sin(faces[j]), hi = std::sin(faces[j + 1]);
    g.etaWidth.push_back(hi - lo);
    g.etaMoment.push_back((Cube(hi) - Cube(lo)) / 3);
    g.discWeight.push_back((hi * hi - lo * lo) / 2);
    // (1 - eta^2) dc/deta = cos(theta) dc/dtheta at the face between nodes.
    if (j + 1 < g.columns) g.etaLink.push_back(std::cos(faces[j + 1]) / (g.theta[j + 1] - g.theta[j]));
  }
  g.etaLink.push_back(0);  // the axis
}

}  // namespace

std::vector<double> GradedNodes(double first, double growth, double widest, double end) {
  std::vector<double> nodes{0};
  double step = std::min(first, widest);
  while (nodes.back() + 0.5 * step < end) {
    nodes.push_back(nodes.back() + step);
    step = std::min(step * growth, widest);
  }
  if (nodes.size() < 3) nodes = {0, end / 2, end};
  const double scale = end / nodes.back();
  for (double& x : nodes) x *= scale;
  nodes.back() = end;
  return nodes;
}

std::vector<double> GradedBothWays(double first, double last, double growth, double widest, double end) {
  // Each end grows its own steps up to the widest; the middle is even.
  std::vector<double> low{0}, high{end};
  double lowStep = std::min(first, widest), highStep = std::min(last, widest);
  while (low.back() + lowStep < high.back() - highStep && (lowStep < widest || highStep < widest)) {
    if (lowStep <= highStep) {
      low.push_back(low.back() + lowStep);
      lowStep = std::min(lowStep * growth, widest);
    } else {
      high.push_back(high.back() - highStep);
      highStep = std::min(highStep * growth, widest);
    }
  }
  const double gap = high.back() - low.back();
  const int even = std::max(1, static_cast<int>(std::lround(gap / widest)));
  std::vector<double> nodes = low;
  for (int k = 1; k < even; ++k) nodes.push_back(low.back() + gap * k / even);
  nodes.insert(nodes.end(), high.rbegin(), high.rend());
  return nodes;
}

MicrodiscGrid LayOutMicrodiscGrid(double finestLayer, double widestLayer) {
  const double layer = std::max(finestLayer, kThinnestLayer);
  MicrodiscGrid g;
  // Far out, xi ~ 1 / (pi/2 - phi): steps near infinity shrink as the
  // diffusion field reaches further.
  LayOutRows(g, kPhiPerLayer * layer, kPhiPerFarLayer / std::max(widestLayer, 1.0));
  LayOutColumns(g, kThetaPerRootLayer * std::sqrt(layer));
  return g;
}

}  // namespace voltrix
