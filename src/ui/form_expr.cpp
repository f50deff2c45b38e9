#include "ui/form_expr.h"

#include <algorithm>
#include <cmath>

#include "model/checked.h"
#include "model/number_format.h"
#include "ui/commit.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {
constexpr const char* kCinitPattern = "0.###e-#";
constexpr const char* kKeqPattern = "#.###e-#";
const char* const kLambda = "\xCE\xBB";  // λ
const char* const kOmega = "\xCE\xA9";   // Ω
const char* const kAlpha = "\xCE\xB1";   // α
const char* const kDegree = "\xC2\xB0";  // °
const char* const kSquare = "\xC2\xB2";  // ²
// The form's labels are plain; its frames, boxes and buttons keep the bold
// form font.
const FontSpec kPlain{"MS Sans Serif", 8.25, false};
}  // namespace

FormExpr::FormExpr(Workbench& wb) : Form("FormExpr", "Chemicals", {1935, 2070, 11055, 6705}), wb_(wb) {
  buildSpeciesFrame();
  buildChargeFrame();
  buildChemicalFrame();
  buildElectrolyteFrame();
  buildFitFrame();
  add(ControlKind::CheckBox, "CheckPreEqu").initialCaption("pre-equilibration").initialValue(1).place(1560, 0, 1815, 255);
  add(ControlKind::CommandButton, "cmdOK")
      .initialCaption("OK")
      .place(9960, 4800, 1095, 1815)
      .font({"MS Sans Serif", 12, true});

  for (int i = 1; i <= 6; ++i) control("C", i).onChange = [this] { UpdateCinit(); };
  for (int i = 1; i <= 3; ++i) control("Eze", i).onChange = [this] { UpdateCinit(); };
  for (int q = 1; q <= 4; ++q) {
    control("pl", q).onChange = [this] { UpdateCinit(); };
    control("LabelKeq", q).onChange = [this] { UpdateCinit(); };
    control("kf", q).onChange = [this, q] { UpdateKeq(q); };
    control("kb", q).onChange = [this, q] { UpdateKeq(q); };
  }
  for (int s = 1; s <= 24; ++s)
    control("CheckFitted", s).onClick = [this, s] {
      const bool on = control("CheckFitted", s).checked();
      control("TextCmin", s).visible(on);
      control("TextCmax", s).visible(on);
    };
  control("CheckPreEqu").onClick = [this] {
    copyAnalyticalConcentrations();
    if (control("CheckPreEqu").checked()) UpdateCinit();
  };
  control("cmdOK").onClick = [this] {
    OK();
    hide();
  };
  // Form load.
  for (int q = 1; q <= 4; ++q) control("pl", q).setListIndex(0);
}

void FormExpr::addSlot(Control& frame, int slot, int left, int top, int width, const char* min, const char* max) {
  const bool on = slot == 1;
  add(ControlKind::CheckBox, "CheckFitted", slot, &frame).initialValue(on).place(left, top, 255, 255);
  add(ControlKind::TextBox, "TextCmin", slot, &frame).initialText(min).place(left + 360, top, width, 285).visible(on);
  add(ControlKind::TextBox, "TextCmax", slot, &frame)
      .initialText(max)
      .place(left + 360 + width + 60, top, width, 285)
      .visible(on);
}

