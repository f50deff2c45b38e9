#pragma once
#include "model/controls.h"

namespace voltrix {

class Workbench;

// "Techniques": picks the voltammetric technique.
class FormTech : public Form {
 public:
  explicit FormTech(Workbench& wb);
  // Technique = the number of the first optTech button that is on.
  void OK();

 private:
  Workbench& wb_;
};

}  // namespace voltrix
