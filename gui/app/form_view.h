#pragma once
// A window rendered from a headless form model: one Qt widget per control,
// at its place in twips scaled to the screen, two-way bound. A user's edit
// goes to the model as setText / setValue / setListIndex / click, so the
// form's own events run; every change of the model comes back to the widget.
#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>

namespace voltrix {

class Control;
class Form;

// Twips to pixels at the widget's logical DPI (1440 twips to the inch).
int TwipsToPixels(int twips, double dpi);

class FormView : public QWidget {
  Q_OBJECT
 public:
  // Runs one user edit on the model: the main window's runner turns a
  // stray run-time error into a message and brings new windows into view.
  using Runner = std::function<void(const std::function<void()>& edit)>;
  FormView(Form& form, Runner run, QWidget* parent = nullptr);
  ~FormView() override;
  Form& form() const { return form_; }
  QWidget* widgetFor(const Control* control) const;

 private:
  void build();
  QWidget* make(Control& c, QWidget* parent);
  void update(const Control* c);
  int roomOf(const Control& label) const;
  void userEdit(const std::function<void()>& edit);

  Form& form_;
  Runner run_;
  std::map<const Control*, QPointer<QWidget>> widgets_;
  int observer_ = 0;
  bool applying_ = false;
  double dpi_ = 96;
};

}  // namespace voltrix