void FormExpr::buildSpeciesFrame() {
  Control& f = add(ControlKind::Frame, "Frame4").initialCaption("Species").place(0, 120, 8295, 2535);
  auto head = [&](const char* name, int index, const std::string& caption, const char* tip, int left, int width) {
    add(ControlKind::Label, name, index, &f).initialCaption(caption).toolTip(tip).place(left, 120, width, 255).font(
        {"MS Sans Serif", 8.25, false});
  };
  head("Label20", -1, std::string("D (cm ") + kSquare + "/s)", "diffusion coefficient", 600, 975);
  head("Label21", -1, "C anal (M)", "analytical concentration", 1560, 975);
  head("Label33", 0, "C init (M)", "initial concentration", 2520, 1095);
  head("Label10", -1, "C fitted (M)", "fitted concentration", 3600, 1095);
  head("Label22", -1, "C min (M)", "mininum concentration", 4560, 855);
  head("Label23", -1, "C max (M)", "maxinum concentration", 5520, 855);
  head("Label40", -1, kLambda, "conductivity", 6960, 255);
  head("Label15", -1, " (M/", "conductivity", 7200, 375);
  head("Label34", -1, std::string(kOmega) + ")", "conductivity", 7560, 375);
  const char* cond[] = {"100", "200", "300", "400", "500", "500"};
  for (int i = 1; i <= 6; ++i) {
    const int top = 360 * i;
    add(ControlKind::Label, "specie", i, &f)
        .initialCaption(std::string(1, static_cast<char>('A' + i - 1)))
        .align(Align::Center)
        .place(120, top, 375, 285)
        .font(kPlain);
    add(ControlKind::TextBox, "D", i, &f).initialText("1e-5").place(600, top, 855, 285);
    add(ControlKind::TextBox, "C", i, &f).initialText(i == 1 ? "1e-3" : "0").place(1560, top, 855, 285);
    add(ControlKind::Label, "Cinit", i, &f)
        .initialCaption(i == 1 ? "1e-3" : "0")
        .place(2520, top, 1095, 285)
        .font({"MS Sans Serif", 8.25, false});
    addSlot(f, i, 3840, top, 855, i == 1 ? "1e-4" : "0", "1e-2");
    add(ControlKind::TextBox, "Cond", i - 1, &f).initialText(cond[i - 1]).toolTip("conductivity").place(6960, top, 855, 285);
  }
}

void FormExpr::buildChargeFrame() {
  Control& f = add(ControlKind::Frame, "Frame2").initialCaption("Heterogeneous Reaction").place(0, 2880, 11055, 1680);
  auto head = [&](const std::string& name, const std::string& caption, const char* tip, int left, int width) {
    add(ControlKind::Label, name, -1, &f).initialCaption(caption).toolTip(tip).place(left, 240, width, 255).font(
        {"MS Sans Serif", 8.25, false});
  };
  const std::string a = kAlpha, e0 = std::string("E") + kDegree;
  head("Label19", "Reaction", "charge reaction", 120, 1215);
  head("LabelKs", "ks (cm/s)", "heterogeneous standard rate constant", 1440, 855);
  head("LabelKsFitted", "ks fitted", "fitted heterogeneous standard rate constant", 2400, 735);
  head("LabelKsMin", "ks min", "mininum heterogeneous standard rate constant", 2760, 735);
  head("LabelKsMax", "ks max", "maxinum heterogeneous standard rate constant", 3600, 735);
  head("LabelAlpha", a, "electron transfer coefficient", 4440, 615);
  head("LabelAlphaFitted", a + " fitted", "fitted electron transfer coefficient", 5160, 735);
  head("LabelAlphaMin", a + " min", "mininum electron transfer coefficient", 5520, 615);
  head("LabelAlphaMax", a + " max", "maxinum electron transfer coefficient", 6240, 615);
  head("LabelE0", e0 + " (V)", "standard electrode potential", 6960, 735);
  head("LabelE0Fitted", e0 + " fitted (V)", "fitted standard electrode potential", 7800, 1095);
  head("LabelE0Min", e0 + " min", "mininum standard electrode potential", 8160, 735);
  head("LabelE0Max", e0 + " max (V)", "maxinum standard electrode potential", 9000, 975);
  const char* eze[] = {"0.1", "-0.1", "-0.2"};
  const char* ezeMax[] = {"0.2", "0.2", "0.3"};
  for (int i = 1; i <= 3; ++i) {
    const int top = 600 + 360 * (i - 1);
    add(ControlKind::Label, "heter", i, &f).initialCaption(std::to_string(i)).place(120, top, 1215, 285).font(kPlain);
    add(ControlKind::TextBox, "ks", i, &f).initialText("1e4").place(1440, top, 855, 285);
    addSlot(f, i + 6, 2400, top, 375, "1e-4", "100");
    add(ControlKind::TextBox, "alph", i, &f).initialText("0.5").place(3720, top, 615, 285);
    addSlot(f, i + 9, 4440, top, 375, "0.4", "0.6");
    add(ControlKind::TextBox, "Eze", i, &f).initialText(eze[i - 1]).place(5760, top, 735, 285);
    addSlot(f, i + 12, 6600, top, 615, "-0.2", ezeMax[i - 1]);
  }
}

