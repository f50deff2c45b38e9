#include "ui/axis_marks.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace voltrix {

double NiceStep(double span, int parts) {
  const double raw = std::fabs(span) / std::max(parts, 1);
  if (!(raw > 0) || !std::isfinite(raw)) return 1;
  const double power = std::pow(10.0, std::floor(std::log10(raw)));
  const double f = raw / power;
  const double nice = f < 1.5 ? 1 : f < 3 ? 2 : f < 7 ? 5 : 10;
  return nice * power;
}

std::vector<double> MarksWithin(double lo, double hi, double step) {
  std::vector<double> marks;
  if (!(step > 0) || !(hi >= lo)) return marks;
  const double first = std::ceil(lo / step - 1e-6), last = std::floor(hi / step + 1e-6);
  for (double k = first; k <= last && marks.size() < 1000; ++k) marks.push_back(k * step);
  return marks;
}

std::string MarkLabel(double value, double step) {
  const int decimals = step > 0 ? std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9))) : 0;
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  std::string s = text;
  if (s[0] == '-' && s.find_first_not_of("-0.") == std::string::npos) s.erase(0, 1);
  return s;
}

double DecadeOf(double m) {
  if (!(m > 0) || !std::isfinite(m)) return 1;
  double d = std::pow(10.0, std::floor(std::log10(m)));
  if (d > m) d /= 10;  // log10 rounding just below a power of ten
  if (d * 10 <= m) d *= 10;
  return d;
}

}  // namespace voltrix
