#pragma once
#include "model/controls.h"
#include "model/platform.h"

namespace voltrix {

// "Plot": a drawing surface only; what is drawn stays until cleared.
class FormPlot : public Form {
 public:
  explicit FormPlot(DrawingSurface& surface)
      : Form("FormPlot", "Plot", {1680, 3210, 5895, 2670}), surface_(surface) {}
  DrawingSurface& surface() { return surface_; }

 private:
  DrawingSurface& surface_;
};

}  // namespace voltrix
