#pragma once
// The part of the data that the plot window shows: the frame of the picture
// as the plot engine drew it, or a window into the data that the user zoomed
// or panned to. The recorded picture never changes for a zoom; the view is
// drawn from it whenever the window is painted, copied, printed or saved.
#include <array>
#include <optional>
#include <string>

#include "model/experiment.h"

namespace voltrix {

// A rectangle of data: potential along X, the plotted quantity along Y.
struct DataRect {
  double xmin = 0, xmax = 0, ymin = 0, ymax = 0;
  double width() const { return xmax - xmin; }
  double height() const { return ymax - ymin; }
  bool contains(double x, double y) const { return x >= xmin && x <= xmax && y >= ymin && y <= ymax; }
  bool operator==(const DataRect&) const = default;
};

// The window scaled by `factor` about (x, y), which stays where it is on the
// screen: a factor below 1 zooms in.
DataRect ZoomedAbout(const DataRect& r, double x, double y, double factor);
// The window moved by dx along X and dy along Y.
DataRect Panned(const DataRect& r, double dx, double dy);
// The window with these two opposite corners, in either order.
DataRect Spanned(double x0, double y0, double x1, double y1);

class PlotZoom {
 public:
  // Takes the frame of the picture now recorded. A frame other than the last
  // one (a plot with other limits) ends the zoom; the same frame drawn again,
  // as after a resize or a further overlaid run, keeps it.
  void follow(const DataRect& frame);
  bool zoomed() const { return window_.has_value(); }
  const DataRect& frame() const { return frame_; }
  DataRect shown() const { return window_.value_or(frame_); }
  // Shows that window. False, and nothing changes, when there is no frame or
  // the window is no rectangle one can draw: not finite, or an extent below
  // a hundred-thousandth or above a hundred times the frame's. The frame
  // itself is the classic view again.
  bool zoomTo(const DataRect& window);
  void reset() { window_.reset(); }

 private:
  DataRect frame_;
  std::optional<DataRect> window_;
};

// What the plot window shows beyond the classic picture, kept with FormPlot.
struct PlotViewState {
  PlotZoom zoom;
  bool legendShown = true;
  // The name of what each row of YData holds, recorded when a run or an
  // import fills it; index 0 has no meaning.
  std::array<std::string, kMaxCurves + 1> rowLabels;
};

}  // namespace voltrix
