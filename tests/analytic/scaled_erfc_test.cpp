#include "analytic/scaled_erfc.h"

#include <gtest/gtest.h>

#include <cmath>

#include "model/errors.h"
#include "support/expect_close.h"

namespace voltrix {
namespace {

// Published values of the routine, to the digits given, on both branches.
TEST(ScaledErfc, MatchesReferenceTableOnBothBranches) {
  EXPECT_DIGITS(ScaledErfc(0), 1, 9);
  EXPECT_DIGITS(ScaledErfc(1), 0.42758364, 8);
  EXPECT_DIGITS(ScaledErfc(1.5), 0.32158540, 8);     // continued fraction
  EXPECT_DIGITS(ScaledErfc(1.4999), 0.32160203, 8);  // series
  EXPECT_DIGITS(ScaledErfc(2), 0.25539567, 8);
  EXPECT_DIGITS(ScaledErfc(10), 0.056140991, 8);
  EXPECT_DIGITS(ScaledErfc(-1.5), 18.653886, 8);
  EXPECT_DIGITS(ScaledErfc(-2), 108.94090, 8);
}

// exp(x^2) erfc(x) from the standard library, good to about six digits
// against the routine's own short constants.
TEST(ScaledErfc, FollowsTheExactFunctionToSixDigits) {
  for (double x = -3; x <= 5; x += 0.37) EXPECT_CLOSE(ScaledErfc(x), std::exp(x * x) * std::erfc(x), 2e-6);
  // Far tail: 1 / (x sqrt(pi)) * (1 - 1/(2x^2)).
  for (double x : {50.0, 200.0, 1e4}) EXPECT_CLOSE(ScaledErfc(x), (1 - 0.5 / (x * x)) / (x * 1.7724539), 1e-6);
}

TEST(ScaledErfc, BranchesMeetAtOnePointFiveToAboutSixDigits) {
  const double series = ScaledErfc(std::nextafter(1.5, 0.0));
  const double fraction = ScaledErfc(1.5);
  EXPECT_CLOSE(series, fraction, 1e-5);
  EXPECT_NE(series, fraction);
}

TEST(ScaledErfc, OverflowsFarOnTheNegativeSide) {
  EXPECT_THROW(ScaledErfc(-30), RunError);
  EXPECT_THROW(ScaledErfc(std::nan("")), RunError);
}

}  // namespace
}  // namespace voltrix
