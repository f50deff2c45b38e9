#pragma once
// The few operations the program needs of its windowing platform. The core
// talks only to these interfaces; the desktop program supplies Qt versions,
// the CLI and the tests the headless ones of headless_platform.h.
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace voltrix {

class MessageBox {
 public:
  virtual ~MessageBox() = default;
  // A message box with an OK button; nothing reads an answer.
  virtual void show(const std::string& text) = 0;
};

enum class DialogMode { Save, Open };

class FileDialog {
 public:
  virtual ~FileDialog() = default;
  // filter is "label|pattern|label|pattern". No value means cancelled.
  virtual std::optional<std::string> ask(DialogMode mode, const std::string& filter) = 0;
  // The file the last ask gave, none after a cancel: a command can name what
  // it read by it.
  const std::optional<std::string>& lastAnswer() const { return last_; }
  void forgetLastAnswer() { last_.reset(); }

 protected:
  // Implementations hand their answer back through here.
  std::optional<std::string> answered(std::optional<std::string> file) {
    last_ = std::move(file);
    return last_;
  }

 private:
  std::optional<std::string> last_;
};

class Clock {
 public:
  virtual ~Clock() = default;
  virtual double seconds() = 0;  // a timer in seconds
};

class Pointer {
 public:
  virtual ~Pointer() = default;
  static constexpr int kDefault = 0;
  static constexpr int kHourglass = 11;
  virtual void set(int shape) = 0;
};

// A scaled drawing surface: what is drawn stays until cleared. Coordinates
// are in the scale last set, Y growing upward when top > bottom.
class DrawingSurface {
 public:
  virtual ~DrawingSurface() = default;
  virtual void show() = 0;
  virtual void clear() = 0;
  virtual void setScale(float left, float top, float right, float bottom) = 0;
  virtual void setTextPosition(float x, float y) = 0;
  virtual void printLine(const std::string& text) = 0;  // at the text position; ends the line
  virtual void point(float x, float y) = 0;
  virtual void line(float x1, float y1, float x2, float y2) = 0;
  virtual void box(float x1, float y1, float x2, float y2) = 0;  // open box, two corners
  virtual void setDashed(bool dashed) = 0;
  // The calls that follow draw curve row `row`; 0: no curve row. A surface
  // may note it beside the picture (to colour and name rows); the picture
  // itself is the same either way.
  virtual void curveRow(int row) { (void)row; }
};

// What can be done with the finished picture of the plot window.
class PictureOutput {
 public:
  virtual ~PictureOutput() = default;
  virtual void copyToClipboard() = 0;  // empties the clipboard, then puts the bitmap
  virtual void print() = 0;            // the picture on the default printer
};

// Which of the cycles a measured file holds to import. `cycles` describes
// one cycle a line; `suggested` (from 0) is the first complete one. No value
// means cancelled.
class CycleChoice {
 public:
  virtual ~CycleChoice() = default;
  virtual std::optional<int> choose(const std::vector<std::string>& cycles, int suggested) = 0;
};

// Takes the suggestion without asking: for a platform that has no dialog.
class SuggestedCycle final : public CycleChoice {
 public:
  std::optional<int> choose(const std::vector<std::string>&, int suggested) override { return suggested; }
  static CycleChoice& instance() {
    static SuggestedCycle stateless;
    return stateless;
  }
};

struct Platform {
  MessageBox& messages;
  FileDialog& files;
  Clock& clock;
  Pointer& pointer;
  DrawingSurface& plot;
  PictureOutput& picture;
  CycleChoice& cycles = SuggestedCycle::instance();
  // Progress and stop of long fits (model/fit_progress.h); none: a fit runs
  // to its end and shows nothing as it goes.
  class FitProgress* fitProgress = nullptr;
  // Told of a file that a command could not write. The desktop leaves it
  // unset, as its save and export stay silent; a script runner must know.
  std::function<void(const std::string& file, const std::string& reason)> writeFailed{};
};

inline void ReportWriteFailure(const Platform& p, const std::string& file, const std::string& reason) {
  if (p.writeFailed) p.writeFailed(file, reason);
}

}  // namespace voltrix
