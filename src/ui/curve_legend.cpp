#include "ui/curve_legend.h"

#include "ui/picture_geometry.h"

namespace voltrix {

namespace {

int StyleOf(const std::vector<DrawCall>& calls, const RowSpan& span) {
  const std::string& first = calls[span.begin].op;
  if (first == "box") return 2;
  if (span.end - span.begin > 1 && calls[span.begin + 1].op == "line") return 3;
  return 1;
}

std::string RowName(int row, const std::string& unitLine, const std::array<std::string, kMaxCurves + 1>& labels,
                    const std::vector<std::string>& species) {
  const bool surface = unitLine.rfind("C /M", 0) == 0;
  if (surface && row >= 1 && row <= static_cast<int>(species.size()))
    return "surface concentration of " + species[static_cast<std::size_t>(row - 1)];
  if (!surface && row >= 1 && row <= kMaxCurves && !labels[static_cast<std::size_t>(row)].empty())
    return labels[static_cast<std::size_t>(row)];
  return "Curve " + std::to_string(row);
}

// Where a drawing call puts its point: a box by its centre, a line by its end.
bool PointOf(const DrawCall& c, double& x, double& y) {
  const auto& a = c.args;
  if (c.op == "point" && a.size() >= 2) {
    x = a[0];
    y = a[1];
  } else if (c.op == "line" && a.size() >= 4) {
    x = a[2];
    y = a[3];
  } else if (c.op == "box" && a.size() >= 4) {
    x = (double(a[0]) + a[2]) / 2;
    y = (double(a[1]) + a[3]) / 2;
  } else {
    return false;
  }
  return true;
}

}  // namespace

std::vector<LegendEntry> LegendEntries(const std::vector<DrawCall>& calls, const std::vector<RowMark>& rows,
                                       const std::string& unitLine,
                                       const std::array<std::string, kMaxCurves + 1>& labels,
                                       const std::vector<std::string>& species) {
  std::vector<LegendEntry> entries;
  for (const RowSpan& span : RowSpans(rows, calls.size()))
    entries.push_back({span.row, StyleOf(calls, span), RowName(span.row, unitLine, labels, species)});
  return entries;
}

LegendCorner QuietestCorner(const std::vector<DrawCall>& calls, const std::vector<RowMark>& rows,
                            const DataRect& frame, bool reversed, double width, double height) {
  const LegendCorner corners[] = {LegendCorner::TopRight, LegendCorner::TopLeft, LegendCorner::BottomRight,
                                  LegendCorner::BottomLeft};
  long covered[4] = {0, 0, 0, 0};
  for (const RowSpan& span : RowSpans(rows, calls.size()))
    for (std::size_t i = span.begin; i < span.end; ++i) {
      double x = 0, y = 0;
      if (!PointOf(calls[i], x, y) || !frame.contains(x, y)) continue;
      double across = (x - frame.xmin) / frame.width();  // 0 at the left of the screen
      if (reversed) across = 1 - across;
      const double up = (y - frame.ymin) / frame.height();
      const bool right = across >= 1 - width, left = across <= width;
      const bool top = up >= 1 - height, bottom = up <= height;
      covered[0] += top && right;
      covered[1] += top && left;
      covered[2] += bottom && right;
      covered[3] += bottom && left;
    }
  int best = 0;
  for (int k = 1; k < 4; ++k)
    if (covered[k] < covered[best]) best = k;
  return corners[best];
}

}  // namespace voltrix
