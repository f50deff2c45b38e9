#include "files/parameter_file.h"

#include <sstream>

#include "model/number_format.h"

namespace voltrix {

namespace {

void Pair(std::ostream& out, const char* label, const std::string& value) {
  out << label << "\r\n" << value << "\r\n";
}

void Pair(std::ostream& out, const char* label, const Field& value) { Pair(out, label, PlainNumber(value)); }

// Entry i of the reaction arrays stands beside species i, so with more
// species than reactions the later blocks show unused entries.
void SpeciesBlock(std::ostream& out, const Experiment& e, int i) {
  Pair(out, "Species ", PlainNumber(static_cast<double>(i)));
  Pair(out, "D :", e.D(i));
  Pair(out, "C :", e.C(i));
  Pair(out, "ks :", e.ks(i));
  Pair(out, "Alpha :", e.alph(i));
  Pair(out, "n :", e.NEL(i));
  Pair(out, "E' :", e.Eze(i));
  Pair(out, "Conductivity :", e.Cond(i));
}

}  // namespace

bool WriteParameterFile(std::ostream& out, const Experiment& e) {
  // The labels are the file's own and stay exactly as users' files have them.
  Pair(out, "Technique :", e.Technique);
  Pair(out, "Mechisim :", e.Mechanism);
  Pair(out, "Electorde", e.Electrode);
  Pair(out, "E start :", e.Estart);
  Pair(out, "E end :", e.Eend);
  Pair(out, "E Step :", e.Estep);
  Pair(out, "t pulse :", e.tp);
  Pair(out, "t drop :", e.td);
  Pair(out, "Area Of Electrode :", e.ARE);
  Pair(out, "E pulse :", e.Epulse);
  Pair(out, "Noise (%) :", e.Noise);
  Pair(out, "No. OF DATA :", e.NData);
  Pair(out, "NUMBER OF SPECIES :", e.NSpecies);
  for (int i = 1; i <= Count(e.NSpecies); ++i) SpeciesBlock(out, e, i);
  // Only a run with the exact models says so: a classic file stays as it was.
  if (e.Accurate) Pair(out, "Accurate physics :", PlainNumber(1.0));
  return out.good();
}

std::string ParameterFileText(const Experiment& e) {
  std::ostringstream out;
  (void)WriteParameterFile(out, e);
  return out.str();
}

}  // namespace voltrix
