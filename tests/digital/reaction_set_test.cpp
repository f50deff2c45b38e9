#include "digital/reaction_set.h"

#include <gtest/gtest.h>

#include "expect_close.h"

namespace voltrix {
namespace {

// A + e = B, then B + B = C (a dimerisation), as the compiler numbers them.
Experiment Dimerisation() {
  Experiment e;
  const std::pair<Field*, double> fields[] = {
      {&e.NSpecies, 3}, {&e.NCharge, 1}, {&e.NChem, 0}, {&e.NChem2, 1}, {&e.C(1), 2e-3}, {&e.C(2), 0}, {&e.C(3), 0},
      {&e.NEL(1), 1},   {&e.ks(1), 1},   {&e.alph(1), 0.5}, {&e.Eze(1), 0}, {&e.kf(1), 10}, {&e.kb(1), 0.5},
      {&e.fRT, 96484.6 / 8.31441 / 298.14}};
  for (auto [field, value] : fields) *field = value;
  for (int i = 1; i <= 3; ++i) e.D(i) = 1e-5;
  e.ChargeMap(1, 1) = 1;
  e.ChargeMap(1, 2) = 2;
  e.Chem2Map(1, 1) = 2;
  e.Chem2Map(1, 2) = 2;
  e.Chem2Map(1, 3) = 3;
  return e;
}

// The second-order constant is per largest concentration; matter is kept
// (two B make one C, so rate(B) + 2 rate(C) = 0), and the derivative agrees
// with a central difference.
TEST(ReactionSet, DimerisationKeepsMatterAndItsDerivative) {
  const ReactionSet set = ReadReactionSet(Dimerisation());
  ASSERT_EQ(set.chemical.size(), 1u);
  EXPECT_DOUBLE_EQ(set.chemical[0].kf, 10 / 2e-3);  // L/(mol s)
  EXPECT_DOUBLE_EQ(set.chemical[0].kb, 0.5);        // one species on that side: s^-1
  double c[kMaxSpecies + 1] = {0, 1e-3, 4e-4, 2e-4};
  double rate[kMaxSpecies + 1], jac[kMaxSpecies + 1][kMaxSpecies + 1];
  HomogeneousRates(set, c, rate, jac);
  EXPECT_CLOSE(rate[2], -2 * (5000 * 4e-4 * 4e-4 - 0.5 * 2e-4), 1e-12);
  EXPECT_NEAR(rate[2] + 2 * rate[3], 0, 1e-18);
  for (int j = 1; j <= 3; ++j) {
    double up[kMaxSpecies + 1], down[kMaxSpecies + 1], cu[kMaxSpecies + 1] = {0, c[1], c[2], c[3]};
    cu[j] += 1e-7;
    HomogeneousRates(set, cu, up);
    cu[j] -= 2e-7;
    HomogeneousRates(set, cu, down);
    for (int i = 1; i <= 3; ++i) EXPECT_NEAR(jac[i][j], (up[i] - down[i]) / 2e-7, 1e-6) << i << "," << j;
  }
}

TEST(ReactionSet, ButlerVolmerRatesMeetAtTheStandardPotential) {
  const ReactionSet set = ReadReactionSet(Dimerisation());
  const ElectrodeRates atE0 = RatesAt(set.charge[0], set.fRT, 0.0);
  EXPECT_DOUBLE_EQ(atE0.kred, 1);
  EXPECT_DOUBLE_EQ(atE0.kox, 1);
  // 59.16 mV per decade of kred/kox at 25 C for one electron (Nernst).
  const ElectrodeRates below = RatesAt(set.charge[0], set.fRT, -0.05916);
  EXPECT_CLOSE(below.kred / below.kox, 10, 2e-3);
}

TEST(ReactionSet, RefusesReactionsThatCannotBeMeant) {
  struct Case {
    const char* what;
    void (*spoil)(Experiment&);
  } cases[] = {
      {"no species", [](Experiment& e) { e.NSpecies = 0; }},
      {"empty side", [](Experiment& e) { e.ChargeMap(1, 2) = 0; }},
      {"same species both sides", [](Experiment& e) { e.ChargeMap(1, 2) = 1; }},
      {"dimer back to itself", [](Experiment& e) { e.Chem2Map(1, 3) = 2, e.Chem2Map(1, 4) = 2; }},
      {"no diffusion of the last species", [](Experiment& e) { e.D(3) = 0; }},
      {"a negative concentration", [](Experiment& e) { e.C(3) = -1e-3; }},
      {"no electrons", [](Experiment& e) { e.NEL(1) = 0; }},
      {"nothing present", [](Experiment& e) { e.C(1) = 0; }},
  };
  for (const Case& c : cases) {
    Experiment e = Dimerisation();
    c.spoil(e);
    EXPECT_THROW(ReadReactionSet(e), RunError) << c.what;
  }
}

}  // namespace
}  // namespace voltrix
