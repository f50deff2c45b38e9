#include "plot_view.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QRubberBand>
#include <QTimer>
#include <QWheelEvent>
#include <cmath>

#include "form_view.h"
#include "model/platform.h"
#include "render/picture_file.h"
#include "render/picture_painter.h"
#include "render/plot_painter.h"
#include "ui/plot_display_list.h"

namespace voltrix {

namespace {
constexpr double kWheelStep = 0.8;  // the window's extent after one notch towards the user
constexpr double kKeyPan = 0.1;     // of the window, per arrow key
constexpr int kSmallestBox = 4;     // pixels: a smaller box is a click
}  // namespace

PlotView::PlotView(DisplayList& picture, PlotViewState& view, Presenter present, FileDialog& files,
                   MessageBox& messages, std::function<void()> replot, QWidget* parent)
    : QWidget(parent),
      picture_(picture),
      view_(view),
      present_(std::move(present)),
      files_(files),
      messages_(messages),
      replot_(std::move(replot)) {
  setObjectName(QStringLiteral("PlotView"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(120, 60);
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
  setCursor(Qt::CrossCursor);
  addActions();
}

void PlotView::addActions() {
  auto add = [this](const QString& text, const QList<QKeySequence>& keys, auto slot) {
    auto* a = new QAction(text, this);
    a->setShortcuts(keys);
    a->setShortcutContext(Qt::WidgetShortcut);
    connect(a, &QAction::triggered, this, slot);
    addAction(a);
    return a;
  };
  add(tr("Zoom &In"), {Qt::Key_Plus, Qt::Key_Equal}, [this] { zoomBy(kWheelStep); });
  add(tr("Zoom &Out"), {Qt::Key_Minus}, [this] { zoomBy(1 / kWheelStep); });
  add(tr("&Reset View"), {Qt::Key_Home}, [this] { resetView(); });
  add(tr("Pan Left"), {Qt::Key_Left}, [this] { panBy(-kKeyPan, 0); })->setVisible(false);
  add(tr("Pan Right"), {Qt::Key_Right}, [this] { panBy(kKeyPan, 0); })->setVisible(false);
  add(tr("Pan Up"), {Qt::Key_Up}, [this] { panBy(0, kKeyPan); })->setVisible(false);
  add(tr("Pan Down"), {Qt::Key_Down}, [this] { panBy(0, -kKeyPan); })->setVisible(false);
  legendAction_ = add(tr("Show &Legend"), {Qt::Key_L}, [this](bool on) { showLegend(on); });
  legendAction_->setCheckable(true);
  legendAction_->setChecked(view_.legendShown);
}

QSize PlotView::sizeHint() const {
  const double dpi = logicalDpiX() > 0 ? logicalDpiX() : 96;
  return {TwipsToPixels(5895, dpi), TwipsToPixels(2670, dpi)};
}

const PlotPresentation& PlotView::presentation() {
  if (shownRevision_ != picture_.revision()) {
    shown_ = present_();
    shownRevision_ = picture_.revision();
  }
  return shown_;
}

void PlotView::refresh() {
  shownRevision_.reset();
  legendAction_->setChecked(view_.legendShown);
  update();
}

void PlotView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  PictureStyle style;
  style.background = palette().color(QPalette::Base);
  style.ink = palette().color(QPalette::Text);
  PaintPlot(painter, QRectF(rect()), presentation(), style);
}

void PlotView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  // Every resize the user sees draws again, a blank window too (which
  // repeats its "Error: No data!"). Resizes come in bursts while the user
  // drags; one redraw after the burst is enough. The sizing of a window not
  // yet on the screen is no resize.
  if (!isVisible() || replotPending_ || !replot_) return;
  replotPending_ = true;
  QTimer::singleShot(0, this, [this] {
    replotPending_ = false;
    replot_();
  });
}

void PlotView::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  for (QAction* a : actions())
    if (a->isVisible()) menu.addAction(a);
  menu.addSeparator();
  menu.addAction(tr("Save Picture As..."), this, &PlotView::saveAs);
  menu.exec(event->globalPos());
}

void PlotView::saveAs() {
  const auto file = files_.ask(DialogMode::Save, "PNG picture (*.png)|*.png|SVG drawing (*.svg)|*.svg|PDF file (*.pdf)|*.pdf");
  if (!file) return;
  // A name typed without an extension gets the first type offered.
  std::string path = *file;
  if (QFileInfo(QString::fromStdString(path)).suffix().isEmpty()) path += ".png";
  const std::string error = WritePictureFile(presentation(), path, {width(), height()});
  if (!error.empty()) messages_.show(error);
}

