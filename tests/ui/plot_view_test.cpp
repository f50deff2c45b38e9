// The view of the plot window: the classic picture it leaves alone, zoom
// arithmetic, axis marks, the zoomed picture drawn from a real plot, the
// legend and the pointer reading.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

#include "support/expect_close.h"
#include "support/headless_workbench.h"
#include "support/picture_text.h"
#include "ui/axis_marks.h"
#include "ui/form_option.h"
#include "ui/form_plot.h"
#include "ui/plot_display_list.h"
#include "ui/plot_engine.h"
#include "ui/plot_presentation.h"
#include "ui/zoomed_picture.h"

namespace voltrix {
namespace {

// The classic picture is a contract: an untouched plot records exactly the
// drawing calls it recorded before the desktop learnt to zoom, colour rows
// and show a legend. The golden files were written by the engine as it stood
// then; a change of them must be a deliberate change of the classic plot.
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

const DataRect kFrame{-0.3, 0.3, -1e-5, 4e-5};

TEST(ZoomWindow, TheAnchorStaysAndTheInverseZoomReturns) {
  struct Row {
    double x, y, factor;
  } rows[] = {{0.1, 2e-5, 0.8}, {-0.3, -1e-5, 0.5}, {0.25, 3.9e-5, 0.25}, {0, 0, 3}};
  for (const Row& r : rows) {
    const DataRect in = ZoomedAbout(kFrame, r.x, r.y, r.factor);
    // The anchor divides the zoomed window in the same proportions as the frame.
    EXPECT_CLOSE((r.x - in.xmin) / in.width(), (r.x - kFrame.xmin) / kFrame.width(), 1e-12);
    EXPECT_CLOSE((r.y - in.ymin) / in.height(), (r.y - kFrame.ymin) / kFrame.height(), 1e-12);
    EXPECT_CLOSE(in.width(), kFrame.width() * r.factor, 1e-12);
    const DataRect back = ZoomedAbout(in, r.x, r.y, 1 / r.factor);
    EXPECT_CLOSE(back.xmin, kFrame.xmin, 1e-12);
  }
  EXPECT_EQ(Panned(Panned(kFrame, 0.05, -2e-6), -0.05, 2e-6), kFrame);
}

TEST(ZoomWindow, KeepsZoomForTheSameFrameAndRefusesWhatCannotBeDrawn) {
  PlotZoom zoom;
  EXPECT_FALSE(zoom.zoomTo({0, 0.1, 0, 1e-5}));  // no picture yet
  zoom.follow(kFrame);
  const DataRect window{0, 0.1, 0, 1e-5};
  EXPECT_FALSE(zoom.zoomTo({0, 1e-9, 0, 1e-5}));  // narrower than a hundred-thousandth
  EXPECT_FALSE(zoom.zoomTo({-100, 100, 0, 1e-5}));
  EXPECT_FALSE(zoom.zoomed());
  EXPECT_TRUE(zoom.zoomTo(window));
  zoom.follow(kFrame);  // drawn again after a resize
  EXPECT_EQ(zoom.shown(), window);
  zoom.follow({-0.5, 0.5, -1e-5, 4e-5});  // a plot with other limits
  EXPECT_FALSE(zoom.zoomed());
  EXPECT_TRUE(zoom.zoomTo(zoom.frame()));
  EXPECT_FALSE(zoom.zoomed());
}

// Heckbert (1990), "Nice numbers for graph labels", Graphics Gems: steps of
// 1, 2 or 5 times a power of ten, rounded at 1.5, 3 and 7.
TEST(AxisMarks, StepsAreNiceNumbersAndLabelsCarryTheirDecimals) {
  struct Row {
    double span;
    int parts;
    double step;
  } steps[] = {{0.6, 6, 0.1}, {0.25, 6, 0.05}, {1.7e-5, 5, 5e-6}, {37, 5, 10}, {0.012, 6, 0.002}};
  for (const Row& r : steps) EXPECT_CLOSE(NiceStep(r.span, r.parts), r.step, 1e-12) << r.span;
  EXPECT_EQ(MarksWithin(-0.31, 0.3, 0.1).size(), 7u);  // -0.3 .. 0.3, the far end kept
  EXPECT_EQ(MarkLabel(0.25, 0.05), "0.25");
  EXPECT_EQ(MarkLabel(-1e-17, 0.1), "0.0");
  EXPECT_EQ(DecadeOf(3.2e-5), 1e-5);
  EXPECT_EQ(DecadeOf(1e-3), 1e-3);
}

// A peak of 3.2e-5 A at 0 V over -0.3..0.3 V, as the plot engine draws it.
struct Plotted : test::HeadlessWorkbench {
  explicit Plotted(int rows = 1) {
    Experiment& e = wb.experiment;
    e.First = 1;
    e.Last = 61;
    e.NCurves = rows;
    for (int i = 1; i <= 61; ++i) {
      const double x = 0.3 - 0.01 * (i - 1);
      wb.store.XData(i) = x;
      for (int r = 1; r <= rows; ++r) wb.store.YData(r, i) = 3.2e-5 * std::exp(-(x - 0.1 * (r - 1)) * (x - 0.1 * (r - 1)) / 0.005);
    }
    wb.formOption().control("linestyle3", 0).setValue(1);  // row 1 a joined line,
    wb.formOption().control("linestyle1", 1).setValue(1);  // row 2 dots
    PlotCurves(wb);
  }
  std::vector<DrawCall> picture() const { return LastPicture(platform.plot.calls); }
  PlotPresentation present() {
    return PresentPicture(picture(), platform.plot.rowMarks, wb.formPlot().view(), {"A", "B"}, {});
  }
};

TEST(ZoomedPicture, ShowsTheCurvesInsideTheWindowWithMarksOfTheWindow) {
  Plotted p;
  const DataRect window{-0.055, 0.1, 1e-5, 3e-5};
  ASSERT_TRUE(ZoomView(p.wb.formPlot().view(), p.picture(), window));
  const PlotPresentation shown = p.present();
  ASSERT_TRUE(shown.zoomed);
  EXPECT_EQ(shown.geometry.frame, (DataRect{float(window.xmin), float(window.xmax), float(window.ymin), float(window.ymax)}));
  EXPECT_EQ(shown.geometry.unitLine, "I /A  1E-5");
  auto onEdge = [&](double x, double y) {
    return std::fabs(x - window.xmin) < 1e-6 * window.width() || std::fabs(x - window.xmax) < 1e-6 * window.width() ||
           std::fabs(y - window.ymin) < 1e-6 * window.height() || std::fabs(y - window.ymax) < 1e-6 * window.height();
  };
  const DataRect grown{window.xmin - 1e-7, window.xmax + 1e-7, window.ymin - 1e-12, window.ymax + 1e-12};
  int lines = 0, ends = 0;
  for (const RowSpan& span : RowSpans(shown.rows, shown.calls.size()))
    for (std::size_t i = span.begin; i < span.end; ++i) {
      const auto& a = shown.calls[i].args;
      ASSERT_EQ(shown.calls[i].op, "line");
      EXPECT_TRUE(grown.contains(a[0], a[1]) && grown.contains(a[2], a[3]));
      ++lines;
      ends += onEdge(a[0], a[1]) + onEdge(a[2], a[3]);
    }
  EXPECT_GT(lines, 10);
  // The peak comes in at the left edge, leaves and comes back through the
  // top (its maximum, 3.2e-5, lies above the window) and leaves at the bottom.
  EXPECT_EQ(ends, 4);
  std::vector<std::string> labels;
  float at = 0;
  for (const DrawCall& c : shown.calls) {
    if (c.op == "textpos") at = c.args[0];
    if (c.op != "print") continue;
    labels.push_back(c.text);
    // Y labels stand outside the frame where the reversed axis begins, on the screen's left.
    if (c.text.size() == 3 && c.text[1] == '.') {
      EXPECT_GT(at, window.xmax) << c.text;
    }
  }
  for (const char* mark : {"-0.04", "0.00", "0.10", "1.0", "1.5", "3.0"})
    EXPECT_NE(std::find(labels.begin(), labels.end(), mark), labels.end()) << mark;

  p.wb.formPlot().view().zoom.reset();
  // The classic picture again, call for call.
  EXPECT_EQ(test::PictureText(p.present().calls), test::PictureText(p.picture()));
}

TEST(Legend, NamesEachRowAndKeepsClearOfTheCurves) {
  Plotted p(2);
  PlotViewState& view = p.wb.formPlot().view();
  view.rowLabels[1] = "CV, 0.1 V/s, A + ne = B";
  PlotPresentation shown = p.present();
  ASSERT_EQ(shown.legend.size(), 2u);
  EXPECT_EQ(shown.legend[0].text, "CV, 0.1 V/s, A + ne = B");
  EXPECT_EQ(shown.legend[1].text, "Curve 2");  // never labelled
  EXPECT_EQ(shown.legend[1].style, 1);
  // On the reversed axis the peak at 0.1 V reaches into the top left, the
  // baselines fill both bottom corners: the top right stays free.
  EXPECT_EQ(QuietestCorner(shown.calls, shown.rows, shown.geometry.frame, true, 0.3, 0.35), LegendCorner::TopRight);
  EXPECT_EQ(QuietestCorner(shown.calls, shown.rows, shown.geometry.frame, false, 0.3, 0.35), LegendCorner::TopLeft);
  view.legendShown = false;
  EXPECT_TRUE(p.present().legend.empty());
  EXPECT_TRUE(Plotted(1).present().legend.empty());  // one curve: the classic picture
}

TEST(PointerReading, InThePlotsOwnUnits) {
  double x = 0, y = 0;
  PixelToData({0.36, 4.5e-5, -0.36, -2.8e-5}, 720, 730, 360, 450, x, y);
  EXPECT_CLOSE(x, 0.0, 1e-12);
  EXPECT_CLOSE(y, 0.0, 1e-9);
  EXPECT_EQ(PointerReading("I /A  1E-5", -0.21543, 2.3141e-5), "E = -0.2154 V    I = 2.314E-05 A");
  EXPECT_EQ(PointerReading("Cond *Ohm  1E-3", 0.1, 0.002), "E = 0.1000 V    Cond = 0.002 1/Ohm");
}

TEST(ResidualPanel, SpansTheLargestResidualUnderTheWindow) {
  Plotted p;
  const PictureGeometry g = ReadGeometry(p.picture());
  const ResidualCurve r{{0.2, 0.1, 0.0, -0.1}, {1e-7, -3e-7, 2e-7, 9e-7}};
  const std::vector<DrawCall> panel = ResidualPicture(r, g, {-0.05, 0.3, 0, 1});  // the last point lies outside
  const PictureGeometry pg = ReadGeometry(panel);
  EXPECT_CLOSE(pg.frame.ymax, 3e-7, 1e-6);
  EXPECT_CLOSE(pg.frame.ymin, -3e-7, 1e-6);
  EXPECT_EQ(pg.unitLine, "data - fit, largest 3E-07");
  int lines = 0;
  for (const DrawCall& c : panel) lines += c.op == "line";
  EXPECT_EQ(lines, 4);  // the zero line and three segments, the last clipped at the window
}

}  // namespace
}  // namespace voltrix
