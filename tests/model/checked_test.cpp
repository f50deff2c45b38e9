// Checked arithmetic and bounded tables.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "model/checked.h"
#include "model/curve_store.h"

namespace voltrix {
namespace {

std::string FaultOf(const std::function<void()>& f) {
  try {
    f();
  } catch (const RunError& e) {
    return e.description();
  }
  return "no fault";
}

// Each fault has its own description; an underflow is none, and the last
// index of each table exists. Conversion to 16 bits rounds ties to even.
TEST(CheckedArithmetic, EachFaultHasItsOwnDescription) {
  CurveStore s;
  const struct {
    const char* what;
    std::function<void()> call;
    const char* description;
  } cases[] = {
      {"1 / 0", [] { Div(1, 0); }, "Division by zero"},          {"1e308 / 1e-308", [] { Div(1e308, 1e-308); }, "Overflow"},
      {"ln 0", [] { Log(0); }, "Invalid argument (logarithm of a number not above 0)"},
      {"ln -1", [] { Log(-1); }, "Invalid argument (logarithm of a number not above 0)"},
      {"sqrt of a tiny negative", [] { Sqrt(-1e-300); }, "Invalid argument (square root of a negative number)"},
      {"exp 710", [] { Exp(710); }, "Overflow (exponential too large)"},
      {"exp of NaN", [] { Exp(std::nan("")); }, "Invalid operation (result is not a number)"},
      {"0 ^ -1/6", [] { Pow(0, -1.0 / 6.0); }, "Division by zero"},
      {"(-8) ^ 1/3", [] { Pow(-8, 1.0 / 3.0); }, "Invalid argument (fractional power of a negative number)"},
      {"1e308 * 10", [] { Checked(1e308 * 10); }, "Overflow"},
      {"CInt 32767.5", [] { CInt(32767.5); }, "Overflow"},       {"CInt -40000", [] { CInt(-40000); }, "Overflow"},
      {"XData(4001)", [&] { s.XData(4001) = 1; }, "Subscript out of range"},
      {"YData(7, 1)", [&] { s.YData(7, 1) = 1; }, "Subscript out of range"},
      {"SurfC(8, 1)", [&] { s.SurfC(8, 1) = 1; }, "Subscript out of range"},
      {"PeakCurrent(1, 21)", [&] { s.PeakCurrent(1, 21) = 1; }, "Subscript out of range"},
      {"LineStyle(-1)", [&] { s.LineStyle(-1) = 1; }, "Subscript out of range"},
      // Not faults: an underflow gives 0, the last index of each table exists.
      {"exp -800", [] { EXPECT_EQ(Exp(-800), 0.0); }, "no fault"},  {"(-2) ^ 3", [] { EXPECT_EQ(Pow(-2, 3), -8.0); }, "no fault"},
      {"sqrt 0", [] { EXPECT_EQ(Sqrt(0), 0.0); }, "no fault"},
      {"last points", [&] { s.XData(4000) = s.YSim(8, 4000) = s.YData(6, 4000) = s.SurfC(7, 4000) = 1; }, "no fault"},
  };
  for (const auto& c : cases) EXPECT_EQ(FaultOf(c.call), c.description) << c.what;
  for (auto [x, n] : {std::pair{120.5, 120}, {121.5, 122}, {-2.5, -2}, {0.4999, 0}, {32767.4, 32767}, {-32768.5, -32768}})
    EXPECT_EQ(CInt(x), n) << x;
}

}  // namespace
}  // namespace voltrix
