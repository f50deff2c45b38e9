#include "files/import_grid.h"

#include <algorithm>
#include <cmath>

#include "model/checked.h"
#include "model/errors.h"
#include "model/number_format.h"

namespace voltrix {

namespace {

constexpr double kStatedStepAgreement = 0.1;
constexpr int kStepDigits = 3;

// The value a form box gives back after the number is written into it.
double AsTyped(double x) { return Val(GeneralText(x)); }

double PowerOfTen(double x) { return std::pow(10.0, std::floor(std::log10(x))); }

double RoundSignificant(double x, int digits) {
  const double unit = Checked(PowerOfTen(x) / std::pow(10.0, digits - 1));
  return AsTyped(Checked(std::round(Div(x, unit)) * unit));
}

double RoundTo(double x, double unit) { return AsTyped(Checked(std::round(Div(x, unit)) * unit)); }

// The out-and-back laid on the grid: `out` runs from near `start` to the
// turn; `back`, where the cycle has one, from the turn towards `start`.
struct Lay {
  Sweep out, back;
  bool cycle = false;
  double start = 0, turn = 0;
};

double Extreme(const std::vector<double>& E, const Sweep& s, double towards) {
  double best = E[s.first];
  for (std::size_t i = s.first; i <= s.last; ++i)
    if ((E[i] - best) * towards > 0) best = E[i];
  return best;
}

Lay LayOf(const MeasuredCycle& c) {
  const std::vector<Sweep>& s = c.sweeps;
  if (s.size() == 1) {
    const double dir = c.E[s[0].last] >= c.E[s[0].first] ? 1 : -1;
    return Lay{s[0], s[0], false, c.E[s[0].first], Extreme(c.E, s[0], dir)};
  }
  Lay best;
  double bestSpan = -1;
  for (std::size_t k = 0; k + 1 < s.size(); ++k) {
    const double a = c.E[s[k].first], turn = c.E[s[k].last];
    const double b = Extreme(c.E, s[k + 1], a - turn);
    // Both branches cover the stretch between the turn and the nearer end.
    const double start = std::fabs(a - turn) <= std::fabs(b - turn) ? a : b;
    const double span = std::fabs(turn - start);
    if (span <= bestSpan) continue;
    bestSpan = span;
    best = Lay{s[k], s[k + 1], true, start, turn};
  }
  return best;
}

// The data's step over the branches laid on the grid.
double BranchStep(const MeasuredCycle& c, const Lay& lay) {
  const std::size_t last = lay.cycle ? lay.back.last : lay.out.last;
  return TypicalStep({c.E.begin() + static_cast<std::ptrdiff_t>(lay.out.first),
                      c.E.begin() + static_cast<std::ptrdiff_t>(last) + 1});
}

double ChooseStep(double dataStep, std::optional<double> stated) {
  if (stated && *stated > 0 && std::fabs(*stated - dataStep) <= kStatedStepAgreement * dataStep) return AsTyped(*stated);
  return RoundSignificant(dataStep, kStepDigits);
}

// The grid holds n + 1 potentials, n = round(span / step).
bool Fits(double span, double step, long maxHalf) { return Div(span, step) < static_cast<double>(maxHalf) - 0.5; }

// The smallest multiple of the fine step that keeps the grid within the
// limit: half the points for a cycle, which runs each potential twice.
double StepWithinLimit(double span, double fine, long maxHalf, bool& coarsened) {
  coarsened = !Fits(span, fine, maxHalf);
  if (!coarsened) return fine;
  double k = std::ceil(Div(span, Checked(fine * static_cast<double>(maxHalf - 1))));
  for (int tries = 0; tries < 100; ++tries, ++k) {
    const double step = RoundSignificant(Checked(fine * k), kStepDigits);
    if (Fits(span, step, maxHalf)) return step;
  }
  Raise(ErrorKind::Overflow);
}

// Linear interpolation at x on the first stretch of the branch that spans
// it; at the branch's ends a grid point may stand up to `hold` beyond the
// data, and takes the current of the end point.
double Interpolate(const MeasuredCycle& c, const Sweep& branch, double x, double hold) {
  for (std::size_t j = branch.first; j < branch.last; ++j) {
    const double e0 = c.E[j], e1 = c.E[j + 1];
    if ((x - e0) * (x - e1) > 0) continue;
    if (e0 == e1) return c.I[j];
    return Checked(c.I[j] + Checked(c.I[j + 1] - c.I[j]) * Div(Checked(x - e0), Checked(e1 - e0)));
  }
  std::size_t nearest = branch.first;
  for (std::size_t j = branch.first; j <= branch.last; ++j)
    if (std::fabs(c.E[j] - x) < std::fabs(c.E[nearest] - x)) nearest = j;
  if (std::fabs(c.E[nearest] - x) > hold) Raise(ErrorKind::SubscriptOutOfRange, "no data at " + GeneralText(x) + " V");
  return c.I[nearest];
}

long PointsOutside(const MeasuredCycle& c, const Lay& lay, double low, double high) {
  const std::size_t last = lay.cycle ? lay.back.last : lay.out.last;
  long used = 0;
  for (std::size_t i = lay.out.first; i <= last; ++i) used += c.E[i] >= low && c.E[i] <= high;
  return static_cast<long>(c.E.size()) - used;
}

ImportGrid LayCycle(const MeasuredCycle& c, std::optional<double> statedStep, int maxPoints) {
  ImportGrid g;
  const Lay lay = LayOf(c);
  g.cycle = lay.cycle;
  g.dataStep = BranchStep(c, lay);
  if (g.dataStep <= 0) Raise(ErrorKind::InvalidArgument, "the potential does not change");
  g.fineStep = ChooseStep(g.dataStep, statedStep);
  // The start to a tenth of the step's leading decimal place, as a user types it.
  const double place = PowerOfTen(g.fineStep) / 10;
  g.Estart = RoundTo(lay.start, place);
  const double span = std::fabs(Checked(lay.turn - g.Estart));
  const long maxHalf = g.cycle ? maxPoints / 2 : maxPoints;
  g.Estep = StepWithinLimit(span, g.fineStep, maxHalf, g.coarsened);
  const long n = std::lround(Div(span, g.Estep));
  if (n < 1) Raise(ErrorKind::InvalidArgument, "the cycle spans less than one potential step");
  const double sign = lay.turn > g.Estart ? 1 : -1;
  g.Eend = AsTyped(Checked(g.Estart + sign * static_cast<double>(n) * g.Estep));
  const double dirSign = g.Eend > g.Estart ? 1 : -1;
  const double hold = g.Estep / 2 + place;
  for (long i = 1; i <= n + 1; ++i) {
    g.X.push_back(Checked(g.Estart + (g.Estep * static_cast<double>(i - 1)) * dirSign));
    g.Y.push_back(Interpolate(c, lay.out, g.X.back(), hold));
  }
  if (g.cycle)
    for (long i = 1; i <= n + 1; ++i) {
      g.X.push_back(g.X[static_cast<std::size_t>(n + 1 - i)]);
      g.Y.push_back(Interpolate(c, lay.back, g.X.back(), hold));
    }
  g.pointsLeftOut = PointsOutside(c, lay, std::min(g.Estart, g.Eend) - hold, std::max(g.Estart, g.Eend) + hold);
  return g;
}

}  // namespace

GridResult LayOnPotentialGrid(const MeasuredCycle& cycle, std::optional<double> statedStep, int maxPoints) {
  GridResult r;
  if (cycle.E.size() < 2 || cycle.sweeps.empty() || maxPoints < 4) {
    r.error = "a cycle needs at least two points";
    return r;
  }
  try {
    r.grid = LayCycle(cycle, statedStep, maxPoints);
    r.ok = true;
  } catch (const RunError& err) {
    r.error = err.description();
  }
  return r;
}

}  // namespace voltrix
