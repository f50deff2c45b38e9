#include "digital/mechanism_compiler.h"

#include <algorithm>

namespace voltrix {

namespace {

struct FixedRow {
  int species, charge, chem;
  int chargeMap[3][2];
  int chemMap[2];
};

// Species 1 to 4 are the letters A to D of the button captions.
constexpr FixedRow kFixed[9] = {
    {0, 0, 0, {{0, 0}, {0, 0}, {0, 0}}, {0, 0}},
    {2, 1, 0, {{1, 2}, {0, 0}, {0, 0}}, {0, 0}},
    {3, 2, 0, {{1, 2}, {2, 3}, {0, 0}}, {0, 0}},
    {4, 3, 0, {{1, 2}, {2, 3}, {3, 4}}, {0, 0}},
    {4, 2, 0, {{1, 2}, {3, 4}, {0, 0}}, {0, 0}},
    {3, 1, 1, {{1, 2}, {0, 0}, {0, 0}}, {3, 1}},
    {3, 1, 1, {{1, 2}, {0, 0}, {0, 0}}, {2, 3}},
    {2, 1, 1, {{1, 2}, {0, 0}, {0, 0}}, {2, 1}},
    {4, 1, 1, {{1, 2}, {0, 0}, {0, 0}}, {3, 1}},
};

void ClearMaps(Experiment& e) {
  e.ChargeMap.fill(0);
  e.ChemMap.fill(0);
  e.Chem2Map.fill(0);
}

void CompileFixed(const MechanismInput& in, Experiment& e) {
  if (in.fixedMechanism < 1 || in.fixedMechanism > 8) return;
  const FixedRow& row = kFixed[in.fixedMechanism];
  e.Mechanism = in.fixedMechanism;
  e.NSpecies = row.species;
  e.NCharge = row.charge;
  e.NChem = row.chem;
  for (int r = 1; r <= 3; ++r)
    for (int s = 1; s <= 2; ++s) e.ChargeMap(r, s) = static_cast<std::int16_t>(row.chargeMap[r - 1][s - 1]);
  if (row.chem) {
    e.ChemMap(1, 1) = static_cast<std::int16_t>(row.chemMap[0]);
    e.ChemMap(1, 2) = static_cast<std::int16_t>(row.chemMap[1]);
  }
}

// Species number of a box text: the first equal name, 0 when none is equal.
std::int16_t SpeciesOf(const std::string& text, const Experiment& e) {
  for (int i = 1; i <= Count(e.NSpecies); ++i)
    if (e.SpeciesName(i) == text) return static_cast<std::int16_t>(i);
  return 0;
}

// Every box whose text may name a species, in the order of first appearance.
std::vector<const std::string*> SpeciesBoxes(const MechanismInput& in) {
  std::vector<const std::string*> boxes;
  for (int i = 2; i <= 6; ++i) boxes.push_back(&in.charge[i]);
  for (int i = 1; i <= 8; ++i) boxes.push_back(&in.chem[i]);
  for (int i = 1; i <= 12; ++i) boxes.push_back(&in.chem2[i]);
  return boxes;
}

void CountReactions(const MechanismInput& in, Experiment& e) {
  int charge = 0, chem = 0, chem2 = 0;
  for (int r = 1; r <= 3; ++r) {
    if (!in.charge[2 * r - 1].empty()) ++charge;
    if (!in.chem2[4 * r - 3].empty()) ++chem2;
  }
  for (int r = 1; r <= 4; ++r)
    if (!in.chem[2 * r - 1].empty()) ++chem;
  e.NCharge = charge;
  e.NChem = chem;
  e.NChem2 = chem2;
}

// Numbers the species by first appearance. A name beyond the sixth is
// counted for the limit test but has no place, so its boxes map to no
// species; the run then works with the six species that have numbers.
int CollectSpecies(const MechanismInput& in, Experiment& e) {
  std::vector<std::string> names{in.charge[1]};
  e.SpeciesName(1) = in.charge[1];
  for (const std::string* box : SpeciesBoxes(in)) {
    if (box->empty()) continue;
    if (std::find(names.begin(), names.end(), *box) != names.end()) continue;
    names.push_back(*box);
    if (names.size() <= kMaxSpecies) e.SpeciesName(static_cast<long>(names.size())) = *box;
  }
  e.NSpecies = static_cast<double>(std::min<std::size_t>(names.size(), kMaxSpecies));
  return static_cast<int>(names.size());
}

void FillMaps(const MechanismInput& in, Experiment& e) {
  for (int r = 1; r <= 3; ++r)
    for (int s = 1; s <= 2; ++s) e.ChargeMap(r, s) = SpeciesOf(in.charge[2 * r - 2 + s], e);
  for (int r = 1; r <= 4; ++r)
    for (int s = 1; s <= 2; ++s) e.ChemMap(r, s) = SpeciesOf(in.chem[2 * r - 2 + s], e);
  for (int r = 1; r <= 3; ++r)
    for (int s = 1; s <= 4; ++s) e.Chem2Map(r, s) = SpeciesOf(in.chem2[4 * r - 4 + s], e);
}

void BuildTexts(const MechanismInput& in, Experiment& e) {
  for (int r = 1; r <= Count(e.NCharge); ++r)
    e.ChargeText(r) = in.charge[2 * r - 1] + "+" + in.nel[r] + "e=" + in.charge[2 * r];
  const int nChem = Count(e.NChem);
  for (int r = 1; r <= nChem; ++r) e.ChemText(r) = in.chem[2 * r - 1] + "=" + in.chem[2 * r];
  for (int r = 1; r <= Count(e.NChem2); ++r)
    e.ChemText(nChem + r) =
        in.chem2[4 * r - 3] + "+" + in.chem2[4 * r - 2] + "=" + in.chem2[4 * r - 1] + "+" + in.chem2[4 * r];
}

std::vector<std::string> CompileTyped(const MechanismInput& in, Experiment& e) {
  std::vector<std::string> messages;
  e.Mechanism = 0;
  CountReactions(in, e);
  const int distinct = CollectSpecies(in, e);
  if (distinct > kMaxSpecies) messages.emplace_back(kTooManySpecies);
  if (Count(e.NChem) + Count(e.NChem2) > kMaxChem) {
    messages.emplace_back(kTooManyChemical);
    // Only four reactions have constants on FormExpr: the later second-order
    // rows give way first, so the run stays within the rows that exist.
    e.NChem2 = std::max(0, kMaxChem - Count(e.NChem));
  }
  FillMaps(in, e);
  BuildTexts(in, e);
  return messages;
}

}  // namespace

std::vector<std::string> CompileMechanism(const MechanismInput& input, Experiment& e) {
  e.NChem = 0;
  e.NChem2 = 0;
  ClearMaps(e);
  if (!input.typed) {
    CompileFixed(input, e);
    return {};
  }
  return CompileTyped(input, e);
}

}  // namespace voltrix
