#pragma once
// The plot window's client area: paints the display list that the plot
// engine drew on, antialiased, at the window's size. A resize draws the
// plot again (as the menu's "&Plot" does); the context menu saves the
// picture as PNG, SVG or PDF.
#include <QWidget>
#include <functional>

namespace voltrix {

class DisplayList;
class FileDialog;
class MessageBox;

class PlotView : public QWidget {
  Q_OBJECT
 public:
  PlotView(DisplayList& picture, FileDialog& files, MessageBox& messages, std::function<void()> replot,
           QWidget* parent = nullptr);
  QSize sizeHint() const override;
  void saveAs();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  DisplayList& picture_;
  FileDialog& files_;
  MessageBox& messages_;
  std::function<void()> replot_;
  bool replotPending_ = false;
};

}  // namespace voltrix
