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
};

// Fills area with the background and plays the calls into it. The scale of
// the picture maps onto area; calls before the first scale draw in pixels.
void PaintPicture(QPainter& painter, const QRectF& area, const std::vector<DrawCall>& calls,
                  const PictureStyle& style = {});

}  // namespace voltrix
