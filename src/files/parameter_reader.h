#pragma once
// Reads back a parameter file (.par) as "&Save..." writes it: the identity of
// the experiment, the scan, one block per species and, from runs with the
// exact models, "Accurate physics :". Values stay the texts of their lines,
// so that a form box gets the digits the file holds. A file that strays from
// that layout is refused as a whole, naming the line that strays.
#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace voltrix {

// The value lines of one species block; "" where the file leaves one empty.
struct SpeciesValues {
  std::string D, C, ks, alpha, n, Eze, conductivity;
};

struct ParameterRecord {
  // None where the file leaves the line empty (a field never given a value).
  std::optional<int> technique, mechanism, electrode;  // mechanism 0: typed reactions
  std::string Estart, Eend, Estep, tp, td, area, Epulse, noise, points;
  std::vector<SpeciesValues> species;
  bool accurate = false;
};

struct ParameterReadResult {
  bool ok = false;
  ParameterRecord record;
  std::string description;  // what is wrong and on which line, when not ok
};

[[nodiscard]] ParameterReadResult ReadParameterFile(std::istream& in);
[[nodiscard]] ParameterReadResult ReadParameterText(const std::string& text);

// True when the input begins as a parameter file does, with "Technique :".
[[nodiscard]] bool LooksLikeParameterFile(std::istream& in);

}  // namespace voltrix
