#pragma once
// The legend of a plot with several curve rows: one entry per row drawn,
// named by what filled the row, and the corner of the frame where it hides
// the fewest points of the curves.
#include <array>
#include <string>
#include <vector>

#include "model/headless_platform.h"
#include "ui/plot_zoom.h"

namespace voltrix {

struct LegendEntry {
  int row = 0;
  int style = 0;  // what the row drew: 1 dots, 2 boxes, 3 a joined line
  std::string text;
};

// The rows drawn in the picture, named by the labels recorded for them, or
// "Curve r" where none was. A picture of surface concentrations (its unit
// line begins "C /M") has one row per species, named after it.
std::vector<LegendEntry> LegendEntries(const std::vector<DrawCall>& calls, const std::vector<RowMark>& rows,
                                       const std::string& unitLine,
                                       const std::array<std::string, kMaxCurves + 1>& labels,
                                       const std::vector<std::string>& species);

enum class LegendCorner { TopRight, TopLeft, BottomRight, BottomLeft };

// The corner of the frame, as seen on the screen, whose box of `width` by
// `height` (fractions of the frame) covers the fewest curve points.
LegendCorner QuietestCorner(const std::vector<DrawCall>& calls, const std::vector<RowMark>& rows,
                            const DataRect& frame, bool reversed, double width, double height);

}  // namespace voltrix
