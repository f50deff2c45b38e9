#include <cmath>
#include <fstream>

#include "app/commands.h"
#include "app/import_file.h"
#include "files/curve_file.h"
#include "files/parameter_file.h"
#include "files/safe_write.h"
#include "model/checked.h"
#include "model/number_format.h"
#include "ui/commit.h"
#include "ui/form_ins.h"
#include "ui/main_form.h"
#include "ui/plot_engine.h"
#include "ui/text_window.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

constexpr const char* kCurveFilter = "csv|*.csv|all|*.*";

// Any fault ends the command without a message; the old file, if any, stays
// whole. Only a front end that listens is told.
void SaveCommand(Workbench& wb) {
  const auto path = wb.platform.files.ask(DialogMode::Save, kParameterFilter);
  if (!path) return;
  const Experiment& e = wb.experiment;
  const WriteOutcome w = WriteFileSafely(*path, [&e](std::ostream& out) { return WriteParameterFile(out, e); });
  if (!w) ReportWriteFailure(wb.platform, *path, w.reason);
}

void ExportCommand(Workbench& wb) {
  const auto path = wb.platform.files.ask(DialogMode::Save, kCurveFilter);
  if (!path) return;
  const Experiment& e = wb.experiment;
  const CurveStore& s = wb.store;
  const WriteOutcome w = WriteFileSafely(*path, [&](std::ostream& out) {
    return WriteCurve(out, s, static_cast<long>(e.First), static_cast<long>(e.Last), static_cast<long>(e.CurNo));
  });
  if (!w) ReportWriteFailure(wb.platform, *path, w.reason);
}

// Reads a file of our own two-column layout into row NOverlay. Returns true
// when it was read to its end; on a fault the user is told, and NData, First
// and Last keep their values (the points read stay in the store).
bool ReadClassicCurve(Workbench& wb, const std::string& path) {
  Experiment& e = wb.experiment;
  CurveStore& s = wb.store;
  try {
    std::ifstream in(path, std::ios::binary);
    if (!in) Raise(ErrorKind::FileNotFound);
    const CurveReadResult read = ReadCurve(in, s, static_cast<long>(e.NOverlay));
    if (!read.ok) Raise(ErrorKind::FileAccess, read.description);
    // The file's own step, from its first two points, checked before the
    // model changes so that a fault leaves it as it was.
    const double step = std::fabs(Checked(s.XData(2) - s.XData(1)));
    const std::string estart = GeneralText(s.XData(1)), estep = GeneralText(step);
    e.NData = static_cast<double>(read.points);
    e.First = 1;
    e.Last = e.NData.value();
    TextWindow& result = wb.formResult();
    result.print(PrintLine().text("Number of data point = ").zone().number(e.NData));
    result.print(PrintLine().text("E step = ").zone().number(step));
    wb.formIns().control("Estart").setText(estart);
    wb.formIns().control("Estep").setText(estep);  // its change event rewrites td
  } catch (const RunError& err) {
    wb.platform.messages.show("ReadData Error: " + err.description());
    return false;
  }
  return true;
}

// Reads the chosen file into row NOverlay.
bool ImportCurve(Workbench& wb) {
  StartCurve(wb);
  const auto path = wb.platform.files.ask(DialogMode::Open, kCurveFilter);
  if (!path) return false;
  return ImportCurveFile(wb, *path, {});
}

void ImportCommand(Workbench& wb) {
  if (ImportCurve(wb)) ShowImportedCurve(wb);
}

}  // namespace

bool ImportCurveFile(Workbench& wb, const std::string& path, const ImportRequest& request) {
  switch (ImportInstrumentFile(wb, path, request)) {
    case InstrumentImport::Imported: return true;
    case InstrumentImport::Failed: return false;
    case InstrumentImport::NotInstrument: break;
  }
  // Our own files name no columns and hold one curve.
  const bool choosing = request.columns.any() || request.cycle.value_or(1) != 1;
  if (choosing && std::ifstream(path)) {
    wb.platform.messages.show("ReadData Error: the file has no title row naming its columns and no cycles to choose");
    return false;
  }
  return ReadClassicCurve(wb, path);
}

void ShowImportedCurve(Workbench& wb) {
  PlotCurves(wb);
  wb.formResult().show();
  wb.mainForm().menu("mnuDisplay").enabled(true);
  wb.mainForm().menu("mnuData").enabled(true);
}

void BindFileCommands(Workbench& wb) {
  MainForm& menu = wb.mainForm();
  menu.menu("mnuSave").onClick = [&wb] { SaveCommand(wb); };
  menu.menu("mnuImport").onClick = [&wb] { ImportCommand(wb); };
  menu.menu("mnuExport").onClick = [&wb] { ExportCommand(wb); };
}

}  // namespace voltrix
