#include "files/safe_write.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "model/errors.h"

namespace voltrix {

namespace fs = std::filesystem;

namespace {

// A name beside the target, so that the rename stays on one file system.
fs::path TemporaryBeside(const fs::path& target) {
  fs::path tmp = target;
  tmp += ".voltrix-partial";
  return tmp;
}

WriteOutcome Failed(const std::string& reason) { return {false, reason}; }

// Writes the whole text to tmp; the reason when it could not.
std::string WriteWhole(const fs::path& tmp, const std::function<bool(std::ostream&)>& write) {
  errno = 0;
  std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
  if (!out) return errno ? std::strerror(errno) : "cannot create it";
  bool ok = false;
  std::string reason = "the data could not be written whole";
  try {
    ok = write(out);
  } catch (const RunError& err) {
    reason = err.description();
  }
  out.flush();
  if (ok && !out.good()) reason = errno ? std::strerror(errno) : "the disk refused the data";
  return ok && out.good() ? std::string() : reason;
}

}  // namespace

WriteOutcome WriteFileSafely(const std::string& path, const std::function<bool(std::ostream&)>& write) {
  if (path.empty()) return Failed("no file name");
  const fs::path target(path);
  std::error_code ec;
  if (fs::is_directory(target, ec)) return Failed("it is a folder");
  const fs::path tmp = TemporaryBeside(target);
  std::string reason = WriteWhole(tmp, write);
  if (reason.empty()) {
    fs::rename(tmp, target, ec);
    if (ec) reason = ec.message();
  }
  if (reason.empty()) return {true, {}};
  fs::remove(tmp, ec);
  return Failed(reason);
}

}  // namespace voltrix
