// libFuzzer target for the instrument readers and the grid they feed. The
// first byte picks the way in: all readers as an import tries them, or one
// reader alone, so that each is fuzzed past the ones before it. Whatever the
// bytes, a reader must return; a read record holds only finite numbers; a
// failure says why; and a cycle laid on the grid keeps to the point limit
// and to the grid a run lays out from the same Estart, Eend and Estep.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "files/import_grid.h"
#include "files/instrument_readers.h"
#include "files/instrument_text.h"

namespace {

using namespace voltrix;

void Check(bool condition) {
  if (!condition) std::abort();
}

std::optional<InstrumentReadResult> ReadOne(std::uint8_t way, const std::string& text) {
  const ColumnChoice columns = way & 0x80 ? ColumnChoice{"2", "3"} : ColumnChoice{};
  if ((way & 0x7F) % 8 == 0) return ReadInstrumentText(text, columns, "fuzz.txt");
  const DecodedText decoded = DecodeText(text);
  switch ((way & 0x7F) % 8) {
    case 1: return ReadGamry(decoded.lines, columns);
    case 2: return ReadEcLab(decoded.lines, columns);
    case 3: return ReadChInstruments(decoded.lines, columns);
    case 4: return ReadPalmSens(decoded.lines, columns, true);
    case 5: return ReadTitledTable(decoded.lines, columns);
    case 6: return ReadNumberedColumns(decoded.lines, columns);
    default: return ReadInstrumentText(text, columns, way & 1 ? "fuzz.mpr" : "fuzz.csv");
  }
}

void CheckRecord(const InstrumentReadResult& r) {
  Check((r.status == InstrumentStatus::Failed) == !r.error.empty());
  for (const MeasuredScan& s : r.record.scans) {
    Check(s.E.size() == s.I.size());
    for (std::size_t i = 0; i < s.E.size(); ++i) Check(std::isfinite(s.E[i]) && std::isfinite(s.I[i]));
  }
}

void CheckGrid(const ImportGrid& g) {
  const std::size_t n = g.X.size();
  Check(n >= 2 && n <= 4000 && g.Y.size() == n && g.Estep > 0);
  const std::size_t half = g.cycle ? n / 2 : n;
  Check(std::lround(std::fabs(g.Eend - g.Estart) / g.Estep) + 1 == static_cast<long>(half));
  const double sign = g.Eend > g.Estart ? 1 : -1;
  for (std::size_t i = 0; i < n; ++i) {
    Check(std::isfinite(g.X[i]) && std::isfinite(g.Y[i]));
    const std::size_t k = i < half ? i : n - 1 - i;
    Check(g.X[i] == g.Estart + (g.Estep * static_cast<double>(k)) * sign);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
  const std::optional<InstrumentReadResult> read = ReadOne(data[0], text);
  if (!read || read->status != InstrumentStatus::Read) {
    if (read) CheckRecord(*read);
    return 0;
  }
  CheckRecord(*read);
  const CycleSplit split = SplitCycles(read->record.scans);
  for (std::size_t k = 0; k < split.cycles.size() && k < 3; ++k) {
    const GridResult laid = LayOnPotentialGrid(split.cycles[k], read->record.stated.step, 4000);
    Check(laid.ok == laid.error.empty());
    if (laid.ok) CheckGrid(laid.grid);
  }
  return 0;
}
