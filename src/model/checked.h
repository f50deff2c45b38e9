#pragma once
// Checked arithmetic. A division by zero, an overflow and an invalid
// operation raise a RunError with a description; an underflow gives 0 (or a
// subnormal), never an error. No NaN or infinity leaves these functions.
#include <cmath>
#include <cstdint>

#include "model/errors.h"

namespace voltrix {

// Raises Overflow for an infinity and InvalidOperation for a NaN.
inline double Checked(double x) {
  if (std::isfinite(x)) return x;
  if (std::isnan(x)) Raise(ErrorKind::InvalidOperation);
  Raise(ErrorKind::Overflow);
}

inline double Div(double a, double b) {
  if (b == 0.0) Raise(ErrorKind::DivisionByZero);
  return Checked(a / b);
}

double Exp(double x);
double Log(double x);
double Sqrt(double x);
double Pow(double base, double exponent);

// Conversion to a 16-bit integer: nearest, ties to even, Overflow outside
// -32768..32767.
std::int16_t CInt(double x);

// Fix: drops the fraction towards zero.
inline double Fix(double x) { return std::trunc(x); }

}  // namespace voltrix