void FormExpr::buildChemicalFrame() {
  Control& f = add(ControlKind::Frame, "Frame6").initialCaption("Homogeneous Reaction").place(0, 4680, 9855, 1935);
  auto head = [&](const std::string& name, int index, const std::string& caption, const char* tip, int left, int width) {
    add(ControlKind::Label, name, index, &f).initialCaption(caption).toolTip(tip).place(left, 200, width, 255).font(
        {"MS Sans Serif", 8.25, false});
  };
  head("Label18", -1, "Reaction", "chemical reaction", 120, 1215);
  head("Label36", -1, "p", "stoichiometric number", 1440, 375);
  // k with its subscript: a second, smaller label set lower beside the k.
  auto rate = [&](const std::string& name, const char* sub, const char* tip, int left) {
    head(name, -1, "k", tip, left, 135);
    add(ControlKind::Label, name + "Sub", -1, &f).initialCaption(sub).toolTip(tip).place(left + 120, 275, 135, 195).font(
        {"MS Sans Serif", 6, false});
  };
  rate("LabelKf", "f", "forward chemical reaction rate constant", 2160);
  head("LabelKfFitted", -1, "kf fitted", "fitted forward chemical reaction rate constant", 3000, 735);
  head("LabelKfMin", -1, "kf min", "mininum forward chemical reaction rate constant", 3360, 735);
  head("LabelKfMax", -1, "kf max", "maxinum forward chemical reaction rate constant", 4200, 735);
  rate("LabelKb", "b", "backward chemical reaction rate constant", 5040);
  head("LabelKbFitted", -1, "kb fitted", "fitted backward chemical reaction rate constant", 5880, 735);
  head("LabelKbMin", -1, "kb min", "mininum backward chemical reaction rate constant", 6240, 735);
  head("LabelKbMax", -1, "kb max", "maxinum backward chemical reaction rate constant", 7080, 735);
  head("Label25", 0, "Keq", "chemical equilibrium constant", 8160, 735);
  for (int q = 1; q <= 4; ++q) {
    const int top = 480 + 360 * (q - 1);
    add(ControlKind::Label, "homo", q, &f).initialCaption(std::to_string(q)).place(120, top, 1215, 285).font(kPlain);
    add(ControlKind::ComboBox, "pl", q, &f).items({"1", "2", "3", "4"}).place(1440, top, 615, 315);
    add(ControlKind::TextBox, "kf", q, &f).initialText("10").place(2160, top, 735, 285);
    addSlot(f, q + 15, 3000, top, 375, "1", "100");
    add(ControlKind::TextBox, "kb", q, &f).initialText("0.01").place(4320, top, 735, 285);
    addSlot(f, q + 19, 5160, top, 735, "0.001", "1");
    add(ControlKind::Label, "LabelKeq", q, &f).place(8160, top, 1095, 285).font({"MS Sans Serif", 8.25, false});
  }
}

void FormExpr::buildElectrolyteFrame() {
  Control& f = add(ControlKind::Frame, "Frame1").initialCaption("Electrolyte").place(8400, 120, 2415, 1215);
  struct Row {
    const char *box, *label, *tip, *text;
    std::string caption;
  };
  const Row rows[] = {
      {"TextElectrolyteC", "LabelElectrolyteC", "support electrolyte concentration", "0.01", "C (M)"},
      {"TextElectrolyteCond", "LabelElectrolyteCond", "conductivity", "100",
       std::string(kLambda) + " (M/" + kOmega + ")"},
      {"TextVis", "LabelVis", "kinematic viscosity of solution", "0.01", std::string("Vis (cm ") + kSquare + "/s)"},
  };
  int top = 240;
  for (const Row& r : rows) {
    add(ControlKind::Label, r.label, -1, &f).initialCaption(r.caption).toolTip(r.tip).place(120, top + 30, 1215, 255).font(
        {"MS Sans Serif", 8.25, false});
    add(ControlKind::TextBox, r.box, -1, &f).initialText(r.text).toolTip(r.tip).place(1440, top, 855, 285);
    top += 300;
  }
}

