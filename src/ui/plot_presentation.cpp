#include "ui/plot_presentation.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "ui/zoomed_picture.h"

namespace voltrix {

namespace {

constexpr double kPanelMargin = 1.35;  // the panel's scale reaches this far beyond its largest residual

DrawCall Call(const char* op, std::vector<double> args, std::string text = {}) {
  std::vector<float> f;
  for (double a : args) f.push_back(static_cast<float>(a));
  return {op, std::move(f), std::move(text)};
}

double LargestWithin(const ResidualCurve& c, const DataRect& w) {
  double m = 0;
  for (std::size_t i = 0; i < c.x.size() && i < c.r.size(); ++i)
    if (c.x[i] >= w.xmin && c.x[i] <= w.xmax) m = std::max(m, std::fabs(c.r[i]));
  return m;
}

}  // namespace

std::vector<DrawCall> ResidualPicture(const ResidualCurve& c, const PictureGeometry& g, const DataRect& w) {
  std::vector<DrawCall> out;
  const double largest = LargestWithin(c, w);
  const double m = largest > 0 ? largest : 1;
  const DataRect frame{w.xmin, w.xmax, -m, m};
  const ScaleBox across = WindowScale(g, w);
  const double left = std::min(across.left, across.right), right = std::max(across.left, across.right);
  const double top = kPanelMargin * m, bottom = -kPanelMargin * m;
  out.push_back(Call("scale", {left, top, right, bottom}));
  out.push_back(Call("textpos", {left, top}));
  char text[48];
  std::snprintf(text, sizeof text, "data - fit, largest %.3G", largest);
  out.push_back(Call("print", {}, text));
  out.push_back(Call("dashed", {1}));
  out.push_back(Call("line", {frame.xmin, 0, frame.xmax, 0}));
  out.push_back(Call("dashed", {0}));
  if (g.reversed) out.push_back(Call("scale", {right, top, left, bottom}));
  out.push_back(Call("box", {frame.xmin, frame.ymin, frame.xmax, frame.ymax}));
  for (std::size_t i = 1; i < c.x.size() && i < c.r.size(); ++i) {
    double x0 = c.x[i - 1], y0 = c.r[i - 1], x1 = c.x[i], y1 = c.r[i];
    if (ClipSegment(frame, x0, y0, x1, y1)) out.push_back(Call("line", {x0, y0, x1, y1}));
  }
  return out;
}

PlotPresentation PresentPicture(const std::vector<DrawCall>& recorded, const std::vector<RowMark>& rows,
                                PlotViewState& view, const std::vector<std::string>& species,
                                const ResidualCurve& residual) {
  PlotPresentation p;
  const PictureGeometry recordedGeometry = ReadGeometry(recorded);
  if (recordedGeometry.framed) view.zoom.follow(recordedGeometry.frame);
  p.zoomed = recordedGeometry.framed && view.zoom.zoomed();
  if (p.zoomed) {
    ViewPicture zoomed = ZoomedPicture(recorded, rows, recordedGeometry, view.zoom.shown());
    p.calls = std::move(zoomed.calls);
    p.rows = std::move(zoomed.rows);
    p.geometry = ReadGeometry(p.calls);
  } else {
    p.calls = recorded;
    p.rows = rows;
    p.geometry = recordedGeometry;
  }
  const std::vector<LegendEntry> entries = LegendEntries(recorded, rows, recordedGeometry.unitLine, view.rowLabels, species);
  p.colourRows = entries.size() >= 2;
  if (p.colourRows && view.legendShown) p.legend = entries;
  if (recordedGeometry.framed && !residual.x.empty()) p.residual = ResidualPicture(residual, recordedGeometry, view.zoom.shown());
  return p;
}

}  // namespace voltrix

namespace voltrix {

bool ZoomView(PlotViewState& view, const std::vector<DrawCall>& recorded, const DataRect& window) {
  const PictureGeometry g = ReadGeometry(recorded);
  if (!g.framed) return false;
  view.zoom.follow(g.frame);
  return view.zoom.zoomTo(window);
}

}  // namespace voltrix
