// The slot table: which field of the Experiment each of the 23 boxes fits,
// and which values a fit may start from.
#include "fit/parameter_slots.h"

#include <gtest/gtest.h>

#include "model/errors.h"

namespace voltrix {
namespace {

TEST(ParameterSlots, EachSlotReachesItsOwnFieldAndNoOther) {
  Experiment e;
  for (int slot = 1; slot <= kParameterSlots; ++slot) SlotField(e, slot) = 100 + slot;
  for (int i = 1; i <= 6; ++i) EXPECT_EQ(e.C(i), 100 + i);
  for (int r = 1; r <= 3; ++r) {
    EXPECT_EQ(e.ks(r), 106 + r);
    EXPECT_EQ(e.alph(r), 109 + r);
    EXPECT_EQ(e.Eze(r), 112 + r);
  }
  for (int q = 1; q <= 4; ++q) {
    EXPECT_EQ(e.kf(q), 115 + q);
    EXPECT_EQ(e.kb(q), 119 + q);
  }
  EXPECT_THROW(SlotField(e, 0), RunError);
  EXPECT_THROW(SlotField(e, kFitSlots + 1), RunError);
}

// D of the first species carries the others along: their ratios, and with
// them the balance of the wave, stay as typed.
TEST(ParameterSlots, FittedDiffusionKeepsTheRatiosOfTheSpecies) {
  Experiment e;
  const double typed[] = {0, 1e-5, 2e-5, 0.5e-5, 0, 0, 0};
  for (int i = 1; i <= kMaxSpecies; ++i) e.D(i) = typed[i];
  WriteSlotValue(e, kDiffusionSlot, 3e-5);
  for (int i = 1; i <= kMaxSpecies; ++i) EXPECT_DOUBLE_EQ(e.D(i), 3 * typed[i]) << i;
}

// Only the species and reactions of the mechanism give their value; a fit
// of any other slot starts from 0 (and so at its lower limit or above).
TEST(ParameterSlots, StartValuesComeOnlyFromTheMechanismsOwnSpeciesAndReactions) {
  Experiment e;
  e.NSpecies = 2;
  e.NCharge = 1;
  e.NChem = 1;
  e.NChem2 = 1;
  for (int slot = 1; slot <= kParameterSlots; ++slot) SlotField(e, slot) = 100 + slot;
  for (int slot : {1, 2, 7, 10, 13, 16, 20}) EXPECT_EQ(SlotStartValue(e, slot), 100 + slot) << slot;
  for (int slot : {3, 6, 8, 9, 11, 15, 17, 19, 21, 23}) EXPECT_EQ(SlotStartValue(e, slot), 0) << slot;
}

}  // namespace
}  // namespace voltrix
