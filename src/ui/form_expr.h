#pragma once
#include "model/controls.h"

namespace voltrix {

class Workbench;

// "Chemicals": species, heterogeneous and homogeneous reactions, electrolyte
// and the fit limits of every parameter slot. It derives the equilibrium
// constants and the initial concentrations that a run really uses.
class FormExpr : public Form {
 public:
  explicit FormExpr(Workbench& wb);
  // Row layout, then CommitInputs.
  void OK();
  void RowLayout();
  // Cinit from C: pre-equilibration at the starting potential, then
  // preconcentration. Goes on statement by statement past any error.
  void UpdateCinit();
  // LabelKeq(q) = kf(q) / kb(q) when kb(q) > 0.
  void UpdateKeq(int q);

 protected:
  void onActivate() override { RowLayout(); }

 private:
  void buildSpeciesFrame();
  void buildChargeFrame();
  void buildChemicalFrame();
  void buildElectrolyteFrame();
  void buildFitFrame();
  void addSlot(Control& frame, int slot, int left, int top, int width, const char* min, const char* max);
  void copyAnalyticalConcentrations();
  void equilibrateCharge();
  void equilibrateFirstOrder();
  void equilibrateSecondOrder();
  double cinit(int species);                      // value of a Cinit caption
  void setCinit(int species, double value);       // in the pattern "0.###e-#"

  Workbench& wb_;
};

// Concentration factor of preconcentration at a stirred electrode.
double PreconFactor(Workbench& wb);

}  // namespace voltrix
