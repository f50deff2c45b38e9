#include "files/safe_write.h"

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

}  // namespace

bool WriteFileSafely(const std::string& path, const std::function<bool(std::ostream&)>& write) {
  if (path.empty()) return false;
  const fs::path target(path);
  std::error_code ec;
  if (fs::is_directory(target, ec)) return false;
  const fs::path tmp = TemporaryBeside(target);
  bool ok = false;
  {
    std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
    if (!out) return false;
    try {
      ok = write(out);
    } catch (const RunError&) {
      ok = false;
    }
    out.flush();
    ok = ok && out.good();
  }
  if (ok) {
    fs::rename(tmp, target, ec);
    ok = !ec;
  }
  if (!ok) fs::remove(tmp, ec);
  return ok;
}

}  // namespace voltrix
