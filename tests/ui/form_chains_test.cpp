// The forms as a chemist uses them: defaults, derived texts that follow an
// edit, the geometry step, the layouts and the analytical/digital switch.
#include <gtest/gtest.h>

#include "expect_close.h"
#include "headless_workbench.h"
#include "model/number_format.h"
#include "ui/commit.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_option.h"
#include "ui/form_tech.h"
#include "ui/main_form.h"

namespace voltrix {
namespace {

using test::HeadlessWorkbench;

class FormsTest : public ::testing::Test {
 protected:
  HeadlessWorkbench hw;
  Workbench& wb = hw.wb;
  Control& ins(const char* name, int i = -1) { return wb.formIns().control(name, i); }
  Control& expr(const char* name, int i = -1) { return wb.formExpr().control(name, i); }
  void goAnalytical() { wb.formMech().control("CheckDigital").click(); }
};

TEST_F(FormsTest, DefaultsCommitTheReferenceTemperature) {
  wb.formExpr().OK();
  const Experiment& e = wb.experiment;
  EXPECT_DOUBLE_EQ(e.TempK, 298.14);
  EXPECT_DIGITS(e.fRT, 38.92300, 7);
  EXPECT_DOUBLE_EQ(e.RTF, 1 / e.fRT);
  EXPECT_EQ(e.Technique, 1);
  EXPECT_EQ(e.Electrode, 1);
  EXPECT_TRUE(e.Digital);
  EXPECT_EQ(e.Cycles, 0.5);
  EXPECT_DOUBLE_EQ(e.Estep, 0.005);
  EXPECT_DOUBLE_EQ(e.omega, 100 * 3.141592654 / 30);
  EXPECT_DOUBLE_EQ(e.ARE, 1.0);
  EXPECT_DOUBLE_EQ(e.Vsol, 0.01);  // planar: area times length
  EXPECT_EQ(e.NEL(1), 1);
  EXPECT_DOUBLE_EQ(e.Eze(2), -0.1);
  EXPECT_DOUBLE_EQ(e.Cond(6), 500);
  EXPECT_TRUE(hw.messages().empty());
}

TEST_F(FormsTest, PreEquilibrationAtTheStartingPotential) {
  wb.formExpr().OK();
  EXPECT_EQ(expr("Cinit", 1).caption(), "9.996e-4");
  EXPECT_EQ(expr("Cinit", 2).caption(), "4.159e-7");
  // The model takes the caption, four significant digits and all.
  EXPECT_DOUBLE_EQ(wb.experiment.C(1), 9.996e-4);
  EXPECT_DOUBLE_EQ(wb.experiment.C(2), 4.159e-7);
}

TEST_F(FormsTest, WithoutPreEquilibrationCinitIsCRoundedToFourDigits) {
  expr("C", 1).setText("0.0012345");
  expr("CheckPreEqu").click();
  EXPECT_EQ(expr("Cinit", 1).caption(), "1.235e-3");
  wb.formExpr().OK();
  EXPECT_EQ(expr("Cinit", 1).caption(), "1.235e-3");
  EXPECT_DOUBLE_EQ(wb.experiment.C(1), 1.235e-3);
}

TEST_F(FormsTest, StepAndScanRateGiveTheDropTime) {
  ins("V").setText("0.1");
  EXPECT_EQ(ins("td").text(), "0.05");
  ins("Estep").setText("-0.001");
  EXPECT_EQ(ins("td").text(), "-0.01");  // the sign as typed
  ins("V").setText("0");
  EXPECT_EQ(ins("td").text(), "-0.01");  // a zero rate leaves the last text
  ins("V").setText("");
  EXPECT_EQ(ins("td").text(), "-0.01");
  EXPECT_TRUE(hw.messages().empty());
}

TEST_F(FormsTest, FrequencyGivesThePulseTime) {
  ins("TextF").setText("20");
  EXPECT_EQ(ins("tp").text(), "0.025");
  ins("TextF").setText("");
  EXPECT_EQ(ins("tp").text(), "0.025");
}

TEST_F(FormsTest, RateConstantsGiveKeqWhichGivesCinit) {
  goAnalytical();
  wb.formMech().control("mech", 6).setValue(1);  // A + ne = B, B = C
  wb.formExpr().OK();
  EXPECT_EQ(expr("LabelKeq", 1).caption(), "1.e3");
  EXPECT_EQ(expr("Cinit", 3).caption(), "4.155e-7");
  EXPECT_EQ(expr("Cinit", 2).caption(), "4.155e-10");
  expr("kb", 1).setText("0");  // no equilibrium constant: the old one stands
  EXPECT_EQ(expr("LabelKeq", 1).caption(), "1.e3");
  expr("kf", 1).setText("0");
  expr("kb", 1).setText("1");
  EXPECT_EQ(expr("LabelKeq", 1).caption(), ".e0");
  EXPECT_EQ(expr("Cinit", 3).caption(), "0.e0");  // a Keq of 0 skips the reaction
  EXPECT_EQ(expr("Cinit", 2).caption(), "4.159e-7");
}

TEST_F(FormsTest, CinitGoesOnPastAFailingStatement) {
  expr("C", 3).setText("n/a");
  expr("Eze", 1).setText("1e5");  // the equilibrium ratio overflows: K keeps 0
  wb.formExpr().OK();
  EXPECT_EQ(expr("Cinit", 3).caption(), "n/a");  // a text that is no number is copied
  EXPECT_EQ(expr("Cinit", 1).caption(), "1.e-3");
  EXPECT_EQ(expr("Cinit", 2).caption(), "0.e0");
  EXPECT_TRUE(hw.messages().empty());
}

TEST_F(FormsTest, PreconcentrationReplacesCinitOfTheSecondSpecies) {
  ins("CheckPreCon").click();
  EXPECT_TRUE(ins("FramePre").visible());
  wb.formExpr().OK();
  // 10 * D^(2/3) * A / (A * l) * sqrt(2 pi 100 / 60) * Vis^(-1/6) * 600 s, times C = 1e-3 M.
  EXPECT_EQ(expr("Cinit", 2).caption(), "1.942e0");
  EXPECT_EQ(expr("Cinit", 1).caption(), "9.996e-4");
  ins("CheckPreCon").click();
  EXPECT_FALSE(ins("FramePre").visible());
}

TEST_F(FormsTest, GeometryStepWritesTheArea) {
  goAnalytical();
  const std::pair<int, const char*> areas[] = {{2, "1.e0"}, {3, "5.e-1"}, {4, "2.5e-1"}, {5, "2.68e-1"},
                                               {6, "1.34e-1"}, {8, "2.5e-1"}};
  for (auto [electrode, area] : areas) {
    ins("optElectrode", electrode).click();
    EXPECT_EQ(ins("ARE").text(), area) << "electrode " << electrode;
    EXPECT_DOUBLE_EQ(wb.experiment.ARE, Val(area));
  }
  ins("optElectrode", 2).click();
  EXPECT_DOUBLE_EQ(wb.experiment.Electrode, 2);
  EXPECT_FALSE(ins("ARE").enabled());
  ins("optElectrode", 1).click();  // the sphere's area stays, now editable
  EXPECT_EQ(ins("ARE").text(), "1.e0");
  EXPECT_TRUE(ins("ARE").enabled());
  ins("radius").setText("1");  // planar: the radius does not touch the area
  EXPECT_EQ(ins("ARE").text(), "1.e0");
}

TEST_F(FormsTest, EmptyAreaOfAPlanarElectrodeCommitsZero) {
  ins("ARE").setText("");
  wb.formExpr().OK();
  EXPECT_EQ(wb.experiment.ARE, 0.0);
  EXPECT_TRUE(hw.messages().empty());
}

TEST_F(FormsTest, ElectrodeLayoutShowsTheBoxesInUse) {
  goAnalytical();
  ins("optElectrode", 7).click();
  EXPECT_TRUE(ins("leng").visible());
  EXPECT_EQ(ins("LabelLength").caption(), "Thick (cm)");
  EXPECT_FALSE(ins("radius").visible());
  ins("optElectrode", 5).click();
  EXPECT_EQ(ins("LabelLength").caption(), "Length (cm)");
  EXPECT_TRUE(ins("radius").visible());
  ins("optElectrode", 8).click();
  EXPECT_TRUE(ins("TextRrate").visible());
  EXPECT_FALSE(ins("leng").visible());
}

TEST_F(FormsTest, TechniqueLayoutFollowsTheCommittedTechnique) {
  wb.formTech().control("optTech", 5).click();
  wb.formTech().OK();
  wb.formIns().show();
  EXPECT_FALSE(ins("V").visible());
  EXPECT_TRUE(ins("TextF").visible());
  EXPECT_TRUE(ins("tp").visible());
  EXPECT_FALSE(ins("tp").enabled());
  wb.formTech().control("optTech", 4).click();
  wb.formTech().OK();
  wb.formIns().activate();
  EXPECT_TRUE(ins("V").visible());
  EXPECT_TRUE(ins("tp").enabled());
  EXPECT_TRUE(ins("Epulse").visible());
}

TEST_F(FormsTest, CheckDigitalSwitchesModesBackAndForth) {
  FormMech& mech = wb.formMech();
  Control& theo = wb.mainForm().control("mnuTheoPeak");
  EXPECT_FALSE(theo.enabled());
  EXPECT_TRUE(mech.control("Frame2").visible());
  EXPECT_FALSE(mech.control("Frame1").visible());
  mech.control("CheckDigital").click();
  EXPECT_FALSE(wb.experiment.Digital);
  EXPECT_TRUE(theo.enabled());
  EXPECT_TRUE(mech.control("Frame1").visible());
  EXPECT_FALSE(mech.control("Frame2").visible());
  EXPECT_FALSE(ins("txtRu").enabled());
  EXPECT_TRUE(ins("optElectrode", 7).enabled());
  mech.control("CheckDigital").click();
  EXPECT_TRUE(wb.experiment.Digital);
  EXPECT_FALSE(theo.enabled());
  EXPECT_TRUE(ins("txtRu").enabled());
  EXPECT_FALSE(ins("optElectrode", 8).enabled());
}

TEST_F(FormsTest, AThinFilmChosenBeforeDigitalModeStaysSelectedGreyed) {
  goAnalytical();
  ins("optElectrode", 7).click();
  wb.formMech().control("CheckDigital").click();
  EXPECT_TRUE(ins("optElectrode", 7).checked());
  EXPECT_FALSE(ins("optElectrode", 7).enabled());
  EXPECT_EQ(wb.experiment.Electrode, 7);
}

TEST_F(FormsTest, CodeKeepsTheLastAnalyticalValueInDigitalMode) {
  goAnalytical();
  wb.formTech().control("optTech", 3).click();
  wb.formExpr().OK();
  EXPECT_EQ(wb.experiment.Code, 31);
  EXPECT_EQ(wb.experiment.Mechanism, 1);
  wb.formMech().control("CheckDigital").click();
  wb.formTech().control("optTech", 2).click();
  wb.formExpr().OK();
  EXPECT_EQ(wb.experiment.Code, 31);
  EXPECT_EQ(wb.experiment.Mechanism, 0);
}

TEST_F(FormsTest, RowLayoutShowsTheRowsOfTheMechanism) {
  goAnalytical();
  wb.formMech().control("mech", 4).setValue(1);
  wb.formExpr().OK();
  for (int i = 1; i <= 6; ++i) EXPECT_EQ(expr("D", i).visible(), i <= 4) << i;
  EXPECT_EQ(expr("heter", 1).caption(), "A+ne=B");
  EXPECT_EQ(expr("heter", 2).caption(), "C+ne=D");
  EXPECT_FALSE(expr("ks", 3).visible());
  EXPECT_FALSE(expr("kf", 1).visible());
  wb.formMech().control("mech", 8).setValue(1);
  wb.formExpr().OK();
  EXPECT_EQ(expr("homo", 1).caption(), "C=A+pD");
  EXPECT_TRUE(expr("kf", 1).visible());
}

TEST_F(FormsTest, FitLimitsFollowTheirCheckBoxOnly) {
  EXPECT_TRUE(expr("TextCmin", 1).visible());
  EXPECT_FALSE(expr("TextCmin", 7).visible());
  expr("CheckFitted", 7).click();
  EXPECT_TRUE(expr("TextCmin", 7).visible());
  EXPECT_TRUE(expr("TextCmax", 7).visible());
  // A fixed mechanism with one reaction hides row 2; a ticked box there
  // stays ticked and hidden while its limits stay in view.
  expr("CheckFitted", 8).click();
  goAnalytical();
  wb.formExpr().OK();
  EXPECT_FALSE(expr("CheckFitted", 8).visible());
  EXPECT_TRUE(expr("CheckFitted", 8).checked());
  EXPECT_TRUE(expr("TextCmin", 8).visible());
}

TEST_F(FormsTest, TypedSpeciesNamesHeadTheRows) {
  FormMech& mech = wb.formMech();
  mech.control("charge", 1).setText("O");
  mech.control("charge", 2).setText("R");
  mech.control("chem", 1).setText("R");
  mech.control("chem", 2).setText("P");
  wb.formExpr().OK();
  EXPECT_EQ(expr("specie", 3).caption(), "P");
  EXPECT_EQ(expr("heter", 1).caption(), "O+1e=R");
  EXPECT_EQ(expr("homo", 1).caption(), "R=P");
  EXPECT_TRUE(expr("Cinit", 3).visible());
}

// The chemicals form's labels are plain (weight 400), and the rate constant
// headings read k with the subscript f or b: a smaller letter set lower.
TEST(ChemicalsForm, LabelsArePlainAndRateHeadingsCarrySubscripts) {
  test::HeadlessWorkbench hw;
  Form& x = hw.wb.formExpr();
  for (const Control* c : x.controls()) {
    if (c->kind() != ControlKind::Label) continue;
    const FontSpec font = c->state().font.value_or(x.font());
    EXPECT_FALSE(font.bold) << c->fullName();
  }
  for (const auto& [base, sub] : {std::pair{"LabelKf", "f"}, std::pair{"LabelKb", "b"}}) {
    const Control& k = x.control(base);
    const Control& s = x.control(std::string(base) + "Sub");
    EXPECT_EQ(k.caption(), "k");
    EXPECT_EQ(s.caption(), sub);
    EXPECT_LT(s.state().font->size, k.state().font->size);
    EXPECT_GT(s.place().top, k.place().top);
  }
}

}  // namespace
}  // namespace voltrix
