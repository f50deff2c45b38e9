// Gamry Framework data files (.DTA): tab-separated lines of type, tag and
// values; setup lines such as "QUANT SCANRATE 100 F Scan Rate (mV/s)";
// curves as "CURVEn TABLE [points]" followed by a title row, a units row and
// the rows, one table per cycle or one table with a Cycle column.
#include <algorithm>
#include <string>

#include "files/instrument_readers.h"
#include "files/instrument_text.h"

namespace voltrix {

namespace {

constexpr const char* kGamryFormat = "Gamry .DTA";

bool IsCurveTag(const std::string& tag) {
  return StartsWith(tag, "CURVE") && tag.find_first_not_of("0123456789", 5) == std::string::npos;
}

// The unit a setup line gives in its description, "Scan Rate (mV/s)".
std::string Described(const std::vector<std::string>& f) {
  std::string d;
  for (std::size_t k = 3; k < f.size(); ++k) d += Lower(f[k]) + " ";
  return d;
}

void TakeSetting(const std::vector<std::string>& f, InstrumentRecord& rec) {
  StatedSettings& s = rec.stated;
  if (f.size() >= 2 && f[0] == "TAG" && TechniqueNamed(f[1]) != 0) s.technique = TechniqueNamed(f[1]);
  if (f.size() >= 3 && f[0] == "EXPERIMENTABORTED" && f[2] == "T")
    rec.notes.push_back("the experiment was aborted: the file holds what was measured until then");
  if (f.size() < 3) return;
  const auto v = ParseNumber(f[2], true);
  if (!v) return;
  const std::string d = Described(f);
  const std::string& tag = f[1];
  const double milli = 1e-3;
  if (tag == "SCANRATE") s.scanRate = *v * (Contains(d, "(v/s)") ? 1 : milli);
  if (tag == "STEPSIZE") s.step = *v * (Contains(d, "(v)") ? 1 : milli);
  if (tag == "PULSESIZE") s.pulseHeight = *v * (Contains(d, "(v)") ? 1 : milli);
  if (tag == "PULSETIME") s.pulseWidth = *v * (Contains(d, "(ms)") ? milli : 1);
  if (tag == "FREQUENCY") s.frequency = *v;
  if (tag == "AREA" && *v > 0) s.area = *v;
  if (tag == "CYCLES" && *v >= 1 && *v < 1e6) {
    s.planned = static_cast<int>(*v);
    s.plannedName = tag;
  }
}

struct CurveTables {
  std::vector<MeasuredScan> scans;
  std::string potentialColumn, currentColumn, error;
};

// Reads the table that starts at line i; returns the line after it.
std::size_t ReadCurveTable(const Lines& lines, std::size_t i, const std::vector<std::string>& head,
                           const ColumnChoice& choice, CurveTables& curves, InstrumentRecord& rec) {
  if (i + 2 >= lines.size()) {
    rec.notes.push_back(head[0] + " is cut short before its rows");
    return lines.size();
  }
  TableLayout layout;
  layout.titleLine = i + 1;
  layout.unitsLine = i + 2;
  layout.firstDataLine = i + 3;
  layout.delimiter = '\t';
  layout.decimalComma = true;
  layout.leadingField = true;
  TableRead t = ReadTable(lines, layout, choice);
  if (!t.error.empty()) {
    curves.error = head[0] + ": " + t.error;
    return i + 1;
  }
  if (t.scans.size() == 1) t.scans[0].label = head[0];
  const auto declared = head.size() >= 3 ? ParseNumber(head[2], false) : std::nullopt;
  if (declared && *declared > static_cast<double>(t.rows + t.flagged))
    rec.notes.push_back(head[0] + " declares " + head[2] + " points; " + std::to_string(t.rows) + " are present");
  for (std::string& note : t.notes) rec.notes.push_back(std::move(note));
  for (MeasuredScan& s : t.scans) curves.scans.push_back(std::move(s));
  curves.potentialColumn = t.potentialColumn;
  curves.currentColumn = t.currentColumn;
  return std::max(t.endLine, i + 3);
}

}  // namespace

std::optional<InstrumentReadResult> ReadGamry(const Lines& lines, const ColumnChoice& choice) {
  std::size_t i = 0;
  while (i < lines.size() && Trim(lines[i]).empty()) ++i;
  if (i == lines.size() || Trim(lines[i]) != "EXPLAIN") return std::nullopt;
  InstrumentReadResult r;
  r.status = InstrumentStatus::Read;
  InstrumentRecord& rec = r.record;
  rec.format = kGamryFormat;
  CurveTables curves;
  for (++i; i < lines.size();) {
    const std::vector<std::string> f = SplitFields(lines[i], '\t');
    if (f.size() >= 2 && f[1] == "TABLE" && IsCurveTag(f[0])) {
      i = ReadCurveTable(lines, i, f, choice, curves, rec);
      continue;
    }
    TakeSetting(f, rec);
    ++i;
  }
  if (curves.scans.empty())
    return Failure(kGamryFormat,
                   curves.error.empty() ? std::string("the file holds no CURVE table with data") : curves.error,
                   kGamryRemedy);
  rec.scans = std::move(curves.scans);
  rec.potentialColumn = curves.potentialColumn;
  rec.currentColumn = curves.currentColumn;
  return r;
}

}  // namespace voltrix
