#include "files/curve_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <sstream>
#include <string>


namespace voltrix {
namespace {

TEST(CurveFile, LineHasTheYValueAtTheNextPrintZone) {
  // " 0.3 ," takes six characters, eight blanks follow.
  EXPECT_EQ(CurveLine(0.3, 1.25e-6), " 0.3 ,         1.25E-06 ");
  EXPECT_EQ(CurveLine(-0.3, -2e-5), "-0.3 ,        -2E-05 ");
  // An X value too long for the first 14 characters moves Y to the stop at 28.
  const std::string wide = CurveLine(-0.123456789012345, 1);
  EXPECT_EQ(wide.substr(0, 28), "-0.123456789012345 ,        ");
  EXPECT_EQ(wide.substr(28), " 1 ");
}

TEST(CurveFile, WritesOneLinePerPointOfTheRangeWithCrLf) {
  CurveStore s;
  for (int i = 1; i <= 5; ++i) {
    s.XData(i) = i;
    s.YData(3, i) = -i;
  }
  std::ostringstream out;
  ASSERT_TRUE(WriteCurve(out, s, 2, 4, 3));
  EXPECT_EQ(out.str(), " 2 ,          -2 \r\n 3 ,          -3 \r\n 4 ,          -4 \r\n");
  std::ostringstream beyond;
  EXPECT_FALSE(WriteCurve(beyond, s, 3990, 4001, 3));
}

TEST(CurveFile, RoundTripKeepsFifteenSignificantDigits) {
  CurveStore s, back;
  std::mt19937_64 random(20261122);
  std::uniform_real_distribution<double> mantissa(-10, 10);
  std::uniform_int_distribution<int> exponent(-12, 3);
  for (int i = 1; i <= 4000; ++i) {
    s.XData(i) = mantissa(random) * std::pow(10.0, exponent(random));
    s.YData(1, i) = mantissa(random) * std::pow(10.0, exponent(random));
  }
  std::stringstream file;
  ASSERT_TRUE(WriteCurve(file, s, 1, 4000, 1));
  const CurveReadResult read = ReadCurve(file, back, 2);
  ASSERT_TRUE(read.ok) << read.description;
  EXPECT_EQ(read.points, 4000);
  // Same to 15 significant digits: both round to the same 15-digit decimal.
  auto digits15 = [](double v) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.14e", v);
    return std::string(buf);
  };
  for (int i = 1; i <= 4000; ++i) {
    EXPECT_EQ(digits15(back.XData(i)), digits15(s.XData(i)));
    EXPECT_EQ(digits15(back.YData(2, i)), digits15(s.YData(1, i)));
  }
}

TEST(CurveFile, ReaderTakesCommonVariantsOfTheFormat) {
  struct Case {
    const char* name;
    std::string text;
  };
  const Case cases[] = {
      {"unix line ends", "0.3,1e-5\n0.295,2e-5\n0.29,3e-5\n"},
      {"windows line ends", "0.3,1e-5\r\n0.295,2e-5\r\n0.29,3e-5\r\n"},
      {"old mac line ends", "0.3,1e-5\r0.295,2e-5\r0.29,3e-5\r"},
      {"byte order mark", "\xEF\xBB\xBF 0.3 ,  1e-5 \r\n 0.295 , 2e-5\r\n0.29,3e-5"},
      {"empty lines", "\n\n0.3,1e-5\n\n\n0.295,2e-5\n  \n0.29,3e-5\n\n\n"},
      {"blanks between", "0.3 1e-5\n0.295\t2e-5\n  0.29   3e-5"},
      {"own export", " 0.3 ,          0.00001 \r\n 0.295 ,        0.00002 \r\n 0.29 ,         0.00003 \r\n"},
      {"end of file mark", "0.3,1e-5\r\n0.295,2e-5\r\n0.29,3e-5\r\n\x1A garbage after the mark"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    CurveStore s;
    const CurveReadResult read = ReadCurveText(c.text, s, 1);
    ASSERT_TRUE(read.ok) << read.description;
    ASSERT_EQ(read.points, 3);
    EXPECT_DOUBLE_EQ(s.XData(1), 0.3);
    EXPECT_DOUBLE_EQ(s.XData(3), 0.29);
    EXPECT_DOUBLE_EQ(s.YData(1, 2), 2e-5);
    EXPECT_DOUBLE_EQ(s.YData(1, 3), 3e-5);
  }
}

TEST(CurveFile, ReaderFaultsCarryThePlatformDescription) {
  struct Case {
    const char* name;
    std::string text;
    const char* description;
    long points;
  };
  std::string tooLong, exact;
  for (int i = 1; i <= 4001; ++i) {
    const std::string line = std::to_string(i) + "," + std::to_string(-i) + "\r\n";
    tooLong += line;
    if (i <= 4000) exact += line;
  }
  const Case cases[] = {
      {"header line", "E,I\n0.3,1e-5\n", "Type mismatch", 0},
      {"text in the second point", "0.3,1e-5\nnone,2e-5\n", "Type mismatch", 1},
      {"point without its Y", "0.3,1e-5\n0.295\n", "Input past end of file", 2},
      {"number beyond double", "0.3,1e999\n", "Overflow", 1},
      {"4001st line", tooLong, "Subscript out of range", 4000},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    CurveStore s;
    const CurveReadResult read = ReadCurveText(c.text, s, 1);
    EXPECT_FALSE(read.ok);
    EXPECT_EQ(read.description, c.description);
    EXPECT_EQ(read.points, c.points);
  }
  CurveStore s;
  const CurveReadResult full = ReadCurveText(exact, s, 1);
  EXPECT_TRUE(full.ok);
  EXPECT_EQ(full.points, 4000);
  EXPECT_EQ(s.YData(1, 4000), -4000);
}

TEST(CurveFile, TextAfterTheFirstTwoPointsKeepsItsLeadingNumber) {
  CurveStore s;
  const CurveReadResult read = ReadCurveText("0.3,1\n0.2,2\n0.1,n/a\n0,3x\n", s, 1);
  ASSERT_TRUE(read.ok);
  EXPECT_EQ(read.points, 4);
  EXPECT_EQ(s.YData(1, 3), 0);
  EXPECT_EQ(s.YData(1, 4), 3);
}

TEST(CurveFile, DecimalCommaSplitsTheNumberIntoTwoFields) {
  // "1,5E-3" is two fields, 1 and 5E-3, as any reader of comma-separated
  // values sees it; the file still reads without a fault.
  CurveStore s;
  const CurveReadResult read = ReadCurveText("0,1,5E-3\n0,2,5E-3\n", s, 1);
  EXPECT_TRUE(read.ok);
  EXPECT_EQ(read.points, 3);
  EXPECT_EQ(s.YData(1, 1), 1);
  EXPECT_EQ(s.XData(2), 5e-3);
}

TEST(CurveFile, EmptyInputHasNoPoints) {
  CurveStore s;
  for (const char* text : {"", "\r\n\r\n", "\xEF\xBB\xBF", "   \n\t\n"}) {
    const CurveReadResult read = ReadCurveText(text, s, 1);
    EXPECT_TRUE(read.ok);
    EXPECT_EQ(read.points, 0);
  }
}

TEST(CurveFile, BinaryJunkNeverStoresANonFiniteValue) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> byte(0, 255);
  for (int round = 0; round < 200; ++round) {
    std::string junk;
    for (int k = 0; k < 2000; ++k) junk.push_back(static_cast<char>(byte(random)));
    CurveStore s;
    const CurveReadResult read = ReadCurveText(junk, s, 1);
    ASSERT_LE(read.points, 4000);
    for (long i = 1; i <= read.points; ++i) {
      ASSERT_TRUE(std::isfinite(s.XData(i)));
      ASSERT_TRUE(std::isfinite(s.YData(1, i)));
    }
  }
}

}  // namespace
}  // namespace voltrix
