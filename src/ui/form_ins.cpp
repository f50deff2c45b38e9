#include "ui/form_ins.h"

#include <cmath>

#include "model/checked.h"
#include "model/number_format.h"
#include "ui/commit.h"
#include "ui/form_mech.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {
constexpr double kPi = 3.141592654;

// A derived text is computed from the texts as typed; a box that holds no
// number makes the computation fail, and the derived text stays as it was.
double TypedNumber(const Control& box) {
  if (!IsNumeric(box.text())) Raise(ErrorKind::TypeMismatch);
  return Val(box.text());
}
}  // namespace

// One labelled box per row: the label left of its box on the same line.
struct FormIns::BoxRow {
  const char *box, *label, *caption, *tip, *text;
  bool shown = true;
};

void FormIns::addBoxRows(Control& frame, const std::vector<BoxRow>& rows, const Columns& c) {
  int top = c.top;
  for (const BoxRow& r : rows) {
    add(ControlKind::Label, r.label, -1, &frame)
        .initialCaption(r.caption)
        .place(c.labelLeft, top + 30, c.labelWidth, 255)
        .visible(r.shown);
    add(ControlKind::TextBox, r.box, -1, &frame)
        .initialText(r.text)
        .toolTip(r.tip)
        .place(c.boxLeft, top, c.boxWidth, 285)
        .visible(r.shown);
    top += c.pitch;
  }
}

FormIns::FormIns(Workbench& wb) : Form("FormIns", "Instrument", {60, 345, 7305, 5205}), wb_(wb) {
  buildInstrumentFrame();
  buildElectrodeFrame();
  buildPreconcentrationFrame();
  Control& ok = add(ControlKind::CommandButton, "cmdOK")
                    .initialCaption("OK")
                    .place(4560, 3000, 2655, 2175)
                    .font({"MS Sans Serif", 13.5, true});
  ok.onClick = [this] {
    OK();
    hide();
  };
  control("Estep").onChange = [this] { updateDropTime(); };
  control("V").onChange = [this] { updateDropTime(); };
  control("TextF").onChange = [this] { updatePulseTime(); };
  control("radius").onChange = [this] { radius_Change(); };
  control("leng").onChange = [this] { radius_Change(); };
  control("CheckPreCon").onClick = [this] {
    Control& frame = control("FramePre");
    frame.visible(!frame.visible());
    CommitInputs(wb_);
  };
  for (int i = 1; i <= 8; ++i)
    control("optElectrode", i).onClick = [this, i] {
      wb_.experiment.Electrode = i;
      electrodeLayout();
      radius_Change();
    };
  // Form load.
  control("ComboScan").setListIndex(0);
}

void FormIns::buildInstrumentFrame() {
  Control& frame = add(ControlKind::Frame, "Frame3").initialCaption("Instrumental Parameters").place(0, 0, 4215, 2775);
  addBoxRows(frame,
             {{"Estart", "Label2", "E start (V)", "starting potential", "0.3"},
              {"Eend", "Label3", "E end  (V)", "ending potential", "-0.3"},
              {"Estep", "Label4", "E step (V)", "potential step", "0.005"},
              {"V", "Label5", "v (V/s)", "scan rate", "0.01"},
              {"td", "Label7", "t drop  (s)", "drop time", "0.5"},
              {"txttemp", "temp", "T ( \xC2\xB0" "C)", "temperature", "25"}},
             {240, 360, 120, 1095, 1260, 855});
  const int top = 240 + 6 * 360;
  control("td").enabled(false);
  control("temp").font({"Times New Roman", 9, false});
  add(ControlKind::Label, "Label38", -1, &frame).initialCaption("Scan").place(120, top + 30, 1095, 255);
  add(ControlKind::ComboBox, "ComboScan", -1, &frame).items({"single", "cycle", "2 cycles"}).place(1260, top, 1095, 315);

  addBoxRows(frame,
             {{"TextF", "LabelF", "f (Hz)", "frequence", "10"},
              {"tp", "LabelTp", "t pulse (s)", "pulse time width", "0.05"},
              {"Epulse", "Label9", "E pulse (V)", "pulse potential", "-0.05"},
              {"Noise", "Label11", "Noise (%)", "ratio of noise to maxinum signal", "0"},
              {"Cdl", "Label12", "C d (F)", "double layer capacitor", "0"},
              {"txtRu", "Label6", "R u", "resistance", "0"}},
             {240, 360, 2250, 975, 3240, 855});
  add(ControlKind::Label, "Label14", -1, &frame).initialCaption("(\xCE\xA9)").place(2700, 240 + 5 * 360 + 30, 495, 255);
  // Technique 1 at start: no frequency, pulse time or pulse height.
  control("TextF").visible(false);
  control("tp").visible(false);
  control("Epulse").visible(false);
}

