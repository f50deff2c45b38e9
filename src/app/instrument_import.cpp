// An instrument file imported: read, one cycle chosen, laid on the grid of
// Estart and Estep, stored, its settings written on the forms, and what was
// read printed. Nothing reaches the store or the forms before every step
// has succeeded.
#include <cmath>
#include <fstream>

#include "app/import_file.h"
#include "files/import_grid.h"
#include "files/instrument_cycles.h"
#include "model/errors.h"
#include "model/number_format.h"
#include "ui/form_ins.h"
#include "ui/form_tech.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

constexpr const char* kErrorPrefix = "ReadData Error: ";

struct Imported {
  InstrumentRecord record;
  CycleSplit split;
  std::size_t cycle = 0;
  ImportGrid grid;
};

void Tell(Workbench& wb, const std::string& what) { wb.platform.messages.show(kErrorPrefix + what); }

std::vector<std::string> Descriptions(const std::vector<MeasuredCycle>& cycles) {
  std::vector<std::string> lines;
  for (const MeasuredCycle& c : cycles) lines.push_back(DescribeCycle(c));
  return lines;
}

// The cycle the user asked for, or the one the dialog gives back; no value
// when cancelled or out of range (the user has then been told).
std::optional<std::size_t> ChooseCycle(Workbench& wb, const Imported& in, const ImportRequest& request) {
  const std::vector<MeasuredCycle>& cycles = in.split.cycles;
  const std::size_t count = cycles.size();
  if (request.cycle) {
    if (*request.cycle >= 1 && static_cast<std::size_t>(*request.cycle) <= count)
      return static_cast<std::size_t>(*request.cycle) - 1;
    Tell(wb, in.record.format + ": the file holds " + std::to_string(count) + (count == 1 ? " cycle" : " cycles") +
                 "; there is no cycle " + std::to_string(*request.cycle));
    return std::nullopt;
  }
  const int suggested = static_cast<int>(FirstCompleteCycle(cycles));
  if (count == 1) return 0;
  const std::optional<int> answer = wb.platform.cycles.choose(Descriptions(cycles), suggested);
  if (!answer || *answer < 0 || static_cast<std::size_t>(*answer) >= count) return std::nullopt;
  return static_cast<std::size_t>(*answer);
}

// The file as its reader gives it back: no value when no reader knows it.
std::optional<InstrumentReadResult> ReadFile(const std::string& path, const ImportRequest& request) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  InstrumentReadResult read = ReadInstrumentFile(file, request.columns, path);
  if (read.status == InstrumentStatus::NotRecognised) return std::nullopt;
  return read;
}

// Cycles, the one chosen, and its grid; no value once the user has been
// told why not, or has cancelled.
std::optional<Imported> LayChosenCycle(Workbench& wb, InstrumentReadResult read, const ImportRequest& request) {
  if (read.status == InstrumentStatus::Failed) {
    Tell(wb, read.error);
    return std::nullopt;
  }
  Imported in;
  in.record = std::move(read.record);
  in.split = SplitCycles(in.record.scans);
  const auto cycle = ChooseCycle(wb, in, request);
  if (!cycle) return std::nullopt;
  in.cycle = *cycle;
  const GridResult laid = LayOnPotentialGrid(in.split.cycles[in.cycle], in.record.stated.step, kMaxPoints);
  if (!laid.ok) {
    Tell(wb, in.record.format + ": " + in.split.cycles[in.cycle].label + ": " + laid.error);
    return std::nullopt;
  }
  in.grid = laid.grid;
  return in;
}

void StoreCurve(Workbench& wb, const ImportGrid& g) {
  Experiment& e = wb.experiment;
  CurveStore& s = wb.store;
  const long row = static_cast<long>(e.NOverlay.value());
  const long n = static_cast<long>(g.X.size());
  s.YData.row(row);  // a wrong row fails before anything is stored
  CheckIndex(n, kMaxPoints + 1);
  for (long i = 1; i <= n; ++i) {
    s.XData(i) = g.X[static_cast<std::size_t>(i - 1)];
    s.YData(row, i) = g.Y[static_cast<std::size_t>(i - 1)];
  }
  e.NData = static_cast<double>(n);
  e.First = 1;
  e.Last = static_cast<double>(n);
}

class SettingsTaken {
 public:
  explicit SettingsTaken(Workbench& wb) : wb_(wb) {}
  void box(const char* name, double value, const std::string& shown, const std::string& unit) {
    wb_.formIns().control(name).setText(GeneralText(value));
    taken_.push_back(shown + " " + GeneralText(value) + (unit.empty() ? "" : " " + unit));
  }
  void scan(bool cycle) {
    wb_.formIns().control("ComboScan").setText(cycle ? "cycle" : "single");
    taken_.push_back(std::string("scan ") + (cycle ? "cycle" : "single"));
  }
  void technique(int t) {
    wb_.formTech().control("optTech", t).setValue(1);
    taken_.push_back("technique " + std::to_string(t));
  }
  const std::vector<std::string>& list() const { return taken_; }

 private:
  Workbench& wb_;
  std::vector<std::string> taken_;
};

