#include "fit/latin_hypercube.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "model/checked.h"

namespace voltrix {

namespace {

bool LogScaled(double lower, double upper) { return lower > 0 && upper >= 100 * lower; }

// A uniform draw from [0, 1) out of the generator's 53 top bits: the same
// on every standard library, unlike the library's distributions.
double Uniform(std::mt19937_64& g) { return static_cast<double>(g() >> 11) * 0x1.0p-53; }

// Fisher-Yates with the generator's own numbers, for the same reason.
std::vector<int> Shuffled(int n, std::mt19937_64& g) {
  std::vector<int> order(static_cast<std::size_t>(n));
  std::iota(order.begin(), order.end(), 0);
  for (int i = n - 1; i > 0; --i) std::swap(order[i], order[g() % static_cast<std::uint64_t>(i + 1)]);
  return order;
}

}  // namespace

double BoxCoordinate(double value, double lower, double upper) {
  if (!(upper > lower)) return 0.0;
  if (LogScaled(lower, upper) && value > 0) return Div(Log(value / lower), Log(upper / lower));
  return Div(value - lower, upper - lower);
}

double BoxValue(double coordinate, double lower, double upper) {
  if (LogScaled(lower, upper)) return Checked(lower * Pow(upper / lower, coordinate));
  return Checked(lower + coordinate * (upper - lower));
}

std::vector<ParameterVector> LatinHypercube(int n, int k, const ParameterVector& lower, const ParameterVector& upper,
                                            std::uint64_t seed) {
  std::mt19937_64 g(seed);
  std::vector<ParameterVector> points(static_cast<std::size_t>(std::max(n, 0)));
  for (int j = 1; j <= k && n > 0; ++j) {
    const std::vector<int> slices = Shuffled(n, g);
    for (int p = 0; p < n; ++p) {
      const double coordinate = (slices[p] + Uniform(g)) / n;
      points[p](j) = BoxValue(coordinate, lower(j), upper(j));
    }
  }
  return points;
}

}  // namespace voltrix
