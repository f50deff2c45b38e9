#include "ui/plot_zoom.h"

#include <algorithm>
#include <cmath>

namespace voltrix {

namespace {
constexpr double kSmallest = 1e-5;  // of the frame's extent: below it single-precision drawing blurs
constexpr double kLargest = 100;

bool Finite(const DataRect& r) {
  return std::isfinite(r.xmin) && std::isfinite(r.xmax) && std::isfinite(r.ymin) && std::isfinite(r.ymax);
}

bool ExtentWithin(double extent, double frameExtent) {
  const double f = std::fabs(frameExtent);
  return extent > kSmallest * f && extent < kLargest * f;
}
}  // namespace

DataRect ZoomedAbout(const DataRect& r, double x, double y, double factor) {
  return {x + (r.xmin - x) * factor, x + (r.xmax - x) * factor, y + (r.ymin - y) * factor, y + (r.ymax - y) * factor};
}

DataRect Panned(const DataRect& r, double dx, double dy) {
  return {r.xmin + dx, r.xmax + dx, r.ymin + dy, r.ymax + dy};
}

DataRect Spanned(double x0, double y0, double x1, double y1) {
  return {std::min(x0, x1), std::max(x0, x1), std::min(y0, y1), std::max(y0, y1)};
}

void PlotZoom::follow(const DataRect& frame) {
  if (frame == frame_) return;
  frame_ = frame;
  window_.reset();
}

bool PlotZoom::zoomTo(const DataRect& window) {
  if (frame_.width() == 0 || frame_.height() == 0 || !Finite(window)) return false;
  if (!ExtentWithin(window.width(), frame_.width()) || !ExtentWithin(window.height(), frame_.height())) return false;
  if (window == frame_) {
    window_.reset();
  } else {
    window_ = window;
  }
  return true;
}

}  // namespace voltrix
