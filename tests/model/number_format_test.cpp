// The program's number rules, checked against the examples the program's
// users see: form captions, result-window lines and file lines.
#include <gtest/gtest.h>

#include "model/errors.h"
#include "model/number_format.h"

namespace voltrix {
namespace {

TEST(Val, TakesTheLongestLeadingNumberAndSkipsBlanks) {
  EXPECT_EQ(Val("0.3"), 0.3);
  EXPECT_EQ(Val("  -0.05 V"), -0.05);
  EXPECT_EQ(Val("1e-5"), 1e-5);
  EXPECT_EQ(Val("1.5E3abc"), 1500.0);
  EXPECT_EQ(Val("1 2"), 12.0);  // blanks are skipped everywhere
  EXPECT_EQ(Val("+.5"), 0.5);
  EXPECT_EQ(Val("1.2.3"), 1.2);
  EXPECT_EQ(Val("2e"), 2.0);  // an exponent without digits is not part of the number
}

TEST(Val, TextWithoutANumberIsZero) {
  EXPECT_EQ(Val(""), 0.0);
  EXPECT_EQ(Val("abc"), 0.0);
  EXPECT_EQ(Val("-"), 0.0);
  EXPECT_EQ(Val("."), 0.0);
  EXPECT_EQ(Val("e5"), 0.0);
}

TEST(Val, ANumberBeyondTheDoubleRangeIsAnOverflow) {
  try {
    Val("1e400");
    FAIL() << "no overflow";
  } catch (const RunError& e) {
    EXPECT_EQ(e.kind(), ErrorKind::Overflow);
  }
}

TEST(IsNumeric, WholeTextMustBeOneNumber) {
  EXPECT_TRUE(IsNumeric(" 0.01 "));
  EXPECT_TRUE(IsNumeric("-1e-3"));
  EXPECT_FALSE(IsNumeric(""));
  EXPECT_FALSE(IsNumeric("0.01x"));
  EXPECT_FALSE(IsNumeric("abc"));
}

TEST(PlainNumber, BlankOrMinusInFrontAndABlankBehind) {
  EXPECT_EQ(PlainNumber(0.05), " 0.05 ");
  EXPECT_EQ(PlainNumber(-0.3), "-0.3 ");
  EXPECT_EQ(PlainNumber(1.0), " 1 ");
  EXPECT_EQ(PlainNumber(0.0), " 0 ");
  EXPECT_EQ(PlainNumber(1.25e-6), " 1.25E-06 ");
  EXPECT_EQ(PlainNumber(1.23456789012346e-7), " 1.23456789012346E-07 ");
  EXPECT_EQ(PlainNumber(298.14), " 298.14 ");
}

TEST(PlainNumber, KeepsFifteenSignificantDigits) {
  EXPECT_EQ(PlainNumber(0.1 + 0.2), " 0.3 ");
  EXPECT_EQ(PlainNumber(2.0 / 3.0), " 0.666666666666667 ");
  EXPECT_EQ(PlainNumber(96484.6 * 0.001), " 96.4846 ");
}

TEST(PlainNumber, NeverSetFieldPrintsNothing) {
  Field never;
  EXPECT_EQ(PlainNumber(never), "");
  Field zero = 0.0;
  EXPECT_EQ(PlainNumber(zero), " 0 ");
}

TEST(GeneralText, IsThePlainPrintWithoutBlanks) {
  EXPECT_EQ(GeneralText(0.005 / 0.01), "0.5");
  EXPECT_EQ(GeneralText(0.5 / 10), "0.05");
  EXPECT_EQ(GeneralText(-0.3), "-0.3");
  EXPECT_EQ(GeneralText(1e-5), "1E-05");
}

TEST(FormatNumber, UnitLinePattern) {
  EXPECT_EQ(FormatNumber(0.00001, "0E-0"), "1E-5");
  EXPECT_EQ(FormatNumber(1, "0E-0"), "1E0");
  EXPECT_EQ(FormatNumber(100, "0E-0"), "1E2");
  EXPECT_EQ(FormatNumber(1e6, "0E-0"), "1E6");
}

TEST(FormatNumber, AxisLabelPatterns) {
  EXPECT_EQ(FormatNumber(0.25, "0.##"), "0.25");
  EXPECT_EQ(FormatNumber(-0.3, "0.##"), "-0.3");
  EXPECT_EQ(FormatNumber(1, "0.##"), "1.");
  EXPECT_EQ(FormatNumber(0.125, "0.##"), "0.13");  // half away from zero
  EXPECT_EQ(FormatNumber(-2.7e-17, "0.##"), "0.");  // a rounded zero has no sign
  EXPECT_EQ(FormatNumber(3.4, "0"), "3");
  EXPECT_EQ(FormatNumber(-1.0, "0"), "-1");
  EXPECT_EQ(FormatNumber(2.5, "0"), "3");
}

TEST(FormatNumber, ConcentrationAndEquilibriumPatterns) {
  EXPECT_EQ(FormatNumber(0.001, "0.###e-#"), "1.e-3");
  EXPECT_EQ(FormatNumber(0.00125, "0.###e-#"), "1.25e-3");
  EXPECT_EQ(FormatNumber(0.5, "0.###e-#"), "5.e-1");
  EXPECT_EQ(FormatNumber(0.0, "0.###e-#"), "0.e0");
  EXPECT_EQ(FormatNumber(9.99584e-4, "0.###e-#"), "9.996e-4");
  EXPECT_EQ(FormatNumber(9.99996e-4, "0.###e-#"), "1.e-3");  // the carry moves the exponent
  EXPECT_EQ(FormatNumber(1000, "#.###e-#"), "1.e3");
  EXPECT_EQ(FormatNumber(0, "#.###e-#"), ".e0");
}

TEST(FormatNumber, AreaAndReportPatterns) {
  EXPECT_EQ(FormatNumber(1, "0.##e-0"), "1.e0");
  EXPECT_EQ(FormatNumber(0.25, "0.##e-0"), "2.5e-1");
  EXPECT_EQ(FormatNumber(0.0314, "0.##e-0"), "3.14e-2");
  EXPECT_EQ(FormatNumber(0.25, "0.####"), "0.25");
  EXPECT_EQ(FormatNumber(2, "0.####"), "2.");
  EXPECT_EQ(FormatNumber(-0.02885, "0.####"), "-0.0289");
  EXPECT_EQ(FormatNumber(0.000123456, "0.####E-0"), "1.2346E-4");
  EXPECT_EQ(FormatNumber(12, "0.####E-0"), "1.2E1");
}

TEST(PrintLine, ItemsJoinOrMoveToTheNextZone) {
  EXPECT_EQ(PrintLine().text("Curve Number is ").number(2.0).str(), "Curve Number is  2 ");
  EXPECT_EQ(PrintLine().text("time = ").number(12.5).text("s").str(), "time =  12.5 s");
  EXPECT_EQ(PrintLine().text("time = ").number(Field()).text("s").str(), "time = s");
  EXPECT_EQ(PrintLine().number(0.3).text(",").zone().number(1.25e-6).str(), " 0.3 ,         1.25E-06 ");
  // A first item of exactly one zone's width moves the next one to the stop at 28.
  EXPECT_EQ(PrintLine().text(std::string(14, 'x')).zone().text("y").str().find('y'), 28u);
  // An empty zone: the head of the fit report.
  const std::string head = PrintLine().text("No.").zone().text("Initial value").zone().zone().text("Fitted value").str();
  EXPECT_EQ(head.find("Initial value"), 14u);
  EXPECT_EQ(head.find("Fitted value"), 42u);
}

}  // namespace
}  // namespace voltrix
