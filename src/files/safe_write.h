#pragma once
// Writing a file so that nothing is lost: the text goes to a temporary file
// in the same folder, which replaces the target only when it was written
// whole. A failure leaves the old file as it was and no temporary behind.
#include <functional>
#include <ostream>
#include <string>

namespace voltrix {

struct WriteOutcome {
  bool ok = false;
  std::string reason;  // why not, when not ok
  explicit operator bool() const { return ok; }
};

// write returns false when it could not write all it had. The file is binary
// (line ends are written as the writer gives them).
[[nodiscard]] WriteOutcome WriteFileSafely(const std::string& path, const std::function<bool(std::ostream&)>& write);

}  // namespace voltrix
