#pragma once
// Shared tolerance helpers: relative closeness with the digits a reference
// gives, so that a test states what someone outside the code could check.
#include <gtest/gtest.h>

#include <cmath>

namespace voltrix::test {

// |actual - expected| <= rel * |expected| (or <= rel when expected is 0).
inline ::testing::AssertionResult IsClose(double actual, double expected, double rel) {
  const double scale = expected == 0.0 ? 1.0 : std::fabs(expected);
  if (std::isfinite(actual) && std::fabs(actual - expected) <= rel * scale) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << actual << " is not within " << rel << " (relative) of " << expected;
}

// Agreement to the digits printed in a reference: 8.5007e-5 has 5 significant
// digits, so the value must round to it (half a unit of the last digit).
inline ::testing::AssertionResult MatchesDigits(double actual, double expected, int significantDigits) {
  if (expected == 0.0) return IsClose(actual, expected, 0.0);
  const double unit = std::pow(10.0, std::floor(std::log10(std::fabs(expected))) - (significantDigits - 1));
  if (std::isfinite(actual) && std::fabs(actual - expected) <= 0.5 * unit * (1 + 1e-9))
    return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << actual << " does not round to " << expected << " at " << significantDigits
                                       << " significant digits";
}

}  // namespace voltrix::test

#define EXPECT_CLOSE(actual, expected, rel) EXPECT_TRUE(::voltrix::test::IsClose((actual), (expected), (rel)))
#define EXPECT_DIGITS(actual, expected, digits) \
  EXPECT_TRUE(::voltrix::test::MatchesDigits((actual), (expected), (digits)))
