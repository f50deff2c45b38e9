// The mechanism compiler through FormMech: species numbered by first
// appearance, the reaction tables, the texts and the two limit messages.
#include <gtest/gtest.h>

#include "digital/mechanism_compiler.h"
#include "headless_workbench.h"
#include "ui/form_expr.h"
#include "ui/form_mech.h"

namespace voltrix {
namespace {

class CompileTest : public ::testing::Test {
 protected:
  test::HeadlessWorkbench hw;
  Workbench& wb = hw.wb;
  Experiment& e = wb.experiment;
  void type(const char* box, int i, const char* text) { wb.formMech().control(box, i).setText(text); }
  void compile() { wb.formMech().OK(); }
  std::pair<int, int> charge(int r) { return {e.ChargeMap(r, 1), e.ChargeMap(r, 2)}; }
  std::pair<int, int> chem(int r) { return {e.ChemMap(r, 1), e.ChemMap(r, 2)}; }
};

TEST_F(CompileTest, BoxesAsTheyStandAtStart) {
  compile();
  EXPECT_EQ(e.Mechanism, 0);
  EXPECT_EQ(e.NSpecies, 2);
  EXPECT_EQ(e.NCharge, 1);
  EXPECT_EQ(e.NChem, 0);
  EXPECT_EQ(charge(1), std::make_pair(1, 2));
  EXPECT_EQ(e.ChargeText(1), "A+1e=B");
  EXPECT_EQ(e.SpeciesName(2), "B");
}

TEST_F(CompileTest, ConsecutiveChargeReactions) {
  type("charge", 3, "B");
  type("charge", 4, "C");
  compile();
  EXPECT_EQ(e.NSpecies, 3);
  EXPECT_EQ(e.NCharge, 2);
  EXPECT_EQ(charge(1), std::make_pair(1, 2));
  EXPECT_EQ(charge(2), std::make_pair(2, 3));
}

TEST_F(CompileTest, FollowingChemicalReactionNumbersItsProduct) {
  type("charge", 1, "O");
  type("charge", 2, "R");
  type("chem", 1, "R");
  type("chem", 2, "P");
  compile();
  EXPECT_EQ(e.NSpecies, 3);
  EXPECT_EQ(e.NChem, 1);
  EXPECT_EQ(chem(1), std::make_pair(2, 3));
  EXPECT_EQ(e.ChemText(1), "R=P");
}

TEST_F(CompileTest, NamesCompareExactly) {
  type("charge", 2, "a");
  type("chem", 1, "A ");
  type("chem", 2, "A");
  compile();
  EXPECT_EQ(e.NSpecies, 3);  // A, a and "A " with its blank
  EXPECT_EQ(chem(1), std::make_pair(3, 1));
}

TEST_F(CompileTest, SecondOrderRowWithAnEmptyPartner) {
  type("chem2", 1, "B");
  type("chem2", 3, "C");
  compile();
  EXPECT_EQ(e.NChem2, 1);
  EXPECT_EQ(e.Chem2Map(1, 1), 2);
  EXPECT_EQ(e.Chem2Map(1, 2), 0);
  EXPECT_EQ(e.Chem2Map(1, 3), 3);
  EXPECT_EQ(e.ChemText(1), "B+=C+");
}

TEST_F(CompileTest, AGapInTheChargeRowsIsFilledByTheEmptyRow) {
  type("charge", 5, "C");
  type("charge", 6, "D");
  compile();
  EXPECT_EQ(e.NCharge, 2);
  EXPECT_EQ(e.NSpecies, 4);
  EXPECT_EQ(charge(2), std::make_pair(0, 0));  // the run uses row 2, which is empty
  EXPECT_EQ(charge(3), std::make_pair(3, 4));  // numbered and mapped all the same
}

TEST_F(CompileTest, AnEmptyFirstBoxMakesEveryEmptyBoxSpeciesOne) {
  type("charge", 1, "");
  compile();
  EXPECT_EQ(e.SpeciesName(1), "");
  EXPECT_EQ(e.NCharge, 0);
  EXPECT_EQ(charge(1), std::make_pair(1, 2));
  EXPECT_EQ(chem(4), std::make_pair(1, 1));
  EXPECT_EQ(e.Chem2Map(3, 4), 1);
}

TEST_F(CompileTest, CompilesAreRepeatable) {
  type("charge", 3, "B");
  type("charge", 4, "C");
  type("chem", 1, "C");
  type("chem", 2, "D");
  compile();
  type("charge", 3, "");
  type("charge", 4, "");
  type("chem", 1, "");
  type("chem", 2, "");
  compile();
  EXPECT_EQ(e.NSpecies, 2);
  EXPECT_EQ(e.NCharge, 1);
  EXPECT_EQ(e.NChem, 0);
  EXPECT_EQ(charge(2), std::make_pair(0, 0));
  EXPECT_EQ(chem(1), std::make_pair(0, 0));
  Experiment first = e;
  compile();
  for (int r = 0; r <= 6; ++r)
    for (int s = 0; s <= 2; ++s) EXPECT_EQ(first.ChargeMap(r, s), e.ChargeMap(r, s));
}

TEST_F(CompileTest, FixedMechanismsHaveTheirTables) {
  wb.formMech().control("CheckDigital").click();
  struct Row {
    int species, charges, chems;
    std::pair<int, int> c1, c2, c3, k1;
  };
  const Row rows[9] = {{},
                       {2, 1, 0, {1, 2}, {0, 0}, {0, 0}, {0, 0}},
                       {3, 2, 0, {1, 2}, {2, 3}, {0, 0}, {0, 0}},
                       {4, 3, 0, {1, 2}, {2, 3}, {3, 4}, {0, 0}},
                       {4, 2, 0, {1, 2}, {3, 4}, {0, 0}, {0, 0}},
                       {3, 1, 1, {1, 2}, {0, 0}, {0, 0}, {3, 1}},
                       {3, 1, 1, {1, 2}, {0, 0}, {0, 0}, {2, 3}},
                       {2, 1, 1, {1, 2}, {0, 0}, {0, 0}, {2, 1}},
                       {4, 1, 1, {1, 2}, {0, 0}, {0, 0}, {3, 1}}};
  for (int m = 8; m >= 1; --m) {
    wb.formMech().control("mech", m).setValue(1);
    compile();
    const Row& r = rows[m];
    EXPECT_EQ(e.Mechanism, m);
    EXPECT_EQ(e.NSpecies, r.species) << m;
    EXPECT_EQ(e.NCharge, r.charges) << m;
    EXPECT_EQ(e.NChem, r.chems) << m;
    EXPECT_EQ(e.NChem2, 0) << m;
    EXPECT_EQ(charge(1), r.c1) << m;
    EXPECT_EQ(charge(2), r.c2) << m;
    EXPECT_EQ(charge(3), r.c3) << m;
    EXPECT_EQ(chem(1), r.k1) << m;
  }
}

TEST_F(CompileTest, SeventhSpeciesAndFifthReactionBringTheirMessagesWithoutStoppingTheCommit) {
  const char* letters[] = {"C", "D", "E", "F", "G"};
  int box = 1;
  for (const char* l : letters) type("chem", box++, l);  // C=D, E=F, G=
  type("chem", 7, "A");
  type("chem2", 1, "A");
  type("chem2", 5, "B");
  wb.formExpr().OK();
  // The commit chain compiles twice (row layout, then CommitInputs), and
  // each compile shows both messages, the species one first.
  ASSERT_EQ(hw.messages().size(), 4u);
  for (int i = 0; i < 4; i += 2) {
    EXPECT_EQ(hw.messages()[i], kTooManySpecies);
    EXPECT_EQ(hw.messages()[i + 1], kTooManyChemical);
  }
  EXPECT_EQ(e.NSpecies, 6);
  EXPECT_LE(e.NChem + e.NChem2, 4);
  EXPECT_DOUBLE_EQ(e.TempK, 298.14);  // the commit went on to the end
  EXPECT_EQ(e.SpeciesName(6), "F");
}

}  // namespace
}  // namespace voltrix
