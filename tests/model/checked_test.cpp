// Checked arithmetic and bounded tables: every fault has its own
// description, and nothing infinite or undefined comes back.
#include <gtest/gtest.h>

#include <string>

#include "model/checked.h"
#include "model/curve_store.h"

namespace voltrix {
namespace {

template <class F>
std::string FaultOf(F&& f) {
  try {
    f();
  } catch (const RunError& e) {
    return e.description();
  }
  return "no fault";
}

TEST(CInt, RoundsHalfToEven) {
  EXPECT_EQ(CInt(120.5), 120);
  EXPECT_EQ(CInt(121.5), 122);
  EXPECT_EQ(CInt(-2.5), -2);
  EXPECT_EQ(CInt(0.4999), 0);
  EXPECT_EQ(CInt(32767.4), 32767);
  EXPECT_EQ(CInt(-32768.5), -32768);  // ties to the even -32768, still in range
}

TEST(CInt, OutsideSixteenBitsIsAnOverflow) {
  EXPECT_EQ(FaultOf([] { CInt(32767.5); }), "Overflow");
  EXPECT_EQ(FaultOf([] { CInt(-40000); }), "Overflow");
}

TEST(CheckedArithmetic, EachFaultHasItsOwnDescription) {
  EXPECT_EQ(FaultOf([] { Div(1, 0); }), "Division by zero");
  EXPECT_EQ(FaultOf([] { Div(1e308, 1e-308); }), "Overflow");
  EXPECT_NE(FaultOf([] { Log(0); }).find("logarithm of a number not above 0"), std::string::npos);
  EXPECT_NE(FaultOf([] { Log(-1); }).find("logarithm"), std::string::npos);
  EXPECT_NE(FaultOf([] { Sqrt(-1e-300); }).find("square root of a negative number"), std::string::npos);
  EXPECT_NE(FaultOf([] { Exp(710); }).find("Overflow"), std::string::npos);
  EXPECT_EQ(FaultOf([] { Pow(0, -1.0 / 6.0); }), "Division by zero");
  EXPECT_EQ(FaultOf([] { Checked(1e308 * 10); }), "Overflow");
}

TEST(CheckedArithmetic, UnderflowGivesZeroWithoutAFault) {
  EXPECT_EQ(FaultOf([] { Exp(-800); }), "no fault");
  EXPECT_EQ(Exp(-800), 0.0);
  EXPECT_EQ(Sqrt(0), 0.0);
}

TEST(Tables, AnIndexBeyondABoundIsSubscriptOutOfRange) {
  CurveStore s;
  s.XData(4000) = 1.0;  // index 4000 exists
  EXPECT_EQ(FaultOf([&] { s.XData(4001) = 1.0; }), "Subscript out of range");
  EXPECT_EQ(FaultOf([&] { s.YData(7, 1) = 1.0; }), "Subscript out of range");
  EXPECT_EQ(FaultOf([&] { s.YSim(8, 4000) = 1.0; }), "no fault");
  EXPECT_EQ(FaultOf([&] { s.SurfC(8, 1) = 1.0; }), "Subscript out of range");
  EXPECT_EQ(FaultOf([&] { s.PeakCurrent(1, 21) = 1.0; }), "Subscript out of range");
  EXPECT_EQ(FaultOf([&] { s.LineStyle(-1) = 1; }), "Subscript out of range");
}

TEST(Tables, EveryElementStartsAtZero) {
  CurveStore s;
  double sum = 0;
  for (int r = 0; r <= 6; ++r)
    for (int i = 0; i <= 4000; ++i) sum += s.YData(r, i);
  EXPECT_EQ(sum, 0.0);
  Experiment e;
  EXPECT_TRUE(e.Estart.empty());
  EXPECT_EQ(e.D(3), 0.0);
}

}  // namespace
}  // namespace voltrix
