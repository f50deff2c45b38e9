#pragma once
// Headless platform: records every message and drawing call, answers file
// dialogs from a queue. Used by the CLI and the tests.
#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "model/fit_progress.h"
#include "model/platform.h"

namespace voltrix {

class RecordingMessageBox : public MessageBox {
 public:
  void show(const std::string& text) override {
    shown.push_back(text);
    if (onShow) onShow(text);
  }
  std::vector<std::string> shown;
  std::function<void(const std::string&)> onShow;
};

class ScriptedFileDialog : public FileDialog {
 public:
  std::optional<std::string> ask(DialogMode mode, const std::string& filter) override {
    asked.push_back({mode, filter});
    if (answers.empty()) return answered(std::nullopt);
    std::string a = answers.front();
    answers.pop_front();
    return answered(a);
  }
  struct Request {
    DialogMode mode;
    std::string filter;
  };
  std::deque<std::string> answers;
  std::vector<Request> asked;
};

class SteadyClock : public Clock {
 public:
  double seconds() override {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
  }
};

class RecordingPointer : public Pointer {
 public:
  void set(int shape) override { shapes.push_back(shape); }
  std::vector<int> shapes;
};

// One recorded drawing call; numbers in the order of the call's arguments.
struct DrawCall {
  std::string op;  // show, clear, scale, textpos, print, point, line, box, dashed
  std::vector<float> args;
  std::string text;
};

// Where a curve row begins in a picture: at call `at` (counted from the
// picture's first call) row `row` begins; row 0 ends the curves.
struct RowMark {
  std::size_t at = 0;
  int row = 0;
  bool operator==(const RowMark&) const = default;
};

class RecordingSurface : public DrawingSurface {
 public:
  void show() override { calls.push_back({"show", {}, {}}); }
  // Only the picture since the last clear can still be seen: older calls are
  // dropped so that a long session does not grow without bound. The show
  // that opens the new picture stays with it.
  void clear() override {
    std::size_t drop = calls.size();
    if (drop > 0 && calls.back().op == "show") --drop;
    calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(drop));
    calls.push_back({"clear", {}, {}});
    ++clears;
    pictureStart = calls.size();
    rowMarks.clear();
  }
  void setScale(float l, float t, float r, float b) override { calls.push_back({"scale", {l, t, r, b}, {}}); }
  void setTextPosition(float x, float y) override { calls.push_back({"textpos", {x, y}, {}}); }
  void printLine(const std::string& text) override { calls.push_back({"print", {}, text}); }
  void point(float x, float y) override { calls.push_back({"point", {x, y}, {}}); }
  void line(float x1, float y1, float x2, float y2) override { calls.push_back({"line", {x1, y1, x2, y2}, {}}); }
  void box(float x1, float y1, float x2, float y2) override { calls.push_back({"box", {x1, y1, x2, y2}, {}}); }
  void setDashed(bool d) override { calls.push_back({"dashed", {d ? 1.0f : 0.0f}, {}}); }
  void curveRow(int row) override { rowMarks.push_back({calls.size() - pictureStart, row}); }
  std::vector<DrawCall> calls;
  int clears = 0;  // every clear since the start: one per plot
  // The rows of the picture since the last clear, counted as LastPicture counts.
  std::vector<RowMark> rowMarks;
  std::size_t pictureStart = 0;
};

class CountingPictureOutput : public PictureOutput {
 public:
  void copyToClipboard() override { ++copies; }
  void print() override { ++prints; }
  int copies = 0;
  int prints = 0;
};

// Records what a fit reports; a test stops the fit by setting stop.
class RecordingFitProgress : public FitProgress {
 public:
  void begin() override { stop = false; }
  void report(const FitProgressReport& progress) override {
    reports.push_back(progress);
    if (onReport) onReport(progress);
  }
  bool stopRequested() override { return stop; }
  std::vector<FitProgressReport> reports;
  std::function<void(const FitProgressReport&)> onReport;
  bool stop = false;
};

// Answers from a queue (a cycle index from 0, or no value for cancel), and
// with the suggestion, the first complete cycle, when the queue is empty.
class ScriptedCycleChoice : public CycleChoice {
 public:
  std::optional<int> choose(const std::vector<std::string>& cycles, int suggested) override {
    asked.push_back(cycles);
    if (answers.empty()) return suggested;
    const std::optional<int> a = answers.front();
    answers.pop_front();
    return a;
  }
  std::deque<std::optional<int>> answers;
  std::vector<std::vector<std::string>> asked;
};

// All of the above in one object, for a headless workbench.
struct HeadlessPlatform {
  RecordingMessageBox messages;
  ScriptedFileDialog files;
  SteadyClock clock;
  RecordingPointer pointer;
  RecordingSurface plot;
  CountingPictureOutput picture;
  RecordingFitProgress fitProgress;
  ScriptedCycleChoice cycles;
  Platform platform() { return Platform{messages, files, clock, pointer, plot, picture, cycles, &fitProgress}; }
};

}  // namespace voltrix