// The pulse goes the way of the scan, as the form's defaults do; a square
// wave's E pulse spans the whole wave, twice the amplitude instruments state.
void TakePulse(SettingsTaken& taken, const StatedSettings& s, double scanSign) {
  if (s.technique == 5) {
    if (s.pulseHeight) taken.box("Epulse", scanSign * 2 * std::fabs(*s.pulseHeight), "E pulse", "V");
    if (s.frequency && *s.frequency > 0) taken.box("TextF", *s.frequency, "f", "Hz");
    return;
  }
  if (s.technique == 3 || s.technique == 4) {
    if (s.pulseHeight) taken.box("Epulse", scanSign * std::fabs(*s.pulseHeight), "E pulse", "V");
    if (s.pulseWidth && *s.pulseWidth > 0) taken.box("tp", *s.pulseWidth, "t pulse", "s");
  }
}

std::vector<std::string> TakeSettings(Workbench& wb, const Imported& in, std::vector<std::string>& notes) {
  const StatedSettings& s = in.record.stated;
  const ImportGrid& g = in.grid;
  SettingsTaken taken(wb);
  if (s.technique != 0) taken.technique(s.technique);
  taken.box("Estart", g.Estart, "E start", "V");
  taken.box("Eend", g.Eend, "E end", "V");
  taken.box("Estep", g.Estep, "E step", "V");
  taken.scan(g.cycle);
  if (s.scanRate && *s.scanRate > 0) taken.box("V", *s.scanRate, "v", "V/s");
  TakePulse(taken, s, g.Eend > g.Estart ? 1 : -1);
  if (s.temperature) taken.box("txttemp", *s.temperature, "T", "\xC2\xB0" "C");
  const int electrode = static_cast<int>(wb.experiment.Electrode.value());
  if (s.area && (electrode == 1 || electrode == 7)) taken.box("ARE", *s.area, "area", "cm\xC2\xB2");
  if (s.area && electrode != 1 && electrode != 7)
    notes.push_back("the file's area " + GeneralText(*s.area) + " cm\xC2\xB2 was not taken: this electrode's area follows its radius");
  return taken.list();
}

void PlanNote(const Imported& in, std::vector<std::string>& notes) {
  const StatedSettings& s = in.record.stated;
  if (!s.planned) return;
  std::size_t found = in.split.cycles.size();
  if (s.plannedSweeps) {
    found = 0;
    for (const MeasuredScan& scan : in.record.scans) found += SplitSweeps(scan.E).size();
  }
  if (static_cast<std::size_t>(*s.planned) == found) return;
  notes.push_back("the header's " + s.plannedName + " is " + std::to_string(*s.planned) + "; the data hold " +
                  std::to_string(found) + (s.plannedSweeps ? " sweeps" : " cycles"));
}

void Report(Workbench& wb, const Imported& in, const std::vector<std::string>& taken, std::vector<std::string> notes) {
  FormResult& result = wb.formResult();
  const ImportGrid& g = in.grid;
  result.print(PrintLine().text("File format = ").zone().text(in.record.format + ", " + in.record.encoding));
  result.print(PrintLine().text("Columns = ").zone().text(in.record.potentialColumn + ", " + in.record.currentColumn));
  result.print(PrintLine().text("Points read = ").zone().number(static_cast<double>(in.record.pointsRead)));
  result.print(PrintLine().text("Cycles = ").zone().number(static_cast<double>(in.split.cycles.size())));
  result.print(PrintLine().text("Cycle taken = ").zone().text(in.split.cycles[in.cycle].label));
  result.print(PrintLine().text("Number of data point = ").zone().number(static_cast<double>(g.X.size())));
  result.print(PrintLine().text("E step = ").zone().number(g.Estep));
  if (g.coarsened)
    result.print("E step made coarser than the data's " + GeneralText(g.fineStep) + " V: the cycle would pass " +
                 std::to_string(kMaxPoints) + " points");
  std::string settings = "Settings taken:";
  for (const std::string& t : taken) settings += (settings.back() == ':' ? " " : ", ") + t;
  result.print(settings);
  if (g.pointsLeftOut > 0)
    notes.push_back(std::to_string(g.pointsLeftOut) + " points of the cycle lie beyond the out-and-back and were left out");
  for (const std::string& n : in.split.notes) notes.push_back(n);
  for (const std::string& n : notes) result.print("Note: " + n);
}

}  // namespace

InstrumentImport ImportInstrumentFile(Workbench& wb, const std::string& path, const ImportRequest& request) {
  std::optional<InstrumentReadResult> read = ReadFile(path, request);
  if (!read) return InstrumentImport::NotInstrument;
  const std::optional<Imported> in = LayChosenCycle(wb, std::move(*read), request);
  if (!in) return InstrumentImport::Failed;
  try {
    StoreCurve(wb, in->grid);
    std::vector<std::string> notes = in->record.notes;
    PlanNote(*in, notes);
    const std::vector<std::string> taken = TakeSettings(wb, *in, notes);
    Report(wb, *in, taken, notes);
  } catch (const RunError& err) {
    Tell(wb, err.description());
    return InstrumentImport::Failed;
  }
  return InstrumentImport::Imported;
}

}  // namespace voltrix
