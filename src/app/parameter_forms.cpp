#include "app/parameter_forms.h"

#include <cmath>
#include <cstdio>
#include <string>

#include "model/number_format.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_tech.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

constexpr double kPi = 3.141592654;

void SetIfGiven(Control& box, const std::string& text) {
  if (!text.empty()) box.setText(text);
}

// Six significant digits: the area, printed to three, comes out the same.
std::string RadiusText(double r) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", r);
  return GeneralText(Val(text));
}

void ApplyMechanism(Workbench& wb, const ParameterRecord& p) {
  FormMech& mech = wb.formMech();
  if (p.mechanism) {
    mech.control("CheckDigital").setValue(*p.mechanism == 0);
    if (*p.mechanism > 0) mech.control("mech", *p.mechanism).setValue(1);
  }
  mech.control("CheckAccurate").setValue(p.accurate);
  // The electron number of reaction i stands in species block i.
  for (std::size_t i = 1; i <= p.species.size() && i <= kMaxCharge; ++i)
    SetIfGiven(mech.control("NEL", static_cast<int>(i)), p.species[i - 1].n);
}

// The file keeps no scan rate or frequency, but the drop time is the step
// over the scan rate, and the pulse time of square waves half a period:
// both come back, and the times stay the file's own.
void ApplyScan(FormIns& ins, const ParameterRecord& p, int technique) {
  SetIfGiven(ins.control("Estart"), p.Estart);
  SetIfGiven(ins.control("Eend"), p.Eend);
  SetIfGiven(ins.control("Estep"), p.Estep);
  if (!p.Estep.empty() && Val(p.td) > 0) ins.control("V").setText(GeneralText(std::fabs(Val(p.Estep)) / Val(p.td)));
  SetIfGiven(ins.control("td"), p.td);
  if (technique == 5 && Val(p.tp) > 0) ins.control("TextF").setText(GeneralText(0.5 / Val(p.tp)));
  SetIfGiven(ins.control("tp"), p.tp);
  SetIfGiven(ins.control("Epulse"), p.Epulse);
  SetIfGiven(ins.control("Noise"), p.noise);
}

void ApplyArea(FormIns& ins, const ParameterRecord& p, int electrode) {
  if (p.area.empty()) return;
  const double radius = RadiusForArea(electrode, Val(p.area), Val(ins.control("leng").text()));
  if (radius > 0) {
    ins.control("radius").setText(RadiusText(radius));
  } else {
    ins.control("ARE").setText(p.area);
  }
}

void ApplyInstrument(Workbench& wb, const ParameterRecord& p) {
  FormIns& ins = wb.formIns();
  if (p.electrode) ins.control("optElectrode", *p.electrode).setValue(1);
  const int technique = p.technique.value_or(static_cast<int>(wb.experiment.Technique));
  ApplyScan(ins, p, technique);
  ApplyArea(ins, p, p.electrode.value_or(static_cast<int>(wb.experiment.Electrode)));
}

// The file's C is the concentration a run started from; it becomes the
// analytical concentration of the form.
void ApplyChemicals(Workbench& wb, const ParameterRecord& p) {
  FormExpr& x = wb.formExpr();
  for (std::size_t i = 1; i <= p.species.size() && i <= kMaxSpecies; ++i) {
    const SpeciesValues& s = p.species[i - 1];
    const int k = static_cast<int>(i);
    SetIfGiven(x.control("D", k), s.D);
    SetIfGiven(x.control("C", k), s.C);
    SetIfGiven(x.control("Cond", k - 1), s.conductivity);
    if (k > kMaxCharge) continue;
    SetIfGiven(x.control("ks", k), s.ks);
    SetIfGiven(x.control("alph", k), s.alpha);
    SetIfGiven(x.control("Eze", k), s.Eze);
  }
}

bool Moved(double now, double file) { return std::fabs(now - file) > 1e-9 * std::fabs(file); }

// The row layout commits the forms as a run would, so the mechanism now on
// them decides how pre-equilibration moves the concentrations.
bool KeepFileConcentrations(FormExpr& x, const ParameterRecord& p) {
  Control& preEquilibration = x.control("CheckPreEqu");
  if (!preEquilibration.checked()) return false;
  x.RowLayout();
  for (std::size_t i = 1; i <= p.species.size() && i <= kMaxSpecies; ++i) {
    const std::string& c = p.species[i - 1].C;
    if (c.empty() || !Moved(Val(x.control("Cinit", static_cast<int>(i)).caption()), Val(c))) continue;
    preEquilibration.setValue(0);  // its click copies each C as it stands
    return true;
  }
  return false;
}

}  // namespace

double RadiusForArea(int electrode, double area, double length) {
  if (!(area > 0)) return 0;
  switch (electrode) {
    case 2: return std::sqrt(area / (4 * kPi));
    case 3: return std::sqrt(area / (2 * kPi));
    case 4:
    case 8: return std::sqrt(area / kPi);
    case 5: return -length + std::sqrt(length * length + area / kPi);      // 2 pi L r + pi r^2
    case 6: return -length + std::sqrt(length * length + 2 * area / kPi);  // pi L r + pi r^2 / 2
    default: return 0;
  }
}

AppliedParameters ApplyParameters(Workbench& wb, const ParameterRecord& p) {
  ApplyMechanism(wb, p);
  if (p.technique) wb.formTech().control("optTech", *p.technique).setValue(1);
  ApplyInstrument(wb, p);
  ApplyChemicals(wb, p);
  AppliedParameters applied;
  applied.preEquilibrationOff = KeepFileConcentrations(wb.formExpr(), p);
  return applied;
}

}  // namespace voltrix
