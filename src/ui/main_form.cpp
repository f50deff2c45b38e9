#include "ui/main_form.h"

#include "ui/workbench.h"

namespace voltrix {

Control& MainForm::addMenu(const std::string& name, const std::string& caption, Control* parent) {
  return add(ControlKind::Menu, name, -1, parent).initialCaption(caption);
}

MainForm::MainForm(Workbench&) : Form("MDIForm1", "Voltrix for Windows", {0, 0, 9600, 7200}) {
  Control& file = addMenu("mnuFile", "&File", nullptr);
  addMenu("mnuOpen", "&Open Parameters...", &file);
  addMenu("mnuSave", "&Save...", &file);
  addMenu("mnuBar1", "-", &file);
  addMenu("mnuImport", "&Import Data...", &file);
  addMenu("mnuExport", "&Export Data...", &file);
  addMenu("mnuBar2", "-", &file);
  addMenu("mnuCopyto", "&Copy to Clipboard", &file);
  addMenu("mnuPrint", "&Print", &file);
  addMenu("mnuBar3", "-", &file);
  addMenu("mnuExit", "E&xit", &file);

  Control& input = addMenu("mnuInput", "&Input", nullptr);
  addMenu("mnuTech", "&Techniques...", &input);
  addMenu("mnuMechamism", "&Mechamism...", &input);
  addMenu("mnuInstrument", "&Instrument...", &input);
  addMenu("mnuExperimental", "&Chemicals...", &input);

  Control& run = addMenu("mnuRun", "&Run", nullptr);
  addMenu("mnuSimulate", "&Simulate", &run);
  addMenu("mnuBar31", "-", &run);
  addMenu("mnuManualFit", "&Manual Fit", &run);
  addMenu("mnuAutoFit", "&Auto Fit", &run);
  addMenu("mnuBar32", "-", &run);
  addMenu("mnuManualSeparate", "M&anual Separate", &run);
  addMenu("mnuAutoSeparate", "Auto S&eparate", &run);

  Control& display = addMenu("mnuDisplay", "&Display", nullptr).enabled(false);
  addMenu("mnuOption", "&Option...", &display);
  addMenu("mnuPlot", "&Plot", &display);
  addMenu("mnuNextCurve", "&Next Curve", &display);
  addMenu("mnuTime", "&Time", &display);
  addMenu("mnuClear", "&Clear", &display);

  Control& data = addMenu("mnuData", "&Analysis", nullptr).enabled(false);
  addMenu("mnuFindPeak", "&Find Peak", &data);
  addMenu("mnuFindHalfwaveE", "Find &Halfwave E", &data);
  // Available exactly while the analytical mode is on; the program starts digital.
  addMenu("mnuTheoPeak", "&Theoretical Peak", &data).enabled(false);
  addMenu("mnuBar51", "-", &data);
  addMenu("mnuSemi", "&Semi-differentiate", &data);
  addMenu("mnuSemiInte", "S&emi-intergrate", &data);
  addMenu("mnuDerivative", "&Differentiate", &data);
  addMenu("mnuIntegral", "&Integrate", &data);
  addMenu("mnuBar52", "-", &data);
  Control& x = addMenu("mnuXData", "&X Data", &data);
  addMenu("mnu1000X", "1000X", &x);
  addMenu("mnu10X", "10X", &x);
  addMenu("mnu01X", "0.1X", &x);
  addMenu("mnu0001X", "0.001X", &x);
  addMenu("mnuMinusX", "-X", &x);
  Control& y = addMenu("mnuYData", "&Y Data", &data);
  addMenu("mnu1000Y", "1000Y", &y);
  addMenu("mnu10Y", "10Y", &y);
  addMenu("mnu01Y", "0.1Y", &y);
  addMenu("mnu0001Y", "0.001Y", &y);
  addMenu("mnuMinusY", "-Y", &y);

  Control& help = addMenu("mnuHelp", "&Help", nullptr);
  addMenu("mnuAbout", "&About...", &help);
}

std::vector<Control*> MainForm::menuItems() { return controls(); }

}  // namespace voltrix
