// Delimited tables under a title row that names a potential and a current
// column with their units: EC-Lab's text export ("Ewe/V", "<I>/mA",
// "cycle number"), Autolab NOVA's ASCII export ("WE(1).Potential (V)",
// "WE(1).Current (A)", "Scan"; ';' or tab with decimal commas), and any
// other such text. Lines above the title row may state settings.
#include <string>

#include "files/instrument_readers.h"
#include "files/instrument_text.h"

namespace voltrix {

namespace {

constexpr std::size_t kTitleSearch = 200;

std::string FormatOf(const std::vector<std::string>& titles) {
  for (const std::string& t : titles) {
    const std::string q = Lower(SplitColumnTitle(t).quantity);
    if (q == "ewe" || q == "<i>" || q == "<ewe>") return "BioLogic EC-Lab text";
    if (StartsWith(q, "we(") || StartsWith(q, "potential applied")) return "Metrohm Autolab NOVA";
  }
  return "delimited text";
}

const char* RemedyOf(const std::string& format) {
  if (StartsWith(format, "BioLogic")) return kEcLabRemedy;
  if (StartsWith(format, "Metrohm")) return kAutolabRemedy;
  return kTableRemedy;
}

bool HoldsNoNumber(const std::vector<std::string>& fields) {
  for (const std::string& f : fields)
    if (ParseNumber(f, true)) return false;
  return true;
}

bool IsTitleRow(const std::vector<std::string>& titles, const ColumnChoice& choice) {
  if (titles.size() < 2) return false;
  if (TitlesNamePotentialAndCurrent(titles)) return true;
  return choice.any() && HoldsNoNumber(titles);
}

// Technique, area and temperature from the lines above the titles.
void TakeSettingsAbove(const Lines& lines, std::size_t title, bool decimalComma, StatedSettings& stated) {
  for (std::size_t i = 0; i < title; ++i) {
    if (stated.technique == 0) stated.technique = TechniqueNamed(lines[i]);
    TakeCommonSettings(lines[i], decimalComma, stated);
  }
}

}  // namespace

std::optional<InstrumentReadResult> ReadTitledTable(const Lines& lines, const ColumnChoice& choice) {
  std::optional<InstrumentReadResult> failure;
  for (std::size_t i = 0; i < lines.size() && i < kTitleSearch; ++i) {
    const char delimiter = GuessDelimiter(lines[i]);
    const std::vector<std::string> titles = SplitFields(lines[i], delimiter);
    if (!IsTitleRow(titles, choice)) continue;
    const std::string format = FormatOf(titles);
    InstrumentReadResult r = ReadTableUnder(lines, i, choice, format, RemedyOf(format));
    if (r.status == InstrumentStatus::Failed) return r;
    if (PointsIn(r.record.scans) > 0) {
      TakeSettingsAbove(lines, i, delimiter != ',', r.record.stated);
      return r;
    }
    if (!failure) failure = Failure(format, "no rows of numbers follow the title row", RemedyOf(format));
  }
  return failure;
}

std::optional<InstrumentReadResult> ReadNumberedColumns(const Lines& lines, const ColumnChoice& choice) {
  auto numbered = [](const std::string& c) { return !c.empty() && c.find_first_not_of("0123456789") == std::string::npos; };
  if (!numbered(choice.potential) || !numbered(choice.current)) return std::nullopt;
  std::size_t first = 0;
  while (first < lines.size() && Trim(lines[first]).empty()) ++first;
  if (first == lines.size()) return std::nullopt;
  TableLayout layout;
  layout.firstDataLine = first;
  layout.delimiter = GuessDelimiter(lines[first]);
  layout.decimalComma = layout.delimiter != ',';
  TableRead t = ReadTable(lines, layout, choice);
  if (!t.error.empty() || t.rows == 0) return std::nullopt;
  return RecordOf("numbered columns", t);
}

}  // namespace voltrix
