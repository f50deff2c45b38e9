#include "digital/exact_budget.h"

#include <cmath>
#include <algorithm>
#include <cstdio>
#include <utility>

#include "model/errors.h"

namespace voltrix {

namespace {

// A count to two significant digits, rounded down: "more than 1200000".
std::string RoundedDown(double count) {
  if (!(count >= 100)) return std::to_string(static_cast<long long>(std::max(count, 0.0)));
  const double unit = std::pow(10.0, std::floor(std::log10(count)) - 1);
  char text[32];
  std::snprintf(text, sizeof text, "%.0f", std::floor(count / unit) * unit);
  return text;
}

}  // namespace

WorkBudget::WorkBudget(std::string what, std::string advice, double limit)
    : what_(std::move(what)), advice_(std::move(advice)), limit_(limit) {}

void WorkBudget::spend(double work) {
  spent_ += work;
  if (spent_ > limit_) refuse();
}

void WorkBudget::expect(double work) const {
  if (work > limit_) refuse();
}

void WorkBudget::refuse() const {
  Raise(ErrorKind::InvalidOperation,
        what_ + " would need more than " + RoundedDown(limit_ / stepWork_) + " time steps for this run; " + advice_);
}

}  // namespace voltrix
