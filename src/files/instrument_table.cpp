#include "files/instrument_table.h"

#include <cmath>
#include <cstdio>
#include <functional>
#include <map>

#include "files/instrument_text.h"

namespace voltrix {

namespace {

struct Titles {
  std::vector<std::string> titles, quantities, units;
};

std::string WithoutLeadingDelimiter(const std::string& line, const TableLayout& layout) {
  if (layout.leadingField && !line.empty() && line[0] == layout.delimiter) return line.substr(1);
  return line;
}

std::vector<std::string> FieldsOf(const Lines& lines, std::size_t i, const TableLayout& layout) {
  return SplitFields(WithoutLeadingDelimiter(lines[i], layout), layout.delimiter);
}

Titles TitlesOf(const Lines& lines, const TableLayout& layout) {
  Titles t;
  if (!layout.titleLine) return t;
  t.titles = FieldsOf(lines, *layout.titleLine, layout);
  std::vector<std::string> unitRow;
  if (layout.unitsLine) unitRow = FieldsOf(lines, *layout.unitsLine, layout);
  for (std::size_t k = 0; k < t.titles.size(); ++k) {
    if (layout.unitsLine) {
      t.quantities.push_back(t.titles[k]);
      t.units.push_back(k < unitRow.size() ? unitRow[k] : std::string());
    } else {
      const ColumnTitle c = SplitColumnTitle(t.titles[k]);
      t.quantities.push_back(c.quantity);
      t.units.push_back(c.unit);
    }
  }
  return t;
}

struct Column {
  int index = -1;
  double scale = 1;
  std::string title;
  bool unitAssumed = false;
};

using Rank = std::function<std::optional<int>(std::string_view)>;
using Unit = std::function<std::optional<double>(std::string_view)>;

std::optional<std::size_t> RequestedIndex(const Titles& t, const std::string& requested) {
  if (requested.find_first_not_of("0123456789") == std::string::npos && requested.size() <= 4) {
    const std::size_t k = std::stoul(requested);
    if (k >= 1) return k - 1;
    return std::nullopt;
  }
  for (std::size_t k = 0; k < t.titles.size(); ++k)
    if (Lower(t.titles[k]) == Lower(requested) || Lower(t.quantities[k]) == Lower(requested)) return k;
  return std::nullopt;
}

std::optional<Column> RequestedColumn(const Titles& t, const std::string& requested, const Unit& unit, const char* what,
                                      std::string& error) {
  const auto k = RequestedIndex(t, requested);
  if (!k || (!t.titles.empty() && *k >= t.titles.size())) {
    error = "there is no column \"" + requested + "\"";
    return std::nullopt;
  }
  Column c;
  c.index = static_cast<int>(*k);
  c.title = *k < t.titles.size() ? t.titles[*k] : "column " + requested;
  const std::string u = *k < t.units.size() ? t.units[*k] : std::string();
  if (u.empty()) {
    c.unitAssumed = true;
  } else if (const auto s = unit(u)) {
    c.scale = *s;
  } else {
    error = "column \"" + c.title + "\" is in " + u + ", not a unit of " + what;
    return std::nullopt;
  }
  return c;
}

std::optional<Column> BestColumn(const Titles& t, const Rank& rank, const Unit& unit) {
  std::optional<Column> best;
  int bestRank = 0;
  for (std::size_t k = 0; k < t.titles.size(); ++k) {
    const auto r = rank(t.quantities[k]);
    if (!r) continue;
    const bool unitless = t.units[k].empty();
    const auto s = unitless ? std::optional<double>(1.0) : unit(t.units[k]);
    if (!s) continue;
    if (best && *r >= bestRank) continue;
    best = Column{static_cast<int>(k), *s, t.titles[k], unitless};
    bestRank = *r;
  }
  return best;
}

std::optional<Column> ChooseColumn(const Titles& t, const std::string& requested, const Rank& rank, const Unit& unit,
                                   const char* what, std::string& error) {
  if (!requested.empty()) return RequestedColumn(t, requested, unit, what, error);
  if (auto c = BestColumn(t, rank, unit)) return c;
  error = std::string("no column names the ") + what;
  return std::nullopt;
}

int FindTitled(const Titles& t, std::initializer_list<std::string_view> names) {
  for (std::size_t k = 0; k < t.titles.size(); ++k)
    for (std::string_view n : names)
      if (Lower(t.titles[k]) == n || Lower(t.quantities[k]) == n) return static_cast<int>(k);
  return -1;
}

std::string NumberLabel(double v) {
  char buf[48];
  std::snprintf(buf, sizeof buf, "%.6g", v);
  return buf;
}

// Points go to the scan of their cycle label, in the order labels first appear.
class ScanSorter {
 public:
  explicit ScanSorter(std::string prefix) : prefix_(std::move(prefix)) {}
  MeasuredScan& scanFor(std::optional<double> label) {
    const double key = label ? *label : last_;
    last_ = key;
    auto [it, added] = index_.try_emplace(key, scans.size());
    if (added) scans.push_back(MeasuredScan{prefix_ + NumberLabel(key), {}, {}});
    return scans[it->second];
  }
  std::vector<MeasuredScan> scans;

