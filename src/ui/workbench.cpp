#include "ui/workbench.h"

#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_mech.h"
#include "ui/form_option.h"
#include "ui/form_plot.h"
#include "ui/form_tech.h"
#include "ui/main_form.h"
#include "ui/text_window.h"

namespace voltrix {

Workbench::Workbench(Platform p) : platform(p) {
  // The main window's load step: FormMech is created (not shown) so that
  // Digital follows its check box from the start.
  mainForm();
  experiment.Digital = formMech().control("CheckDigital").checked();
  experiment.Electrode = 1;
}

Workbench::~Workbench() = default;

template <class F, class... Args>
static F& Lazy(std::unique_ptr<F>& slot, Args&&... args) {
  if (!slot) slot = std::make_unique<F>(std::forward<Args>(args)...);
  return *slot;
}

MainForm& Workbench::mainForm() { return Lazy(main_, *this); }
FormTech& Workbench::formTech() { return Lazy(tech_, *this); }
FormMech& Workbench::formMech() { return Lazy(mech_, *this); }
FormIns& Workbench::formIns() { return Lazy(ins_, *this); }
FormExpr& Workbench::formExpr() { return Lazy(expr_, *this); }
FormOption& Workbench::formOption() { return Lazy(option_, *this); }
FormResult& Workbench::formResult() { return Lazy(result_); }
FormPlot& Workbench::formPlot() { return Lazy(plot_, platform.plot); }
FormAbout& Workbench::formAbout() { return Lazy(about_); }

const std::vector<std::string>& Workbench::formNames() {
  static const std::vector<std::string> names = {"MDIForm1", "FormTech",   "FormMech", "FormIns",  "FormExpr",
                                                 "formOption", "FormResult", "FormPlot", "FormAbout"};
  return names;
}

Form* Workbench::formNamed(const std::string& name) {
  if (name == "MDIForm1") return &mainForm();
  if (name == "FormTech") return &formTech();
  if (name == "FormMech") return &formMech();
  if (name == "FormIns") return &formIns();
  if (name == "FormExpr") return &formExpr();
  if (name == "formOption") return &formOption();
  if (name == "FormResult") return &formResult();
  if (name == "FormPlot") return &formPlot();
  if (name == "FormAbout") return &formAbout();
  return nullptr;
}

std::vector<Form*> Workbench::createdForms() {
  std::vector<Form*> out;
  for (Form* f : std::initializer_list<Form*>{main_.get(), tech_.get(), mech_.get(), ins_.get(), expr_.get(),
                                              option_.get(), result_.get(), plot_.get(), about_.get()})
    if (f) out.push_back(f);
  return out;
}

void Workbench::copyStateFrom(Workbench& other) {
  for (Form* theirs : other.createdForms()) {
    Form* mine = formNamed(theirs->name());
    if (mine) mine->copyStateFrom(*theirs);
  }
  // The model last: creating a form above runs its load step, which writes
  // derived fields of the experiment.
  experiment = other.experiment;
  store = other.store;
  optimiser = other.optimiser;
}

}  // namespace voltrix
