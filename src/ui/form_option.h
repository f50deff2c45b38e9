#pragma once
#include "model/controls.h"

namespace voltrix {

class Workbench;

// "Option": axis limits, the plotted quantity, overlap, grid and line styles.
class FormOption : public Form {
 public:
  explicit FormOption(Workbench& wb);
  // Reads the form into the model: flags, manual limits, line styles.
  void OK();

 private:
  Workbench& wb_;
};

}  // namespace voltrix
