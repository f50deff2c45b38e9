#pragma once
// What the forms do not say of their boxes: the label a box stands beside
// (or the heading of its column) and the unit of what is typed in it.
#include <string>

namespace voltrix {

struct ControlNote {
  const char* label = "";  // the control whose caption names the box; "" for none
  int labelIndex = -1;
  const char* unit = "";   // "" when the value has no unit
};

// The note for a text box, drop-down list or computed label of a form;
// nullptr when the control has none.
const ControlNote* FindControlNote(const std::string& form, const std::string& control);

}  // namespace voltrix
