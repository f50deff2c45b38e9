#include "ui/plot_engine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "support/expect_close.h"
#include "support/headless_workbench.h"
#include "ui/form_option.h"
#include "ui/plot_display_list.h"

namespace voltrix {
namespace {

// A sweep from 0.3 V down to -0.3 V in 61 points (dx = 0.6), one curve row.
struct PlotBench : test::HeadlessWorkbench {
  explicit PlotBench(double (*curve)(double)) {
    Experiment& e = wb.experiment;
    e.First = 1;
    e.Last = 61;
    e.NCurves = 1;
    for (int i = 1; i <= 61; ++i) {
      const double x = 0.3 - 0.01 * (i - 1);
      wb.store.XData(i) = x;
      wb.store.YData(1, i) = curve(x);
    }
  }
  Control& option(const char* name, int index = -1) { return wb.formOption().control(name, index); }
  std::vector<DrawCall> picture() const { return LastPicture(platform.plot.calls); }
  std::vector<std::string> prints() const {
    std::vector<std::string> out;
    for (const DrawCall& c : picture())
      if (c.op == "print") out.push_back(c.text);
    return out;
  }
  std::vector<DrawCall> ops(const std::string& op) const {
    std::vector<DrawCall> out;
    for (const DrawCall& c : picture())
      if (c.op == op) out.push_back(c);
    return out;
  }
  // The printed text that follows a text position at (x, y).
  std::vector<std::pair<std::vector<float>, std::string>> labels() const {
    std::vector<std::pair<std::vector<float>, std::string>> out;
    std::vector<float> at;
    for (const DrawCall& c : picture()) {
      if (c.op == "textpos") at = c.args;
      if (c.op == "print") out.push_back({at, c.text});
    }
    return out;
  }
};

bool Near(float a, float b) { return std::fabs(a - b) <= 1e-5f * std::fabs(b); }

// A reduction peak of 3.2e-5 A at 0 V.
double Peak(double x) { return 3.2e-5 * std::exp(-x * x / 0.005); }
double Zero(double) { return 0.0; }
double Negative(double x) { return -5.5e-6 * (1 - x); }  // -3.85e-6 .. -7.15e-6

TEST(PlotLimits, PositivePeakRoundsOutwardToWholeDecades) {
  PlotBench b(Peak);
  PlotCurves(b.wb);
  EXPECT_TRUE(b.messages().empty());
  EXPECT_CLOSE(b.wb.experiment.Ymax, 4e-5, 1e-12);
  EXPECT_CLOSE(b.wb.experiment.Ymin, -1e-5, 1e-12);
  EXPECT_CLOSE(b.wb.experiment.Xmax, 0.3, 1e-12);
  EXPECT_CLOSE(b.wb.experiment.Xmin, -0.3, 1e-12);
  ASSERT_FALSE(b.prints().empty());
  EXPECT_EQ(b.prints().front(), "I /A  1E-5");

  // Y labels count the decades from Ymax down to Ymin.
  std::vector<std::string> yLabels;
  for (const auto& [at, text] : b.labels())
    if (std::fabs(at[0] - (0.3f + 0.04f * 0.6f)) < 1e-6f) yLabels.push_back(text);
  EXPECT_EQ(yLabels, (std::vector<std::string>{"4", "3", "2", "1", "0", "-1"}));

  // X labels every 0.1 V, both frame edges included.
  std::vector<std::string> xLabels;
  for (const auto& [at, text] : b.labels())
    if (std::fabs(at[1] - (-1e-5f)) < 1e-12f && std::fabs(at[0]) <= 0.3f + 1e-6f) xLabels.push_back(text);
  EXPECT_EQ(xLabels, (std::vector<std::string>{"-0.3", "-0.2", "-0.1", "0.", "0.1", "0.2", "0.3"}));
}

TEST(PlotLimits, WholeMultipleStillGrowsAndNegativeCurvesKeepZeroInRange) {
  PlotBench whole([](double) { return 2.0; });
  PlotCurves(whole.wb);
  EXPECT_EQ(whole.wb.experiment.Ymax, 3.0);
  EXPECT_EQ(whole.wb.experiment.Ymin, -1.0);
  EXPECT_EQ(whole.prints().front(), "I /A  1E0");

  PlotBench negative(Negative);
  PlotCurves(negative.wb);
  EXPECT_CLOSE(negative.wb.experiment.Ymax, 1e-6, 1e-12);
  EXPECT_CLOSE(negative.wb.experiment.Ymin, -8e-6, 1e-12);
  EXPECT_EQ(negative.prints().front(), "I /A  1E-6");
}

TEST(PlotLimits, AllZeroCurvesFallBackToOneMillion) {
  PlotBench b(Zero);
  PlotCurves(b.wb);
  EXPECT_TRUE(b.messages().empty());
  EXPECT_EQ(b.wb.experiment.Ymax, 1e6);
  EXPECT_EQ(b.wb.experiment.Ymin, 0.0);
  EXPECT_EQ(b.prints().front(), "I /A  1E6");
  // Ymin = 0 gives no count for the reversed Y marks: the plot ends after
  // the X labels, without Y labels, and without a message.
  const auto prints = b.prints();
  EXPECT_EQ(prints.back(), "0.3");
  EXPECT_EQ(std::count(prints.begin(), prints.end(), "1"), 0);

  // Left to right, the Ymax-based count exists and labels 0 and 1 appear.
  PlotBench forward(Zero);
  forward.option("CheckXdir").setValue(0);
  PlotCurves(forward.wb);
  const auto fp = forward.prints();
  EXPECT_EQ(std::vector<std::string>(fp.end() - 2, fp.end()), (std::vector<std::string>{"0", "1"}));
}

TEST(PlotLimits, ManualLimitsAreTakenAsTypedAndEqualOnesGiveNoData) {
  PlotBench b(Peak);
  b.option("Yauto").setValue(0);
  b.option("YminText").setText("-2e-5");
  b.option("YmaxText").setText("6e-5 A");  // the leading number counts
  PlotCurves(b.wb);
  EXPECT_EQ(b.wb.experiment.Ymax, 6e-5);
  EXPECT_EQ(b.wb.experiment.Ymin, -2e-5);

  PlotBench same(Peak);
  same.option("Xauto").setValue(0);
  same.option("XminText").setText("0.1");
  same.option("XmaxText").setText("0.1");
  PlotCurves(same.wb);
  EXPECT_EQ(same.messages(), (std::vector<std::string>{"Error: No data!"}));
  EXPECT_TRUE(same.picture().empty());  // the window stays blank

  PlotBench empty(Zero);
  for (int i = 1; i <= 61; ++i) empty.wb.store.XData(i) = 0;
  PlotCurves(empty.wb);
  EXPECT_EQ(empty.messages(), (std::vector<std::string>{"Error: No data!"}));
}

TEST(PlotLayout, ScaleLeavesMarginsAndReversedAxisPutsPositiveLeft) {
  PlotBench b(Peak);
  PlotCurves(b.wb);
  const auto scales = b.ops("scale");
  ASSERT_EQ(scales.size(), 2u);
  // left, top, right, bottom: 10 % of dx beside, 1.5 and 1.8 decades above and below.
  EXPECT_NEAR(scales[0].args[0], -0.36f, 1e-6f);
  EXPECT_NEAR(scales[0].args[1], 5.5e-5f, 1e-11f);
  EXPECT_NEAR(scales[0].args[2], 0.36f, 1e-6f);
  EXPECT_NEAR(scales[0].args[3], -2.8e-5f, 1e-11f);
  EXPECT_NEAR(scales[1].args[0], 0.36f, 1e-6f);
  EXPECT_NEAR(scales[1].args[2], -0.36f, 1e-6f);
  // Y marks stand on the Xmax edge and point into the frame.
  const auto lines = b.ops("line");
  bool markAtXmax = false;
  for (const DrawCall& l : lines)
    if (l.args[0] == 0.3f && std::fabs(l.args[2] - (0.3f - 0.006f)) < 1e-6f && l.args[1] == l.args[3]) markAtXmax = true;
  EXPECT_TRUE(markAtXmax);

  PlotBench forward(Peak);
  forward.option("CheckXdir").setValue(0);
  PlotCurves(forward.wb);
  EXPECT_EQ(forward.ops("scale").size(), 1u);
  bool markAtXmin = false;
  for (const DrawCall& l : forward.ops("line"))
    if (l.args[0] == -0.3f && std::fabs(l.args[2] - (-0.3f + 0.006f)) < 1e-6f && l.args[1] == l.args[3]) markAtXmin = true;
  EXPECT_TRUE(markAtXmin);
}

TEST(PlotLayout, FrameUnitLineZeroLineAndAxisTitle) {
  PlotBench b(Peak);
  PlotCurves(b.wb);
  const auto pic = b.picture();
  const auto boxes = b.ops("box");
  ASSERT_FALSE(boxes.empty());
  // The first box is the frame (Curve 1 draws boxes too, after it).
  EXPECT_NEAR(boxes[0].args[0], -0.3f, 1e-6f);
  EXPECT_NEAR(boxes[0].args[1], -1e-5f, 1e-11f);
  EXPECT_NEAR(boxes[0].args[2], 0.3f, 1e-6f);
  EXPECT_NEAR(boxes[0].args[3], 4e-5f, 1e-11f);

  // The zero line is the one dashed line, along y = 0 from Xmin to Xmax.
  std::vector<DrawCall> dashedLines;
  bool dashed = false;
  for (const DrawCall& c : pic) {
    if (c.op == "dashed") dashed = c.args[0] != 0;
    if (c.op == "line" && dashed) dashedLines.push_back(c);
  }
  ASSERT_EQ(dashedLines.size(), 1u);
  EXPECT_EQ(dashedLines[0].args, (std::vector<float>{-0.3f, 0, 0.3f, 0}));
  EXPECT_FALSE(dashed);  // solid again afterwards

  // "E /V" centred under the frame, one decade below it.
  bool title = false;
  for (const auto& [at, text] : b.labels())
    if (text == "E /V") title = std::fabs(at[0]) < 1e-6f && std::fabs(at[1] - (-2e-5f)) < 1e-11f;
  EXPECT_TRUE(title);

  // A curve that never goes below zero in a manual range above zero has no zero line.
  PlotBench above(Peak);
  above.option("Yauto").setValue(0);
  above.option("YminText").setText("1e-5");
  above.option("YmaxText").setText("4e-5");
  PlotCurves(above.wb);
  for (const DrawCall& c : above.picture()) EXPECT_NE(c.op, "dashed");
}

TEST(PlotLayout, UnitLineFollowsTheQuantityShownEvenWithoutOK) {
  const std::pair<int, const char*> quantities[] = {
      {0, "I /A  1E-5"}, {1, "R /Ohm  1E-5"}, {2, "Cond *Ohm  1E-5"}, {3, "C /M  1E-5"}};
  for (const auto& [index, line] : quantities) {
    PlotBench b(Peak);
    b.option("ComboY").setListIndex(index);
    PlotCurves(b.wb);
    EXPECT_EQ(b.prints().front(), line);
    EXPECT_EQ(b.wb.store.YData(1, 31), 3.2e-5);  // the data itself is untouched
  }
}

TEST(PlotCurveStyles, DotsBoxesAndJoinedLines) {
  // Curve 1 defaults to boxes centred on each point, 1 % of each range wide.
  PlotBench boxes(Peak);
  PlotCurves(boxes.wb);
  auto bx = boxes.ops("box");
  ASSERT_EQ(bx.size(), 62u);  // the frame and one per point
  for (int i = 1; i <= 61; ++i) {
    const DrawCall& c = bx[i];
    EXPECT_NEAR((c.args[0] + c.args[2]) / 2, static_cast<float>(boxes.wb.store.XData(i)), 1e-6f);
    EXPECT_NEAR((c.args[1] + c.args[3]) / 2, static_cast<float>(Peak(boxes.wb.store.XData(i))), 1e-10f);
    EXPECT_NEAR(c.args[2] - c.args[0], 0.006f, 1e-6f);
    EXPECT_NEAR(c.args[3] - c.args[1], 5e-7f, 1e-11f);
  }

  PlotBench dots(Peak);
  dots.option("linestyle1", 0).setValue(1);
  PlotCurves(dots.wb);
  EXPECT_EQ(dots.ops("point").size(), 61u);
  EXPECT_EQ(dots.ops("box").size(), 1u);

  PlotBench joined(Peak);
  joined.option("linestyle3", 0).setValue(1);
  PlotCurves(joined.wb);
  EXPECT_EQ(joined.ops("point").size(), 1u);
  // Segments run from point to point: each starts where the previous ended.
  std::vector<DrawCall> segments;
  for (const DrawCall& c : joined.ops("line"))
    if (c.args[0] != c.args[2] && c.args[1] != c.args[3]) segments.push_back(c);
  ASSERT_EQ(segments.size(), 60u);
  for (std::size_t k = 1; k < segments.size(); ++k) {
    EXPECT_EQ(segments[k].args[0], segments[k - 1].args[2]);
    EXPECT_EQ(segments[k].args[1], segments[k - 1].args[3]);
  }
  EXPECT_NEAR(segments.back().args[2], -0.3f, 1e-6f);
}

TEST(PlotCurveStyles, OverlappedRowsKeepTheStylesOfTheirFrames) {
  PlotBench b(Peak);
  b.wb.experiment.NCurves = 3;
  for (int i = 1; i <= 61; ++i) {
    b.wb.store.YData(2, i) = 0.5 * b.wb.store.YData(1, i);
    b.wb.store.YData(3, i) = -0.5 * b.wb.store.YData(1, i);
  }
  PlotCurves(b.wb);
  // Defaults: Curve 1 boxes, Curve 2 a joined line, Curve 3 dots.
  EXPECT_EQ(b.ops("box").size(), 62u);
  EXPECT_EQ(b.ops("point").size(), 1u + 61u);
  EXPECT_CLOSE(b.wb.experiment.Ymin, -2e-5, 1e-12);  // -1.6e-5 rounded outward
}

TEST(PlotFailures, RunTimeErrorsEndSilentlyAfterCurvesAndFrame) {
  // dx of 0.04 V gives no X mark count: curves and frame stay, marks are missing.
  PlotBench narrow(Peak);
  narrow.option("Xauto").setValue(0);
  narrow.option("XminText").setText("-0.02");
  narrow.option("XmaxText").setText("0.02");
  PlotCurves(narrow.wb);
  EXPECT_TRUE(narrow.messages().empty());
  EXPECT_EQ(narrow.ops("box").size(), 62u);
  EXPECT_EQ(narrow.prints(), (std::vector<std::string>{"I /A  1E-5", "E /V"}));

  // A row above the last line style: the earlier rows are drawn, then it stops.
  PlotBench rows(Peak);
  rows.option("Yauto").setValue(0);
  rows.wb.experiment.NCurves = 7;
  PlotCurves(rows.wb);
  EXPECT_TRUE(rows.messages().empty());
  EXPECT_EQ(rows.prints(), (std::vector<std::string>{"I /A  1E-3", "E /V"}));

  // More than 16 bits of marks.
  PlotBench wide(Peak);
  wide.option("Xauto").setValue(0);
  wide.option("XminText").setText("0");
  wide.option("XmaxText").setText("4000");
  PlotCurves(wide.wb);
  EXPECT_TRUE(wide.messages().empty());
  EXPECT_EQ(wide.prints().size(), 2u);

  // A manual Y range millions of decades wide must end, not hang.
  PlotBench huge(Peak);
  huge.option("Yauto").setValue(0);
  huge.option("YminText").setText("-1e6");
  huge.option("YmaxText").setText("1e30");
  PlotCurves(huge.wb);
  EXPECT_TRUE(huge.messages().empty());
}

TEST(PlotFailures, GridLinesFollowTheRunningSumAcrossTheFrame) {
  PlotBench b(Peak);
  b.option("CheckGrid").setValue(1);
  PlotCurves(b.wb);
  int vertical = 0, horizontal = 0;
  for (const DrawCall& l : b.ops("line")) {
    if (l.args[0] == l.args[2] && Near(l.args[1], -1e-5f) && Near(l.args[3], 4e-5f)) ++vertical;
    if (l.args[1] == l.args[3] && Near(l.args[0], -0.3f) && Near(l.args[2], 0.3f) && l.args[1] != 0) ++horizontal;
  }
  EXPECT_EQ(vertical, 7);    // -0.3 .. 0.2, and the seventh sum 0.29999999999999993 < 0.3
  EXPECT_EQ(horizontal, 4);  // -1e-5, 1e-5, 2e-5, 3e-5 (0 is the dashed line)
}

TEST(PlotRecording, DisplayListKeepsOnlyTheLastPictureAndReplaysIt) {
  PlotBench b(Peak);
  PlotCurves(b.wb);
  PlotCurves(b.wb);
  DisplayList list;
  Replay(b.platform.plot.calls, list);
  EXPECT_TRUE(list.hasPicture());
  const auto expected = b.picture();
  ASSERT_EQ(list.calls().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(list.calls()[i].op, expected[i].op);
    EXPECT_EQ(list.calls()[i].args, expected[i].args);
    EXPECT_EQ(list.calls()[i].text, expected[i].text);
  }
  list.clear();
  EXPECT_FALSE(list.hasPicture());
}

// X marks: x = Xmin, then x = x + step while x <= Xmax, each sum rounded to
// a double in turn (IEEE 754 double arithmetic; checked by hand). Where the
// sum lands above Xmax the mark at the far edge is not drawn.
TEST(PlotMarks, XMarksFollowTheRunningSum) {
  const struct {
    const char *xmin, *xmax;
    std::vector<std::string> labels;
  } rows[] = {{"-2", "-1.8", {"-2.", "-1.9"}},          // -2 + 0.1 + 0.1 > -1.8
              {"-2", "-1.7", {"-2.", "-1.9", "-1.8"}},  // the third sum lands above -1.7
              {"0", "0.3", {"0.", "0.1", "0.2", "0.3"}}};  // the sums meet 0.3 exactly
  for (const auto& row : rows) {
    PlotBench b(Peak);
    b.option("Xauto").setValue(0);
    b.option("XminText").setText(row.xmin);
    b.option("XmaxText").setText(row.xmax);
    PlotCurves(b.wb);
    std::vector<std::string> xLabels;
    for (const auto& [at, text] : b.labels())
      if (Near(at[1], -1e-5f) && at[0] <= std::stof(row.xmax) + 1e-6f) xLabels.push_back(text);  // not the Y label
    EXPECT_EQ(xLabels, row.labels) << row.xmin << " to " << row.xmax;
  }
}

}  // namespace
}  // namespace voltrix
