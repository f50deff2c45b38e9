#include "plot_painter.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

namespace voltrix {

namespace {

constexpr double kPanelShare = 0.28;  // of the height, for the residual panel
constexpr double kSampleWidth = 28;   // pixels of a legend line's sample
constexpr double kPadding = 5;

QPointF Map(const QRectF& area, const ScaleBox& s, double x, double y) {
  return {area.left() + (x - s.left) / (s.right - s.left) * area.width(),
          area.top() + (y - s.top) / (s.bottom - s.top) * area.height()};
}

void DrawSample(QPainter& painter, const QRectF& room, const LegendEntry& entry, bool coloured, const QColor& ink) {
  const RowLook look = coloured ? LookOfRow(entry.row, ink) : RowLook{ink, Qt::SolidLine, Marker::Dot};
  const QPointF mid = room.center();
  QPen pen(look.colour);
  pen.setWidthF(1.5);
  pen.setCosmetic(true);
  painter.save();
  if (entry.style == 3) {
    pen.setStyle(look.dash);
    painter.setPen(pen);
    painter.drawLine(QPointF(room.left(), mid.y()), QPointF(room.right(), mid.y()));
  } else if (entry.style == 2) {
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(mid - QPointF(3, 3), mid + QPointF(3, 3)));
  } else {
    for (double dx : {-8.0, 0.0, 8.0}) DrawMarker(painter, mid + QPointF(dx, 0), look.marker, look.colour);
  }
  painter.restore();
}

QPointF LegendPlace(const QRectF& frame, const QSizeF& box, LegendCorner corner) {
  const double inset = 6;
  const bool right = corner == LegendCorner::TopRight || corner == LegendCorner::BottomRight;
  const bool top = corner == LegendCorner::TopRight || corner == LegendCorner::TopLeft;
  return {right ? frame.right() - inset - box.width() : frame.left() + inset,
          top ? frame.top() + inset : frame.bottom() - inset - box.height()};
}

void PaintLegend(QPainter& painter, const QRectF& pictureArea, const PlotPresentation& plot, const PictureStyle& style) {
  const QRectF frame = FrameRect(pictureArea, plot.geometry);
  const QFontMetricsF metrics(style.font, painter.device());
  const double textRoom = std::max(40.0, frame.width() * 0.6 - kSampleWidth);
  double widest = 0;
  for (const LegendEntry& e : plot.legend)
    widest = std::max(widest, metrics.horizontalAdvance(metrics.elidedText(QString::fromStdString(e.text), Qt::ElideRight, textRoom)));
  const QSizeF box(kPadding * 3 + kSampleWidth + widest, kPadding * 2 + metrics.lineSpacing() * plot.legend.size());
  const LegendCorner corner = QuietestCorner(plot.calls, plot.rows, plot.geometry.frame, plot.geometry.reversed,
                                             box.width() / frame.width(), box.height() / frame.height());
  const QRectF legend(LegendPlace(frame, box, corner), box);
  painter.save();
  painter.setFont(style.font);
  painter.setPen(QPen(style.ink, 1));
  painter.setBrush(style.background);
  painter.drawRect(legend);
  double y = legend.top() + kPadding;
  for (const LegendEntry& e : plot.legend) {
    const QRectF line(legend.left() + kPadding, y, legend.width() - 2 * kPadding, metrics.lineSpacing());
    DrawSample(painter, QRectF(line.left(), line.top(), kSampleWidth, line.height()), e, plot.colourRows, style.ink);
    const QString text = metrics.elidedText(QString::fromStdString(e.text), Qt::ElideRight, textRoom);
    painter.setPen(style.ink);
    painter.drawText(QPointF(line.left() + kSampleWidth + kPadding, line.top() + metrics.ascent()), text);
    y += metrics.lineSpacing();
  }
  painter.restore();
}

}  // namespace

QRectF PictureArea(const QRectF& area, const PlotPresentation& plot) {
  if (plot.residual.empty()) return area;
  return QRectF(area.left(), area.top(), area.width(), area.height() * (1 - kPanelShare));
}

QRectF FrameRect(const QRectF& pictureArea, const PictureGeometry& g) {
  return QRectF(Map(pictureArea, g.scale, g.frame.xmin, g.frame.ymax), Map(pictureArea, g.scale, g.frame.xmax, g.frame.ymin))
      .normalized();
}

void PaintPlot(QPainter& painter, const QRectF& area, const PlotPresentation& plot, const PictureStyle& style) {
  PictureStyle rows = style;
  rows.rows = plot.rows;
  rows.colourRows = plot.colourRows;
  const QRectF picture = PictureArea(area, plot);
  PaintPicture(painter, picture, plot.calls, rows);
  if (!plot.legend.empty() && plot.geometry.framed) PaintLegend(painter, picture, plot, style);
  if (!plot.residual.empty())
    PaintPicture(painter, QRectF(area.left(), picture.bottom(), area.width(), area.bottom() - picture.bottom()),
                 plot.residual, style);
}

}  // namespace voltrix
