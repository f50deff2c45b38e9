#pragma once
// Paints what the plot window presents: the picture (recorded or zoomed)
// with its rows in their looks, the legend in the quietest corner of the
// frame and, under the plot, the residual panel of a fit.
#include <QRectF>

#include "picture_painter.h"
#include "ui/plot_presentation.h"

class QPainter;

namespace voltrix {

void PaintPlot(QPainter& painter, const QRectF& area, const PlotPresentation& plot, const PictureStyle& style = {});

// The part of the area that the picture takes: all of it, or the part
// above the residual panel.
QRectF PictureArea(const QRectF& area, const PlotPresentation& plot);

// Where the frame of the picture stands in that area.
QRectF FrameRect(const QRectF& pictureArea, const PictureGeometry& geometry);

}  // namespace voltrix
