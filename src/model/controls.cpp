#include "model/controls.h"

#include <algorithm>

#include "model/errors.h"

namespace voltrix {

const char* KindName(ControlKind kind) {
  switch (kind) {
    case ControlKind::Form: return "form";
    case ControlKind::Frame: return "frame";
    case ControlKind::Label: return "label";
    case ControlKind::TextBox: return "text box";
    case ControlKind::CheckBox: return "check box";
    case ControlKind::OptionButton: return "option button";
    case ControlKind::ComboBox: return "combo box";
    case ControlKind::CommandButton: return "button";
    case ControlKind::Menu: return "menu";
  }
  return "control";
}

Control::Control(Form& owner, ControlKind kind, std::string name, int index, Control* container)
    : owner_(owner), kind_(kind), name_(std::move(name)), index_(index), container_(container) {}

std::string Control::fullName() const {
  return index_ < 0 ? name_ : name_ + "(" + std::to_string(index_) + ")";
}

const std::string& Control::shownText() const {
  if (kind_ == ControlKind::TextBox || kind_ == ControlKind::ComboBox) return state_.text;
  return state_.caption;
}

void Control::changed() { owner_.notify(this); }

void Control::setText(const std::string& text) {
  if (kind_ == ControlKind::ComboBox && !state_.editable) {
    auto it = std::find(state_.items.begin(), state_.items.end(), text);
    if (it == state_.items.end()) Raise(ErrorKind::InvalidArgument, "No item \"" + text + "\" in " + fullName());
    setListIndex(static_cast<int>(it - state_.items.begin()));
    return;
  }
  if (kind_ == ControlKind::Label || kind_ == ControlKind::Frame || kind_ == ControlKind::CommandButton ||
      kind_ == ControlKind::CheckBox || kind_ == ControlKind::OptionButton || kind_ == ControlKind::Menu) {
    setCaption(text);
    return;
  }
  if (state_.text == text) return;
  state_.text = text;
  if (kind_ == ControlKind::ComboBox) {
    auto it = std::find(state_.items.begin(), state_.items.end(), text);
    state_.listIndex = it == state_.items.end() ? -1 : static_cast<int>(it - state_.items.begin());
  }
  changed();
  if (onChange) onChange();
}

void Control::setCaption(const std::string& caption) {
  if (state_.caption == caption) return;
  state_.caption = caption;
  changed();
  if (kind_ == ControlKind::Label && onChange) onChange();
}

void Control::selectOption() {
  for (Control* other : owner_.controls())
    if (other != this && other->kind_ == ControlKind::OptionButton && other->container_ == container_ &&
        other->state_.value != 0) {
      other->state_.value = 0;
      other->changed();
    }
}

void Control::setValue(int value) {
  if (kind_ == ControlKind::OptionButton) {
    if (value == 0) {
      if (state_.value == 0) return;
      state_.value = 0;
      changed();
      return;
    }
    if (state_.value != 0) return;
    selectOption();
    state_.value = 1;
    changed();
    if (onClick) onClick();
    return;
  }
  if (kind_ == ControlKind::CheckBox) {
    const int v = value != 0 ? 1 : 0;
    if (state_.value == v) return;
    state_.value = v;
    changed();
    if (onClick) onClick();
    return;
  }
  if (state_.value == value) return;
  state_.value = value;
  changed();
}

void Control::setListIndex(int index) {
  if (index < -1 || index >= static_cast<int>(state_.items.size())) Raise(ErrorKind::InvalidArgument);
  if (state_.listIndex == index) return;
  state_.listIndex = index;
  state_.text = index < 0 ? std::string() : state_.items[index];
  changed();
  if (onChange) onChange();
}

void Control::click() {
  switch (kind_) {
    case ControlKind::CheckBox:
      setValue(state_.value != 0 ? 0 : 1);
      return;
    case ControlKind::OptionButton:
      if (state_.value != 0) {
        if (onClick) onClick();
      } else {
        setValue(1);
      }
      return;
    default:
      if (onClick) onClick();
  }
}

Control& Control::visible(bool v) {
  if (state_.visible != v) {
    state_.visible = v;
    changed();
  }
  return *this;
}

Control& Control::enabled(bool e) {
  if (state_.enabled != e) {
    state_.enabled = e;
    changed();
  }
  return *this;
}

Control& Control::toolTip(const std::string& tip) {
  state_.toolTip = tip;
  changed();
  return *this;
}

Control& Control::place(int left, int top, int width, int height) {
  state_.place = Place{left, top, width, height};
  changed();
  return *this;
}

Control& Control::items(std::vector<std::string> list) {
  state_.items = std::move(list);
  changed();
  return *this;
}

Control& Control::editable(bool e) {
  state_.editable = e;
  return *this;
}

Control& Control::font(FontSpec f) {
  state_.font = std::move(f);
  return *this;
}

Control& Control::align(Align a) {
  state_.align = a;
  return *this;
}

Control& Control::initialText(const std::string& t) {
  state_.text = t;
  return *this;
}

Control& Control::initialCaption(const std::string& c) {
  state_.caption = c;
  return *this;
}

Control& Control::initialValue(int v) {
  state_.value = v;
  return *this;
}

void Control::copyStateFrom(const ControlState& other) {
  state_ = other;
  changed();
}

Form::Form(std::string name, std::string caption, Place area, FontSpec font)
    : name_(std::move(name)), caption_(std::move(caption)), area_(area), font_(std::move(font)) {}

Control& Form::add(ControlKind kind, const std::string& name, int index, Control* container) {
  return controls_.emplace_back(*this, kind, name, index, container);
}

Control* Form::find(const std::string& name, int index) {
  for (Control& c : controls_)
    if (c.name() == name && c.index() == index) return &c;
  return nullptr;
}

Control& Form::control(const std::string& name, int index) {
  if (Control* c = find(name, index)) return *c;
  Raise(ErrorKind::SubscriptOutOfRange,
        "Subscript out of range: no control " + name + (index >= 0 ? "(" + std::to_string(index) + ")" : "") +
            " on " + name_);
}

const Control& Form::control(const std::string& name, int index) const {
  return const_cast<Form*>(this)->control(name, index);
}

bool Form::hasControlNamed(const std::string& name) const {
  return std::any_of(controls_.begin(), controls_.end(), [&](const Control& c) { return c.name() == name; });
}

std::vector<Control*> Form::controls() {
  std::vector<Control*> out;
  for (Control& c : controls_) out.push_back(&c);
  return out;
}

std::vector<const Control*> Form::controls() const {
  std::vector<const Control*> out;
  for (const Control& c : controls_) out.push_back(&c);
  return out;
}

void Form::show() {
  if (!shown_) {
    shown_ = true;
    notify(nullptr);
  }
  activate();
}

void Form::hide() {
  if (shown_) {
    shown_ = false;
    notify(nullptr);
  }
}

void Form::activate() { onActivate(); }

int Form::addObserver(Observer observer) {
  observers_.emplace_back(nextObserver_, std::move(observer));
  return nextObserver_++;
}

void Form::removeObserver(int id) {
  observers_.erase(std::remove_if(observers_.begin(), observers_.end(), [&](auto& p) { return p.first == id; }),
                   observers_.end());
}

void Form::notify(const Control* control) {
  for (auto& [id, observer] : observers_) observer(control);
}

void Form::copyStateFrom(const Form& other) {
  auto mine = controls();
  auto theirs = other.controls();
  for (std::size_t i = 0; i < mine.size() && i < theirs.size(); ++i) mine[i]->copyStateFrom(theirs[i]->state());
  shown_ = other.shown_;
}

}  // namespace voltrix
