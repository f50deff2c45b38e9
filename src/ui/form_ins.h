#pragma once
#include "model/controls.h"

namespace voltrix {

class Workbench;

// "Instrument": scan, cell, electrode and preconcentration.
class FormIns : public Form {
 public:
  explicit FormIns(Workbench& wb);
  // FormMech.OK, the instrument fields, then the geometry step.
  void OK();
  // The geometry step: the area text and Vsol from the electrode.
  void radius_Change();

 protected:
  void onActivate() override;  // technique layout

 private:
  void buildInstrumentFrame();
  void buildElectrodeFrame();
  void buildPreconcentrationFrame();
  void electrodeLayout();
  void updateDropTime();   // td = Estep / V
  void updatePulseTime();  // tp = 0.5 / f

  Workbench& wb_;
};

}  // namespace voltrix
