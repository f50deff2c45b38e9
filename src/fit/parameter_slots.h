#pragma once
// The 23 fittable parameters. A slot is both the number of a parameter and
// the index of its CheckFitted, TextCmin and TextCmax boxes on FormExpr:
// 1 to 6 C, 7 to 9 ks, 10 to 12 alph, 13 to 15 Eze, 16 to 19 kf, 20 to 23 kb.
#include "model/experiment.h"
#include "model/field.h"

namespace voltrix {

// The Experiment field of a slot; "Subscript out of range" outside 1 to 23.
Field& SlotField(Experiment& e, int slot);

// The value a fit starts from: the field of the slot when its species or
// reaction belongs to the mechanism (species 1 to NSpecies, charge
// reactions 1 to NCharge, chemical reactions 1 to NChem), else 0.
double SlotStartValue(const Experiment& e, int slot);

}  // namespace voltrix
