// The classic picture is a contract: an untouched plot records exactly the
// drawing calls it recorded before the desktop learnt to zoom, colour rows
// and show a legend. The golden files were written by the engine as it stood
// then; a change of them must be a deliberate change of the classic plot.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>

#include "support/headless_workbench.h"
#include "support/picture_text.h"
#include "ui/form_option.h"
#include "ui/plot_display_list.h"
#include "ui/plot_engine.h"

namespace voltrix {
namespace {

std::string GoldenPath(const char* name) {
  return (std::filesystem::path(__FILE__).parent_path() / "golden" / name).string();
}

// Rows over a sweep from 0.3 V down to -0.3 V in 61 points.
void FillRows(Workbench& wb, int rows) {
  Experiment& e = wb.experiment;
  e.First = 1;
  e.Last = 61;
  e.NCurves = rows;
  for (int i = 1; i <= 61; ++i) {
    const double x = 0.3 - 0.01 * (i - 1);
    wb.store.XData(i) = x;
    for (int r = 1; r <= rows; ++r) wb.store.YData(r, i) = 3.2e-5 * r * std::exp(-(x - 0.05 * r) * (x - 0.05 * r) / 0.005) - 4e-6;
  }
}

struct Case {
  const char* golden;
  int rows;
  bool grid, reversed;
};

TEST(ClassicPicture, UntouchedPlotsRecordTheGoldenCalls) {
  const Case cases[] = {
      {"one_peak.txt", 1, false, true},           // the picture after a first run
      {"three_rows_grid.txt", 3, true, false},   // overlay of dots, boxes and a line on a grid
  };
  for (const Case& c : cases) {
    test::HeadlessWorkbench b;
    FillRows(b.wb, c.rows);
    b.wb.formOption().control("CheckGrid").setValue(c.grid);
    b.wb.formOption().control("CheckXdir").setValue(c.reversed);
    PlotCurves(b.wb);
    const std::string actual = test::PictureText(LastPicture(b.platform.plot.calls));
    EXPECT_EQ(actual, test::GoldenPicture(GoldenPath(c.golden), actual)) << c.golden;
  }
}

}  // namespace
}  // namespace voltrix
