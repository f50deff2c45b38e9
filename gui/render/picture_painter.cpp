#include "picture_painter.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <cmath>

namespace voltrix {

QFont PictureStyle::DefaultPlotFont() {
  QFont font(QStringLiteral("Sans Serif"));
  font.setStyleHint(QFont::SansSerif);
  font.setPointSizeF(8.25);
  font.setBold(true);
  return font;
}

namespace {

class Mapper {
 public:
  explicit Mapper(const QRectF& area) : area_(area) {}
  void setScale(const std::vector<float>& a) {
    // A scale without extent cannot map anything: keep the previous one.
    if (a.size() < 4 || a[2] == a[0] || a[3] == a[1]) return;
    l_ = a[0], t_ = a[1], r_ = a[2], b_ = a[3];
    scaled_ = true;
  }
  QPointF map(float x, float y) const {
    if (!scaled_) return area_.topLeft() + QPointF(x, y);
    return {area_.left() + (double(x) - l_) / (double(r_) - l_) * area_.width(),
            area_.top() + (double(y) - t_) / (double(b_) - t_) * area_.height()};
  }
  double left() const { return area_.left(); }

 private:
  QRectF area_;
  bool scaled_ = false;
  float l_ = 0, t_ = 0, r_ = 1, b_ = 1;
};

bool Finite(const QPointF& p) { return std::isfinite(p.x()) && std::isfinite(p.y()); }

}  // namespace

void PaintPicture(QPainter& painter, const QRectF& area, const std::vector<DrawCall>& calls,
                  const PictureStyle& style) {
  painter.save();
  painter.setClipRect(area);
  painter.fillRect(area, style.background);
  painter.setRenderHint(QPainter::Antialiasing, true);
  painter.setRenderHint(QPainter::TextAntialiasing, true);
  painter.setFont(style.font);
  QPen pen(style.ink);
  pen.setWidthF(1.0);
  pen.setCosmetic(true);
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  const QFontMetricsF metrics(style.font, painter.device());

  Mapper mapper(area);
  QPointF text = area.topLeft();  // where the next printed line starts
  for (const DrawCall& c : calls) {
    const auto& a = c.args;
    if (c.op == "scale") {
      mapper.setScale(a);
    } else if (c.op == "textpos" && a.size() >= 2) {
      text = mapper.map(a[0], a[1]);
    } else if (c.op == "print") {
      if (Finite(text))
        painter.drawText(QPointF(text.x(), text.y() + metrics.ascent()), QString::fromStdString(c.text));
      // Each print ends the line: the next one starts at the left edge, one line down.
      text = QPointF(mapper.left(), text.y() + metrics.lineSpacing());
    } else if (c.op == "point" && a.size() >= 2) {
      const QPointF p = mapper.map(a[0], a[1]);
      if (!Finite(p)) continue;
      painter.save();
      painter.setPen(Qt::NoPen);
      painter.setBrush(style.ink);
      painter.drawEllipse(p, 1.0, 1.0);
      painter.restore();
    } else if (c.op == "line" && a.size() >= 4) {
      const QPointF p = mapper.map(a[0], a[1]), q = mapper.map(a[2], a[3]);
      if (Finite(p) && Finite(q)) painter.drawLine(p, q);
    } else if (c.op == "box" && a.size() >= 4) {
      const QPointF p = mapper.map(a[0], a[1]), q = mapper.map(a[2], a[3]);
      if (Finite(p) && Finite(q)) painter.drawRect(QRectF(p, q).normalized());
    } else if (c.op == "dashed" && !a.empty()) {
      pen.setStyle(a[0] != 0 ? Qt::DashLine : Qt::SolidLine);
      painter.setPen(pen);
    }
  }
  painter.restore();
}

}  // namespace voltrix