 private:
  std::string prefix_;
  std::map<double, std::size_t> index_;
  double last_ = 1;
};

bool FieldIsNumber(const std::vector<std::string>& f, int k, bool decimalComma, double& v) {
  if (k < 0 || static_cast<std::size_t>(k) >= f.size()) return false;
  const auto n = ParseNumber(f[static_cast<std::size_t>(k)], decimalComma);
  if (!n) return false;
  v = *n;
  return true;
}

void AssumedUnitNotes(const Column& p, const Column& c, std::vector<std::string>& notes) {
  if (p.unitAssumed) notes.push_back("no unit given for \"" + p.title + "\": V assumed");
  if (c.unitAssumed) notes.push_back("no unit given for \"" + c.title + "\": A assumed");
}

}  // namespace

TableRead ReadTable(const Lines& lines, const TableLayout& layout, const ColumnChoice& choice) {
  TableRead out;
  const Titles t = TitlesOf(lines, layout);
  const auto p = ChooseColumn(t, choice.potential, PotentialRank, PotentialUnit, "potential (V or mV)", out.error);
  if (!p) return out;
  const auto c = ChooseColumn(t, choice.current, CurrentRank, CurrentUnit, "current (A, mA, \xC2\xB5" "A or nA)", out.error);
  if (!c) return out;
  out.potentialColumn = p->title;
  out.currentColumn = c->title;
  AssumedUnitNotes(*p, *c, out.notes);
  const int cycle = FindTitled(t, {"cycle number", "cycle", "cycle no", "cycle no.", "scan", "scan number"});
  const int flag = FindTitled(t, {"error"});
  ScanSorter sorter(cycle >= 0 && Lower(t.quantities[static_cast<std::size_t>(cycle)]).rfind("scan", 0) == 0 ? "scan "
                                                                                                              : "cycle ");
  std::size_t i = layout.firstDataLine;
  for (; i < lines.size(); ++i) {
    if (Trim(lines[i]).empty()) continue;
    const std::vector<std::string> f = FieldsOf(lines, i, layout);
    double E = 0, I = 0, label = 0, error = 0;
    if (!FieldIsNumber(f, p->index, layout.decimalComma, E) || !FieldIsNumber(f, c->index, layout.decimalComma, I)) break;
    E *= p->scale;
    I *= c->scale;
    if (!std::isfinite(E) || !std::isfinite(I)) break;
    if (FieldIsNumber(f, flag, layout.decimalComma, error) && error != 0) {
      ++out.flagged;
      continue;
    }
    const bool labelled = FieldIsNumber(f, cycle, layout.decimalComma, label);
    MeasuredScan& s = sorter.scanFor(labelled ? std::optional<double>(label) : std::nullopt);
    s.E.push_back(E);
    s.I.push_back(I);
    ++out.rows;
  }
  out.endLine = i;
  out.scans = std::move(sorter.scans);
  if (out.flagged == 1) out.notes.push_back("1 point flagged as an error was left out");
  if (out.flagged > 1) out.notes.push_back(std::to_string(out.flagged) + " points flagged as errors were left out");
  return out;
}

InstrumentReadResult ReadTableUnder(const Lines& lines, std::size_t title, const ColumnChoice& choice,
                                    const std::string& format, const char* remedy) {
  TableLayout layout;
  layout.titleLine = title;
  layout.firstDataLine = title + 1;
  layout.delimiter = GuessDelimiter(lines[title]);
  layout.decimalComma = layout.delimiter != ',';
  TableRead t = ReadTable(lines, layout, choice);
  if (!t.error.empty()) return Failure(format, t.error, remedy);
  return RecordOf(format, t);
}

InstrumentReadResult RecordOf(const std::string& format, TableRead& table) {
  InstrumentReadResult r;
  r.status = InstrumentStatus::Read;
  r.record.format = format;
  r.record.scans = std::move(table.scans);
  r.record.potentialColumn = table.potentialColumn;
  r.record.currentColumn = table.currentColumn;
  r.record.notes = std::move(table.notes);
  return r;
}

bool TitlesNamePotentialAndCurrent(const std::vector<std::string>& titles) {
  Titles t;
  t.titles = titles;
  for (const std::string& title : titles) {
    const ColumnTitle c = SplitColumnTitle(title);
    t.quantities.push_back(c.quantity);
    t.units.push_back(c.unit);
  }
  return BestColumn(t, PotentialRank, PotentialUnit) && BestColumn(t, CurrentRank, CurrentUnit);
}

namespace {

std::vector<std::string> Words(const std::string& text) {
  std::vector<std::string> words;
  std::string w;
  for (char c : Lower(text) + " ") {
    if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
      w.push_back(c);
    } else if (!w.empty()) {
      words.push_back(w);
      w.clear();
    }
  }
  return words;
}

}  // namespace

