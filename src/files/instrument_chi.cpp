// CH Instruments text exports (.txt, and .csv with the same layout): a date,
// the technique's name, "key = value" settings ("Init E (V) = 0.5",
// "Scan Rate (V/s) = 0.1", "Segment = 4", "Sample Interval (V) = 0.001"),
// perhaps results, then "Potential/V, Current/A" and the rows. The file has
// no cycle column: the sweeps are found where the potential turns.
#include <string>

#include "files/instrument_readers.h"
#include "files/instrument_text.h"

namespace voltrix {

namespace {

constexpr const char* kChFormat = "CH Instruments text";

bool IsTitleRow(const std::string& line) {
  const std::string t = Lower(Trim(line));
  return StartsWith(t, "potential/v") && TitlesNamePotentialAndCurrent(SplitFields(line, GuessDelimiter(line)));
}

std::optional<double> Setting(const std::string& line, std::string_view key) {
  const std::size_t eq = line.find('=');
  if (eq == std::string::npos || Lower(Trim(std::string_view(line).substr(0, eq))) != Lower(key)) return std::nullopt;
  return LeadingNumber(std::string_view(line).substr(eq + 1), false);
}

void TakeChSettings(const Lines& lines, std::size_t title, StatedSettings& s) {
  for (std::size_t i = 0; i < title; ++i) {
    const std::string& line = lines[i];
    if (s.technique == 0 && line.find('=') == std::string::npos) s.technique = TechniqueNamed(line);
    if (const auto v = Setting(line, "Scan Rate (V/s)"); v && *v > 0) s.scanRate = *v;
    if (const auto v = Setting(line, "Sample Interval (V)"); v && *v > 0) s.step = *v;
    if (const auto v = Setting(line, "Incr E (V)"); v && *v > 0) s.step = *v;
    if (const auto v = Setting(line, "Amplitude (V)")) s.pulseHeight = *v;
    if (const auto v = Setting(line, "Pulse Width (sec)")) s.pulseWidth = *v;
    if (const auto v = Setting(line, "Frequency (Hz)")) s.frequency = *v;
    if (const auto v = Setting(line, "Segment"); v && *v >= 1 && *v < 1e6) {
      s.planned = static_cast<int>(*v);
      s.plannedName = "Segment";
      s.plannedSweeps = true;
    }
    TakeCommonSettings(line, false, s);
  }
}

bool HasChHeader(const Lines& lines, std::size_t title) {
  for (std::size_t i = 0; i < title; ++i)
    if (Setting(lines[i], "Init E (V)")) return true;
  return false;
}

}  // namespace

std::optional<InstrumentReadResult> ReadChInstruments(const Lines& lines, const ColumnChoice& choice) {
  std::size_t title = 0;
  while (title < lines.size() && !IsTitleRow(lines[title])) ++title;
  if (title == lines.size() || !HasChHeader(lines, title)) return std::nullopt;
  InstrumentReadResult r = ReadTableUnder(lines, title, choice, kChFormat, kChRemedy);
  if (r.status == InstrumentStatus::Read) TakeChSettings(lines, title, r.record.stated);
  return r;
}

}  // namespace voltrix
