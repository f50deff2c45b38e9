#include "model/number_format.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "model/checked.h"
#include "model/errors.h"

namespace voltrix {

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Copies the leading number of a text without blanks; returns the length of
// the text that a number reaches (0 when there is none).
std::string LeadingNumber(std::string_view text, std::size_t* consumed) {
  std::string s;
  for (char c : text)
    if (!IsBlank(c)) s.push_back(c);
  std::size_t i = 0;
  if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
  std::size_t mantissaDigits = 0;
  while (i < s.size() && IsDigit(s[i])) ++i, ++mantissaDigits;
  if (i < s.size() && s[i] == '.') {
    ++i;
    while (i < s.size() && IsDigit(s[i])) ++i, ++mantissaDigits;
  }
  if (mantissaDigits == 0) {
    *consumed = 0;
    return {};
  }
  std::size_t end = i;
  if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
    std::size_t j = i + 1;
    if (j < s.size() && (s[j] == '+' || s[j] == '-')) ++j;
    std::size_t expDigits = 0;
    while (j < s.size() && IsDigit(s[j])) ++j, ++expDigits;
    if (expDigits > 0) end = j;
  }
  *consumed = end;
  return s.substr(0, end);
}

// The decimal digits of |x| to 15 significant places: x = d1.d2d3... * 10^exp.
struct Decimal {
  bool negative = false;
  std::string digits;  // without point
  int exponent = 0;
};

Decimal ToDecimal(double x) {
  Decimal d;
  d.negative = std::signbit(x) && x != 0.0;
  if (x == 0.0) {
    d.digits = "0";
    return d;
  }
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.14e", std::fabs(x));
  std::string s(buf);
  const std::size_t e = s.find('e');
  d.exponent = std::atoi(s.c_str() + e + 1);
  for (std::size_t i = 0; i < e; ++i)
    if (IsDigit(s[i])) d.digits.push_back(s[i]);
  return d;
}

// Rounds to `count` significant digits, half away from zero. count may be 0
// or negative, for fixed patterns whose last place lies above the first digit.
Decimal RoundDigits(Decimal d, int count) {
  if (d.digits == "0") return d;
  if (count <= 0) {
    // The value lies entirely below the kept place: it becomes 0 or one unit
    // of that place.
    const bool up = count == 0 && d.digits[0] >= '5';
    d.exponent = d.exponent - count + 1;
    d.digits = up ? "1" : "0";
    if (!up) d.exponent = 0;
    return d;
  }
  if (static_cast<int>(d.digits.size()) <= count) return d;
  const bool up = d.digits[count] >= '5';
  d.digits.resize(count);
  if (up) {
    int i = count - 1;
    while (i >= 0 && d.digits[i] == '9') d.digits[i--] = '0';
    if (i < 0) {
      d.digits.insert(d.digits.begin(), '1');
      d.digits.pop_back();
      ++d.exponent;
    } else {
      ++d.digits[i];
    }
  }
  return d;
}

std::string StripTrailingZeros(std::string s) {
  while (!s.empty() && s.back() == '0') s.pop_back();
  return s;
}

bool AllZero(const std::string& digits) { return digits.find_first_not_of('0') == std::string::npos; }

// Scientific patterns: one mantissa digit, up to `decimals` more, the point
// when `point` is set, then the exponent with a sign only when negative.
std::string Scientific(double x, int decimals, bool point, bool zeroDigit, char e) {
  if (x == 0.0) return std::string(zeroDigit ? "0" : "") + (point ? "." : "") + e + "0";
  Decimal d = RoundDigits(ToDecimal(x), 1 + decimals);
  std::string frac = StripTrailingZeros(d.digits.substr(1));
  std::string out = d.negative ? "-" : "";
  out += d.digits[0];
  if (point) out += "." + frac;
  out += e;
  out += std::to_string(d.exponent);
  return out;
}

// Fixed patterns: at least one integer digit, up to `decimals` decimals, the
// point kept when `point` is set.
std::string Fixed(double x, int decimals, bool point) {
  Decimal d = ToDecimal(x);
  d = RoundDigits(d, d.exponent + 1 + decimals);
  std::string intPart, frac;
  if (AllZero(d.digits)) {
    intPart = "0";
  } else if (d.exponent >= 0) {
    std::string digits = d.digits;
    if (static_cast<int>(digits.size()) < d.exponent + 1) digits.append(d.exponent + 1 - digits.size(), '0');
    intPart = digits.substr(0, d.exponent + 1);
    frac = digits.substr(d.exponent + 1);
  } else {
    intPart = "0";
    frac = std::string(-d.exponent - 1, '0') + d.digits;
  }
  frac = StripTrailingZeros(frac);
  const bool zero = AllZero(intPart) && frac.empty();
  std::string out = (d.negative && !zero) ? "-" : "";
  out += intPart;
  if (point) out += "." + frac;
  return out;
}

}  // namespace

double Val(std::string_view text) {
  std::size_t consumed = 0;
  const std::string number = LeadingNumber(text, &consumed);
  if (consumed == 0) return 0.0;
  const double v = std::strtod(number.c_str(), nullptr);
  if (std::isinf(v)) Raise(ErrorKind::Overflow);
  return v;
}

bool IsNumeric(std::string_view text) {
  std::size_t consumed = 0;
  std::string compact;
  for (char c : text)
    if (!IsBlank(c)) compact.push_back(c);
  LeadingNumber(compact, &consumed);
  return consumed > 0 && consumed == compact.size();
}

std::string GeneralText(double x) {
  Checked(x);
  if (x == 0.0) return "0";
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.15G", x);
  std::string s(buf);
  // Keep a zero before the point and at least two exponent digits.
  if (s.rfind("0.", 0) != 0 && s[0] == '.') s.insert(0, "0");
  return s;
}

std::string PlainNumber(double x) {
  const std::string g = GeneralText(x);
  return g[0] == '-' ? g + " " : " " + g + " ";
}

std::string PlainNumber(const Field& f) { return f.empty() ? std::string() : PlainNumber(f.value()); }

std::string FormatNumber(double x, std::string_view pattern) {
  Checked(x);
  if (pattern == "0E-0") return Scientific(x, 0, false, true, 'E');
  if (pattern == "0.##") return Fixed(x, 2, true);
  if (pattern == "0") return Fixed(x, 0, false);
  if (pattern == "0.###e-#") return Scientific(x, 3, true, true, 'e');
  if (pattern == "#.###e-#") return Scientific(x, 3, true, false, 'e');
  if (pattern == "0.##e-0") return Scientific(x, 2, true, true, 'e');
  if (pattern == "0.####") return Fixed(x, 4, true);
  if (pattern == "0.####E-0") return Scientific(x, 4, true, true, 'E');
  Raise(ErrorKind::InvalidArgument, "Unknown number pattern " + std::string(pattern));
}

PrintLine& PrintLine::text(std::string_view s) {
  line_ += s;
  return *this;
}

PrintLine& PrintLine::number(double x) { return text(PlainNumber(x)); }

PrintLine& PrintLine::number(const Field& f) { return text(PlainNumber(f)); }

PrintLine& PrintLine::zone() {
  const std::size_t next = (line_.size() / kZoneWidth + 1) * kZoneWidth;
  line_.append(next - line_.size(), ' ');
  return *this;
}

}  // namespace voltrix