int TechniqueNamed(const std::string& text) {
  const std::string t = Lower(text);
  if (Contains(t, "differential pulse")) return 4;
  if (Contains(t, "square wave")) return 5;
  if (Contains(t, "normal pulse")) return 3;
  if (Contains(t, "cyclic voltammetry") || Contains(t, "linear sweep")) return 1;
  for (const std::string& w : Words(t)) {
    if (w == "dpv") return 4;
    if (w == "swv") return 5;
    if (w == "npv") return 3;
    if (w == "cv" || w == "lsv") return 1;
  }
  return 0;
}

namespace {

// cm² for an area written in cm², mm² or m².
double AreaScale(const std::string& rest) {
  const std::string r = Lower(rest);
  if (Contains(r, "mm")) return 1e-2;
  if (Contains(r, "cm") || r.find('m') == std::string::npos) return 1;
  return 1e4;
}

}  // namespace

void TakeCommonSettings(const std::string& line, bool decimalComma, StatedSettings& stated) {
  const std::size_t at = line.find_first_of("=:");
  if (at == std::string::npos) return;
  const std::string key = Lower(Trim(std::string_view(line).substr(0, at)));
  const std::string value = Trim(std::string_view(line).substr(at + 1));
  const auto number = LeadingNumber(value, decimalComma);
  if (!number) return;
  const std::string rest = value.substr(value.find_first_of(" \t") == std::string::npos ? value.size()
                                                                                          : value.find_first_of(" \t"));
  if (Contains(key, "area")) {
    const double a = *number * AreaScale(rest.empty() ? key : rest);
    if (a > 0 && std::isfinite(a)) stated.area = a;
  } else if (StartsWith(key, "temperature") || key == "temp" || StartsWith(key, "temp.") || StartsWith(key, "temp (")) {
    const bool kelvin = Contains(key, "(k)") || Trim(rest) == "K";
    stated.temperature = kelvin ? *number - 273.14 : *number;
  }
}

InstrumentReadResult Failure(const std::string& format, const std::string& what, const std::string& remedy) {
  InstrumentReadResult r;
  r.status = InstrumentStatus::Failed;
  r.record.format = format;
  r.error = format + ": " + what + ". " + remedy;
  return r;
}

long PointsIn(const std::vector<MeasuredScan>& scans) {
  long n = 0;
  for (const MeasuredScan& s : scans) n += static_cast<long>(s.E.size());
  return n;
}

}  // namespace voltrix
