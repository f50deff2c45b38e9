#include "ui/picture_geometry.h"

#include <algorithm>
#include <cstdio>

namespace voltrix {

namespace {

bool AcrossFrame(const DrawCall& c, const DataRect& f) {
  if (c.op != "line" || c.args.size() < 4) return false;
  const bool vertical = c.args[0] == c.args[2] && c.args[1] == float(f.ymin) && c.args[3] == float(f.ymax);
  const bool horizontal = c.args[1] == c.args[3] && c.args[0] == float(f.xmin) && c.args[2] == float(f.xmax);
  return vertical || horizontal;
}

}  // namespace

PictureGeometry ReadGeometry(const std::vector<DrawCall>& calls) {
  PictureGeometry g;
  ScaleBox scale;
  double textY = 0;
  for (const DrawCall& c : calls) {
    const auto& a = c.args;
    if (c.op == "scale" && a.size() >= 4 && !g.framed) {
      scale = {a[0], a[1], a[2], a[3]};
    } else if (c.op == "textpos" && a.size() >= 2) {
      textY = a[1];
    } else if (c.op == "print" && g.unitLine.empty()) {
      g.unitLine = c.text;
    } else if (c.op == "box" && a.size() >= 4 && !g.framed) {
      g.framed = true;
      g.frame = {a[0], a[2], a[1], a[3]};
      g.scale = scale;
      g.reversed = scale.left > scale.right;
    } else if (c.op == "print" && c.text == "E /V" && g.framed && g.frame.height() != 0) {
      g.labelDrop = (g.frame.ymin - textY) / g.frame.height();
    }
    if (g.framed && AcrossFrame(c, g.frame)) g.grid = true;
  }
  return g;
}

std::vector<RowSpan> RowSpans(const std::vector<RowMark>& marks, std::size_t callCount) {
  std::vector<RowSpan> spans;
  for (std::size_t k = 0; k < marks.size(); ++k) {
    const std::size_t end = k + 1 < marks.size() ? marks[k + 1].at : callCount;
    if (marks[k].row > 0 && end > marks[k].at) spans.push_back({marks[k].row, marks[k].at, std::min(end, callCount)});
  }
  return spans;
}

void PixelToData(const ScaleBox& s, double width, double height, double px, double py, double& x, double& y) {
  x = s.left + px / width * (s.right - s.left);
  y = s.top + py / height * (s.bottom - s.top);
}

void UnitOfLine(const std::string& unitLine, std::string& quantity, std::string& unit) {
  const std::string head = unitLine.substr(0, unitLine.find("  "));
  const auto mark = head.find_first_of("/*");
  quantity = head.substr(0, mark == std::string::npos ? head.size() : mark);
  while (!quantity.empty() && quantity.back() == ' ') quantity.pop_back();
  unit = mark == std::string::npos ? std::string() : head.substr(mark + 1);
  if (mark != std::string::npos && head[mark] == '*') unit = "1/" + unit;
}

}  // namespace voltrix

namespace voltrix {

std::string PointerReading(const std::string& unitLine, double x, double y) {
  std::string quantity, unit;
  UnitOfLine(unitLine, quantity, unit);
  char text[96];
  std::snprintf(text, sizeof text, "E = %.4f V    %s = %.4G %s", x == 0 ? 0.0 : x, quantity.empty() ? "Y" : quantity.c_str(),
                y == 0 ? 0.0 : y, unit.c_str());
  std::string reading = text;
  while (!reading.empty() && reading.back() == ' ') reading.pop_back();
  return reading;
}

}  // namespace voltrix
