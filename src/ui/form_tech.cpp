#include "ui/form_tech.h"

#include "ui/workbench.h"

namespace voltrix {

FormTech::FormTech(Workbench& wb) : Form("FormTech", "Techniques", {0, 0, 3540, 3495}), wb_(wb) {
  Control& frame = add(ControlKind::Frame, "Frame3").initialCaption("Voltammetry").place(0, 120, 3495, 2415);
  struct Row {
    int top, width, height;
    const char* caption;
  };
  const Row rows[] = {{240, 3255, 375, "1)  Linear sweep and cyclic voltammetry"},
                      {720, 2295, 255, "2)  DC voltammetry"},
                      {960, 2775, 255, "3)  Normal pulse voltammetry"},
                      {1560, 2775, 255, "4)  Differential pulse voltammetry"},
                      {1800, 2775, 255, "5)  Square wave voltammetry"}};
  for (int i = 1; i <= 5; ++i) {
    const Row& r = rows[i - 1];
    add(ControlKind::OptionButton, "optTech", i, &frame)
        .initialCaption(r.caption)
        .initialValue(i == 1)
        .place(120, r.top, r.width, r.height);
  }
  Control& ok = add(ControlKind::CommandButton, "cmdOK").initialCaption("OK").place(0, 2640, 3495, 735);
  ok.onClick = [this] {
    OK();
    hide();
  };
}

void FormTech::OK() {
  for (int i = 1; i <= 5; ++i)
    if (control("optTech", i).checked()) {
      wb_.experiment.Technique = i;
      return;
    }
}

}  // namespace voltrix
