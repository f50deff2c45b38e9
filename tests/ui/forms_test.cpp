// The input forms as a chemist uses them: where their controls stand, the
// texts derived from an edit, the geometry step, the layouts that follow the
// mechanism and technique, and the commit into the experiment.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

#include "model/controls.h"
#include "ui/form_expr.h"
#include "support/session.h"

namespace voltrix::test {
namespace {

Control& Find(Workbench& wb, const std::string& form, const std::string& target) {
  const auto open = target.find('(');
  const int index = open == std::string::npos ? -1 : std::stoi(target.substr(open + 1));
  return wb.formNamed(form)->control(target.substr(0, open), index);
}

bool Overlap(const Place& a, const Place& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height && b.top < a.top + a.height;
}

// Every control lies inside its frame or form, no two boxes a user types or
// clicks in overlap, and the places the tables give stand as given.
TEST(FormLayout, PlacesOfTheTablesAndNoControlHidesAnother) {
  Session session;
  Workbench& wb = session.wb;
  std::ifstream file(VOLTRIX_TEST_DATA "/ui/form_places.txt");
  std::string line;
  int rows = 0;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream words(line);
    std::string form, target, field[4];
    words >> form >> target >> field[0] >> field[1] >> field[2] >> field[3];
    const Place& p = Find(wb, form, target).place();
    const int actual[] = {p.left, p.top, p.width, p.height};
    for (int k = 0; k < 4; ++k)
      if (field[k] != "*") {
        EXPECT_EQ(actual[k], std::stoi(field[k])) << line;
      }
    ++rows;
  }
  EXPECT_GT(rows, 80);
  // The rows of the chemicals form: one per species from 360, per charge
  // reaction from 600, per chemical reaction from 480, 360 apart; the fit
  // slots are C 1-6, ks 7-9, alpha 10-12, E0 13-15, kf 16-19, kb 20-23.
  Form& expr = wb.formExpr();
  for (int i = 1; i <= 6; ++i)
    for (auto [name, index] : {std::pair{"D", i}, {"C", i}, {"Cinit", i}, {"CheckFitted", i}, {"TextCmax", i}, {"Cond", i - 1}})
      EXPECT_EQ(expr.control(name, index).place().top, 360 * i) << name << index;
  for (int i = 1; i <= 3; ++i)
    for (int slot : {i + 6, i + 9, i + 12})
      for (const char* name : {"ks", "CheckFitted", "TextCmin", "TextCmax"})
        EXPECT_EQ(expr.control(name, name[0] == 'k' ? i : slot).place().top, 600 + 360 * (i - 1)) << name << slot;
  for (int q = 1; q <= 4; ++q)
    for (int slot : {q + 15, q + 19})
      for (const char* name : {"pl", "kf", "kb", "LabelKeq", "CheckFitted", "TextCmin", "TextCmax"})
        EXPECT_EQ(expr.control(name, name[0] == 'T' || name[0] == 'C' ? slot : q).place().top, 480 + 360 * (q - 1)) << name << slot;
  for (const std::string& name : Workbench::formNames()) {
    Form& form = *wb.formNamed(name);
    for (const Control* a : form.controls()) {
      const Place outer = a->container() ? a->container()->place() : Place{0, 0, form.area().width, form.area().height};
      const Place& p = a->place();
      const bool inside = p.left >= 0 && p.top >= 0 && p.left + p.width <= outer.width && p.top + p.height <= outer.height;
      EXPECT_TRUE(inside || a->kind() == ControlKind::Menu) << name << "." << a->fullName();
      for (const Control* b : form.controls()) {
        const auto input = [](const Control* c) {
          return c->kind() == ControlKind::TextBox || c->kind() == ControlKind::ComboBox ||
                 c->kind() == ControlKind::CheckBox || c->kind() == ControlKind::CommandButton;
        };
        const bool apart = !(a < b && input(a) && input(b) && a->container() == b->container()) || !Overlap(p, b->place());
        EXPECT_TRUE(apart) << name << "." << a->fullName() << " " << b->fullName();
      }
    }
  }
}

// What a control shows after a user's edits; each expected text follows from
// the form's rules: td = Estep / V, tp = 1 / (2 f), the sphere's area 4 pi r^2,
// Keq = kf / kb, Cinit pre-equilibrated at Estart (Nernst) to four digits.
TEST(FormChains, DerivedTextsFollowTheEdits) {
  const std::string analytical = "click FormMech.CheckDigital; ";
  const struct {
    std::string script;
    const char* shown;
  } cases[] = {
      {"set FormIns.V=0.1; show control FormIns.td", "FormIns.td: text=\"0.05\" value=0 visible=1 enabled=0"},
      {"set FormIns.Estep=-0.001; show control FormIns.td", "text=\"-0.1\""},  // the sign as typed
      {"set FormIns.V=0; show control FormIns.td", "text=\"0.5\""},            // no rate: the text stands
      {"set FormIns.V=; show control FormIns.td", "text=\"0.5\""},
      {"set FormIns.TextF=20; show control FormIns.tp", "FormIns.tp: text=\"0.025\" value=0 visible=0 enabled=1"},
      {"set FormIns.TextF=; show control FormIns.tp", "text=\"0.05\""},
      {"menu mnuExperimental; show control FormExpr.Cinit(1)", "text=\"9.996e-4\""},
      {"menu mnuExperimental; show control FormExpr.Cinit(2)", "text=\"4.159e-7\""},
      {"set FormExpr.C(1)=0.0012345; click FormExpr.CheckPreEqu; show control FormExpr.Cinit(1)", "text=\"1.235e-3\""},
      {"set FormExpr.C(3)=n/a; click FormExpr.CheckPreEqu; show control FormExpr.Cinit(3)", "text=\"n/a\""},
      {"set FormExpr.Eze(1)=1e5; click FormExpr.cmdOK; show control FormExpr.Cinit(2)", "text=\"0.e0\""},  // K overflows
      {analytical + "click FormMech.mech(6); click FormExpr.cmdOK; show control FormExpr.LabelKeq(1)", "text=\"1.e3\""},
      {analytical + "click FormMech.mech(6); click FormExpr.cmdOK; show control FormExpr.Cinit(3)", "text=\"4.155e-7\""},
      {analytical + "click FormMech.mech(6); click FormExpr.cmdOK; show control FormExpr.Cinit(2)", "text=\"4.155e-10\""},
      {analytical + "click FormMech.mech(6); click FormExpr.cmdOK; set FormExpr.kb(1)=0; show control FormExpr.LabelKeq(1)",
       "text=\"1.e3\""},  // no kb: the old constant stands
      {analytical + "click FormMech.mech(6); set FormExpr.kf(1)=0; set FormExpr.kb(1)=1; click FormExpr.cmdOK; "
                    "show control FormExpr.Cinit(3); show control FormExpr.LabelKeq(1)",
       "text=\"0.e0\" value=0 visible=1 enabled=1\nFormExpr.LabelKeq(1): text=\".e0\""},  // Keq 0 skips the reaction
      {analytical + "click FormMech.mech(5); set FormExpr.C(3)=1e-3; click FormExpr.cmdOK; show control FormExpr.Cinit(3)",
       "text=\"1.998e-6\""},  // C = A, Keq 1000: C and A share 2.0e-3 M as 1 to 1000
      // A + B = C, Keq 1e3 per M, 1 mM of each: x / (1e-3 - x)^2 = 1e3 at x = 3.82e-4 M.
      {"set FormMech.charge(1)=X; set FormMech.charge(2)=Y; set FormMech.chem2(1)=A; set FormMech.chem2(2)=B; "
       "set FormMech.chem2(3)=C; set FormExpr.C(3)=1e-3; set FormExpr.C(4)=1e-3; click FormExpr.cmdOK; "
       "show control FormExpr.Cinit(5); show control FormExpr.Cinit(4)",
       "text=\"3.82e-4\" value=0 visible=1 enabled=1\nFormExpr.Cinit(4): text=\"6.18e-4\""},
      {"click FormIns.CheckPreCon; click FormExpr.cmdOK; show control FormExpr.Cinit(2); show control FormIns.FramePre",
       "text=\"1.942e0\" value=0 visible=1 enabled=1\nFormIns.FramePre: text=\"\" value=0 visible=1"},
      {analytical + "click FormIns.optElectrode(2); show control FormIns.ARE", "text=\"1.e0\" value=0 visible=1 enabled=0"},
      {analytical + "click FormIns.optElectrode(3); show control FormIns.ARE", "text=\"5.e-1\""},
      {analytical + "click FormIns.optElectrode(4); show control FormIns.ARE", "text=\"2.5e-1\""},
      {analytical + "click FormIns.optElectrode(5); show control FormIns.ARE", "text=\"2.68e-1\""},  // 2 pi r l + pi r^2
      {analytical + "click FormIns.optElectrode(6); show control FormIns.ARE", "text=\"1.34e-1\""},  // pi r l + pi r^2 / 2
      {analytical + "click FormIns.optElectrode(8); show control FormIns.ARE", "text=\"2.5e-1\""},
      {analytical + "click FormIns.optElectrode(2); click FormIns.optElectrode(1); set FormIns.radius=1; "
                    "show control FormIns.ARE",
       "text=\"1.e0\" value=0 visible=1 enabled=1"},  // the sphere's area stays, editable
      {analytical + "click FormIns.optElectrode(7); show control FormIns.LabelLength; show control FormIns.radius",
       "text=\"Thick (cm)\" value=0 visible=1 enabled=1\nFormIns.radius: text=\"0.2821\" value=0 visible=0"},
      {analytical + "click FormIns.optElectrode(5); show control FormIns.LabelLength", "text=\"Length (cm)\" value=0 visible=1"},
      {analytical + "click FormIns.optElectrode(8); show control FormIns.TextRrate; show control FormIns.leng",
       "visible=1 enabled=1\nFormIns.leng: text=\"0.01\" value=0 visible=0"},
      {"click FormTech.optTech(5); click FormTech.cmdOK; menu mnuInstrument; show control FormIns.V; show control "
       "FormIns.TextF; show control FormIns.tp",
       "visible=0 enabled=1\nFormIns.TextF: text=\"10\" value=0 visible=1 enabled=1\nFormIns.tp: text=\"0.05\" value=0 visible=1 enabled=0"},
      {"click FormTech.optTech(4); click FormTech.cmdOK; menu mnuInstrument; show control FormIns.V; show control "
       "FormIns.Epulse; show control FormIns.tp",
       "visible=1 enabled=1\nFormIns.Epulse: text=\"-0.05\" value=0 visible=1 enabled=1\nFormIns.tp: text=\"0.05\" value=0 visible=1 enabled=1"},
      {analytical + "show control MDIForm1.mnuTheoPeak; show control FormMech.Frame1; show control FormIns.txtRu; "
                    "show control FormIns.optElectrode(8)",
       "enabled=1\nFormMech.Frame1: text=\"Analytical Simulation\" value=0 visible=1 enabled=1\nFormIns.txtRu: text=\"0\" "
       "value=0 visible=1 enabled=0\nFormIns.optElectrode(8): text=\"8)  Rotating disk\" value=0 visible=1 enabled=1"},
      {analytical + "click FormMech.CheckDigital; show control MDIForm1.mnuTheoPeak; show control FormMech.Frame2",
       "enabled=0\nFormMech.Frame2: text=\"\" value=0 visible=1 enabled=1"},
      {analytical + "click FormIns.optElectrode(7); click FormMech.CheckDigital; show control FormIns.optElectrode(7)",
       "text=\"7)  Thin film\" value=1 visible=1 enabled=0"},
      {analytical + "click FormMech.mech(4); click FormExpr.cmdOK; show control FormExpr.heter(2); show control FormExpr.D(5)",
       "text=\"C+ne=D\" value=0 visible=1 enabled=1\nFormExpr.D(5): text=\"1e-5\" value=0 visible=0"},
      {analytical + "click FormMech.mech(8); click FormExpr.cmdOK; show control FormExpr.homo(1)", "text=\"C=A+pD\" value=0 visible=1"},
      {"set FormMech.charge(1)=O; set FormMech.charge(2)=R; set FormMech.chem(1)=R; set FormMech.chem(2)=P; "
       "set FormMech.NEL(1)=2; click FormExpr.cmdOK; show control FormExpr.specie(3); show control FormExpr.heter(1); "
       "show control FormExpr.homo(1)",
       "text=\"P\" value=0 visible=1 enabled=1\nFormExpr.heter(1): text=\"O+2e=R\" value=0 visible=1 enabled=1\n"
       "FormExpr.homo(1): text=\"R=P\" value=0 visible=1"},
      {"click FormExpr.CheckFitted(7); show control FormExpr.TextCmin(7); show control FormExpr.TextCmin(8)",
       "text=\"1e-4\" value=0 visible=1 enabled=1\nFormExpr.TextCmin(8): text=\"1e-4\" value=0 visible=0"},
      // A ticked box of a row that goes away stays ticked, hidden, its limits in view.
      {"click FormExpr.CheckFitted(8); click FormExpr.cmdOK; show control FormExpr.CheckFitted(8); show control "
       "FormExpr.TextCmax(8)",
       "value=1 visible=0 enabled=1\nFormExpr.TextCmax(8): text=\"100\" value=0 visible=1"},
  };
  for (const auto& c : cases) {
    Session s(c.script);
    EXPECT_NE(s.out.str().find(c.shown), std::string::npos) << c.script << "\n" << s.out.str();
    EXPECT_EQ(s.err.str(), "") << c.script;
  }
}

// The fit slots in view follow the rows of the mechanism: its species, its
// charge reactions (ks, alpha, E0) and its chemical reactions (kf, kb).
TEST(FormChains, FitSlotsOfTheRowsInUse) {
  const struct {
    const char* script;
    int species, charges, chemicals;
  } cases[] = {{"", 2, 1, 0},
               {"click FormMech.CheckDigital; click FormMech.mech(3)", 4, 3, 0},
               {"click FormMech.CheckDigital; click FormMech.mech(8)", 4, 1, 1},
               {"set FormMech.charge(3)=B; set FormMech.charge(4)=C; set FormMech.chem(1)=C; set FormMech.chem(2)=D; "
                "set FormMech.chem2(1)=A; set FormMech.chem2(3)=E",
                5, 2, 2}};
  for (const auto& c : cases) {
    Session s(std::string(c.script) + "; click FormExpr.cmdOK");
    for (int slot = 1; slot <= 23; ++slot) {
      const bool inUse = slot <= 6    ? slot <= c.species
                         : slot <= 15 ? (slot - 7) % 3 < c.charges
                                      : (slot - 16) % 4 < c.chemicals;
      EXPECT_EQ(s.wb.formExpr().control("CheckFitted", slot).visible(), inUse) << c.script << " slot " << slot;
    }
  }
}

// The commit copies every box into the experiment: the last entry of each
// table too, the temperature in kelvin and the derived constants.
TEST(FormChains, CommitFillsTheExperiment) {
  const struct {
    const char* script;
    std::vector<const char*> lines;
  } cases[] = {
      {"click FormExpr.cmdOK",
       {"Estep =  0.005 \n", "ARE =  1 \n", "TempK =  298.14 \n", "V =  0.01 \n", "omega =  10.4719755133333 \n",
        "Cycles =  0.5 \n", "Vsol =  0.01 \n", "Vis =  0.01 \n", "ElecC =  0.01 \n", "ElecCond =  100 \n",
        "alph(3) =  0.5 \n", "Eze(3) = -0.2 \n", "ks(3) =  10000 \n", "NEL(3) =  1 \n", "kf(4) =  10 \n",
        "kb(4) =  0.01 \n", "pl(4) =  1 \n", "D(6) =  1E-05 \n", "C(6) =  0 \n", "Cond(6) =  500 \n",
        "C(2) =  4.159E-07 \n", "fRT =  38.9230009611682 \n", "Mechanism =  0 \n", "Digital = True\n"}},
      {"set FormIns.ARE=; set FormIns.Estep=-0.01; set FormIns.V=-0.1; set FormIns.ComboScan=2 cycles; set "
       "FormIns.txttemp=0; set FormIns.TextRrate=300; set FormExpr.pl(4)=3; click FormExpr.cmdOK",
       {"ARE =  0 \n", "Estep =  0.01 \n", "V =  0.1 \n", "Cycles =  2 \n", "TempK =  273.14 \n", "omega =  31.4159265", "pl(4) =  3 \n"}},
      {"click FormMech.CheckDigital; click FormTech.optTech(3); click FormIns.optElectrode(2); click FormExpr.cmdOK; "
       "click FormMech.CheckDigital; click FormTech.optTech(2); click FormExpr.cmdOK",
       {"Code =  32 \n", "Mechanism =  0 \n", "Technique =  2 \n", "Vsol =  0.0940", "Digital = True\n"}},
      {"set FormMech.CheckAccurate=1; click FormExpr.cmdOK", {"Accurate = True\n"}},
  };
  for (const auto& c : cases) {
    Session s(std::string(c.script) + "; show experiment");
    for (const char* line : c.lines) EXPECT_NE(s.out.str().find(line), std::string::npos) << c.script << ": " << line;
  }
}

}  // namespace
}  // namespace voltrix::test
