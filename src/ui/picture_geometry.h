#pragma once
// What a recorded plot picture tells of itself: the frame, the scale its
// curves were drawn in, the unit line and where each curve row begins. The
// views of the plot window (zoom, legend, pointer position) are built on it,
// so that they show the picture as it was drawn, whatever has changed since.
#include <string>
#include <vector>

#include "model/headless_platform.h"
#include "ui/plot_zoom.h"

namespace voltrix {

// A scale as the drawing surface takes it: left, top, right, bottom.
struct ScaleBox {
  double left = 0, top = 0, right = 1, bottom = 1;
};

struct PictureGeometry {
  bool framed = false;  // a frame was drawn: there is data to zoom into
  DataRect frame;
  ScaleBox scale;        // the scale of the frame and the curves
  bool reversed = false;  // X grows to the left
  std::string unitLine;  // the first printed line: "I /A  1E-5"
  double labelDrop = 0;  // the "E /V" line below the frame, in frame heights
  bool grid = false;     // lines across the whole frame
};

PictureGeometry ReadGeometry(const std::vector<DrawCall>& calls);

// The part of a picture that draws curve row `row`: calls [begin, end).
struct RowSpan {
  int row = 0;
  std::size_t begin = 0, end = 0;
};

// The rows with at least one call, in the order drawn.
std::vector<RowSpan> RowSpans(const std::vector<RowMark>& marks, std::size_t callCount);

// The data point under pixel (px, py) of a width x height area that shows
// a picture drawn in `scale`.
void PixelToData(const ScaleBox& scale, double width, double height, double px, double py, double& x, double& y);

// The quantity and its unit of a unit line, for a reading: "I /A  1E-5"
// gives "I" and "A"; "Cond *Ohm" gives "Cond" and "1/Ohm".
void UnitOfLine(const std::string& unitLine, std::string& quantity, std::string& unit);

}  // namespace voltrix

namespace voltrix {

// What the status bar shows for the pointer at (x, y) of a picture with that
// unit line: "E = -0.2154 V    I = 2.314E-05 A".
std::string PointerReading(const std::string& unitLine, double x, double y);

}  // namespace voltrix
