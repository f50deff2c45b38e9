#pragma once
#include <string>
#include <vector>

#include "model/controls.h"

namespace voltrix {

class Workbench;

// MDIForm1, "Voltrix for Windows": the menu bar. Each menu item is a control
// of kind Menu whose container is its parent menu; separators read "-". The
// command layer binds the click of each item.
class MainForm : public Form {
 public:
  explicit MainForm(Workbench& wb);
  // Menu items in the order of the menu bar (parents before their items).
  std::vector<Control*> menuItems();
  Control& menu(const std::string& name) { return control(name); }

 private:
  Control& addMenu(const std::string& name, const std::string& caption, Control* parent);
};

}  // namespace voltrix
