#pragma once
#include "digital/mechanism_compiler.h"
#include "model/controls.h"

namespace voltrix {

class Workbench;

// "Mechanism": one of eight fixed mechanisms, or reactions typed letter by
// letter, and the switch between analytical and digital simulation.
class FormMech : public Form {
 public:
  explicit FormMech(Workbench& wb);
  // FormTech.OK, then CompileMechanism.
  void OK();
  // What the compiler reads of this form.
  MechanismInput mechanismInput() const;

 private:
  void buildFixedFrame();
  void buildTypedFrame();
  void switchMode();  // a click on CheckDigital

  Workbench& wb_;
};

// The body of FormMech.OK after FormTech.OK: compiles the mechanism that the
// form holds into the Experiment and shows the limit messages.
void CompileMechanism(Workbench& wb);

}  // namespace voltrix
