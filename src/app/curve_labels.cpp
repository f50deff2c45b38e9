#include "app/curve_labels.h"

#include <filesystem>
#include <functional>

#include "app/commands.h"
#include "model/number_format.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_plot.h"
#include "ui/main_form.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

// "3)  Normal pulse voltammetry" without its number; "(Micro)" dropped.
std::string CaptionWithoutNumber(const std::string& caption) {
  std::string text = caption.substr(caption.find(')') + 1);
  text.erase(0, text.find_first_not_of(' '));
  if (text.rfind("(Micro)", 0) == 0) text.erase(0, 7);
  return text;
}

std::string Trimmed(const std::string& s) {
  const auto begin = s.find_first_not_of(" \t");
  if (begin == std::string::npos) return {};
  return s.substr(begin, s.find_last_not_of(" \t") - begin + 1);
}

std::string TechniqueName(const Experiment& e) {
  switch (static_cast<int>(e.Technique)) {
    case 1: return e.Cycles == 0.5 ? "LSV" : "CV";
    case 2: return "DC";
    case 3: return "NPV";
    case 4: return "DPV";
    case 5: return "SWV";
    default: return "Run";
  }
}

std::string RateText(Workbench& wb) {
  const Experiment& e = wb.experiment;
  if (e.Technique == 5) return Trimmed(wb.formIns().control("TextF").text()) + " Hz";
  return GeneralText(e.V) + " V/s";
}

std::string MechanismText(Workbench& wb) {
  const Experiment& e = wb.experiment;
  const int fixed = static_cast<int>(e.Mechanism);
  if (fixed >= 1 && fixed <= 8) return CaptionWithoutNumber(wb.formMech().control("mech", fixed).caption());
  std::string text;
  for (int r = 1; r <= Count(e.NCharge); ++r) text += (text.empty() ? "" : ", ") + e.ChargeText(r);
  for (int q = 1; q <= Count(e.NChem) + Count(e.NChem2) && q <= kMaxChem; ++q) text += ", " + e.ChemText(q);
  return text;
}

void Label(Workbench& wb, double row, const std::string& text) {
  const int r = static_cast<int>(row);
  if (r >= 1 && r <= kMaxCurves) wb.formPlot().view().rowLabels[static_cast<std::size_t>(r)] = text;
}

void After(Workbench& wb, const char* menuName, const std::function<void()>& after) {
  Control& item = wb.mainForm().menu(menuName);
  std::function<void()> inner = item.onClick;
  item.onClick = [inner, after] {
    if (inner) inner();
    after();
  };
}

// Row 1 stays the data; row 2 is the fitted sum, rows 3 on its reactions.
void LabelSeparation(Workbench& wb, const std::string& fit) {
  const Experiment& e = wb.experiment;
  Label(wb, 2, fit);
  for (int r = 1; r <= Count(e.NCharge); ++r) {
    const std::string typed = e.Mechanism == 0 ? ": " + e.ChargeText(r) : std::string();
    Label(wb, 2 + r, "reaction " + std::to_string(r) + typed);
  }
}

}  // namespace

std::string RunLabel(Workbench& wb) {
  const Experiment& e = wb.experiment;
  std::string label = TechniqueName(e) + ", " + RateText(wb);
  const std::string mechanism = MechanismText(wb);
  if (!mechanism.empty()) label += ", " + mechanism;
  const int electrode = static_cast<int>(e.Electrode);
  if (electrode >= 2 && electrode <= 8)
    label += ", " + CaptionWithoutNumber(wb.formIns().control("optElectrode", electrode).caption());
  if (e.Accurate) label += ", accurate";
  return label;
}

void LabelImportedRow(Workbench& wb, const std::string& path) {
  Label(wb, wb.experiment.NOverlay, std::filesystem::path(path).filename().string());
}

void BindCurveLabels(Workbench& wb) {
  After(wb, "mnuSimulate", [&wb] { Label(wb, wb.experiment.CurNo, RunLabel(wb)); });
  Control& import = wb.mainForm().menu("mnuImport");
  std::function<void()> read = import.onClick;
  import.onClick = [&wb, read] {
    wb.platform.files.forgetLastAnswer();
    if (read) read();
    if (const auto& file = wb.platform.files.lastAnswer()) LabelImportedRow(wb, *file);
  };
  // A fit's curve stands in row 2, beside its target in row 1.
  After(wb, "mnuManualFit", [&wb] { Label(wb, 2, RunLabel(wb)); });
  After(wb, "mnuAutoFit", [&wb] { Label(wb, 2, "fit, " + RunLabel(wb)); });
  After(wb, "mnuManualSeparate", [&wb] { LabelSeparation(wb, RunLabel(wb)); });
  After(wb, "mnuAutoSeparate", [&wb] { LabelSeparation(wb, "fit, " + RunLabel(wb)); });
}

}  // namespace voltrix
