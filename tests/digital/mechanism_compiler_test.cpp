// Typed reactions to species numbers: numbering by first appearance, the
// maps of every row, the limits and repeatability.
#include "digital/mechanism_compiler.h"

#include <gtest/gtest.h>

namespace voltrix {
namespace {

MechanismInput Typed(std::vector<std::string> charge, std::vector<std::string> chem = {},
                     std::vector<std::string> chem2 = {}) {
  MechanismInput in;
  in.nel = {"", "1", "2", "1"};
  for (std::size_t i = 0; i < charge.size(); ++i) in.charge[i + 1] = charge[i];
  for (std::size_t i = 0; i < chem.size(); ++i) in.chem[i + 1] = chem[i];
  for (std::size_t i = 0; i < chem2.size(); ++i) in.chem2[i + 1] = chem2[i];
  return in;
}

TEST(MechanismCompiler, SpeciesAreNumberedByFirstAppearance) {
  Experiment e;
  EXPECT_TRUE(CompileMechanism(Typed({"A", "B"}), e).empty());
  EXPECT_EQ(Count(e.NSpecies), 2);
  EXPECT_EQ(Count(e.NCharge), 1);
  EXPECT_EQ(e.ChargeMap(1, 1), 1);
  EXPECT_EQ(e.ChargeMap(1, 2), 2);
  EXPECT_EQ(e.ChargeText(1), "A+1e=B");
  EXPECT_EQ(e.Mechanism.value(), 0);

  CompileMechanism(Typed({"O", "R"}, {"R", "P"}), e);
  EXPECT_EQ(Count(e.NSpecies), 3);
  EXPECT_EQ(Count(e.NChem), 1);
  EXPECT_EQ(e.ChemMap(1, 1), 2);
  EXPECT_EQ(e.ChemMap(1, 2), 3);
  EXPECT_EQ(e.ChemText(1), "R=P");

  CompileMechanism(Typed({"A", "B", "a", "A "}), e);  // case and blanks count
  EXPECT_EQ(Count(e.NSpecies), 4);
  EXPECT_EQ(e.ChargeMap(2, 1), 3);
  EXPECT_EQ(e.ChargeMap(2, 2), 4);
  EXPECT_EQ(e.ChargeText(2), "a+2e=A ");
}

TEST(MechanismCompiler, EmptyPlacesAndGapsBetweenRows) {
  Experiment e;
  // A second-order row with its partner missing: the place maps to no species.
  CompileMechanism(Typed({"A", "B"}, {}, {"B", "", "C", ""}), e);
  EXPECT_EQ(Count(e.NChem2), 1);
  EXPECT_EQ(e.Chem2Map(1, 1), 2);
  EXPECT_EQ(e.Chem2Map(1, 2), 0);
  EXPECT_EQ(e.Chem2Map(1, 3), 3);
  EXPECT_EQ(e.ChemText(1), "B+=C+");

  // Rows 1 and 3 filled: two reactions counted, row 3 still mapped.
  CompileMechanism(Typed({"A", "B", "", "", "C", "D"}), e);
  EXPECT_EQ(Count(e.NCharge), 2);
  EXPECT_EQ(Count(e.NSpecies), 4);
  EXPECT_EQ(e.ChargeMap(2, 1), 0);
  EXPECT_EQ(e.ChargeMap(3, 1), 3);
  EXPECT_EQ(e.ChargeMap(3, 2), 4);

  // An empty first box: species 1 is the empty name, and every empty box
  // maps to it.
  CompileMechanism(Typed({"", "B"}), e);
  EXPECT_EQ(Count(e.NSpecies), 2);
  EXPECT_EQ(e.ChargeMap(1, 1), 1);
  EXPECT_EQ(e.ChargeMap(3, 2), 1);
  EXPECT_EQ(e.ChemMap(4, 2), 1);
}

TEST(MechanismCompiler, LimitsAreReportedAndTheCompileGoesOn) {
  Experiment e;
  const auto messages = CompileMechanism(Typed({"A", "B", "C", "D", "E", "F"}, {"G", "A"}), e);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0], "Error: Species number cannot > 6.");
  EXPECT_EQ(Count(e.NSpecies), 6);
  EXPECT_EQ(e.ChemMap(1, 1), 0);  // the seventh name has no number
  EXPECT_EQ(e.ChemMap(1, 2), 1);

  const auto both = CompileMechanism(
      Typed({"A", "B", "C", "D", "E", "F"}, {"G", "A", "A", "B", "B", "C"}, {"A", "B", "C", "D", "A", "C", "B", "D"}),
      e);
  ASSERT_EQ(both.size(), 2u);
  EXPECT_EQ(both[0], "Error: Species number cannot > 6.");
  EXPECT_EQ(both[1], "Error: chemical reaction number cannot > 4.");
  EXPECT_LE(Count(e.NChem) + Count(e.NChem2), 4);
}

TEST(MechanismCompiler, RepeatedCompilesLeaveNothingBehind) {
  Experiment e;
  CompileMechanism(Typed({"A", "B", "B", "C", "C", "D"}, {"D", "A"}, {"A", "B", "C", "D"}), e);
  CompileMechanism(Typed({"X", "Y"}), e);
  EXPECT_EQ(Count(e.NSpecies), 2);
  EXPECT_EQ(Count(e.NCharge), 1);
  EXPECT_EQ(Count(e.NChem), 0);
  EXPECT_EQ(Count(e.NChem2), 0);
  for (int r = 2; r <= 3; ++r) EXPECT_EQ(e.ChargeMap(r, 1), 0);
  EXPECT_EQ(e.ChemMap(1, 1), 0);
  EXPECT_EQ(e.Chem2Map(1, 1), 0);

  MechanismInput fixed;
  fixed.typed = false;
  fixed.fixedMechanism = 8;
  CompileMechanism(fixed, e);
  EXPECT_EQ(e.Mechanism.value(), 8);
  EXPECT_EQ(Count(e.NSpecies), 4);
  EXPECT_EQ(e.ChemMap(1, 1), 3);
  EXPECT_EQ(e.ChemMap(1, 2), 1);
}

}  // namespace
}  // namespace voltrix
