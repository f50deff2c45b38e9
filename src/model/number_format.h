#pragma once
// The program's rules for numbers in text: Val, the plain numeric print of
// the result window and the text files, the general text written into form
// boxes, the fixed number patterns, and print lines with print zones.
#include <string>
#include <string_view>

#include "model/field.h"

namespace voltrix {

// The numeric value of a text: blanks are skipped, the longest leading
// decimal number (sign, digits, point, exponent) is taken, anything after it
// is ignored, and a text without one gives 0. A number beyond the range of a
// double raises Overflow.
double Val(std::string_view text);

// True when the whole text, blanks aside, is one decimal number.
bool IsNumeric(std::string_view text);

// Plain numeric print: a blank or a minus sign in front, at most 15
// significant digits, a blank behind; the exponent form 1.23456789012346E-07
// below 1E-4 and from 1E15 on. An empty Field prints as nothing.
std::string PlainNumber(double x);
std::string PlainNumber(const Field& f);

// The general text of a number, as written into a text box: the plain print
// without its blanks.
std::string GeneralText(double x);

// The number patterns "0E-0", "0.##", "0", "0.###e-#", "#.###e-#",
// "0.##e-0", "0.####" and "0.####E-0". Rounding is half away from zero on the
// decimal digits; a value that rounds to zero prints without a minus sign.
std::string FormatNumber(double x, std::string_view pattern);

// One line of the result window or of a text file: items are joined without
// a gap, or moved to the next print zone, a column stop every 14 characters.
class PrintLine {
 public:
  static constexpr int kZoneWidth = 14;
  PrintLine& text(std::string_view s);
  PrintLine& number(double x);
  PrintLine& number(const Field& f);
  PrintLine& zone();  // the next column stop beyond the current column
  const std::string& str() const { return line_; }

 private:
  std::string line_;
};

}  // namespace voltrix
