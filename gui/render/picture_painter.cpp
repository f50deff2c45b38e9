#include "picture_painter.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPen>
#include <QPolygonF>
#include <algorithm>
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

// Manual limits far inside the data put points millions of pixels away; the
// rasteriser works in fixed point and must not see them. Lines are clipped
// (Liang-Barsky) to the area grown by a margin, so their slope stays true.
bool ClipLine(const QRectF& r, QPointF& p, QPointF& q) {
  double t0 = 0, t1 = 1;
  const double dx = q.x() - p.x(), dy = q.y() - p.y();
  const double pk[4] = {-dx, dx, -dy, dy};
  const double qk[4] = {p.x() - r.left(), r.right() - p.x(), p.y() - r.top(), r.bottom() - p.y()};
  for (int k = 0; k < 4; ++k) {
    if (pk[k] == 0) {
      if (qk[k] < 0) return false;
      continue;
    }
    const double t = qk[k] / pk[k];
    if (pk[k] < 0) t0 = std::max(t0, t);
    else t1 = std::min(t1, t);
    if (t0 > t1) return false;
  }
  const QPointF a = p;
  p = a + QPointF(dx * t0, dy * t0);
  q = a + QPointF(dx * t1, dy * t1);
  return true;
}

// Labels are placed by their upper left corner, so a label printed at a
// corner shared with another (the lowest Y label beside the first X label)
// would run into it. A line that would come closer than a space to one
// painted before, on most of its height, moves left until a space separates
// them.
class TextPlaces {
 public:
  explicit TextPlaces(const QFontMetricsF& metrics) : metrics_(metrics) {}
  QPointF place(QPointF at, const QString& text) {
    QRectF box(at, QSizeF(metrics_.horizontalAdvance(text), metrics_.height()));
    const double gap = metrics_.horizontalAdvance(QLatin1Char(' '));
    for (bool moved = true; moved;) {
      moved = false;
      for (const QRectF& earlier : painted_) {
        const QRectF common = box.intersected(earlier.adjusted(-gap, 0, gap, 0));
        if (common.isEmpty() || common.height() < 0.5 * box.height()) continue;
        box.moveLeft(std::floor(earlier.left() - gap - box.width()));  // whole pixels keep the glyphs crisp
        moved = true;
      }
    }
    painted_.push_back(box);
    return box.topLeft();
  }

 private:
  const QFontMetricsF& metrics_;
  std::vector<QRectF> painted_;
};

// Curve rows in their looks. A joined line is gathered into one polyline so
// that its dashes run on from segment to segment; dots become markers.
class RowInk {
 public:
  RowInk(QPainter& painter, const std::vector<DrawCall>& calls, const PictureStyle& style, QPen& ink)
      : painter_(painter), calls_(calls), style_(style), ink_(ink) {}
  bool active() const { return row_ > 0; }

  // Before call i: a row that begins there changes the pen.
  void before(std::size_t i) {
    if (!style_.colourRows) return;
    while (next_ < style_.rows.size() && style_.rows[next_].at <= i) begin(style_.rows[next_++].row, i);
  }
  void point(const QPointF& p) {
    flush();
    if (joined_) {  // the start of a joined line is no data marker
      painter_.drawPoint(p);
      return;
    }
    DrawMarker(painter_, p, look_.marker, look_.colour);
  }
  void line(const QPointF& p, const QPointF& q) {
    if (path_.isEmpty() || path_.last() != p) {
      flush();
      path_ << p;
    }
    path_ << q;
  }
  void flush() {
    if (path_.size() < 2) {
      path_.clear();
      return;
    }
    QPen pen = painter_.pen();
    pen.setStyle(look_.dash);
    painter_.save();
    painter_.setPen(pen);
    painter_.drawPolyline(path_);
    painter_.restore();
    path_.clear();
  }

 private:
  void begin(int row, std::size_t i) {
    flush();
    row_ = row;
    if (row <= 0) {
      painter_.setPen(ink_);
      return;
    }
    look_ = LookOfRow(row, style_.ink);
    joined_ = i + 1 < calls_.size() && calls_[i].op == "point" && calls_[i + 1].op == "line";
    QPen pen(look_.colour);
    pen.setWidthF(1.5);
    pen.setCosmetic(true);
    painter_.setPen(pen);
  }

  QPainter& painter_;
  const std::vector<DrawCall>& calls_;
  const PictureStyle& style_;
  QPen& ink_;
  std::size_t next_ = 0;
  int row_ = 0;
  bool joined_ = false;
  RowLook look_;
  QPolygonF path_;
};

}  // namespace

