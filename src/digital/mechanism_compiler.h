#pragma once
// The mechanism compiler: turns the fixed mechanism picked on FormMech, or
// the reactions typed into its boxes, into species numbers: the counts, the
// tables ChargeMap, ChemMap, Chem2Map and, for typed mechanisms, the texts.
#include <array>
#include <string>
#include <vector>

#include "model/experiment.h"

namespace voltrix {

// What the compiler reads of FormMech, as plain texts (index 0 unused).
struct MechanismInput {
  bool typed = true;       // CheckDigital checked
  int fixedMechanism = 0;  // the first mech button that is on, 0 for none
  std::array<std::string, 7> charge{};   // charge(1..6)
  std::array<std::string, 9> chem{};     // chem(1..8)
  std::array<std::string, 13> chem2{};   // chem2(1..12)
  std::array<std::string, 4> nel{};      // texts of NEL(1..3)
};

inline constexpr const char* kTooManySpecies = "Error: Species number cannot > 6.";
inline constexpr const char* kTooManyChemical = "Error: chemical reaction number cannot > 4.";

// Sets Mechanism, NSpecies, NCharge, NChem, NChem2 and the maps (and the
// texts of a typed mechanism) in the Experiment. Returns the limit messages
// to show, in order; neither stops the compile. Repeatable: nothing of an
// earlier compile survives in the counts or the maps.
std::vector<std::string> CompileMechanism(const MechanismInput& input, Experiment& e);

}  // namespace voltrix