void FormIns::buildElectrodeFrame() {
  Control& frame = add(ControlKind::Frame, "Frame7").initialCaption("Electrode").place(0, 2880, 4455, 2295);
  const char* captions[] = {"1)  Planar",
                            "2)  (Micro)Spherical",
                            "3)  (Micro)Hemispherical",
                            "4)  Microdisc",
                            "5)  (Micro)Cylindrical",
                            "6)  (Micro)Hemicylindrical",
                            "7)  Thin film",
                            "8)  Rotating disk"};
  for (int i = 1; i <= 8; ++i)
    add(ControlKind::OptionButton, "optElectrode", i, &frame)
        .initialCaption(captions[i - 1])
        .initialValue(i == 1)
        .enabled(i < 7)
        .place(120, 240 + 240 * (i - 1), 2175, 255);
  addBoxRows(frame,
             {{"ARE", "Label8", "Area (cm \xC2\xB2)", "electrode area", "1", true},
              {"radius", "LabelRadius", "Radius (cm)", "electrode radius", "0.2821", false},
              {"TextDis", "LabelDis", "Dis (cm)", "Distance", "1", true},
              {"leng", "LabelLength", "Length (cm)", "electrode length or film thickness", "0.01", false},
              {"TextRrate", "LabelRrate", "Rotation (rpm):", "electrode rotation rate", "100", false}},
             {240, 400, 2400, 1095, 3480, 855});
}

void FormIns::buildPreconcentrationFrame() {
  add(ControlKind::CheckBox, "CheckPreCon").initialCaption("Preconcentration").place(4800, 120, 1815, 255);
  Control& frame = add(ControlKind::Frame, "FramePre").place(4320, 360, 2895, 1935).visible(false);
  addBoxRows(frame,
             {{"txtEPre", "LabelEpre", "E pre (V)", "preconcentration potential", "-0.3"},
              {"txtRStir", "LabelEPreconConst", "R stir  (rpm)", "stirring rate", "100"},
              {"txtTPre", "Labeltpre", "t pre (s)", "preconcentration time", "600"},
              {"txtTpreconst", "Label35", "t pre const (/s)", "preconcentration time constant", "1e-3"},
              {"txtPconst", "LabelVsol", "P const", "electrode constant", "10"}},
             {240, 330, 120, 1575, 1800, 975});
}

void FormIns::OK() {
  wb_.formMech().OK();
  Experiment& e = wb_.experiment;
  auto val = [this](const char* name) { return Val(control(name).text()); };
  e.Estart = val("Estart");
  e.Eend = val("Eend");
  // Step and scan rate must hold numbers: anything else is a run-time error
  // of the commit, which the command that called it reports.
  e.Estep = std::fabs(TypedNumber(control("Estep")));
  e.ARE = val("ARE");
  e.Cdl = val("Cdl");
  e.Ru = val("txtRu");
  e.TempK = val("txttemp") + 273.14;
  e.Epulse = val("Epulse");
  e.Noise = val("Noise");
  e.td = val("td");
  e.tp = val("tp");
  e.V = std::fabs(TypedNumber(control("V")));
  e.leng = val("leng");
  e.radius = val("radius");
  e.omega = val("TextRrate") * 3.141592654 / 30;
  switch (control("ComboScan").listIndex()) {
    case 0: e.Cycles = 0.5; break;
    case 1: e.Cycles = 1; break;
    case 2: e.Cycles = 2; break;
    default: break;
  }
  radius_Change();
}

