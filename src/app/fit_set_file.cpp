#include "app/fit_set_file.h"

#include "app/import_file.h"
#include "model/controls.h"
#include "model/errors.h"
#include "model/headless_platform.h"
#include "ui/commit.h"
#include "ui/workbench.h"

namespace voltrix {

namespace {

constexpr const char* kSettingForms[] = {"FormTech", "FormIns"};

// What a setting would write back: the text of a box or list, the value of
// a check box or option button.
std::string SettingText(const Control& c) {
  switch (c.kind()) {
    case ControlKind::TextBox:
    case ControlKind::ComboBox: return c.text();
    case ControlKind::CheckBox:
    case ControlKind::OptionButton: return std::to_string(c.value());
    default: return {};
  }
}

bool Settable(const Control& c) {
  const ControlKind k = c.kind();
  return k == ControlKind::TextBox || k == ControlKind::ComboBox || k == ControlKind::CheckBox ||
         k == ControlKind::OptionButton;
}

// An option button counts only where it became the chosen one.
void AddChanged(Form& before, Form& after, std::vector<FormSetting>& settings) {
  for (const Control* c : after.controls()) {
    if (!Settable(*c)) continue;
    const std::string now = SettingText(*c);
    if (now == SettingText(*before.find(c->name(), c->index()))) continue;
    if (c->kind() == ControlKind::OptionButton && now != "1") continue;
    settings.push_back({after.name(), c->name(), c->index(), now});
  }
}

}  // namespace

SetCurve ReadSetCurveFile(Workbench& wb, const std::string& path) {
  HeadlessPlatform platform;
  Workbench scratch(platform.platform());
  scratch.copyStateFrom(wb);
  StartCurve(scratch);
  if (!ImportCurveFile(scratch, path, {})) {
    const auto& shown = platform.messages.shown;
    Raise(ErrorKind::FileAccess, shown.empty() ? path + " was not read" : shown.back());
  }
  const Experiment& e = scratch.experiment;
  SetCurve c;
  c.name = path;
  const long row = static_cast<long>(e.NOverlay.value());
  for (int i = 0; i <= Count(e.NData); ++i) {
    c.x.push_back(i == 0 ? 0.0 : scratch.store.XData(i));
    c.y.push_back(i == 0 ? 0.0 : scratch.store.YData(row, i));
  }
  for (const char* name : kSettingForms) AddChanged(*wb.formNamed(name), *scratch.formNamed(name), c.settings);
  return c;
}

}  // namespace voltrix
