// The program's number rules against the texts its users see: form captions,
// result-window lines and file lines.
#include "model/number_format.h"

#include <gtest/gtest.h>

#include "model/errors.h"

namespace voltrix {
namespace {

TEST(Val, TakesTheLongestLeadingNumber) {
  const struct {
    const char* text;
    double value;
  } cases[] = {{"0.3", 0.3},  {"  -0.05 V", -0.05}, {"1.5E3abc", 1500}, {"1 2", 12},  // blanks skipped everywhere
               {"+.5", 0.5},  {"1.2.3", 1.2},       {"2e", 2},          {"2e+", 2},   // no exponent digits
               {"", 0},       {"abc", 0},           {"-", 0},           {".", 0},     {"e5", 0}};
  for (const auto& c : cases) EXPECT_EQ(Val(c.text), c.value) << '"' << c.text << '"';
  EXPECT_THROW(Val("1e400"), RunError);
  EXPECT_EQ(IsNumeric(" -1e-3 ") + 2 * IsNumeric("0.01x") + 4 * IsNumeric("") + 8 * IsNumeric("1e"), 1);
}

// Plain print: a blank or a minus sign in front, 15 significant digits, a
// blank behind; the exponent form below 1E-4 and from 1E15 on.
TEST(PlainNumber, FifteenDigitsBetweenASignPlaceAndABlank) {
  const struct {
    double x;
    const char* text;
  } cases[] = {{0.05, " 0.05 "},         {-0.3, "-0.3 "},
               {0, " 0 "},               {0.1 + 0.2, " 0.3 "},
               {2.0 / 3.0, " 0.666666666666667 "},                {96484.6 * 0.001, " 96.4846 "},
               {0.0001, " 0.0001 "},     {9.99e-5, " 9.99E-05 "},
               {1.23456789012346e-7, " 1.23456789012346E-07 "},   {123456789012345, " 123456789012345 "},
               {1e15, " 1E+15 "},        {-2.5e-300, "-2.5E-300 "}};
  for (const auto& c : cases) EXPECT_EQ(PlainNumber(c.x), c.text) << c.x;
  EXPECT_EQ(PlainNumber(Field()), "");  // a field never given a value
  EXPECT_EQ(GeneralText(0.005 / 0.01), "0.5");
  EXPECT_EQ(GeneralText(1e-5), "1E-05");
}

// Each pattern as the forms, the plot and the reports use it; rounding is
// half away from zero, and a rounded zero has no sign.
TEST(FormatNumber, EveryPatternOfTheProgram) {
  const struct {
    double x;
    const char* pattern;
    const char* text;
  } cases[] = {
      {1e-5, "0E-0", "1E-5"},           {1, "0E-0", "1E0"},                 {1e6, "0E-0", "1E6"},
      {0.25, "0.##", "0.25"},           {-0.3, "0.##", "-0.3"},             {1, "0.##", "1."},
      {0.125, "0.##", "0.13"},          {-2.7e-17, "0.##", "0."},           {3.4, "0", "3"},
      {2.5, "0", "3"},                  {-1, "0", "-1"},                    {0.001, "0.###e-#", "1.e-3"},
      {0.00125, "0.###e-#", "1.25e-3"}, {0.5, "0.###e-#", "5.e-1"},         {0, "0.###e-#", "0.e0"},
      {9.99584e-4, "0.###e-#", "9.996e-4"},
      {9.99996e-4, "0.###e-#", "1.e-3"},  // the carry moves the exponent
      {1000, "#.###e-#", "1.e3"},       {0, "#.###e-#", ".e0"},             {12345, "#.###e-#", "1.235e4"},
      {1, "0.##e-0", "1.e0"},           {0.0314, "0.##e-0", "3.14e-2"},     {0.25, "0.####", "0.25"},
      {2, "0.####", "2."},              {-0.02885, "0.####", "-0.0289"},    {1234.5, "0.####", "1234.5"},
      {0.000123456, "0.####E-0", "1.2346E-4"},                              {12, "0.####E-0", "1.2E1"},
  };
  for (const auto& c : cases) EXPECT_EQ(FormatNumber(c.x, c.pattern), c.text) << c.x << " " << c.pattern;
  // Print lines: items join without a gap or move to the next column stop, every 14.
  EXPECT_EQ(PrintLine().text("time = ").number(12.5).text("s").str(), "time =  12.5 s");
  EXPECT_EQ(PrintLine().text("time = ").number(Field()).text("s").str(), "time = s");
  EXPECT_EQ(PrintLine().number(0.3).text(",").zone().number(1.25e-6).str(), " 0.3 ,         1.25E-06 ");
  EXPECT_EQ(PrintLine().text(std::string(14, 'x')).zone().text("y").str().find('y'), 28u);
  const std::string head = PrintLine().text("No.").zone().text("Initial value").zone().zone().text("Fitted").str();
  EXPECT_EQ(head.find("Initial value"), 14u);
  EXPECT_EQ(head.find("Fitted"), 42u);
}

}  // namespace
}  // namespace voltrix