// Each statement stands alone: an empty box leaves what it would have written.
void FormIns::radius_Change() {
  Experiment& e = wb_.experiment;
  Control& area = control("ARE");
  const double r = Val(control("radius").text());
  const double L = Val(control("leng").text());
  auto setArea = [&](double a) { Tolerant([&] { area.setText(FormatNumber(a, "0.##e-0")); }); };
  auto setVsol = [&](auto compute) { Tolerant([&] { e.Vsol = Checked(compute()); }); };
  const double R = e.radius, len = e.leng;
  switch (static_cast<int>(e.Electrode)) {
    case 2:
      setArea(r * r * 4 * kPi);
      setVsol([&] { return 4 * kPi * R * R * R / 3; });
      break;
    case 3:
      setArea(r * r * 2 * kPi);
      setVsol([&] { return 2 * kPi * R * R * R / 3; });
      break;
    case 4:
      setArea(r * r * kPi);
      setVsol([&] { return Val(area.text()) * len; });
      break;
    case 5:
      setArea(L * r * 2 * kPi + r * r * kPi);
      setVsol([&] { return kPi * R * R * len; });
      break;
    case 6:
      setArea(L * r * kPi + r * r * 0.5 * kPi);
      setVsol([&] { return 0.5 * kPi * R * R * len; });
      break;
    case 8:
      setArea(r * r * kPi);
      setVsol([&] { return Val(area.text()) * len; });
      break;
    default:  // 1 planar, 7 thin film: the typed area stands
      setVsol([&] { return Val(area.text()) * len; });
      break;
  }
  Tolerant([&] { e.ARE = Val(area.text()); });
}

void FormIns::onActivate() {
  const int technique = static_cast<int>(wb_.experiment.Technique);
  auto layout = [this](bool v, bool f, bool tp, bool tpEnabled, bool pulse) {
    control("V").visible(v);
    control("TextF").visible(f);
    control("tp").visible(tp).enabled(tpEnabled);
    control("Epulse").visible(pulse);
  };
  if (technique == 1 || technique == 2) layout(true, false, false, true, false);
  if (technique == 3 || technique == 4) layout(true, false, true, true, true);
  if (technique == 5) layout(false, true, true, false, true);
}

void FormIns::electrodeLayout() {
  const int electrode = static_cast<int>(wb_.experiment.Electrode);
  const bool length = electrode == 5 || electrode == 6 || electrode == 7;
  const bool radius = electrode != 1 && electrode != 7;
  const bool areaTyped = electrode == 1 || electrode == 7;
  const bool rotation = electrode == 8;
  control("leng").visible(length);
  control("LabelLength").visible(length);
  if (electrode == 5 || electrode == 6) control("LabelLength").setCaption("Length (cm)");
  if (electrode == 7) control("LabelLength").setCaption("Thick (cm)");
  control("radius").visible(radius);
  control("LabelRadius").visible(radius);
  control("ARE").enabled(areaTyped);
  control("TextRrate").visible(rotation);
  control("LabelRrate").visible(rotation);
}

void FormIns::updateDropTime() {
  Tolerant([this] {
    const double td = Div(TypedNumber(control("Estep")), TypedNumber(control("V")));
    control("td").setText(GeneralText(td));
  });
}

void FormIns::updatePulseTime() {
  Tolerant([this] { control("tp").setText(GeneralText(Div(0.5, TypedNumber(control("TextF"))))); });
}

}  // namespace voltrix
