#include "ui/form_option.h"

#include "model/number_format.h"
#include "ui/plot_engine.h"
#include "ui/workbench.h"

namespace voltrix {

FormOption::FormOption(Workbench& wb) : Form("formOption", "Option", {0, 0, 7935, 4320}), wb_(wb) {
  for (int i = 0; i <= 4; ++i) {
    Control& frame = add(ControlKind::Frame, "Frame1", i)
                         .initialCaption("Curve " + std::to_string(i + 1))
                         .place(120 + 1560 * i, 120, 1455, 2295);
    Control& styles = add(ControlKind::Frame, "Linestyle", i, &frame).initialCaption("Line style").place(120, 360, 1215, 1695);
    add(ControlKind::OptionButton, "linestyle1", i, &styles).initialCaption("...........").initialValue(i >= 2).place(120, 360, 975, 255);
    add(ControlKind::OptionButton, "linestyle2", i, &styles).initialCaption("oooooo").initialValue(i == 0).place(120, 840, 975, 255);
    add(ControlKind::OptionButton, "linestyle3", i, &styles).initialCaption("______").initialValue(i == 1).place(120, 1320, 975, 255);
  }
  Control& axis = add(ControlKind::Frame, "axis").initialCaption("Axis").place(120, 2520, 7695, 975);
  add(ControlKind::CheckBox, "Xauto", -1, &axis).initialCaption("X auto").toolTip("auto scale of X axis ").initialValue(1).place(120, 240, 975, 255);
  add(ControlKind::CheckBox, "Yauto", -1, &axis).initialCaption("Y auto").toolTip("auto scale of Y axis ").initialValue(1).place(120, 600, 975, 255);
  struct Limit {
    const char *label, *caption, *box, *tip, *text;
    int left, top;
  };
  const Limit limits[] = {{"Label2", "X min", "XminText", "mininum X value", "-0.3", 1200, 240},
                          {"Label3", "X max", "XmaxText", "maxinum X value", "0.3", 2880, 240},
                          {"Label4", "Y min", "YminText", "mininum Y value", "-1e-3", 1200, 600},
                          {"Label5", "Y max", "YmaxText", "maxinum Y value", "1e-3", 2880, 600}};
  for (const Limit& l : limits) {
    add(ControlKind::Label, l.label, -1, &axis).initialCaption(l.caption).toolTip(l.tip).place(l.left, l.top + 30, 615, 255).visible(false);
    add(ControlKind::TextBox, l.box, -1, &axis).initialText(l.text).toolTip(l.tip).place(l.left + 660, l.top, 855, 285).visible(false);
  }
  add(ControlKind::ComboBox, "ComboY", -1, &axis)
      .items({"current I", "resistance R", "conductance Cond", "surface concentration C"})
      .place(4560, 240, 2295, 315);
  add(ControlKind::CheckBox, "CheckXdir", -1, &axis)
      .initialCaption("X direction: + -> -")
      .toolTip("X axis Direction from positive to negative")
      .initialValue(1)
      .place(4560, 600, 2655, 255);
  add(ControlKind::CheckBox, "overlap").initialCaption("Overlap").toolTip("overlap plot").place(240, 3720, 1215, 255);
  add(ControlKind::CheckBox, "CheckGrid").initialCaption("Grid").place(2040, 3720, 1215, 255);
  add(ControlKind::CommandButton, "cmdOK").initialCaption("OK").place(6840, 3600, 975, 495);

  control("Xauto").onClick = [this] {
    const bool manual = !control("Xauto").checked();
    for (const char* name : {"Label2", "XminText", "Label3", "XmaxText"}) control(name).visible(manual);
  };
  control("Yauto").onClick = [this] {
    const bool manual = !control("Yauto").checked();
    for (const char* name : {"Label4", "YminText", "Label5", "YmaxText"}) control(name).visible(manual);
  };
  control("cmdOK").onClick = [this] {
    OK();
    hide();
    RefreshPlot(wb_);
  };
  // Form load.
  control("ComboY").setListIndex(0);
}

void FormOption::OK() {
  Experiment& e = wb_.experiment;
  e.GridFlag = control("CheckGrid").checked();
  e.OverlapFlag = control("overlap").checked();
  if (!control("Xauto").checked()) {
    e.Xmin = Val(control("XminText").text());
    e.Xmax = Val(control("XmaxText").text());
  }
  if (!control("Yauto").checked()) {
    e.Ymin = Val(control("YminText").text());
    e.Ymax = Val(control("YmaxText").text());
  }
  for (int i = 0; i <= 4; ++i) {
    int style = 3;
    if (control("linestyle1", i).checked()) style = 1;
    else if (control("linestyle2", i).checked()) style = 2;
    wb_.store.LineStyle(i + 1) = style;
  }
}

}  // namespace voltrix
