#include "ui/commit.h"

#include "model/checked.h"
#include "model/number_format.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_option.h"
#include "ui/workbench.h"

namespace voltrix {

void CommitInputs(Workbench& wb) {
  wb.formIns().OK();
  Experiment& e = wb.experiment;
  FormExpr& x = wb.formExpr();
  FormMech& mech = wb.formMech();
  auto val = [&](const char* name, int index = -1) { return Val(x.control(name, index).text()); };
  e.Vis = val("TextVis");
  e.ElecC = val("TextElectrolyteC");
  e.ElecCond = val("TextElectrolyteCond");
  for (int i = 1; i <= kMaxCharge; ++i) e.alph(i) = val("alph", i);
  for (int i = 1; i <= kMaxCharge; ++i) e.Eze(i) = val("Eze", i);
  for (int i = 1; i <= kMaxCharge; ++i) e.ks(i) = val("ks", i);
  for (int i = 1; i <= kMaxCharge; ++i) e.NEL(i) = Val(mech.control("NEL", i).text());
  for (int i = 1; i <= kMaxChem; ++i) e.kf(i) = val("kf", i);
  for (int i = 1; i <= kMaxChem; ++i) e.kb(i) = val("kb", i);
  for (int i = 1; i <= kMaxChem; ++i) e.Keq(i) = Val(x.control("LabelKeq", i).caption());
  for (int i = 1; i <= kMaxChem; ++i) e.pl(i) = val("pl", i);
  for (int i = 1; i <= kMaxSpecies; ++i) e.D(i) = val("D", i);
  for (int i = 1; i <= kMaxSpecies; ++i) e.C(i) = Val(x.control("Cinit", i).caption());
  for (int i = 1; i <= kMaxSpecies; ++i) e.Cond(i) = val("Cond", i - 1);
  if (!e.Digital) e.Code = e.Technique * 10 + e.Electrode;
  e.fRT = Div(96484.6 / 8.31441, e.TempK);
  e.RTF = Div(1, e.fRT);
}

void StartCurve(Workbench& wb) {
  Experiment& e = wb.experiment;
  if (e.AutoFitFlag) {
    e.NCurves = 2;
    e.CurNo = 2;
    e.NOverlay = 2;
    return;
  }
  if (wb.formOption().control("overlap").checked() && e.NCurves < 5) {
    e.NCurves = e.NCurves + 1;
    e.CurNo = e.NCurves.value();
    e.NOverlay = e.NCurves.value();
    return;
  }
  e.NCurves = 1;
  e.CurNo = 1;
  e.NOverlay = 1;
}

namespace {

enum class Quantity { Current, Resistance, Conductance, Surface, Other };

Quantity QuantityShown(Workbench& wb) {
  const std::string& text = wb.formOption().control("ComboY").text();
  if (text == "current I") return Quantity::Current;
  if (text == "resistance R") return Quantity::Resistance;
  if (text == "conductance Cond") return Quantity::Conductance;
  if (text == "surface concentration C") return Quantity::Surface;
  return Quantity::Other;
}

// Conductance of the solution at the electrode for point i: the support
// electrolyte plus every species at its surface concentration.
double SolutionConductance(const Experiment& e, const CurveStore& s, int i) {
  double sum = 0;
  for (int j = 1; j <= Count(e.NSpecies); ++j) sum = Checked(sum + s.SurfC(j, i) * e.Cond(j));
  return Checked(e.ElecC * e.ElecCond + sum);
}

// Resistance and conductance need the cell distance and the area as positive
// numbers. When they are not, the user is told so and the rows stay as they
// were: a wrong box must not stop the program or leave a row half written.
void WriteCellQuantity(Workbench& wb, Quantity q) {
  Experiment& e = wb.experiment;
  CurveStore& s = wb.store;
  const std::string& dis = wb.formIns().control("TextDis").text();
  if (!IsNumeric(dis) || !(Val(dis) > 0) || !(e.ARE > 0)) {
    wb.platform.messages.show(
        "Error: Dis (cm) and the electrode area must be numbers above 0 to show resistance or conductance.");
    return;
  }
  const double distance = Val(dis);
  const int first = static_cast<int>(e.First), last = static_cast<int>(e.Last);
  const int row = static_cast<int>(e.CurNo);
  std::vector<double> values;
  try {
    for (int i = first; i <= last; ++i) {
      const double g = SolutionConductance(e, s, i);
      values.push_back(q == Quantity::Resistance ? Div(Div(distance, e.ARE), g) : Checked(Div(e.ARE, distance) * g));
    }
  } catch (const RunError& err) {
    wb.platform.messages.show("Error: " + err.description() +
                              " in the solution's resistance: its conductance is 0 at a point of the curve.");
    return;
  }
  e.NCurves = e.NOverlay.value();
  for (int i = first; i <= last; ++i) s.YData(row, i) = values[i - first];
}

// Inside a run the cell quantity is plain checked arithmetic, point by
// point: a distance that is no number, an area or distance of 0, or a
// solution of no conductance raises where it is met.
void WriteCellQuantityOfRun(Workbench& wb, Quantity q) {
  Experiment& e = wb.experiment;
  CurveStore& s = wb.store;
  const std::string& dis = wb.formIns().control("TextDis").text();
  if (!IsNumeric(dis)) Raise(ErrorKind::TypeMismatch);
  const double factor = q == Quantity::Resistance ? Div(Val(dis), e.ARE) : Div(e.ARE, Val(dis));
  e.NCurves = e.NOverlay.value();
  const int row = static_cast<int>(e.CurNo);
  for (int i = static_cast<int>(e.First); i <= static_cast<int>(e.Last); ++i) {
    const double g = SolutionConductance(e, s, i);
    s.YData(row, i) = q == Quantity::Resistance ? Div(factor, g) : Checked(factor * g);
  }
}

void WriteQuantity(Workbench& wb, bool ofRun) {
  CommitInputs(wb);
  Experiment& e = wb.experiment;
  CurveStore& s = wb.store;
  const int first = static_cast<int>(e.First), last = static_cast<int>(e.Last);
  switch (QuantityShown(wb)) {
    case Quantity::Current: {
      e.NCurves = e.NOverlay.value();
      const int row = static_cast<int>(e.CurNo), total = static_cast<int>(e.NTotalRow);
      for (int i = first; i <= last; ++i) s.YData(row, i) = s.YSim(total, i);
      break;
    }
    case Quantity::Resistance:
    case Quantity::Conductance:
      if (ofRun) WriteCellQuantityOfRun(wb, QuantityShown(wb));
      else WriteCellQuantity(wb, QuantityShown(wb));
      break;
    case Quantity::Surface:
      e.NCurves = e.NSpecies.value();
      for (int j = 1; j <= Count(e.NSpecies); ++j)
        for (int i = first; i <= last; ++i) s.YData(j, i) = s.SurfC(j, i);
      break;
    case Quantity::Other:
      break;
  }
}

}  // namespace

void PlotDataStep(Workbench& wb) { WriteQuantity(wb, false); }

void PlotDataStepOfRun(Workbench& wb) { WriteQuantity(wb, true); }

}  // namespace voltrix