// Below the electrolyte, in room no other control uses: D as a fitted
// parameter (slot 24), the number of starting points and the uncertainty
// report of a fit.
void FormExpr::buildFitFrame() {
  Control& f = add(ControlKind::Frame, "FrameFit").initialCaption("Fit").place(8400, 1380, 2535, 1470);
  const FontSpec plain{"MS Sans Serif", 8.25, false};
  add(ControlKind::Label, "LabelDFitted", -1, &f)
      .initialCaption("D fitted")
      .toolTip("fitted diffusion coefficient of the first species; the others keep their ratio to it")
      .place(120, 270, 855, 255)
      .font(plain);
  addSlot(f, 24, 960, 240, 540, "1e-6", "1e-4");
  add(ControlKind::Label, "LabelStarts", -1, &f)
      .initialCaption("starts")
      .toolTip("fits from this many starting points spread over the min and max boxes; the best is kept")
      .place(120, 660, 855, 255)
      .font(plain);
  add(ControlKind::TextBox, "TextStarts", -1, &f).initialText("1").place(960, 630, 615, 285);
  add(ControlKind::CheckBox, "CheckUncertainty", -1, &f)
      .initialCaption("uncertainty")
      .initialValue(1)
      .toolTip("standard errors, 95 % intervals and correlations of the fitted values")
      .place(120, 1020, 2295, 255);
}

void FormExpr::OK() {
  RowLayout();
  CommitInputs(wb_);
}

void FormExpr::RowLayout() {
  wb_.formIns().OK();
  const Experiment& e = wb_.experiment;
  const bool typed = wb_.formMech().control("CheckDigital").checked();
  for (int i = 1; i <= 6; ++i)
    for (auto [name, index] : {std::pair{"specie", i}, {"D", i}, {"C", i}, {"Cinit", i}, {"CheckFitted", i}, {"Cond", i - 1}})
      control(name, index).visible(false);
  for (int i = 1; i <= Count(e.NSpecies); ++i) {
    if (typed) control("specie", i).setCaption(e.SpeciesName(i));
    for (auto [name, index] : {std::pair{"specie", i}, {"D", i}, {"C", i}, {"Cinit", i}, {"CheckFitted", i}, {"Cond", i - 1}})
      control(name, index).visible(true);
    UpdateCinit();
  }
  auto chargeRow = [this](int i, bool v) {
    for (auto [name, index] :
         {std::pair{"heter", i}, {"ks", i}, {"alph", i}, {"Eze", i}, {"CheckFitted", i + 6}, {"CheckFitted", i + 9},
          {"CheckFitted", i + 12}})
      control(name, index).visible(v);
  };
  for (int i = 1; i <= 3; ++i) chargeRow(i, false);
  for (int i = 1; i <= Count(e.NCharge); ++i) chargeRow(i, true);
  auto chemRow = [this](int q, bool v) {
    for (auto [name, index] : {std::pair{"pl", q}, {"homo", q}, {"kb", q}, {"kf", q}, {"CheckFitted", q + 15},
                               {"CheckFitted", q + 19}, {"LabelKeq", q}})
      control(name, index).visible(v);
  };
  for (int q = 1; q <= 4; ++q) chemRow(q, false);
  for (int q = 1; q <= std::min(4, Count(e.NChem) + Count(e.NChem2)); ++q) {
    chemRow(q, true);
    UpdateKeq(q);
  }
  const int mechanism = static_cast<int>(e.Mechanism);
  if (mechanism == 0) {
    for (int i = 1; i <= Count(e.NCharge); ++i) control("heter", i).setCaption(e.ChargeText(i));
    for (int q = 1; q <= std::min(4, Count(e.NChem) + Count(e.NChem2)); ++q) control("homo", q).setCaption(e.ChemText(q));
    return;
  }
  static const char* const kHeter[9][3] = {{},
                                           {"A+ne=B"},
                                           {"A+ne=B", "B+ne=C"},
                                           {"A+ne=B", "B+ne=C", "C+ne=D"},
                                           {"A+ne=B", "C+ne=D"},
                                           {"A+ne=B"},
                                           {"A+ne=B"},
                                           {"A+ne=B"},
                                           {"A+ne=B"}};
  static const char* const kHomo[9] = {nullptr, nullptr, nullptr, nullptr, nullptr, "C=A", "B=C", "B=A", "C=A+pD"};
  if (mechanism < 1 || mechanism > 8) return;
  for (int i = 0; i < 3; ++i)
    if (kHeter[mechanism][i]) control("heter", i + 1).setCaption(kHeter[mechanism][i]);
  if (kHomo[mechanism]) control("homo", 1).setCaption(kHomo[mechanism]);
}

