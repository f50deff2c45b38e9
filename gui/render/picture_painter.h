#pragma once
// Paints a recorded plot picture with QPainter at any size: the one painter
// behind the plot window, the clipboard, the printer and picture files.
#include <QColor>
#include <QFont>
#include <QRectF>
#include <vector>

#include "model/headless_platform.h"

class QPainter;

namespace voltrix {

struct PictureStyle {
  QColor background = Qt::white;  // the window background
  QColor ink = Qt::black;         // the window text: curves, frame and labels alike
  QFont font = DefaultPlotFont();
  static QFont DefaultPlotFont();  // a bold sans serif of 8.25 points
  // Where curve rows begin; with colourRows each row is drawn in its look.
  std::vector<RowMark> rows;
  bool colourRows = false;
};

enum class Marker { Dot, Diamond, Plus, Cross, Triangle, Square };

// How a curve row looks when rows are told apart: a colour of the palette
// of Okabe and Ito, and a dash pattern and a marker that keep the rows apart
// where the colours print as greys. Row 1 keeps the ink.
struct RowLook {
  QColor colour;
  Qt::PenStyle dash = Qt::SolidLine;
  Marker marker = Marker::Dot;
};
RowLook LookOfRow(int row, const QColor& ink);

// A data point of a row drawn in dots, in the row's marker.
void DrawMarker(QPainter& painter, const QPointF& at, Marker marker, const QColor& colour);

// Fills area with the background and plays the calls into it. The scale of
// the picture maps onto area; calls before the first scale draw in pixels.
void PaintPicture(QPainter& painter, const QRectF& area, const std::vector<DrawCall>& calls,
                  const PictureStyle& style = {});

}  // namespace voltrix
