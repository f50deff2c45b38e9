#include "ui/form_mech.h"

#include "ui/form_ins.h"
#include "ui/form_tech.h"
#include "ui/main_form.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

// Thin film and rotating disk have a digital model only on the exact path.
void EnableFilmAndDisk(Workbench& wb, bool digital, bool accurate) {
  for (int i : {7, 8}) wb.formIns().control("optElectrode", i).enabled(!digital || accurate);
}

}  // namespace

FormMech::FormMech(Workbench& wb) : Form("FormMech", "Mechanism", {0, 0, 7215, 5400}), wb_(wb) {
  add(ControlKind::CheckBox, "CheckDigital").initialCaption("Digital simulation").initialValue(1).place(4680, 120, 1815, 255);
  // Below the mechanism list, clear of both frames and the OK button.
  add(ControlKind::CheckBox, "CheckAccurate")
      .initialCaption("Accurate physics")
      .toolTip("exact models of the published theory in place of the classic approximations")
      .place(120, 3120, 2535, 255);
  buildFixedFrame();
  buildTypedFrame();
  Control& ok = add(ControlKind::CommandButton, "Command1").initialCaption("OK").place(120, 3600, 3735, 1695);
  ok.onClick = [this] {
    OK();
    hide();
  };
  control("CheckDigital").onClick = [this] { switchMode(); };
  control("CheckAccurate").onClick = [this] {
    EnableFilmAndDisk(wb_, control("CheckDigital").checked(), control("CheckAccurate").checked());
  };
  // Form load: every electron number on its first item.
  for (int r = 1; r <= 3; ++r) control("NEL", r).setListIndex(0);
}

void FormMech::buildFixedFrame() {
  Control& frame =
      add(ControlKind::Frame, "Frame1").initialCaption("Analytical Simulation").place(0, 120, 3855, 2775).visible(false);
  struct Row {
    int top, width;
    const char *caption, *tip;
  };
  const Row rows[] = {
      {360, 2295, "1)  A + ne = B", "simple charge reaction"},
      {600, 2775, "2)  A + ne = B, B + ne = C", "2-step charge reaction"},
      {840, 3615, "3)  A + ne = B, B + ne = C, C + ne = D", "3-step charge reaction"},
      {1080, 3375, "4)  A + ne = B, C + ne = D", "multicompoment charge reaction"},
      {1560, 3135, "5)  C = A, A + ne = B", "preceding (CE) reaction"},
      {1800, 2175, "6)  A + ne = B, B = C", "following (EC) reaction"},
      {2040, 3135, "7)  A + ne = B, B = A", "catalytic (EC') reaction"},
      {2400, 3255, "8)  C = A + pD, A + ne = B", "complex reaction"},
  };
  for (int i = 1; i <= 8; ++i) {
    const Row& r = rows[i - 1];
    add(ControlKind::OptionButton, "mech", i, &frame)
        .initialCaption(r.caption)
        .toolTip(r.tip)
        .initialValue(i == 1)
        .place(120, r.top, r.width, 255);
  }
}

void FormMech::buildTypedFrame() {
  Control& frame = add(ControlKind::Frame, "Frame2").place(4080, 120, 3015, 5175);
  auto box = [&](const char* name, int index, int left, int top) -> Control& {
    return add(ControlKind::TextBox, name, index, &frame).place(left, top, 495, 285);
  };
  auto label = [&](const char* name, int index, const char* caption, int left, int top, int width) -> Control& {
    return add(ControlKind::Label, name, index, &frame).initialCaption(caption).place(left, top, width, 255);
  };
  label("Label1", -1, "Charge reaction", 240, 360, 1815);
  const int chargeTops[] = {720, 1080, 1440};
  const char* plusNames[] = {"Label5", "Label6", "Label6"};
  const int plusIndex[] = {-1, 0, 1};
  const int eqIndex[] = {0, 1, 11};
  for (int r = 1; r <= 3; ++r) {
    const int top = chargeTops[r - 1];
    box("charge", 2 * r - 1, 120, top).initialText(r == 1 ? "A" : "");
    label(plusNames[r - 1], plusIndex[r - 1], "+", 720, top, 255);
    add(ControlKind::ComboBox, "NEL", r, &frame)
        .items({"1", "2", "3"})
        .editable(true)
        .toolTip(r == 1 ? "electron number" : "")
        .place(960, top, 510, 315);
    label("Label3", eqIndex[r - 1], " e =", 1440, top, 495);
    box("charge", 2 * r, 1920, top).initialText(r == 1 ? "B" : "");
  }
  label("Label2", -1, "Chemical reaction", 120, 2160, 1815);
  const int chemEq[] = {8, 9, 10, 12};
  for (int r = 1; r <= 4; ++r) {
    const int top = 2520 + 360 * (r - 1);
    box("chem", 2 * r - 1, 120, top);
    label("Label3", chemEq[r - 1], "=", 600, top, 615).align(Align::Center);
    box("chem", 2 * r, 1200, top);
  }
  for (int r = 1; r <= 3; ++r) {
    const int top = 4080 + 360 * (r - 1);
    box("chem2", 4 * r - 3, 120, top);
    label("Label3", 2 * r, " +", 600, top, 255);
    box("chem2", 4 * r - 2, 840, top);
    label("Label4", r - 1, "=", 1440, top, 255);
    box("chem2", 4 * r - 1, 1680, top);
    label("Label3", 2 * r + 1, " +", 2160, top, 255);
    box("chem2", 4 * r, 2400, top);
  }
}

MechanismInput FormMech::mechanismInput() const {
  MechanismInput in;
  in.typed = control("CheckDigital").checked();
  for (int i = 1; i <= 8; ++i)
    if (control("mech", i).checked()) {
      in.fixedMechanism = i;
      break;
    }
  for (int i = 1; i <= 6; ++i) in.charge[i] = control("charge", i).text();
  for (int i = 1; i <= 8; ++i) in.chem[i] = control("chem", i).text();
  for (int i = 1; i <= 12; ++i) in.chem2[i] = control("chem2", i).text();
  for (int r = 1; r <= 3; ++r) in.nel[r] = control("NEL", r).text();
  return in;
}

void FormMech::OK() {
  wb_.experiment.Accurate = control("CheckAccurate").checked();
  wb_.formTech().OK();
  CompileMechanism(wb_);
}

// The frames, the menu item and the two electrodes are turned over at each
// click; only Digital follows the box itself.
void FormMech::switchMode() {
  Control& theo = wb_.mainForm().control("mnuTheoPeak");
  theo.enabled(!theo.enabled());
  Control& typed = control("Frame2");
  typed.visible(!typed.visible());
  Control& fixed = control("Frame1");
  fixed.visible(!fixed.visible());
  const bool digital = control("CheckDigital").checked();
  wb_.experiment.Digital = digital;
  FormIns& ins = wb_.formIns();
  ins.control("txtRu").enabled(digital);
  EnableFilmAndDisk(wb_, digital, control("CheckAccurate").checked());
  typed.visible(digital);
}

void CompileMechanism(Workbench& wb) {
  wb.experiment.NChem = 0;
  wb.experiment.NChem2 = 0;
  wb.formTech().OK();
  for (const std::string& message : CompileMechanism(wb.formMech().mechanismInput(), wb.experiment))
    wb.platform.messages.show(message);
}

}  // namespace voltrix
