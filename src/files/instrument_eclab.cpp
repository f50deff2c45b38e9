// BioLogic EC-Lab ASCII files (.mpt): "EC-Lab ASCII FILE", then
// "Nb header lines : N"; the header holds the technique's name and its
// settings ("Ei (V)  0,300", "dE/dt  20,000", "dE/dt unit  mV/s",
// "nc cycles  2", "Electrode surface area : 0,071 cm²"), and its N-th line
// titles the tab-separated columns ("Ewe/V", "<I>/mA", "cycle number",
// "error"). Numbers follow the locale of the computer that wrote them.
#include <algorithm>
#include <string>

#include "files/instrument_readers.h"
#include "files/instrument_text.h"

namespace voltrix {

namespace {

constexpr const char* kEcLabFormat = "BioLogic EC-Lab ASCII";

std::optional<double> SettingAfter(const std::string& line, std::string_view key) {
  if (!StartsWith(Lower(Trim(line)), Lower(key))) return std::nullopt;
  std::string rest = Trim(std::string_view(Trim(line)).substr(key.size()));
  if (!rest.empty() && rest[0] == ':') rest = Trim(std::string_view(rest).substr(1));
  return LeadingNumber(rest, true);
}

std::string UnitAfter(const std::string& line, std::string_view key) {
  if (!StartsWith(Lower(Trim(line)), Lower(key))) return {};
  return Trim(std::string_view(Trim(line)).substr(key.size()));
}

void TakeEcLabSettings(const Lines& lines, std::size_t headerEnd, StatedSettings& s) {
  double rate = 0, rateScale = 1e-3;  // dE/dt in mV/s unless the header says otherwise
  for (std::size_t i = 0; i < headerEnd; ++i) {
    const std::string& line = lines[i];
    if (s.technique == 0) s.technique = TechniqueNamed(line);
    const std::string unit = UnitAfter(line, "dE/dt unit");
    if (!unit.empty()) {
      rateScale = Lower(unit) == "v/s" ? 1 : 1e-3;
      continue;
    }
    if (const auto v = SettingAfter(line, "dE/dt")) rate = *v;
    if (const auto v = SettingAfter(line, "nc cycles"); v && *v >= 0 && *v < 1e6) {
      s.planned = static_cast<int>(*v);
      s.plannedName = "nc cycles";
    }
    TakeCommonSettings(line, true, s);
  }
  if (rate > 0) s.scanRate = rate * rateScale;
}

std::optional<long> HeaderLineCount(const Lines& lines) {
  for (std::size_t i = 0; i < lines.size() && i < 3; ++i)
    if (const auto n = SettingAfter(lines[i], "Nb header lines")) return static_cast<long>(std::min(*n, 1e9));
  return std::nullopt;
}

}  // namespace

std::optional<InstrumentReadResult> ReadEcLab(const Lines& lines, const ColumnChoice& choice) {
  const bool titled = !lines.empty() && Contains(lines[0], "ASCII FILE") &&
                      (Contains(lines[0], "EC-Lab") || Contains(lines[0], "BT-Lab"));
  const auto count = HeaderLineCount(lines);
  if (!titled && !count) return std::nullopt;
  if (!count) return Failure(kEcLabFormat, "the \"Nb header lines\" line is missing", kEcLabRemedy);
  if (*count < 2 || *count > static_cast<long>(lines.size()))
    return Failure(kEcLabFormat,
                   "the header announces " + std::to_string(*count) + " lines, the file holds " +
                       std::to_string(lines.size()),
                   kEcLabRemedy);
  const std::size_t title = static_cast<std::size_t>(*count) - 1;
  InstrumentReadResult r = ReadTableUnder(lines, title, choice, kEcLabFormat, kEcLabRemedy);
  if (r.status == InstrumentStatus::Read) TakeEcLabSettings(lines, title, r.record.stated);
  return r;
}

}  // namespace voltrix
