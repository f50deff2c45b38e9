#include "ui/zoomed_picture.h"

#include <algorithm>
#include <cmath>

#include "model/number_format.h"
#include "ui/axis_marks.h"

namespace voltrix {

namespace {

constexpr int kXParts = 6;  // as the classic marks stand about 0.1 V apart on a sweep of 0.6 V
constexpr int kYParts = 5;

class Builder {
 public:
  explicit Builder(ViewPicture& out) : out_(out) {}
  void add(const char* op, std::vector<double> args, std::string text = {}) {
    std::vector<float> f;
    for (double a : args) f.push_back(static_cast<float>(a));
    out_.calls.push_back({op, std::move(f), std::move(text)});
  }
  void scale(const ScaleBox& s) { add("scale", {s.left, s.top, s.right, s.bottom}); }
  void print(double x, double y, const std::string& text) {
    add("textpos", {x, y});
    add("print", {}, text);
  }
  void row(int r) { out_.rows.push_back({out_.calls.size(), r}); }

 private:
  ViewPicture& out_;
};

std::string UnitPrefix(const std::string& unitLine) {
  const auto gap = unitLine.find("  ");
  return gap == std::string::npos ? std::string() : unitLine.substr(0, gap + 2);
}

// One recorded curve call seen through the window. Boxes keep the size they
// have on the screen, so their size in data follows the window.
void CurveCall(Builder& b, const DrawCall& c, const DataRect& w, double sx, double sy) {
  const auto& a = c.args;
  if (c.op == "point" && a.size() >= 2 && w.contains(a[0], a[1])) {
    b.add("point", {a[0], a[1]});
  } else if (c.op == "line" && a.size() >= 4) {
    double x0 = a[0], y0 = a[1], x1 = a[2], y1 = a[3];
    if (ClipSegment(w, x0, y0, x1, y1)) b.add("line", {x0, y0, x1, y1});
  } else if (c.op == "box" && a.size() >= 4) {
    const double cx = (double(a[0]) + a[2]) / 2, cy = (double(a[1]) + a[3]) / 2;
    const double hx = (double(a[2]) - a[0]) / 2 * sx, hy = (double(a[3]) - a[1]) / 2 * sy;
    if (w.contains(cx, cy)) b.add("box", {cx - hx, cy - hy, cx + hx, cy + hy});
  }
}

void Curves(Builder& b, const std::vector<DrawCall>& recorded, const std::vector<RowMark>& rows,
            const PictureGeometry& g, const DataRect& w) {
  const double sx = w.width() / g.frame.width(), sy = w.height() / g.frame.height();
  for (const RowSpan& span : RowSpans(rows, recorded.size())) {
    b.row(span.row);
    for (std::size_t i = span.begin; i < span.end; ++i) CurveCall(b, recorded[i], w, sx, sy);
  }
  b.row(0);
}

void Marks(Builder& b, const PictureGeometry& g, const DataRect& w, double decade) {
  const double xstep = NiceStep(w.width(), kXParts), ystep = NiceStep(w.height(), kYParts);
  const std::vector<double> xs = MarksWithin(w.xmin, w.xmax, xstep), ys = MarksWithin(w.ymin, w.ymax, ystep);
  for (double x : xs) {
    b.add("line", {x, w.ymin, x, w.ymin + 0.02 * w.height()});
    b.print(x, w.ymin, MarkLabel(x, xstep));
  }
  // The Y marks stand on the edge at which the axis begins on the screen.
  const double edge = g.reversed ? w.xmax : w.xmin, inward = g.reversed ? -1 : 1;
  for (double y : ys) {
    b.add("line", {edge, y, edge + inward * 0.01 * w.width(), y});
    b.print(edge - inward * 0.04 * w.width(), y, MarkLabel(y / decade, ystep / decade));
  }
  if (!g.grid) return;
  for (double x : xs) b.add("line", {x, w.ymin, x, w.ymax});
  for (double y : ys) b.add("line", {w.xmin, y, w.xmax, y});
}

}  // namespace

ScaleBox WindowScale(const PictureGeometry& g, const DataRect& w) {
  const ScaleBox& s = g.scale;
  const double dx = g.frame.width(), dy = g.frame.height();
  const double marginX = (std::max(s.left, s.right) - g.frame.xmax) / dx;
  const double marginTop = (s.top - g.frame.ymax) / dy, marginBottom = (g.frame.ymin - s.bottom) / dy;
  const double lo = w.xmin - marginX * w.width(), hi = w.xmax + marginX * w.width();
  const double top = w.ymax + marginTop * w.height(), bottom = w.ymin - marginBottom * w.height();
  return g.reversed ? ScaleBox{hi, top, lo, bottom} : ScaleBox{lo, top, hi, bottom};
}

bool ClipSegment(const DataRect& r, double& x0, double& y0, double& x1, double& y1) {
  double t0 = 0, t1 = 1;
  const double dx = x1 - x0, dy = y1 - y0;
  const double p[4] = {-dx, dx, -dy, dy};
  const double q[4] = {x0 - r.xmin, r.xmax - x0, y0 - r.ymin, r.ymax - y0};
  for (int k = 0; k < 4; ++k) {
    if (p[k] == 0) {
      if (q[k] < 0) return false;
      continue;
    }
    const double t = q[k] / p[k];
    if (p[k] < 0) t0 = std::max(t0, t);
    else t1 = std::min(t1, t);
    if (t0 > t1) return false;
  }
  const double ax = x0, ay = y0;
  x0 = ax + t0 * dx;
  y0 = ay + t0 * dy;
  x1 = ax + t1 * dx;
  y1 = ay + t1 * dy;
  return true;
}

ViewPicture ZoomedPicture(const std::vector<DrawCall>& recorded, const std::vector<RowMark>& rows,
                          const PictureGeometry& g, const DataRect& w) {
  ViewPicture out;
  Builder b(out);
  const ScaleBox scale = WindowScale(g, w);
  const ScaleBox upright{std::min(scale.left, scale.right), scale.top, std::max(scale.left, scale.right), scale.bottom};
  const double decade = DecadeOf(std::max(std::fabs(w.ymin), std::fabs(w.ymax)));
  b.scale(upright);
  b.print(upright.left, upright.top, UnitPrefix(g.unitLine) + FormatNumber(decade, "0E-0"));
  if (w.ymin < 0 && w.ymax > 0) {
    b.add("dashed", {1});
    b.add("line", {w.xmin, 0, w.xmax, 0});
    b.add("dashed", {0});
  }
  if (g.reversed) b.scale(scale);
  b.add("box", {w.xmin, w.ymin, w.xmax, w.ymax});
  if (g.labelDrop != 0) b.print((w.xmin + w.xmax) / 2, w.ymin - g.labelDrop * w.height(), "E /V");
  Curves(b, recorded, rows, g, w);
  Marks(b, g, w, decade);
  return out;
}

}  // namespace voltrix
