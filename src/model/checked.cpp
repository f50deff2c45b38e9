#include "model/checked.h"


namespace voltrix {

double Exp(double x) {
  if (std::isnan(x)) Raise(ErrorKind::InvalidOperation);
  const double y = std::exp(x);
  if (std::isinf(y)) Raise(ErrorKind::Overflow, "Overflow (exponential too large)");
  return y;
}

double Log(double x) {
  if (!(x > 0.0)) Raise(ErrorKind::InvalidArgument, "Invalid argument (logarithm of a number not above 0)");
  return Checked(std::log(x));
}

double Sqrt(double x) {
  if (x < 0.0) Raise(ErrorKind::InvalidArgument, "Invalid argument (square root of a negative number)");
  return Checked(std::sqrt(x));
}

double Pow(double base, double exponent) {
  if (base == 0.0 && exponent < 0.0) Raise(ErrorKind::DivisionByZero);
  if (base < 0.0 && exponent != std::trunc(exponent))
    Raise(ErrorKind::InvalidArgument, "Invalid argument (fractional power of a negative number)");
  return Checked(std::pow(base, exponent));
}

std::int16_t CInt(double x) {
  if (std::isnan(x)) Raise(ErrorKind::InvalidOperation);
  const double r = std::nearbyint(x);  // default rounding mode: ties to even
  if (r < -32768.0 || r > 32767.0) Raise(ErrorKind::Overflow);
  return static_cast<std::int16_t>(r);
}

}  // namespace voltrix
