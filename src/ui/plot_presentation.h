#pragma once
// What the plot window paints, copies, prints and saves: the recorded
// picture as it stands, or its zoomed view; whether the curve rows get
// colours of their own; the legend; the residual panel of a fit. An
// untouched plot of one curve presents the recorded picture unchanged.
#include <string>
#include <vector>

#include "model/headless_platform.h"
#include "ui/curve_legend.h"
#include "ui/picture_geometry.h"
#include "ui/plot_zoom.h"

namespace voltrix {

// Data minus fit along X, point by point in the order of the curve.
struct ResidualCurve {
  std::vector<double> x, r;
};

struct PlotPresentation {
  std::vector<DrawCall> calls;  // the recorded picture, or the zoomed view of it
  std::vector<RowMark> rows;    // where each curve row begins in calls
  PictureGeometry geometry;     // of calls
  bool zoomed = false;
  bool colourRows = false;          // two rows or more: each its colour and line
  std::vector<LegendEntry> legend;  // empty: no legend
  std::vector<DrawCall> residual;   // the residual panel's picture; empty: none
};

// The recorded picture as the view shows it. The view follows the frame of
// the picture (a new frame ends a zoom). Species name the rows of a picture
// of surface concentrations.
PlotPresentation PresentPicture(const std::vector<DrawCall>& recorded, const std::vector<RowMark>& rows,
                                PlotViewState& view, const std::vector<std::string>& species,
                                const ResidualCurve& residual);

// The residual panel: a frame from -m to m, m the largest residual within
// the window, under the same X scale as the plot above it, with the zero
// line and the residual joined point to point.
std::vector<DrawCall> ResidualPicture(const ResidualCurve& residual, const PictureGeometry& geometry,
                                      const DataRect& window);

}  // namespace voltrix

namespace voltrix {

// Zooms the view of the recorded picture to `window`; false, with nothing
// changed, when the picture has no frame or the window cannot be drawn.
bool ZoomView(PlotViewState& view, const std::vector<DrawCall>& recorded, const DataRect& window);

}  // namespace voltrix
