// The mechanism compiler through the mechanism form: species numbered by
// first appearance, the tables of each reaction, their texts and the two
// limit messages.
#include <gtest/gtest.h>

#include <vector>

#include "digital/mechanism_compiler.h"
#include "support/session.h"

namespace voltrix::test {
namespace {

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
