#include "plot_view.h"

#include <QContextMenuEvent>
#include <QFileInfo>
#include <QMenu>
#include <QPainter>
#include <QTimer>

#include "form_view.h"
#include "model/platform.h"
#include "render/picture_file.h"
#include "render/picture_painter.h"
#include "ui/plot_display_list.h"

namespace voltrix {

PlotView::PlotView(DisplayList& picture, FileDialog& files, MessageBox& messages, std::function<void()> replot,
                   QWidget* parent)
    : QWidget(parent), picture_(picture), files_(files), messages_(messages), replot_(std::move(replot)) {
  setObjectName(QStringLiteral("PlotView"));
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(120, 60);
}

QSize PlotView::sizeHint() const {
  const double dpi = logicalDpiX() > 0 ? logicalDpiX() : 96;
  return {TwipsToPixels(5895, dpi), TwipsToPixels(2670, dpi)};
}

void PlotView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  PictureStyle style;
  style.background = palette().color(QPalette::Base);
  style.ink = palette().color(QPalette::Text);
  PaintPicture(painter, QRectF(rect()), picture_.calls(), style);
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
  menu.addAction(tr("Save Picture As..."), this, &PlotView::saveAs);
  menu.exec(event->globalPos());
}

void PlotView::saveAs() {
  const auto file = files_.ask(DialogMode::Save, "PNG picture (*.png)|*.png|SVG drawing (*.svg)|*.svg|PDF file (*.pdf)|*.pdf");
  if (!file) return;
  // A name typed without an extension gets the first type offered.
  std::string path = *file;
  if (QFileInfo(QString::fromStdString(path)).suffix().isEmpty()) path += ".png";
  const std::string error = WritePictureFile(picture_.calls(), path, {width(), height()});
  if (!error.empty()) messages_.show(error);
}

}  // namespace voltrix