RowLook LookOfRow(int row, const QColor& ink) {
  // Okabe and Ito (2008): blue, vermillion, bluish green, reddish purple, orange.
  static const QColor palette[] = {QColor(0, 114, 178), QColor(213, 94, 0), QColor(0, 158, 115),
                                   QColor(204, 121, 167), QColor(230, 159, 0)};
  static const Qt::PenStyle dashes[] = {Qt::SolidLine,   Qt::DashLine,       Qt::DotLine,
                                        Qt::DashDotLine, Qt::DashDotDotLine, Qt::DashLine};
  static const Marker markers[] = {Marker::Dot, Marker::Diamond, Marker::Plus, Marker::Cross, Marker::Triangle,
                                   Marker::Square};
  const int k = std::clamp(row, 1, 6) - 1;
  return {k == 0 ? ink : palette[k - 1], dashes[k], markers[k]};
}

void DrawMarker(QPainter& painter, const QPointF& at, Marker marker, const QColor& colour) {
  constexpr double r = 2.5;
  painter.save();
  QPen pen(colour);
  pen.setWidthF(1.2);
  pen.setCosmetic(true);
  painter.setPen(pen);
  painter.setBrush(Qt::NoBrush);
  switch (marker) {
    case Marker::Dot:
      painter.setPen(Qt::NoPen);
      painter.setBrush(colour);
      painter.drawEllipse(at, 1.4, 1.4);
      break;
    case Marker::Diamond:
      painter.drawPolygon(QPolygonF({at + QPointF(0, -r), at + QPointF(r, 0), at + QPointF(0, r), at + QPointF(-r, 0)}));
      break;
    case Marker::Plus:
      painter.drawLine(at + QPointF(-r, 0), at + QPointF(r, 0));
      painter.drawLine(at + QPointF(0, -r), at + QPointF(0, r));
      break;
    case Marker::Cross:
      painter.drawLine(at + QPointF(-r, -r), at + QPointF(r, r));
      painter.drawLine(at + QPointF(-r, r), at + QPointF(r, -r));
      break;
    case Marker::Triangle:
      painter.drawPolygon(QPolygonF({at + QPointF(0, -r), at + QPointF(r, r), at + QPointF(-r, r)}));
      break;
    case Marker::Square:
      painter.drawRect(QRectF(at - QPointF(r * 0.8, r * 0.8), at + QPointF(r * 0.8, r * 0.8)));
      break;
  }
  painter.restore();
}

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
  const QRectF reach = area.adjusted(-area.width() - 10, -area.height() - 10, area.width() + 10, area.height() + 10);
  QPointF text = area.topLeft();  // where the next printed line starts
  TextPlaces labels(metrics);
  RowInk rows(painter, calls, style, pen);
  for (const DrawCall& c : calls) {
    const auto& a = c.args;
    rows.before(static_cast<std::size_t>(&c - calls.data()));
    if (c.op == "scale") {
      mapper.setScale(a);
    } else if (c.op == "textpos" && a.size() >= 2) {
      text = mapper.map(a[0], a[1]);
    } else if (c.op == "print") {
      if (Finite(text) && reach.contains(text)) {
        const QString line = QString::fromStdString(c.text);
        const QPointF at = labels.place(text, line);
        painter.drawText(QPointF(at.x(), at.y() + metrics.ascent()), line);
      }
      // Each print ends the line: the next one starts at the left edge, one line down.
      text = QPointF(mapper.left(), text.y() + metrics.lineSpacing());
    } else if (c.op == "point" && a.size() >= 2) {
      const QPointF p = mapper.map(a[0], a[1]);
      if (!Finite(p) || !reach.contains(p)) continue;
      if (rows.active()) {
        rows.point(p);
        continue;
      }
      painter.save();
      painter.setPen(Qt::NoPen);
      painter.setBrush(style.ink);
      painter.drawEllipse(p, 1.0, 1.0);
      painter.restore();
    } else if (c.op == "line" && a.size() >= 4) {
      QPointF p = mapper.map(a[0], a[1]), q = mapper.map(a[2], a[3]);
      if (!Finite(p) || !Finite(q) || !ClipLine(reach, p, q)) continue;
      if (rows.active()) {
        rows.line(p, q);
      } else {
        painter.drawLine(p, q);
      }
    } else if (c.op == "box" && a.size() >= 4) {
      const QPointF p = mapper.map(a[0], a[1]), q = mapper.map(a[2], a[3]);
      if (!Finite(p) || !Finite(q)) continue;
      const QRectF box = QRectF(p, q).normalized();
      if (reach.contains(box)) {
        painter.drawRect(box);
      } else {  // each side clipped on its own, so the visible part stays
        const QPointF corners[4] = {box.topLeft(), box.topRight(), box.bottomRight(), box.bottomLeft()};
        for (int k = 0; k < 4; ++k) {
          QPointF u = corners[k], v = corners[(k + 1) % 4];
          if (ClipLine(reach, u, v)) painter.drawLine(u, v);
        }
      }
    } else if (c.op == "dashed" && !a.empty()) {
      pen.setStyle(a[0] != 0 ? Qt::DashLine : Qt::SolidLine);
      painter.setPen(pen);
    }
  }
  rows.flush();
  painter.restore();
}

}  // namespace voltrix
