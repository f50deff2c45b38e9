#include "digital/microdisc_stepper.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "digital/microdisc_dense.h"
#include "model/errors.h"

namespace voltrix {

namespace {

constexpr std::size_t kLevelBudgetBytes = 32u << 20;
constexpr std::size_t kMostLevels = 128;
constexpr double kNewtonTolerance = 1e-6;  // of the concentration scale: a thousandth of the step's tolerance
constexpr double kSlowNewton = 0.1;         // contraction beyond which the factors are refreshed
constexpr int kNewtonPasses = 30;

}  // namespace

MicrodiscStepper::MicrodiscStepper(const MicrodiscProblem& problem, WorkBudget& budget)
    : problem_(problem), budget_(budget) {
  groupClasses();
  measureWork();
  const MicrodiscGrid& grid = problem.grid();
  std::size_t bytesPerLevel = 0, largestJacobian = 0;
  for (int group : classGroup_) {
    const std::size_t rowSize = static_cast<std::size_t>(grid.columns) * problem.groups()[group].size;
    bytesPerLevel += grid.rows * rowSize * rowSize * sizeof(double);
    const std::size_t size = problem.groups()[group].size;
    if (problem.groups()[group].reactive) largestJacobian = std::max(largestJacobian, size * size);
  }
  bytesPerLevel += static_cast<std::size_t>(problem.surfaceSize()) * problem.surfaceSize() * sizeof(double);
  levelCapacity_ = std::clamp<std::size_t>(kLevelBudgetBytes / bytesPerLevel, 2, kMostLevels);
  levels_.reserve(levelCapacity_);
  residual_.assign(problem.stateSize(), 0);
  partial_.assign(problem.stateSize(), 0);
  correction_.assign(problem.stateSize(), 0);
  jacobian_.assign(static_cast<std::size_t>(grid.rows) * grid.columns * largestJacobian, 0);
  surfaceRight_.assign(problem.surfaceSize(), 0);
}

// Groups of one species without chemistry and with the same D have the same
// blocks and share them.
void MicrodiscStepper::groupClasses() {
  const std::vector<SpeciesGroup>& groups = problem_.groups();
  for (std::size_t g = 0; g < groups.size(); ++g) {
    anyNonlinear_ = anyNonlinear_ || problem_.nonlinear(static_cast<int>(g));
    const bool plain = !groups[g].reactive && groups[g].size == 1;
    int found = -1;
    for (std::size_t c = 0; plain && c < classGroup_.size(); ++c) {
      const SpeciesGroup& other = groups[classGroup_[c]];
      if (!other.reactive && other.size == 1 && other.rate[0] == groups[g].rate[0]) found = static_cast<int>(c);
    }
    if (found < 0) {
      found = static_cast<int>(classGroup_.size());
      classGroup_.push_back(static_cast<int>(g));
    }
    classOf_.push_back(found);
  }
}

// A pass of the solve sweeps every group's rows twice with a dense block;
// the elimination inverts one block per row; the residual and the update
// cost some ten operations per unknown.
void MicrodiscStepper::measureWork() {
  const double rows = problem_.grid().rows, n = problem_.surfaceSize();
  for (const SpeciesGroup& group : problem_.groups()) {
    const double rowSize = static_cast<double>(problem_.grid().columns) * group.size;
    solveWork_ += 2 * rows * rowSize * rowSize;
  }
  solveWork_ += n * n + 10.0 * static_cast<double>(problem_.stateSize());
  surfaceWork_ = n * n * n / 3;
  for (int group : classGroup_) {
    const double rowSize = static_cast<double>(problem_.grid().columns) * problem_.groups()[group].size;
    classWork_.push_back(rows * (rowSize * rowSize * rowSize + 2 * rowSize * rowSize));
  }
  budget_.setStepWork(solveWork_);
}

double MicrodiscStepper::eliminationWork() const {
  double work = 0;
  for (double w : classWork_) work += w;
  return work;
}

void MicrodiscStepper::build(Level& level, const double* reference, bool onlyNonlinear) {
  level.factored = false;
  for (std::size_t c = 0; c < classGroup_.size(); ++c) {
    const int group = classGroup_[c];
    if (onlyNonlinear && !problem_.nonlinear(group)) continue;
    budget_.spend(classWork_[c]);
    const double* jacobian = nullptr;
    if (problem_.groups()[group].reactive) {
      problem_.groupJacobian(group, reference, jacobian_.data());
      jacobian = jacobian_.data();
    }
    level.classes[c].build(level.h, jacobian);
  }
}

MicrodiscStepper::Level& MicrodiscStepper::levelFor(double h, const double* reference) {
  ++clock_;
  for (Level& level : levels_)
    if (level.h == h) {
      level.lastUse = clock_;
      return level;
    }
  Level* slot = nullptr;
  if (levels_.size() < levelCapacity_) {
    levels_.emplace_back();
    slot = &levels_.back();
    for (int group : classGroup_) slot->classes.emplace_back(problem_.grid(), problem_.groups()[group]);
    const std::size_t n = problem_.surfaceSize();
    slot->surface.assign(n * n, 0);
    slot->pivot.assign(n, 0);
  } else {
    slot = &*std::min_element(levels_.begin(), levels_.end(),
                              [](const Level& a, const Level& b) { return a.lastUse < b.lastUse; });
  }
  slot->h = h;
  slot->lastUse = clock_;

  build(*slot, reference, false);
  return *slot;
}

void MicrodiscStepper::factorSurface(Level& level, double E, const ChargeRates& rates) {
  if (level.factored && level.factoredAt == E) return;
  budget_.spend(surfaceWork_);
  const int n = problem_.surfaceSize();
  std::vector<double>& surface = level.surface;
  std::fill(surface.begin(), surface.end(), 0.0);
  for (std::size_t g = 0; g < classOf_.size(); ++g) {
    const BlockElimination& blocks = level.classes[classOf_[g]];
    const int size = blocks.rowSize(), offset = problem_.surfaceOffset(static_cast<int>(g));
    for (int p = 0; p < size; ++p)
      for (int q = 0; q < size; ++q) surface[(offset + p) * n + offset + q] = blocks.surfaceBlock()[p * size + q];
  }
  problem_.addElectrodeTerms(rates, surface.data());
  FactorDense(surface.data(), n, level.pivot.data());
  level.factored = true;
  level.factoredAt = E;
}

// Solves (Jacobian) correction = -residual, the residual already negated.
void MicrodiscStepper::solveCorrection(Level& level) {
  budget_.spend(solveWork_);
  const int n = problem_.surfaceSize();
  for (std::size_t g = 0; g < classOf_.size(); ++g) {
    const BlockElimination& blocks = level.classes[classOf_[g]];
    const std::size_t base = problem_.groupBase(static_cast<int>(g));
    blocks.reduce(residual_.data() + base, partial_.data() + base);
    std::copy_n(residual_.data() + base, blocks.rowSize(), surfaceRight_.data() + problem_.surfaceOffset(g));
  }
  SolveFactored(level.surface.data(), level.pivot.data(), n, surfaceRight_.data());
  for (std::size_t g = 0; g < classOf_.size(); ++g) {
    const BlockElimination& blocks = level.classes[classOf_[g]];
    const std::size_t base = problem_.groupBase(static_cast<int>(g));
    std::copy_n(surfaceRight_.data() + problem_.surfaceOffset(g), blocks.rowSize(), correction_.data() + base);
    blocks.substitute(partial_.data() + base, correction_.data() + base);
  }
}

// Adds the correction to every row but the bulk; returns its largest size
// over the concentration scale.
double MicrodiscStepper::applyCorrection(double* out) const {
  const int rows = problem_.grid().rows, columns = problem_.grid().columns;
  double largest = 0;
  for (std::size_t g = 0; g < classOf_.size(); ++g) {
    const std::size_t base = problem_.groupBase(static_cast<int>(g));
    const std::size_t count = static_cast<std::size_t>(rows) * columns * problem_.groups()[g].size;
    const bool clip = problem_.nonlinear(static_cast<int>(g));
    for (std::size_t p = base; p < base + count; ++p) {
      const double next = clip ? std::max(out[p] + correction_[p], 0.0) : out[p] + correction_[p];
      largest = std::max(largest, std::fabs(next - out[p]));
      out[p] = next;
    }
  }
  if (!std::isfinite(largest)) Raise(ErrorKind::Overflow);
  return largest / problem_.concentrationScale();
}

void MicrodiscStepper::step(const double* old, double h, double E, double* out) {
  std::copy_n(old, problem_.stateSize(), out);
  const ChargeRates rates = problem_.ratesAt(E);
  Level& level = levelFor(h, old);
  factorSurface(level, E, rates);
  double previous = std::numeric_limits<double>::infinity();
  for (int pass = 1;; ++pass) {
    problem_.residual(out, old, h, rates, residual_.data());
    for (double& r : residual_) r = -r;
    solveCorrection(level);
    const double size = applyCorrection(out);
    if (!anyNonlinear_ || size < kNewtonTolerance) return;
    if (pass == kNewtonPasses) Raise(ErrorKind::InvalidOperation, "The disc's chemistry does not converge");
    if (size > kSlowNewton * previous) {
      build(level, out, true);
      factorSurface(level, E, rates);
    }
    previous = size;
  }
}

}  // namespace voltrix
