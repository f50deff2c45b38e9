#include "ui/text_window.h"

namespace voltrix {

void TextWindow::print(const std::string& line) {
  lines_.push_back(line);
  for (auto& observer : lineObservers_) observer(&lines_.back());
}

void TextWindow::clear() {
  lines_.clear();
  for (auto& observer : lineObservers_) observer(nullptr);
}

}  // namespace voltrix
