#pragma once
// A number of the Experiment that remembers whether it was ever given a
// value. It reads as 0 until then, and prints as nothing (an empty value
// line of the parameter file, "time = s" before any run).
namespace voltrix {

class Field {
 public:
  Field() = default;
  Field(double v) : value_(v), set_(true) {}  // NOLINT: assigning a number sets the field
  Field& operator=(double v) {
    value_ = v;
    set_ = true;
    return *this;
  }
  operator double() const { return value_; }  // NOLINT: a field reads as its number
  double value() const { return value_; }
  bool empty() const { return !set_; }

 private:
  double value_ = 0.0;
  bool set_ = false;
};

}  // namespace voltrix
