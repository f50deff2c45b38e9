#pragma once
#include <vector>

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
  struct BoxRow;
  struct Columns {  // twips
    int top, pitch, labelLeft, labelWidth, boxLeft, boxWidth;
  };
  void addBoxRows(Control& frame, const std::vector<BoxRow>& rows, const Columns& columns);
  void buildInstrumentFrame();
  void buildElectrodeFrame();
  void buildPreconcentrationFrame();
  void electrodeLayout();
  void updateDropTime();   // td = Estep / V
  void updatePulseTime();  // tp = 0.5 / f

  Workbench& wb_;
};

}  // namespace voltrix