void FormExpr::UpdateKeq(int q) {
  Tolerant([&] {
    const double kb = Val(control("kb", q).text());
    if (kb > 0) control("LabelKeq", q).setCaption(FormatNumber(Div(Val(control("kf", q).text()), kb), kKeqPattern));
  });
}

double FormExpr::cinit(int species) { return Val(control("Cinit", species).caption()); }

void FormExpr::setCinit(int species, double value) {
  control("Cinit", species).setCaption(FormatNumber(value, kCinitPattern));
}

void FormExpr::copyAnalyticalConcentrations() {
  for (int i = 1; i <= 6; ++i)
    Tolerant([&] {
      const std::string& c = control("C", i).text();
      control("Cinit", i).setCaption(IsNumeric(c) ? FormatNumber(Val(c), kCinitPattern) : c);
    });
}

// Each reaction in turn, once; every result is written to its caption before
// the next step reads it, and a failing statement leaves its target as it was.
void FormExpr::equilibrateCharge() {
  Experiment& e = wb_.experiment;
  int a = 0, b = 0;
  double n = 0, E0 = 0, Es = 0, K = 0, A = 0, B = 0, x = 0;
  for (int j = 1; j <= Count(e.NCharge); ++j) {
    Tolerant([&] { a = e.ChargeMap(j, 1); });
    Tolerant([&] { b = e.ChargeMap(j, 2); });
    Tolerant([&] { n = Val(wb_.formMech().control("NEL", j).text()); });
    Tolerant([&] { E0 = Val(control("Eze", j).text()); });
    Tolerant([&] { Es = Val(wb_.formIns().control("Estart").text()); });
    Tolerant([&] { K = Exp(Checked(n * e.fRT * (E0 - Es))); });
    Tolerant([&] { A = cinit(a); });
    Tolerant([&] { B = cinit(b); });
    Tolerant([&] { x = Div(Checked(A * K - B), Checked(1 + K)); });
    Tolerant([&] { setCinit(a, Checked(A - x)); });
    Tolerant([&] { setCinit(b, Checked(B + x)); });
  }
}

void FormExpr::equilibrateFirstOrder() {
  Experiment& e = wb_.experiment;
  int a = 0, b = 0;
  double K = 0, A = 0, B = 0, x = 0;
  for (int q = 1; q <= Count(e.NChem); ++q) {
    bool active = false;
    Tolerant([&] { active = Val(control("LabelKeq", q).caption()) != 0; });
    if (!active) continue;
    Tolerant([&] { a = e.ChemMap(q, 1); });
    Tolerant([&] { b = e.ChemMap(q, 2); });
    Tolerant([&] { K = Val(control("LabelKeq", q).caption()); });
    Tolerant([&] { A = cinit(a); });
    Tolerant([&] { B = cinit(b); });
    Tolerant([&] { x = Div(Checked(A * K - B), Checked(K + 1)); });
    Tolerant([&] { setCinit(a, Checked(A - x)); });
    Tolerant([&] { setCinit(b, Checked(B + x)); });
  }
}

