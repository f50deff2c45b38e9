#include "digital/microdisc_problem.h"

#include <algorithm>
#include <cmath>

#include "model/checked.h"

namespace voltrix {

namespace {

constexpr double kFaraday = 96484.6;
constexpr double kPi = 3.141592654;
constexpr double kPerLitre = 0.001;  // mol/L to mol/cm^3
// An electron transfer this many times faster than diffusion across the
// first row of cells is at equilibrium.
constexpr double kReversibleBeyond = 1e8;

int Root(const int* parent, int s) {
  while (parent[s] != s) s = parent[s];
  return s;
}

// The lower number stays the root, so a group is named by its first species.
void Unite(int* parent, int x, int y) {
  const int rx = Root(parent, x), ry = Root(parent, y);
  parent[std::max(rx, ry)] = std::min(rx, ry);
}

bool SecondOrder(const ChemicalStep& s) { return (s.a && s.b) || (s.c && s.d); }

int FirstPlace(const ChemicalStep& s) { return s.a ? s.a : s.b ? s.b : s.c ? s.c : s.d; }

// The fastest pseudo-first-order rate of a step, 1/s.
double FastestRate(const ChemicalStep& s, double cmax) {
  const double forward = (s.a && s.b) ? s.kf * cmax : s.kf;
  const double backward = (s.c && s.d) ? s.kb * cmax : s.kb;
  return std::max(std::fabs(forward), std::fabs(backward));
}

}  // namespace

double FinestLayer(const ReactionSet& set, double radius, double shortestTime) {
  double slowest = set.D[1], fastest = 0;
  for (int s = 1; s <= set.species; ++s) slowest = std::min(slowest, set.D[s]);
  for (const ChemicalStep& step : set.chemical) fastest = std::max(fastest, FastestRate(step, LargestBulk(set)));
  double layer = std::sqrt(slowest * shortestTime);
  if (fastest > 0) layer = std::min(layer, std::sqrt(slowest / fastest));
  return Div(layer, radius);
}

double WidestLayer(const ReactionSet& set, double radius, double totalTime) {
  double fastest = 0;
  for (int s = 1; s <= set.species; ++s) fastest = std::max(fastest, set.D[s]);
  return Div(std::sqrt(fastest * totalTime), radius);
}

MicrodiscProblem::MicrodiscProblem(const ReactionSet& set, double radius, const CellTiming& timing)
    : set_(set),
      radius_(radius),
      grid_(LayOutMicrodiscGrid(FinestLayer(set, radius, timing.shortestStep),
                                WidestLayer(set, radius, timing.totalTime))) {
  groupSpecies();
  shareOutChemistry();
  layOutState();
  setScales();
}

// Species joined by a homogeneous step share a group; the others stand alone.
void MicrodiscProblem::groupSpecies() {
  int parent[kMaxSpecies + 1];
  for (int s = 0; s <= kMaxSpecies; ++s) parent[s] = s;
  for (const ChemicalStep& step : set_.chemical)
    for (int x : {step.a, step.b, step.c, step.d})
      if (x) Unite(parent, x, FirstPlace(step));
  for (int s = 1; s <= set_.species; ++s) {
    const int root = Root(parent, s);
    if (root == s) {
      groupOf_[s] = static_cast<int>(groups_.size());
      groups_.emplace_back();
    } else {
      groupOf_[s] = groupOf_[root];
    }
    SpeciesGroup& group = groups_[groupOf_[s]];
    slotOf_[s] = group.size;
    group.species[group.size] = s;
    group.rate[group.size] = Div(set_.D[s], radius_ * radius_);
    ++group.size;
  }
}

void MicrodiscProblem::shareOutChemistry() {
  groupChemistry_.assign(groups_.size(), ReactionSet{});
  nonlinear_.assign(groups_.size(), false);
  for (ReactionSet& chemistry : groupChemistry_) chemistry.species = set_.species;
  for (const ChemicalStep& step : set_.chemical) {
    if (!FirstPlace(step)) continue;
    const int g = groupOf_[FirstPlace(step)];
    groupChemistry_[g].chemical.push_back(step);
    groups_[g].reactive = true;
    nonlinear_[g] = nonlinear_[g] || SecondOrder(step);
  }
}

void MicrodiscProblem::layOutState() {
  const std::size_t rowsWithBulk = grid_.rows + 1;
  for (const SpeciesGroup& group : groups_) {
    base_.push_back(stateSize_);
    surfaceOffset_.push_back(surfaceSize_);
    const int rowSize = grid_.columns * group.size;
    stateSize_ += rowsWithBulk * rowSize;
    surfaceSize_ += rowSize;
  }
}

void MicrodiscProblem::setScales() {
  concentrationScale_ = LargestBulk(set_);
  double fastest = 0;
  for (int s = 1; s <= set_.species; ++s) fastest = std::max(fastest, set_.D[s]);
  // The steady current of the disc for one electron, 4 F D C a.
  currentScale_ = 4 * kFaraday * fastest * concentrationScale_ * kPerLitre * radius_;
  for (std::size_t r = 0; r < set_.charge.size(); ++r)
    chargeFactor_[r] = set_.charge[r].n * kFaraday * 2 * kPi * radius_ * radius_ * kPerLitre;
  fastestTransfer_ = kReversibleBeyond * fastest / (radius_ * grid_.phi[1]);
}

std::size_t MicrodiscProblem::index(int species, int i, int j) const {
  const int g = groupOf_[species];
  const int size = groups_[g].size;
  return base_[g] + (static_cast<std::size_t>(i) * grid_.columns + j) * size + slotOf_[species];
}

int MicrodiscProblem::surfaceIndex(int species, int j) const {
  const int g = groupOf_[species];
  return surfaceOffset_[g] + j * groups_[g].size + slotOf_[species];
}

void MicrodiscProblem::fillBulk(double* c) const {
  for (int s = 1; s <= set_.species; ++s)
    for (int i = 0; i <= grid_.rows; ++i)
      for (int j = 0; j < grid_.columns; ++j) c[index(s, i, j)] = set_.bulk[s];
}

ChargeRates MicrodiscProblem::ratesAt(double E) const {
  ChargeRates rates;
  for (std::size_t r = 0; r < set_.charge.size(); ++r) {
    ElectrodeRates& k = rates.reaction[r];
    k = RatesAt(set_.charge[r], set_.fRT, E);
    // Far beyond transport only the ratio of the two counts (Nernst), and
    // larger constants would drown the net rate in rounding.
    const double larger = std::max(k.kred, k.kox);
    if (larger > fastestTransfer_) {
      k.kred *= fastestTransfer_ / larger;
      k.kox *= fastestTransfer_ / larger;
    }
  }
  return rates;
}

// Row by row, with the faces' coefficients at hand: the residual is formed
// at every step, so it is kept to a pass over the state.
void MicrodiscProblem::addTransport(int g, const double* c, const double* old, double h, double* F) const {
  const SpeciesGroup& group = groups_[g];
  const int size = group.size, columns = grid_.columns;
  const std::size_t rowSize = static_cast<std::size_t>(columns) * size;
  const double* etaWidth = grid_.etaWidth.data();
  const double* etaMoment = grid_.etaMoment.data();
  const double* etaLink = grid_.etaLink.data();
  const double perStep = 1 / h;
  for (int i = 0; i < grid_.rows; ++i) {
    const double* __restrict here = c + base_[g] + i * rowSize;
    const double* __restrict before = old + base_[g] + i * rowSize;
    const double* __restrict outer = here + rowSize;
    const double* __restrict inner = i > 0 ? here - rowSize : here;  // unused at the disc
    double* __restrict out = F + base_[g] + i * rowSize;
    const double up = grid_.xiLink[i], down = i > 0 ? grid_.xiLink[i - 1] : 0.0;
    const double along = grid_.xiWidth[i], moment = grid_.xiMoment[i];
    for (int j = 0; j < columns; ++j) {
      const double mass = (etaWidth[j] * moment + along * etaMoment[j]) * perStep;
      const double across = etaWidth[j];
      const double toAxis = along * etaLink[j], toEdge = j > 0 ? along * etaLink[j - 1] : 0.0;
      for (int k = 0; k < size; ++k) {
        const int p = j * size + k;
        const double mid = here[p];
        const double axisward = j + 1 < columns ? here[p + size] : mid;
        const double edgeward = j > 0 ? here[p - size] : mid;
        const double flow = across * (up * (outer[p] - mid) - down * (mid - inner[p])) +
                            toAxis * (axisward - mid) - toEdge * (mid - edgeward);
        out[p] = mass * (mid - before[p]) - group.rate[k] * flow;
      }
    }
  }
}

void MicrodiscProblem::addChemistry(int g, const double* c, double* F) const {
  const SpeciesGroup& group = groups_[g];
  double node[kMaxSpecies + 1] = {}, rate[kMaxSpecies + 1];
  for (int i = 0; i < grid_.rows; ++i)
    for (int j = 0; j < grid_.columns; ++j) {
      const std::size_t at = base_[g] + (static_cast<std::size_t>(i) * grid_.columns + j) * group.size;
      for (int k = 0; k < group.size; ++k) node[group.species[k]] = c[at + k];
      HomogeneousRates(groupChemistry_[g], node, rate);
      const double mass = grid_.mass(i, j);
      for (int k = 0; k < group.size; ++k) F[at + k] -= mass * rate[group.species[k]];
    }
}

double MicrodiscProblem::netReduction(int r, const double* c, int j, const ChargeRates& rates) const {
  const ChargeStep& step = set_.charge[r];
  return rates.reaction[r].kred * c[index(step.ox, 0, j)] - rates.reaction[r].kox * c[index(step.red, 0, j)];
}

void MicrodiscProblem::addDiscTerm(const double* c, const ChargeRates& rates, double* F) const {
  for (std::size_t r = 0; r < set_.charge.size(); ++r) {
    const ChargeStep& step = set_.charge[r];
    for (int j = 0; j < grid_.columns; ++j) {
      const double flux = grid_.discWeight[j] / radius_ * netReduction(static_cast<int>(r), c, j, rates);
      F[index(step.ox, 0, j)] += flux;
      F[index(step.red, 0, j)] -= flux;
    }
  }
}

void MicrodiscProblem::residual(const double* c, const double* old, double h, const ChargeRates& rates,
                                double* F) const {
  for (std::size_t g = 0; g < groups_.size(); ++g) {
    addTransport(static_cast<int>(g), c, old, h, F);
    if (groups_[g].reactive) addChemistry(static_cast<int>(g), c, F);
  }
  addDiscTerm(c, rates, F);
}

void MicrodiscProblem::groupJacobian(int g, const double* c, double* jacobian) const {
  const SpeciesGroup& group = groups_[g];
  const int size = group.size;
  double node[kMaxSpecies + 1] = {}, rate[kMaxSpecies + 1], jac[kMaxSpecies + 1][kMaxSpecies + 1];
  for (int i = 0; i < grid_.rows; ++i)
    for (int j = 0; j < grid_.columns; ++j) {
      const std::size_t cell = static_cast<std::size_t>(i) * grid_.columns + j;
      for (int k = 0; k < size; ++k) node[group.species[k]] = c[base_[g] + cell * size + k];
      HomogeneousRates(groupChemistry_[g], node, rate, jac);
      double* out = jacobian + cell * size * size;
      for (int k = 0; k < size; ++k)
        for (int m = 0; m < size; ++m) out[k * size + m] = jac[group.species[k]][group.species[m]];
    }
}

void MicrodiscProblem::addElectrodeTerms(const ChargeRates& rates, double* surface) const {
  const int n = surfaceSize_;
  for (std::size_t r = 0; r < set_.charge.size(); ++r) {
    const ChargeStep& step = set_.charge[r];
    for (int j = 0; j < grid_.columns; ++j) {
      const double weight = grid_.discWeight[j] / radius_;
      const int ox = surfaceIndex(step.ox, j), red = surfaceIndex(step.red, j);
      const double kred = weight * rates.reaction[r].kred, kox = weight * rates.reaction[r].kox;
      surface[ox * n + ox] += kred;
      surface[ox * n + red] -= kox;
      surface[red * n + ox] -= kred;
      surface[red * n + red] += kox;
    }
  }
}

CellCurrents MicrodiscProblem::currents(const double* c, const ChargeRates& rates) const {
  CellCurrents out;
  for (std::size_t r = 0; r < set_.charge.size(); ++r) {
    double sum = 0;
    for (int j = 0; j < grid_.columns; ++j)
      sum += grid_.discWeight[j] * netReduction(static_cast<int>(r), c, j, rates);
    out.reaction[r + 1] = Checked(chargeFactor_[r] * sum);
    out.total += out.reaction[r + 1];
  }
  out.total = Checked(out.total);
  return out;
}

double MicrodiscProblem::surfaceDifference(const double* a, const double* b, const ChargeRates& rates) const {
  double largest = 0;
  for (int s = 1; s <= set_.species; ++s)
    for (int j = 0; j < grid_.columns; ++j)
      largest = std::max(largest, std::fabs(a[index(s, 0, j)] - b[index(s, 0, j)]) / concentrationScale_);
  const CellCurrents ia = currents(a, rates), ib = currents(b, rates);
  for (std::size_t r = 1; r <= set_.charge.size(); ++r) {
    const double scale = std::fabs(ia.reaction[r]) + currentScale_ * set_.charge[r - 1].n;
    largest = std::max(largest, std::fabs(ia.reaction[r] - ib.reaction[r]) / scale);
  }
  return largest;
}

double MicrodiscProblem::surfaceAverage(const double* c, int species) const {
  double sum = 0, weight = 0;
  for (int j = 0; j < grid_.columns; ++j) {
    sum += grid_.discWeight[j] * c[index(species, 0, j)];
    weight += grid_.discWeight[j];
  }
  return sum / weight;
}

}  // namespace voltrix
