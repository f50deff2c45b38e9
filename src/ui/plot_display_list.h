#pragma once
// A drawing surface that keeps what is drawn on it as a list of calls, so
// that the last picture can be painted again at any size: on screen after a
// resize, on the clipboard, on a printer or into a file.
#include <cstdint>
#include <functional>
#include <vector>

#include "model/headless_platform.h"
#include "model/platform.h"

namespace voltrix {

class DisplayList : public DrawingSurface {
 public:
  void show() override;
  void clear() override;  // drops the earlier picture
  void setScale(float left, float top, float right, float bottom) override;
  void setTextPosition(float x, float y) override;
  void printLine(const std::string& text) override;
  void point(float x, float y) override;
  void line(float x1, float y1, float x2, float y2) override;
  void box(float x1, float y1, float x2, float y2) override;
  void setDashed(bool dashed) override;
  void curveRow(int row) override;

  // The calls since the last clear, in order (show and clear left out).
  const std::vector<DrawCall>& calls() const { return calls_; }
  // True once anything visible has been drawn since the last clear.
  bool hasPicture() const;
  // Where each curve row of the picture begins; kept beside the calls.
  const std::vector<RowMark>& rowMarks() const { return rowMarks_; }
  // Counts every change of the picture, for views that keep what they drew.
  std::uint64_t revision() const { return revision_; }

  std::function<void()> onShow;    // the window should come into view
  std::function<void()> onChange;  // the picture changed

 private:
  void add(DrawCall call);
  std::vector<DrawCall> calls_;
  std::vector<RowMark> rowMarks_;
  std::uint64_t revision_ = 0;
};

// The picture on a surface of a recording: the calls after the last clear.
std::vector<DrawCall> LastPicture(const std::vector<DrawCall>& recorded);

// Plays recorded calls onto another surface.
void Replay(const std::vector<DrawCall>& calls, DrawingSurface& target);

}  // namespace voltrix
