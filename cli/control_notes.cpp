#include "control_notes.h"

#include <map>
#include <utility>

namespace voltrix {

namespace {

using Key = std::pair<std::string, std::string>;

const std::map<Key, ControlNote>& Notes() {
  static const std::map<Key, ControlNote> notes = {
      {{"FormIns", "Estart"}, {"Label2", -1, "V"}},
      {{"FormIns", "Eend"}, {"Label3", -1, "V"}},
      {{"FormIns", "Estep"}, {"Label4", -1, "V"}},
      {{"FormIns", "V"}, {"Label5", -1, "V/s"}},
      {{"FormIns", "td"}, {"Label7", -1, "s"}},
      {{"FormIns", "txttemp"}, {"temp", -1, "\xC2\xB0" "C"}},
      {{"FormIns", "ComboScan"}, {"Label38", -1, ""}},
      {{"FormIns", "TextF"}, {"LabelF", -1, "Hz"}},
      {{"FormIns", "tp"}, {"LabelTp", -1, "s"}},
      {{"FormIns", "Epulse"}, {"Label9", -1, "V"}},
      {{"FormIns", "Noise"}, {"Label11", -1, "%"}},
      {{"FormIns", "Cdl"}, {"Label12", -1, "F"}},
      {{"FormIns", "txtRu"}, {"Label6", -1, "Ohm"}},
      {{"FormIns", "ARE"}, {"Label8", -1, "cm\xC2\xB2"}},
      {{"FormIns", "radius"}, {"LabelRadius", -1, "cm"}},
      {{"FormIns", "TextDis"}, {"LabelDis", -1, "cm"}},
      {{"FormIns", "leng"}, {"LabelLength", -1, "cm"}},
      {{"FormIns", "TextRrate"}, {"LabelRrate", -1, "rpm"}},
      {{"FormIns", "txtEPre"}, {"LabelEpre", -1, "V"}},
      {{"FormIns", "txtRStir"}, {"LabelEPreconConst", -1, "rpm"}},
      {{"FormIns", "txtTPre"}, {"Labeltpre", -1, "s"}},
      {{"FormIns", "txtTpreconst"}, {"Label35", -1, "1/s"}},
      {{"FormIns", "txtPconst"}, {"LabelVsol", -1, ""}},
      {{"FormExpr", "D"}, {"Label20", -1, "cm\xC2\xB2/s"}},
      {{"FormExpr", "C"}, {"Label21", -1, "M"}},
      {{"FormExpr", "Cinit"}, {"Label33", 0, "M"}},
      {{"FormExpr", "Cond"}, {"", -1, "per M"}},
      {{"FormExpr", "TextCmin"}, {"", -1, "of the slot"}},
      {{"FormExpr", "TextCmax"}, {"", -1, "of the slot"}},
      {{"FormExpr", "ks"}, {"LabelKs", -1, "cm/s"}},
      {{"FormExpr", "alph"}, {"LabelAlpha", -1, ""}},
      {{"FormExpr", "Eze"}, {"LabelE0", -1, "V"}},
      {{"FormExpr", "pl"}, {"Label36", -1, ""}},
      {{"FormExpr", "kf"}, {"", -1, "1/s"}},
      {{"FormExpr", "kb"}, {"", -1, "1/s"}},
      {{"FormExpr", "LabelKeq"}, {"Label25", 0, ""}},
      {{"FormExpr", "TextElectrolyteC"}, {"LabelElectrolyteC", -1, "M"}},
      {{"FormExpr", "TextElectrolyteCond"}, {"LabelElectrolyteCond", -1, "per M"}},
      {{"FormExpr", "TextVis"}, {"LabelVis", -1, "cm\xC2\xB2/s"}},
      {{"FormMech", "charge"}, {"Label1", -1, ""}},
      {{"FormMech", "NEL"}, {"", -1, "electrons"}},
      {{"FormMech", "chem"}, {"Label2", -1, ""}},
      {{"FormMech", "chem2"}, {"Label2", -1, ""}},
      {{"formOption", "XminText"}, {"Label2", -1, "V"}},
      {{"formOption", "XmaxText"}, {"Label3", -1, "V"}},
      {{"formOption", "YminText"}, {"Label4", -1, "as plotted"}},
      {{"formOption", "YmaxText"}, {"Label5", -1, "as plotted"}},
      {{"formOption", "ComboY"}, {"", -1, ""}},
  };
  return notes;
}

}  // namespace

const ControlNote* FindControlNote(const std::string& form, const std::string& control) {
  const auto& notes = Notes();
  const auto it = notes.find({form, control});
  return it == notes.end() ? nullptr : &it->second;
}

}  // namespace voltrix
