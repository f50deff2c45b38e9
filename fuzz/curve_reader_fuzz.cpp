// libFuzzer target for the curve reader: whatever the bytes, the reader must
// return (no crash, no hang), store at most 4000 points, and store only
// finite numbers.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "files/curve_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static voltrix::CurveStore store;
  const std::string text(reinterpret_cast<const char*>(data), size);
  const voltrix::CurveReadResult read = voltrix::ReadCurveText(text, store, 1);
  if (read.points < 0 || read.points > voltrix::kMaxPoints) std::abort();
  if (read.ok != read.description.empty()) std::abort();
  for (long i = 1; i <= read.points; ++i)
    if (!std::isfinite(store.XData(i)) || !std::isfinite(store.YData(1, i))) std::abort();
  return 0;
}
