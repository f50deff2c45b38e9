// PalmSens PSTrace CSV exports: UTF-16 with a byte order mark and CR LF as
// a rule; perhaps a date or a free-text notes line; a title row naming each
// curve ("CV i vs E Scan 1") over a row of units ("V", "µA"); then one
// potential and current column pair per scan, the shorter scans' cells left
// empty below their last point.
#include <cmath>
#include <string>

#include "files/instrument_readers.h"
#include "files/instrument_text.h"

namespace voltrix {

namespace {

constexpr std::size_t kHeaderSearch = 40;

std::vector<std::string> WithoutTrailingEmpty(std::vector<std::string> f) {
  while (!f.empty() && f.back().empty()) f.pop_back();
  return f;
}

char PairDelimiter(const std::string& line) {
  for (char d : {'\t', ';', ','})
    if (line.find(d) != std::string::npos) return d;
  return 0;
}

bool IsUnitsRow(const std::string& line) {
  const char d = PairDelimiter(line);
  if (d == 0) return false;
  const std::vector<std::string> f = WithoutTrailingEmpty(SplitFields(line, d));
  if (f.size() < 2 || f.size() % 2 != 0) return false;
  for (std::size_t k = 0; k < f.size(); k += 2)
    if (!PotentialUnit(f[k]) || !CurrentUnit(f[k + 1])) return false;
  return true;
}

std::optional<std::size_t> PreviousFilled(const Lines& lines, std::size_t i) {
  while (i > 0) {
    --i;
    if (!Trim(lines[i]).empty()) return i;
  }
  return std::nullopt;
}

struct PairTable {
  std::vector<MeasuredScan> scans;
  std::vector<double> potentialScale, currentScale;
};

PairTable PairsOf(const Lines& lines, std::size_t title, std::size_t units, char d) {
  PairTable t;
  const std::vector<std::string> names = SplitFields(lines[title], d);
  const std::vector<std::string> u = WithoutTrailingEmpty(SplitFields(lines[units], d));
  for (std::size_t k = 0; k < u.size(); k += 2) {
    const std::string name = k < names.size() ? names[k] : std::string();
    t.scans.push_back(MeasuredScan{name.empty() ? "scan " + std::to_string(k / 2 + 1) : name, {}, {}});
    t.potentialScale.push_back(*PotentialUnit(u[k]));
    t.currentScale.push_back(*CurrentUnit(u[k + 1]));
  }
  return t;
}

// Rows until one holds no pair of numbers at all.
void ReadPairs(const Lines& lines, std::size_t first, char d, PairTable& t) {
  const bool comma = d != ',';
  for (std::size_t i = first; i < lines.size(); ++i) {
    if (Trim(lines[i]).empty()) continue;
    const std::vector<std::string> f = SplitFields(lines[i], d);
    bool any = false;
    for (std::size_t s = 0; s < t.scans.size() && 2 * s + 1 < f.size(); ++s) {
      const auto E = ParseNumber(f[2 * s], comma);
      const auto I = ParseNumber(f[2 * s + 1], comma);
      if (!E || !I) continue;
      const double e = *E * t.potentialScale[s], c = *I * t.currentScale[s];
      if (!std::isfinite(e) || !std::isfinite(c)) continue;
      t.scans[s].E.push_back(e);
      t.scans[s].I.push_back(c);
      any = true;
    }
    if (!any) break;
  }
}

}  // namespace

std::optional<InstrumentReadResult> ReadPalmSens(const Lines& lines, const ColumnChoice& choice, bool utf16) {
  std::size_t units = 0;
  while (units < lines.size() && units < kHeaderSearch && !IsUnitsRow(lines[units])) ++units;
  if (units == lines.size() || units == kHeaderSearch) return std::nullopt;
  const auto title = PreviousFilled(lines, units);
  if (!title) return std::nullopt;
  const bool pstrace = utf16 || Contains(lines[*title], "scan") || Contains(lines[*title], " vs ");
  const std::string format = pstrace ? "PalmSens PSTrace CSV" : "delimited text with a units row";
  if (choice.any())
    return Failure(format, "the file holds one potential and current column pair per scan",
                   "Choose a scan with cycle=N instead of columns");
  const char d = PairDelimiter(lines[units]);
  PairTable t = PairsOf(lines, *title, units, d);
  ReadPairs(lines, units + 1, d, t);
  InstrumentReadResult r;
  r.status = InstrumentStatus::Read;
  r.record.format = format;
  const std::vector<std::string> u = SplitFields(lines[units], d);
  r.record.potentialColumn = "E (" + u[0] + ")";
  r.record.currentColumn = "I (" + u[1] + ")";
  for (std::size_t i = 0; i <= *title; ++i) {
    if (r.record.stated.technique == 0) r.record.stated.technique = TechniqueNamed(lines[i]);
    TakeCommonSettings(lines[i], d != ',', r.record.stated);
  }
  r.record.scans = std::move(t.scans);
  return r;
}

}  // namespace voltrix
