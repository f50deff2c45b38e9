// The mechanism compiler through the mechanism form: species numbered by
// first appearance, the tables of each reaction, their texts and the two
// limit messages.
#include <gtest/gtest.h>

#include <vector>

#include "digital/mechanism_compiler.h"
#include "support/session.h"

namespace voltrix::test {
namespace {

TEST(CompileMechanism, TypedMechanismsGiveTheirTables) {
  const struct {
    const char* script;
    std::vector<const char*> lines;
  } cases[] = {
      {"",  // the boxes as they stand at start
       {"NSpecies =  2 ", "NCharge =  1 ", "NChem =  0 ", "ChargeMap(1,1) =  1 ", "ChargeMap(1,2) =  2 ",
        "ChargeText(1) = A+1e=B", "SpeciesName(2) = B", "ChargeMap(2,1) =  0 "}},
      {"set FormMech.charge(3)=B; set FormMech.charge(4)=C",
       {"NSpecies =  3 ", "NCharge =  2 ", "ChargeMap(2,1) =  2 ", "ChargeMap(2,2) =  3 ", "ChargeText(2) = B+1e=C"}},
      {"set FormMech.charge(1)=O; set FormMech.charge(2)=R; set FormMech.chem(1)=R; set FormMech.chem(2)=P",
       {"NSpecies =  3 ", "NChem =  1 ", "ChemMap(1,1) =  2 ", "ChemMap(1,2) =  3 ", "ChemText(1) = R=P", "SpeciesName(3) = P"}},
      {"set FormMech.charge(2)=a; set FormMech.chem(1)=b; set FormMech.chem(2)=A",  // a and A are two species
       {"NSpecies =  3 ", "ChemMap(1,1) =  3 ", "ChemMap(1,2) =  1 "}},
      // A second-order row with an empty partner counts; the partner is species 0.
      {"set FormMech.chem2(1)=B; set FormMech.chem2(3)=C",
       {"NChem2 =  1 ", "Chem2Map(1,1) =  2 ", "Chem2Map(1,2) =  0 ", "Chem2Map(1,3) =  3 ", "ChemText(1) = B+=C+"}},
      // Chemical rows are counted, but read from row 1 on, as charge rows are.
      {"set FormMech.chem(3)=B; set FormMech.chem(4)=C; set FormMech.chem2(5)=A; set FormMech.chem2(6)=C; set "
       "FormMech.chem2(7)=D",
       {"NChem =  1 ", "NChem2 =  1 ", "ChemMap(1,1) =  0 ", "ChemMap(2,1) =  2 ", "Chem2Map(2,1) =  1 ", "Chem2Map(2,3) =  4 ",
        "ChemText(1) = =\n", "ChemText(2) = +=+\n"}},
      // A gap between charge rows: the run uses rows 1 and 2, row 3 is numbered all the same.
      {"set FormMech.charge(5)=C; set FormMech.charge(6)=D",
       {"NCharge =  2 ", "NSpecies =  4 ", "ChargeMap(2,1) =  0 ", "ChargeMap(3,1) =  3 ", "ChargeMap(3,2) =  4 "}},
      {"set FormMech.charge(3)=B; set FormMech.charge(4)=C; set FormMech.charge(5)=C; set FormMech.charge(6)=D; set "
       "FormMech.NEL(3)=3",
       {"NCharge =  3 ", "NSpecies =  4 ", "ChargeMap(3,1) =  3 ", "ChargeText(3) = C+3e=D"}},
      // An empty first box: every empty box of every row is species 1.
      {"set FormMech.charge(1)=",
       {"SpeciesName(1) = \n", "NCharge =  0 ", "ChargeMap(1,2) =  2 ", "ChemMap(4,1) =  1 ", "ChemMap(4,2) =  1 ", "Chem2Map(3,4) =  1 "}},
      // Two compiles in a row give the tables of the second alone.
      {"set FormMech.charge(3)=B; set FormMech.charge(4)=C; set FormMech.chem(1)=C; set FormMech.chem(2)=D; click "
       "FormMech.Command1; set FormMech.charge(3)=; set FormMech.charge(4)=; set FormMech.chem(1)=; set FormMech.chem(2)=",
       {"NSpecies =  2 ", "NCharge =  1 ", "NChem =  0 ", "ChargeMap(2,1) =  0 ", "ChemMap(1,1) =  0 "}},
  };
  for (const auto& c : cases) {
    Session s(std::string(c.script) + "; click FormMech.Command1; show experiment");
    for (const char* line : c.lines) EXPECT_NE(s.out.str().find(line), std::string::npos) << c.script << ": " << line;
    EXPECT_EQ(s.err.str(), "") << c.script;
  }
}

// The eight fixed mechanisms: species, charge and chemical reactions, the
// species pairs of charge reactions 1 to 3 and of chemical reaction 1.
TEST(CompileMechanism, FixedMechanismsHaveTheirTables) {
  const struct {
    int species, charges, chems;
    int c[3][2], k[2];
  } rows[] = {{2, 1, 0, {{1, 2}, {0, 0}, {0, 0}}, {0, 0}}, {3, 2, 0, {{1, 2}, {2, 3}, {0, 0}}, {0, 0}},
              {4, 3, 0, {{1, 2}, {2, 3}, {3, 4}}, {0, 0}}, {4, 2, 0, {{1, 2}, {3, 4}, {0, 0}}, {0, 0}},
              {3, 1, 1, {{1, 2}, {0, 0}, {0, 0}}, {3, 1}}, {3, 1, 1, {{1, 2}, {0, 0}, {0, 0}}, {2, 3}},
              {2, 1, 1, {{1, 2}, {0, 0}, {0, 0}}, {2, 1}}, {4, 1, 1, {{1, 2}, {0, 0}, {0, 0}}, {3, 1}}};
  Session s("click FormMech.CheckDigital");
  for (int m = 8; m >= 1; --m) {
    const auto& r = rows[m - 1];
    s.run("click FormMech.mech(" + std::to_string(m) + "); click FormMech.Command1");
    const Experiment& e = s.e;
    EXPECT_EQ(e.Mechanism, m);
    EXPECT_EQ(e.NSpecies, r.species) << m;
    EXPECT_EQ(e.NCharge, r.charges) << m;
    EXPECT_EQ(e.NChem, r.chems) << m;
    EXPECT_EQ(e.NChem2, 0) << m;
    for (int q = 1; q <= 3; ++q)
      for (int place = 1; place <= 2; ++place) EXPECT_EQ(e.ChargeMap(q, place), r.c[q - 1][place - 1]) << m << " " << q;
    EXPECT_EQ(e.ChemMap(1, 1), r.k[0]) << m;
    EXPECT_EQ(e.ChemMap(1, 2), r.k[1]) << m;
  }
}

// A seventh species and a fifth chemical reaction bring their messages, the
// species one first, at each compile of the commit (the row layout and the
// commit itself), and the commit goes on to the end.
TEST(CompileMechanism, TooManySpeciesOrReactionsAreToldAndTheCommitGoesOn) {
  Session s("set FormMech.chem(1)=C; set FormMech.chem(2)=D; set FormMech.chem(3)=E; set FormMech.chem(4)=F; "
            "set FormMech.chem(5)=G; set FormMech.chem(7)=A; set FormMech.chem2(1)=A; set FormMech.chem2(5)=B; "
            "click FormExpr.cmdOK");
  const std::string both = std::string("message: ") + kTooManySpecies + "\nmessage: " + kTooManyChemical + "\n";
  EXPECT_EQ(s.err.str(), both + both);
  EXPECT_EQ(s.e.NSpecies, 6);
  EXPECT_LE(s.e.NChem + s.e.NChem2, 4);
  EXPECT_EQ(s.e.SpeciesName(6), "F");
  EXPECT_DOUBLE_EQ(s.e.TempK, 298.14);
}

}  // namespace
}  // namespace voltrix::test
