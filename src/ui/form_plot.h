#pragma once
#include "model/controls.h"
#include "model/platform.h"
#include "ui/plot_zoom.h"

namespace voltrix {

// "Plot": a drawing surface only; what is drawn stays until cleared. The
// view (zoom, legend, row labels) is kept beside the picture, never in it.
class FormPlot : public Form {
 public:
  explicit FormPlot(DrawingSurface& surface)
      : Form("FormPlot", "Plot", {1680, 3210, 5895, 2670}), surface_(surface) {}
  DrawingSurface& surface() { return surface_; }
  PlotViewState& view() { return view_; }

 private:
  DrawingSurface& surface_;
  PlotViewState view_;
};

}  // namespace voltrix