void FormExpr::equilibrateSecondOrder() {
  Experiment& e = wb_.experiment;
  double A = 0, B = 0, Cc = 0, Dd = 0, K = 0, a2 = 0, a1 = 0, a0 = 0, s = 0, x1 = 0, x2 = 0, x = 0;
  int p[5] = {0, 0, 0, 0, 0};
  for (int r = 1; r <= Count(e.NChem2); ++r) {
    const int q = Count(e.NChem) + r;
    bool active = false;
    Tolerant([&] { active = Val(control("LabelKeq", q).caption()) != 0; });
    if (!active) continue;
    for (int place = 1; place <= 4; ++place) Tolerant([&] { p[place] = e.Chem2Map(r, place); });
    Tolerant([&] { A = cinit(p[1]); });
    Tolerant([&] { B = cinit(p[2]); });
    Tolerant([&] { Cc = cinit(p[3]); });
    Tolerant([&] { Dd = cinit(p[4]); });
    Tolerant([&] { K = Val(control("LabelKeq", q).caption()); });
    if (wb_.formMech().control("chem2", 4 * r).text().empty()) {  // A + B = C
      Tolerant([&] { a2 = K; });
      Tolerant([&] { a1 = Checked(-K * (A + B) - 1); });
      Tolerant([&] { a0 = Checked(K * A * B - Cc); });
    } else {  // A + B = C + D
      Tolerant([&] { a2 = 1 - K; });
      Tolerant([&] { a1 = Checked((Cc + Dd) + K * (A + B)); });
      Tolerant([&] { a0 = Checked(Cc * Dd - A * B * K); });
    }
    Tolerant([&] { s = Sqrt(Checked(a1 * a1 - 4 * a2 * a0)); });
    Tolerant([&] { x1 = Div(-a1 - s, 2 * a2); });
    Tolerant([&] { x2 = Div(-a1 + s, 2 * a2); });
    if (x1 < 0) x = x2;
    else if (x2 < 0) x = x1;
    else if (x1 < x2) x = x1;
    else x = x2;
    Tolerant([&] { setCinit(p[1], std::max(0.0, Checked(A - x))); });
    Tolerant([&] { setCinit(p[2], std::max(0.0, Checked(B - x))); });
    Tolerant([&] { setCinit(p[3], Checked(cinit(p[3]) + x)); });
    Tolerant([&] { setCinit(p[4], Checked(cinit(p[4]) + x)); });
  }
}

void FormExpr::UpdateCinit() {
  Experiment& e = wb_.experiment;
  Tolerant([&] { e.fRT = Div(96484.6, 8.31441 * e.TempK); });
  copyAnalyticalConcentrations();
  if (control("CheckPreEqu").checked()) {
    equilibrateCharge();
    equilibrateFirstOrder();
    equilibrateSecondOrder();
  }
  if (wb_.formIns().control("CheckPreCon").checked())
    Tolerant([&] { setCinit(2, Checked(Val(control("C", 1).text()) * PreconFactor(wb_))); });
}

double PreconFactor(Workbench& wb) {
  const Experiment& e = wb.experiment;
  FormIns& ins = wb.formIns();
  auto val = [&](const char* name) { return Val(ins.control(name).text()); };
  const double ePre =
      Exp(Div(Div(Checked((val("txtEPre") - e.Eze(1)) * 96484.6 * e.NEL(1)), e.TempK), 8.31441));
  const double w = Sqrt(2 * val("txtRStir") * 3.141592654 / 60);
  double f = Checked(val("txtPconst") * Pow(e.D(1), 2.0 / 3.0) * e.ARE);
  f = Div(f, e.Vsol);
  f = Checked(f * w * Pow(e.Vis, -1.0 / 6.0) * val("txtTPre"));
  return Div(f, ePre + 1);
}

}  // namespace voltrix
