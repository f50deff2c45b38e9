#pragma once
// The fittable parameters. A slot is both the number of a parameter and
// the index of its CheckFitted, TextCmin and TextCmax boxes on FormExpr:
// 1 to 6 C, 7 to 9 ks, 10 to 12 alph, 13 to 15 Eze, 16 to 19 kf, 20 to 23 kb,
// and 24 D of the first species, which carries the other species with it.
#include <string>

#include "model/experiment.h"
#include "model/field.h"

namespace voltrix {

class Workbench;

constexpr int kDiffusionSlot = 24;
constexpr int kFitSlots = 24;

// The Experiment field of a slot; "Subscript out of range" outside 1 to 24.
Field& SlotField(Experiment& e, int slot);

// Writes a fitted value into the model. D of the first species moves the D
// of every other species with it, in the ratio they stand in, so that only
// the size of the diffusion changes and not its balance between species.
void WriteSlotValue(Experiment& e, int slot, double value);

// The value a fit starts from: the field of the slot when its species or
// reaction belongs to the mechanism (species 1 to NSpecies, charge
// reactions 1 to NCharge, chemical reactions 1 to NChem), else 0.
double SlotStartValue(const Experiment& e, int slot);

// The parameter as the chemicals form names it, in plain letters: "C(A)",
// "ks(1)", "alpha(1)", "E0(1)", "kf(1)", "kb(1)", "D(A)".
std::string SlotName(Workbench& wb, int slot);

}  // namespace voltrix
