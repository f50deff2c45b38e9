#pragma once
// The one fault type of the program. Every arithmetic fault, bound violation
// and file fault is raised as a RunError; only handlers in the command layer
// (and the few routines that carry their own handler) turn it into a message.
#include <stdexcept>
#include <string>

namespace voltrix {

enum class ErrorKind {
  DivisionByZero,
  Overflow,
  InvalidArgument,
  InvalidOperation,
  SubscriptOutOfRange,
  TypeMismatch,
  FileNotFound,
  FileAccess,
  InputPastEnd,
};

class RunError : public std::runtime_error {
 public:
  RunError(ErrorKind kind, const std::string& description)
      : std::runtime_error(description), kind_(kind) {}
  ErrorKind kind() const { return kind_; }
  std::string description() const { return what(); }

 private:
  ErrorKind kind_;
};

[[noreturn]] void Raise(ErrorKind kind);
[[noreturn]] void Raise(ErrorKind kind, const std::string& description);

// Runs one statement and ignores a RunError it raises: the convention of the
// routines that go on statement by statement past an error.
template <class Statement>
void Tolerant(Statement&& statement) {
  try {
    statement();
  } catch (const RunError&) {
  }
}

}  // namespace voltrix