bool PlotView::dataAt(const QPointF& pixel, double& x, double& y) {
  const PlotPresentation& p = presentation();
  if (!p.geometry.framed) return false;
  const QRectF area = PictureArea(QRectF(rect()), p);
  if (!area.contains(pixel)) return false;
  PixelToData(p.geometry.scale, area.width(), area.height(), pixel.x() - area.left(), pixel.y() - area.top(), x, y);
  return true;
}

void PlotView::zoomTo(const DataRect& window) {
  if (view_.zoom.zoomTo(window)) refresh();
}

void PlotView::zoomBy(double factor) {
  const DataRect w = view_.zoom.shown();
  if (presentation().geometry.framed) zoomTo(ZoomedAbout(w, (w.xmin + w.xmax) / 2, (w.ymin + w.ymax) / 2, factor));
}

void PlotView::panBy(double right, double up) {
  if (!presentation().geometry.framed) return;
  const DataRect w = view_.zoom.shown();
  const double across = presentation().geometry.reversed ? -right : right;
  zoomTo(Panned(w, across * w.width(), up * w.height()));
}

void PlotView::resetView() {
  view_.zoom.reset();
  refresh();
}

void PlotView::showLegend(bool shown) {
  view_.legendShown = shown;
  refresh();
}

void PlotView::wheelEvent(QWheelEvent* event) {
  double x = 0, y = 0;
  const double notches = event->angleDelta().y() / 120.0;
  if (notches == 0 || !dataAt(event->position(), x, y)) return event->ignore();
  zoomTo(ZoomedAbout(view_.zoom.shown(), x, y, std::pow(kWheelStep, notches)));
  event->accept();
}

void PlotView::mousePressEvent(QMouseEvent* event) {
  double x = 0, y = 0;
  if (event->button() != Qt::LeftButton || !dataAt(event->position(), x, y)) return QWidget::mousePressEvent(event);
  pressedAt_ = event->position().toPoint();
  pressedWindow_ = view_.zoom.shown();
  pressedScale_ = presentation().geometry.scale;
  pressedArea_ = PictureArea(QRectF(rect()), presentation());
  drag_ = event->modifiers() & Qt::ShiftModifier ? Drag::Box : Drag::Pan;
  if (drag_ == Drag::Box) {
    if (!band_) band_ = new QRubberBand(QRubberBand::Rectangle, this);
    band_->setGeometry(QRect(pressedAt_, QSize()));
    band_->show();
  } else {
    setCursor(Qt::ClosedHandCursor);
  }
}

void PlotView::mouseMoveEvent(QMouseEvent* event) {
  double x = 0, y = 0;
  const bool onData = dataAt(event->position(), x, y);
  emit pointerMoved(onData ? QString::fromStdString(PointerReading(presentation().geometry.unitLine, x, y)) : QString());
  if (drag_ == Drag::Box) {
    band_->setGeometry(QRect(pressedAt_, event->position().toPoint()).normalized());
  } else if (drag_ == Drag::Pan) {
    const QPointF moved = event->position() - QPointF(pressedAt_);
    const ScaleBox& s = pressedScale_;
    const double dx = moved.x() / pressedArea_.width() * (s.right - s.left);
    const double dy = moved.y() / pressedArea_.height() * (s.bottom - s.top);
    zoomTo(Panned(pressedWindow_, -dx, -dy));
  }
}

void PlotView::mouseReleaseEvent(QMouseEvent* event) {
  if (drag_ == Drag::Box) {
    band_->hide();
    const QRect box = QRect(pressedAt_, event->position().toPoint()).normalized();
    double x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    const QRectF area = pressedArea_;
    if (box.width() >= kSmallestBox && box.height() >= kSmallestBox) {
      PixelToData(pressedScale_, area.width(), area.height(), box.left() - area.left(), box.top() - area.top(), x0, y0);
      PixelToData(pressedScale_, area.width(), area.height(), box.right() - area.left(), box.bottom() - area.top(), x1, y1);
      zoomTo(Spanned(x0, y0, x1, y1));
    }
  }
  drag_ = Drag::None;
  setCursor(Qt::CrossCursor);
}

void PlotView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) resetView();
}

// Esc lets go of a box being drawn; the view stays as it was.
void PlotView::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape || drag_ != Drag::Box) return QWidget::keyPressEvent(event);
  band_->hide();
  drag_ = Drag::None;
  setCursor(Qt::CrossCursor);
}

void PlotView::leaveEvent(QEvent* event) {
  emit pointerMoved(QString());
  QWidget::leaveEvent(event);
}

}  // namespace voltrix
