#include "model/errors.h"

namespace voltrix {

namespace {
const char* DefaultDescription(ErrorKind kind) {
  switch (kind) {
    case ErrorKind::DivisionByZero: return "Division by zero";
    case ErrorKind::Overflow: return "Overflow";
    case ErrorKind::InvalidArgument: return "Invalid procedure call or argument";
    case ErrorKind::InvalidOperation: return "Invalid operation (result is not a number)";
    case ErrorKind::SubscriptOutOfRange: return "Subscript out of range";
    case ErrorKind::TypeMismatch: return "Type mismatch";
    case ErrorKind::FileNotFound: return "File not found";
    case ErrorKind::FileAccess: return "Path/File access error";
    case ErrorKind::InputPastEnd: return "Input past end of file";
  }
  return "Unknown error";
}
}  // namespace

void Raise(ErrorKind kind) { throw RunError(kind, DefaultDescription(kind)); }

void Raise(ErrorKind kind, const std::string& description) { throw RunError(kind, description); }

}  // namespace voltrix
