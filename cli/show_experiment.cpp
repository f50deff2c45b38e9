#include "show_experiment.h"

#include <string>

#include "model/number_format.h"

namespace voltrix {

namespace {

void Line(std::ostream& out, const std::string& name, const std::string& value) { out << name << " = " << value << "\n"; }

void Number(std::ostream& out, const char* name, const Field& f) { Line(out, name, PlainNumber(f)); }

void Flag(std::ostream& out, const char* name, bool b) { Line(out, name, b ? "True" : "False"); }

template <int N>
void Numbers(std::ostream& out, const char* name, const Table1<Field, N>& a) {
  for (int i = 1; i < N; ++i) Line(out, std::string(name) + "(" + std::to_string(i) + ")", PlainNumber(a(i)));
}

template <int N>
void Texts(std::ostream& out, const char* name, const Table1<std::string, N>& a) {
  for (int i = 1; i < N; ++i) Line(out, std::string(name) + "(" + std::to_string(i) + ")", a(i));
}

template <class Map>
void MapLines(std::ostream& out, const char* name, const Map& m, int rows, int places) {
  for (int r = 1; r <= rows; ++r)
    for (int s = 1; s <= places; ++s)
      Line(out, std::string(name) + "(" + std::to_string(r) + "," + std::to_string(s) + ")", PlainNumber(m(r, s)));
}

}  // namespace

void WriteExperiment(std::ostream& out, const Experiment& e) {
  const std::pair<const char*, const Field*> instrument[] = {
      {"Estart", &e.Estart}, {"Eend", &e.Eend}, {"Estep", &e.Estep},   {"ARE", &e.ARE},       {"Cdl", &e.Cdl},
      {"Ru", &e.Ru},         {"TempK", &e.TempK}, {"Epulse", &e.Epulse}, {"Noise", &e.Noise}, {"td", &e.td},
      {"tp", &e.tp},         {"V", &e.V},       {"leng", &e.leng},     {"radius", &e.radius}, {"omega", &e.omega},
      {"Cycles", &e.Cycles}, {"Vsol", &e.Vsol}, {"Vis", &e.Vis},       {"ElecC", &e.ElecC},   {"ElecCond", &e.ElecCond}};
  for (auto [name, f] : instrument) Number(out, name, *f);
  Numbers(out, "alph", e.alph);
  Numbers(out, "Eze", e.Eze);
  Numbers(out, "ks", e.ks);
  Numbers(out, "NEL", e.NEL);
  Numbers(out, "kf", e.kf);
  Numbers(out, "kb", e.kb);
  Numbers(out, "Keq", e.Keq);
  Numbers(out, "pl", e.pl);
  Numbers(out, "D", e.D);
  Numbers(out, "C", e.C);
  Numbers(out, "Cond", e.Cond);
  const std::pair<const char*, const Field*> selectors[] = {
      {"Technique", &e.Technique}, {"Electrode", &e.Electrode}, {"Mechanism", &e.Mechanism}, {"Code", &e.Code},
      {"fRT", &e.fRT},             {"RTF", &e.RTF},             {"NSpecies", &e.NSpecies},   {"NCharge", &e.NCharge},
      {"NChem", &e.NChem},         {"NChem2", &e.NChem2}};
  for (auto [name, f] : selectors) Number(out, name, *f);
  Flag(out, "Digital", e.Digital);
  Flag(out, "Accurate", e.Accurate);
  MapLines(out, "ChargeMap", e.ChargeMap, 3, 2);
  MapLines(out, "ChemMap", e.ChemMap, 4, 2);
  MapLines(out, "Chem2Map", e.Chem2Map, 3, 4);
  Texts(out, "SpeciesName", e.SpeciesName);
  Texts(out, "ChargeText", e.ChargeText);
  Texts(out, "ChemText", e.ChemText);
  const std::pair<const char*, const Field*> run[] = {
      {"dirSign", &e.dirSign}, {"NHalf", &e.NHalf},         {"NData", &e.NData},       {"First", &e.First},
      {"Last", &e.Last},       {"NTotalRow", &e.NTotalRow}, {"CurNo", &e.CurNo},       {"NCurves", &e.NCurves},
      {"NOverlay", &e.NOverlay}, {"tElapsed", &e.tElapsed}, {"Xmin", &e.Xmin},         {"Xmax", &e.Xmax},
      {"Ymin", &e.Ymin},       {"Ymax", &e.Ymax},           {"FittedCount", &e.FittedCount},
      {"ObjectiveCount", &e.ObjectiveCount}, {"DataSpread", &e.DataSpread}};
  for (auto [name, f] : run) Number(out, name, *f);
  Flag(out, "AutoFitFlag", e.AutoFitFlag);
  Flag(out, "GridFlag", e.GridFlag);
  Flag(out, "OverlapFlag", e.OverlapFlag);
  for (int i = 1; i <= kMaxFitted; ++i)
    Line(out, "FittedSlots(" + std::to_string(i) + ")", PlainNumber(e.FittedSlots(i)));
}

}  // namespace voltrix
