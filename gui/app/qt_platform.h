#pragma once
// The Qt side of the platform interfaces: message boxes, the file dialog,
// the timer, the hourglass, the plot surface (a display list painted by the
// plot window) and the clipboard and printer for the finished picture.
#include <QObject>
#include <QPointer>
#include <QSize>
#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "model/fit_progress.h"
#include "model/platform.h"
#include "ui/plot_display_list.h"
#include "ui/plot_presentation.h"

class QWidget;

namespace voltrix {

class QtMessageBox : public MessageBox {
 public:
  void show(const std::string& text) override;
  QPointer<QWidget> parent;
  // When set, messages go here instead of a modal box (automated runs).
  std::function<void(const std::string&)> intercept;
  int shownCount = 0;  // every message since the start, for callers that check a command
};

// "label|pattern|label|pattern" as a Qt name filter: "label (pattern);;...".
QString QtNameFilter(const std::string& filter);

class QtFileDialog : public FileDialog {
 public:
  std::optional<std::string> ask(DialogMode mode, const std::string& filter) override;
  QPointer<QWidget> parent;
  // When set, answers come from here instead of the dialog (automated runs).
  std::function<std::optional<std::string>(DialogMode, const std::string&)> intercept;
  // Answers the next ask without a dialog: a file dropped on the window or
  // picked from the recent files.
  std::optional<std::string> nextAnswer;
  QString folder;                                // where the dialog opens
  std::function<void(const QString&)> onAnswer;  // told of every file named
};

class QtClock : public Clock {
 public:
  double seconds() override;  // seconds since midnight
};

class QtPointer : public Pointer {
 public:
  void set(int shape) override;

 private:
  bool busy_ = false;
};

class QtPictureOutput : public PictureOutput {
 public:
  explicit QtPictureOutput(DisplayList& picture, FileDialog& files, MessageBox& messages)
      : picture_(picture), files_(files), messages_(messages) {}
  void copyToClipboard() override;
  // On the default printer; where there is none, into a PDF file the user names.
  void print() override;
  // The size the picture has on screen (the plot window's client area).
  std::function<QSize()> screenSize;
  // The plot as the window presents it (zoom, legend); unset: the picture.
  std::function<PlotPresentation()> present;

 private:
  QSize size() const;
  DisplayList& picture_;
  FileDialog& files_;
  MessageBox& messages_;
};

// A fit's pass and least square in the status bar; Esc stops the fit between
// passes. While a fit runs, other keys and clicks are held back, so that no
// command can start inside it while the window repaints.
class QtFitProgress : public QObject, public FitProgress {
 public:
  void begin() override;
  void report(const FitProgressReport& progress) override;
  bool stopRequested() override;
  void end() override;
  std::function<void(const QString&)> showStatus;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool stop_ = false;
  bool running_ = false;
};

// A list of the file's cycles to pick one from, the first complete one
// selected.
class QtCycleChoice : public CycleChoice {
 public:
  std::optional<int> choose(const std::vector<std::string>& cycles, int suggested) override;
  QPointer<QWidget> parent;
  // When set, answers come from here instead of the dialog (automated runs).
  std::function<std::optional<int>(const std::vector<std::string>&, int)> intercept;
};

struct QtPlatform {
  QtMessageBox messages;
  QtFileDialog files;
  QtClock clock;
  QtPointer pointer;
  DisplayList plot;
  QtPictureOutput picture{plot, files, messages};
  QtFitProgress fitProgress;
  QtCycleChoice cycles;
  Platform platform() { return Platform{messages, files, clock, pointer, plot, picture, cycles, &fitProgress}; }
};

}  // namespace voltrix
