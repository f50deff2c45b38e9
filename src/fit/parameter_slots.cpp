#include "fit/parameter_slots.h"

#include "model/checked.h"
#include "model/errors.h"
#include "ui/form_expr.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

enum class SlotGroup { Species, Charge, Chemical };

struct SlotPlace {
  SlotGroup group;
  int index;  // species or reaction number
};

SlotPlace PlaceOf(int slot) {
  if (slot >= 1 && slot <= 6) return {SlotGroup::Species, slot};
  if (slot >= 7 && slot <= 15) return {SlotGroup::Charge, (slot - 7) % 3 + 1};
  if (slot >= 16 && slot <= 23) return {SlotGroup::Chemical, (slot - 16) % 4 + 1};
  if (slot == kDiffusionSlot) return {SlotGroup::Species, 1};
  Raise(ErrorKind::SubscriptOutOfRange);
}

template <class E>
auto& FieldOf(E& e, int slot) {
  const SlotPlace p = PlaceOf(slot);
  if (slot == kDiffusionSlot) return e.D(1);
  if (slot <= 6) return e.C(p.index);
  if (slot <= 9) return e.ks(p.index);
  if (slot <= 12) return e.alph(p.index);
  if (slot <= 15) return e.Eze(p.index);
  if (slot <= 19) return e.kf(p.index);
  return e.kb(p.index);
}

}  // namespace

Field& SlotField(Experiment& e, int slot) { return FieldOf(e, slot); }

void WriteSlotValue(Experiment& e, int slot, double value) {
  if (slot == kDiffusionSlot && e.D(1) != 0.0) {
    const double scale = Div(value, e.D(1));
    for (int i = 2; i <= kMaxSpecies; ++i) e.D(i) = Checked(e.D(i) * scale);
  }
  SlotField(e, slot) = value;
}

double SlotStartValue(const Experiment& e, int slot) {
  const SlotPlace p = PlaceOf(slot);
  int present = 0;
  switch (p.group) {
    case SlotGroup::Species: present = Count(e.NSpecies); break;
    case SlotGroup::Charge: present = Count(e.NCharge); break;
    case SlotGroup::Chemical: present = Count(e.NChem); break;
  }
  if (p.index > present) return 0.0;
  return FieldOf(e, slot).value();
}

std::string SlotName(Workbench& wb, int slot) {
  const SlotPlace p = PlaceOf(slot);
  if (p.group == SlotGroup::Species) {
    const std::string species = wb.formExpr().control("specie", p.index).caption();
    return (slot == kDiffusionSlot ? "D(" : "C(") + species + ")";
  }
  static const char* const kNames[] = {"ks", "alpha", "E0"};
  const std::string number = "(" + std::to_string(p.index) + ")";
  if (p.group == SlotGroup::Charge) return kNames[(slot - 7) / 3] + number;
  return (slot <= 19 ? "kf" : "kb") + number;
}

}  // namespace voltrix
