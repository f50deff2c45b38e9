#pragma once
// Headless control models. A form is a set of named controls, each with its
// kind, caption or text, value or list index, visible and enabled state, tool
// tip and place in twips. Writing a control from code raises its change or
// click event exactly as a user's edit does, so chains of derived texts run
// the same whether a person, a script or a test changes a box. Front ends
// render these models and write user edits back through the same calls.
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace voltrix {

enum class ControlKind { Form, Frame, Label, TextBox, CheckBox, OptionButton, ComboBox, CommandButton, Menu };

const char* KindName(ControlKind kind);

struct Place {  // twips, 1440 to the inch; left and top within the container
  int left = 0, top = 0, width = 0, height = 0;
};

struct FontSpec {
  std::string name = "MS Sans Serif";
  double size = 8.25;
  bool bold = true;
};

enum class Align { Left, Center, Right };

// Everything a control shows, as a plain value (copyable between workbenches).
struct ControlState {
  std::string caption;
  std::string text;
  std::string toolTip;
  int value = 0;        // check box 0/1, option button 0/1
  int listIndex = -1;   // combo box
  std::vector<std::string> items;
  bool editable = false;  // combo box whose text may be typed
  bool visible = true;
  bool enabled = true;
  Place place;
  std::optional<FontSpec> font;  // none: the form's font
  Align align = Align::Left;
};

class Form;

class Control {
 public:
  Control(Form& owner, ControlKind kind, std::string name, int index, Control* container);
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  ControlKind kind() const { return kind_; }
  const std::string& name() const { return name_; }
  int index() const { return index_; }  // -1 for a control that is not in an array
  std::string fullName() const;         // "Estart", "CheckFitted(3)"
  Control* container() const { return container_; }
  Form& form() const { return owner_; }
  const ControlState& state() const { return state_; }

  const std::string& text() const { return state_.text; }
  const std::string& caption() const { return state_.caption; }
  int value() const { return state_.value; }
  bool checked() const { return state_.value != 0; }
  int listIndex() const { return state_.listIndex; }
  const std::vector<std::string>& items() const { return state_.items; }
  bool visible() const { return state_.visible; }
  bool enabled() const { return state_.enabled; }
  const std::string& toolTip() const { return state_.toolTip; }
  const Place& place() const { return state_.place; }
  // What the user reads: the text of a text box or combo box, else the caption.
  const std::string& shownText() const;

  // Writes that raise the control's events, as a user's edit would.
  void setText(const std::string& text);  // text box, combo box (a list picks the item of that text)
  void setCaption(const std::string& caption);  // a label's change event follows
  void setValue(int value);                // check box: click on a change; option button: 1 selects
  void setListIndex(int index);            // change event on a change
  void click();                            // button click, check box toggle, option select

  // Writes without events: layout and design-time properties.
  Control& visible(bool v);
  Control& enabled(bool e);
  Control& toolTip(const std::string& tip);
  Control& place(int left, int top, int width, int height);
  Control& items(std::vector<std::string> list);
  Control& editable(bool e);
  Control& font(FontSpec f);
  Control& align(Align a);
  Control& initialText(const std::string& t);
  Control& initialCaption(const std::string& c);
  Control& initialValue(int v);

  // Copies what another control shows, without events.
  void copyStateFrom(const ControlState& other);

  std::function<void()> onChange;
  std::function<void()> onClick;

 private:
  void changed();  // tells the form's observers
  void selectOption();

  Form& owner_;
  ControlKind kind_;
  std::string name_;
  int index_;
  Control* container_;
  ControlState state_;
};

class Form {
 public:
  Form(std::string name, std::string caption, Place area, FontSpec font = {});
  virtual ~Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  const std::string& name() const { return name_; }
  const std::string& caption() const { return caption_; }
  const Place& area() const { return area_; }
  const FontSpec& font() const { return font_; }

  Control& add(ControlKind kind, const std::string& name, int index = -1, Control* container = nullptr);
  // The control of that name and index; raises "Subscript out of range"
  // when there is none, so a wrong index behaves like a bad array index.
  Control& control(const std::string& name, int index = -1);
  const Control& control(const std::string& name, int index = -1) const;
  Control* find(const std::string& name, int index = -1);
  bool hasControlNamed(const std::string& name) const;
  std::vector<Control*> controls();
  std::vector<const Control*> controls() const;

  // Shown without blocking; showing makes the form active.
  void show();
  void hide();
  bool shown() const { return shown_; }
  void activate();  // the form becomes the active window

  // Observers are told of every change of a control's state, and of show/hide.
  using Observer = std::function<void(const Control*)>;  // nullptr: the form itself
  int addObserver(Observer observer);
  void removeObserver(int id);
  void notify(const Control* control);

  // Copies the state of every control of a form of the same kind, without events.
  void copyStateFrom(const Form& other);

 protected:
  virtual void onActivate() {}

 private:
  std::string name_;
  std::string caption_;
  Place area_;
  FontSpec font_;
  std::deque<Control> controls_;
  bool shown_ = false;
  std::vector<std::pair<int, Observer>> observers_;
  int nextObserver_ = 1;
};

}  // namespace voltrix
