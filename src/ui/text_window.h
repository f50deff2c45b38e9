#pragma once
// A line-printing text window: each print ends the line. Every line is kept
// (a real window scrolls); observers hear of each line and of each clear.
#include <functional>
#include <string>
#include <vector>

#include "model/controls.h"
#include "model/number_format.h"

namespace voltrix {

class TextWindow : public Form {
 public:
  using Form::Form;
  void print(const std::string& line);
  void print(const PrintLine& line) { print(line.str()); }
  void clear();
  const std::vector<std::string>& lines() const { return lines_; }

  // line is nullptr when the window was cleared.
  using LineObserver = std::function<void(const std::string* line)>;
  void addLineObserver(LineObserver observer) { lineObservers_.push_back(std::move(observer)); }

 private:
  std::vector<std::string> lines_;
  std::vector<LineObserver> lineObservers_;
};

// "Result": the program's text output.
class FormResult : public TextWindow {
 public:
  FormResult() : TextWindow("FormResult", "Result", {1500, 2085, 7170, 4950}) {}
};

// "About".
class FormAbout : public TextWindow {
 public:
  FormAbout() : TextWindow("FormAbout", "About", {1650, 2445, 5415, 4050}) {}
};

}  // namespace voltrix
