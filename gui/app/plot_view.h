#pragma once
// The plot window's client area: paints the plot as presented (the display
// list the plot engine drew on, zoomed where the user zoomed, rows in their
// colours, the legend, a fit's residual panel), antialiased, at the window's
// size. A resize draws the plot again (as the menu's "&Plot" does).
//
// Exploring: the wheel zooms about the pointer, a drag pans, a drag with
// Shift zooms to the box drawn, a double click or Home returns to the
// classic limits; +, - and the arrows do the same from the keyboard, L shows
// or hides the legend. The pointer's E and I go to pointerMoved. The context
// menu holds all of it and saves the picture as PNG, SVG or PDF.
#include <QPoint>
#include <QWidget>
#include <functional>
#include <optional>

#include "ui/plot_presentation.h"

class QRubberBand;

namespace voltrix {

class DisplayList;
class FileDialog;
class MessageBox;

class PlotView : public QWidget {
  Q_OBJECT
 public:
  using Presenter = std::function<PlotPresentation()>;
  PlotView(DisplayList& picture, PlotViewState& view, Presenter present, FileDialog& files, MessageBox& messages,
           std::function<void()> replot, QWidget* parent = nullptr);
  QSize sizeHint() const override;
  void saveAs();

  // What the window shows now; drawn afresh after each change of the
  // picture or the view, or after refresh().
  const PlotPresentation& presentation();
  void refresh();

  void zoomBy(double factor);  // about the middle of the window; below 1 zooms in
  void panBy(double right, double up);  // in parts of the window's width and height
  void resetView();
  void showLegend(bool shown);

 signals:
  void pointerMoved(const QString& reading);  // empty when the pointer is off the data

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void addActions();
  bool dataAt(const QPointF& pixel, double& x, double& y);
  void zoomTo(const DataRect& window);

  DisplayList& picture_;
  PlotViewState& view_;
  Presenter present_;
  FileDialog& files_;
  MessageBox& messages_;
  std::function<void()> replot_;
  bool replotPending_ = false;

  PlotPresentation shown_;
  std::optional<std::uint64_t> shownRevision_;  // of the picture behind shown_; none: stale

  enum class Drag { None, Pan, Box };
  Drag drag_ = Drag::None;
  QPoint pressedAt_;
  DataRect pressedWindow_;
  ScaleBox pressedScale_;
  QRectF pressedArea_;
  QRubberBand* band_ = nullptr;
  QAction* legendAction_ = nullptr;
};

}  // namespace voltrix
