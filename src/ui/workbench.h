#pragma once
// The workbench owns one experiment with everything that belongs to it: the
// Experiment, the CurveStore, the forms (created at first use) and the
// platform it shows things on. Routines take it by reference; independent
// workbenches can coexist.
#include <memory>
#include <string>
#include <vector>

#include "model/curve_store.h"
#include "model/experiment.h"
#include "model/fit_record.h"
#include "model/optimiser_memory.h"
#include "model/platform.h"

namespace voltrix {

class Form;
class FormTech;
class FormMech;
class FormIns;
class FormExpr;
class FormOption;
class FormResult;
class FormPlot;
class FormAbout;
class MainForm;

class Workbench {
 public:
  explicit Workbench(Platform platform);
  ~Workbench();
  Workbench(const Workbench&) = delete;
  Workbench& operator=(const Workbench&) = delete;

  Platform platform;
  Experiment experiment;
  CurveStore store;
  OptimiserMemory optimiser;
  FitRecord fits;  // the workbench's own: a copy starts without it
  bool exitRequested = false;  // set by "E&xit"; the front end ends the process

  MainForm& mainForm();  // MDIForm1, with the menu bar
  FormTech& formTech();
  FormMech& formMech();
  FormIns& formIns();
  FormExpr& formExpr();
  FormOption& formOption();
  FormResult& formResult();
  FormPlot& formPlot();
  FormAbout& formAbout();

  // A form by the name the user knows it by ("FormIns", "formOption", ...);
  // nullptr for an unknown name. Creates the form if needed.
  Form* formNamed(const std::string& name);
  static const std::vector<std::string>& formNames();
  // Forms created so far, for front ends that render them.
  std::vector<Form*> createdForms();

  // Takes over the whole state of another workbench (model, curves and every
  // control), without raising events: a copy on which a probe can run.
  void copyStateFrom(Workbench& other);

 private:
  std::unique_ptr<MainForm> main_;
  std::unique_ptr<FormTech> tech_;
  std::unique_ptr<FormMech> mech_;
  std::unique_ptr<FormIns> ins_;
  std::unique_ptr<FormExpr> expr_;
  std::unique_ptr<FormOption> option_;
  std::unique_ptr<FormResult> result_;
  std::unique_ptr<FormPlot> plot_;
  std::unique_ptr<FormAbout> about_;
};

}  // namespace voltrix
