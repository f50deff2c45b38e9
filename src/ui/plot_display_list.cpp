#include "ui/plot_display_list.h"

#include "model/errors.h"

namespace voltrix {

void DisplayList::add(DrawCall call) {
  calls_.push_back(std::move(call));
  ++revision_;
  if (onChange) onChange();
}

void DisplayList::show() {
  if (onShow) onShow();
}

void DisplayList::clear() {
  calls_.clear();
  rowMarks_.clear();
  ++revision_;
  if (onChange) onChange();
}

void DisplayList::setScale(float l, float t, float r, float b) { add({"scale", {l, t, r, b}, {}}); }
void DisplayList::setTextPosition(float x, float y) { add({"textpos", {x, y}, {}}); }
void DisplayList::printLine(const std::string& text) { add({"print", {}, text}); }
void DisplayList::point(float x, float y) { add({"point", {x, y}, {}}); }
void DisplayList::line(float x1, float y1, float x2, float y2) { add({"line", {x1, y1, x2, y2}, {}}); }
void DisplayList::box(float x1, float y1, float x2, float y2) { add({"box", {x1, y1, x2, y2}, {}}); }
void DisplayList::setDashed(bool d) { add({"dashed", {d ? 1.0f : 0.0f}, {}}); }
void DisplayList::curveRow(int row) { rowMarks_.push_back({calls_.size(), row}); }

bool DisplayList::hasPicture() const {
  for (const DrawCall& c : calls_)
    if (c.op == "print" || c.op == "point" || c.op == "line" || c.op == "box") return true;
  return false;
}

std::vector<DrawCall> LastPicture(const std::vector<DrawCall>& recorded) {
  std::size_t start = 0;
  for (std::size_t i = 0; i < recorded.size(); ++i)
    if (recorded[i].op == "clear") start = i + 1;
  std::vector<DrawCall> picture;
  for (std::size_t i = start; i < recorded.size(); ++i)
    if (recorded[i].op != "show") picture.push_back(recorded[i]);
  return picture;
}

namespace {
float Arg(const DrawCall& c, std::size_t i) {
  if (i >= c.args.size()) Raise(ErrorKind::SubscriptOutOfRange, "Drawing call \"" + c.op + "\" lacks an argument");
  return c.args[i];
}
}  // namespace

void Replay(const std::vector<DrawCall>& calls, DrawingSurface& t) {
  for (const DrawCall& c : calls) {
    if (c.op == "show") t.show();
    else if (c.op == "clear") t.clear();
    else if (c.op == "scale") t.setScale(Arg(c, 0), Arg(c, 1), Arg(c, 2), Arg(c, 3));
    else if (c.op == "textpos") t.setTextPosition(Arg(c, 0), Arg(c, 1));
    else if (c.op == "print") t.printLine(c.text);
    else if (c.op == "point") t.point(Arg(c, 0), Arg(c, 1));
    else if (c.op == "line") t.line(Arg(c, 0), Arg(c, 1), Arg(c, 2), Arg(c, 3));
    else if (c.op == "box") t.box(Arg(c, 0), Arg(c, 1), Arg(c, 2), Arg(c, 3));
    else if (c.op == "dashed") t.setDashed(Arg(c, 0) != 0.0f);
  }
}

}  // namespace voltrix
