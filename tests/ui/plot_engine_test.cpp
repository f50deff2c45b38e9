// The plot: limits rounded out to whole decades, the unit line, the marks
// and labels, the frame and the styles of the curves, and the runs that end
// in "Error: No data!" or end the drawing silently.
#include "ui/plot_engine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "support/expect_close.h"
#include "support/session.h"
#include "ui/form_option.h"
#include "ui/plot_display_list.h"

namespace voltrix {
namespace {

// 61 points from 0.3 V down to -0.3 V, one curve row: by default a
// reduction peak of 3.2e-5 A at 0 V.
struct PlotBench : test::Session {
  explicit PlotBench(const std::function<double(double)>& curve = [](double x) { return 3.2e-5 * std::exp(-x * x / 0.005); }) {
    e.First = 1;
    e.Last = 61;
    e.NCurves = 1;
    for (int i = 1; i <= 61; ++i) s.XData(i) = 0.3 - 0.01 * (i - 1);
    for (int i = 1; i <= 61; ++i) s.YData(1, i) = curve(s.XData(i));
  }
  // Settings of formOption, "name=value;name=value".
  void options(std::string settings) {
    for (std::size_t at; (at = settings.find(';')) != std::string::npos;) settings.replace(at, 1, "\nset formOption.");
    run(settings.empty() ? "" : "set formOption." + settings);
  }
  std::vector<DrawCall> picture() { return LastPicture(cli.platform().plot.calls); }
  std::vector<DrawCall> ops(const std::string& op) {
    std::vector<DrawCall> out;
    for (const DrawCall& c : picture())
      if (c.op == op) out.push_back(c);
    return out;
  }
  std::string prints() {
    std::string out;
    for (const DrawCall& c : ops("print")) out += c.text + "|";
    return out;
  }
};

// Limits and texts; every expectation follows from the plot's rules: Ymax and
// Ymin rounded out to the next whole decade of the larger size, 10^6 when
// nothing is found, X marks 0.1 V apart, Y marks one decade apart counted
// from Ymax down (the X axis reversed by default).
TEST(PlotLimits, DecadesUnitLineAndLabels) {
  const struct {
    const char* options;
    void (*data)(PlotBench&);
    double xmin, xmax, ymin, ymax;
    const char* prints;
  } cases[] = {
      {"", nullptr, -0.3, 0.3, -1e-5, 4e-5, "I /A  1E-5|E /V|-0.3|-0.2|-0.1|0.|0.1|0.2|0.3|4|3|2|1|0|-1|"},
      {"", [](PlotBench& b) { b.wb.store.YData(1, 30) = 2; }, -0.3, 0.3, -1, 3,  // a whole multiple still grows
       "I /A  1E0|E /V|-0.3|-0.2|-0.1|0.|0.1|0.2|0.3|3|2|1|0|-1|"},
      {"", [](PlotBench& b) { for (int i = 1; i <= 61; ++i) b.wb.store.YData(1, i) = -5.5e-6 * (1 - b.wb.store.XData(i)); },
       -0.3, 0.3, -8e-6, 1e-6, "I /A  1E-6|"},
      {"CheckXdir=0", nullptr, -0.3, 0.3, -1e-5, 4e-5, "I /A  1E-5|E /V|-0.3|-0.2|-0.1|0.|0.1|0.2|0.3|-1|0|1|2|3|4|"},
      {"", [](PlotBench& b) { b.wb.store.YData.fill(0); }, -0.3, 0.3, 0, 1e6,  // all zero: no count of Y marks
       "I /A  1E6|E /V|-0.3|-0.2|-0.1|0.|0.1|0.2|0.3|"},
      {"CheckXdir=0", [](PlotBench& b) { b.wb.store.YData.fill(0); }, -0.3, 0.3, 0, 1e6,
       "I /A  1E6|E /V|-0.3|-0.2|-0.1|0.|0.1|0.2|0.3|0|1|"},
      // Both X limits inside the scan: 0 V up to 0.2 V, down to -0.2 V, back to 0 V.
      {"", [](PlotBench& b) { for (int i = 1; i <= 61; ++i) b.wb.store.XData(i) = 0.2 * std::sin(3.141592654 * (i - 1) / 20); },
       -0.2, 0.2, -1e-5, 4e-5, nullptr},
      {"Yauto=0;YminText=-2e-5;YmaxText=6e-5 A", nullptr, -0.3, 0.3, -2e-5, 6e-5, nullptr},  // the leading number counts
      {"ComboY=resistance R", nullptr, -0.3, 0.3, -1e-5, 4e-5, "R /Ohm  1E-5|"},
      {"ComboY=conductance Cond", nullptr, -0.3, 0.3, -1e-5, 4e-5, "Cond *Ohm  1E-5|"},
      {"ComboY=surface concentration C", nullptr, -0.3, 0.3, -1e-5, 4e-5, "C /M  1E-5|"},
      // Run-time errors end the plot silently after what is drawn: no count
      // of X marks, no style for a seventh row, marks beyond 16 bits.
      {"Xauto=0;XminText=-0.02;XmaxText=0.02", nullptr, -0.02, 0.02, -1e-5, 4e-5, "I /A  1E-5|E /V|"},
      {"Yauto=0", [](PlotBench& b) { b.wb.experiment.NCurves = 7; }, -0.3, 0.3, -1e-3, 1e-3, "I /A  1E-3|E /V|"},
      {"Xauto=0;XminText=0;XmaxText=4000", nullptr, 0, 4000, -1e-5, 4e-5, "I /A  1E-5|E /V|"},
  };
  for (const auto& c : cases) {
    PlotBench b;
    b.options(c.options);
    if (c.data) c.data(b);
    PlotCurves(b.wb);
    const Experiment& e = b.wb.experiment;
    EXPECT_EQ(b.err.str(), "") << c.options;
    EXPECT_NEAR(e.Xmin, c.xmin, 1e-12) << c.options;
    EXPECT_NEAR(e.Xmax, c.xmax, 1e-12) << c.options;
    EXPECT_CLOSE(e.Ymin, c.ymin, 1e-12) << c.options;
    EXPECT_CLOSE(e.Ymax, c.ymax, 1e-12) << c.options;
    if (c.prints) {
      EXPECT_EQ(b.prints().substr(0, std::string(c.prints).size()), c.prints) << c.options;
    }
  }
  for (const char* range : {"0.1", ""}) {  // no X range, and no X at all
    PlotBench b;
    b.options(std::string("Xauto=0;XminText=") + range + ";XmaxText=" + range);
    PlotCurves(b.wb);
    EXPECT_EQ(b.err.str(), "message: Error: No data!\n");
    EXPECT_TRUE(b.picture().empty());
  }
}

// Where things are drawn: margins of 10 % of the X range and 1.5 and 1.8
// decades; the frame; the dashed zero line from Xmin to Xmax; "E /V" under
// the frame's centre; the Y marks on the Xmax edge pointing in; each point a
// box of 1 % of either range around it.
TEST(PlotLayout, FrameMarksAndCurveStyles) {
  PlotBench b;
  b.options("CheckGrid=1");
  PlotCurves(b.wb);
  const auto scales = b.ops("scale"), boxes = b.ops("box");
  ASSERT_EQ(scales.size(), 2u);
  EXPECT_EQ(scales[0].args, (std::vector<float>{-0.36f, 5.5e-5f, 0.36f, -2.8e-5f}));
  EXPECT_EQ(scales[1].args, (std::vector<float>{0.36f, 5.5e-5f, -0.36f, -2.8e-5f}));
  ASSERT_EQ(boxes.size(), 62u);  // the frame, then one per point
  EXPECT_EQ(boxes[0].args, (std::vector<float>{-0.3f, -1e-5f, 0.3f, 4e-5f}));
  for (int i = 1; i <= 61; ++i) {
    EXPECT_NEAR(boxes[i].args[0] + 0.003f, b.wb.store.XData(i), 1e-6f);
    EXPECT_NEAR(boxes[i].args[2] - boxes[i].args[0], 0.006f, 1e-7f);  // 1 % of either range
    EXPECT_NEAR(boxes[i].args[3] - boxes[i].args[1], 5e-7f, 1e-11f);
  }
  const std::vector<DrawCall> pic = b.picture();
  int dashed = 0, yMarks = 0, gridX = 0, gridY = 0, title = 0;
  bool on = false;
  for (std::size_t k = 1; k < pic.size(); ++k) {
    const auto& a = pic[k].args;
    on = pic[k].op == "dashed" ? a[0] != 0 : on;
    title += pic[k].text == "E /V" && pic[k - 1].args == std::vector<float>{0, -2e-5f};  // under the frame's centre
    if (pic[k].op != "line") continue;
    dashed += on && a == std::vector<float>{-0.3f, 0, 0.3f, 0};
    yMarks += a[0] == 0.3f && std::fabs(a[2] - 0.294f) < 1e-6f && a[1] == a[3];
    gridX += a[0] == a[2] && a[1] == -1e-5f && a[3] == 4e-5f;
    gridY += a[1] == a[3] && a[1] != 0 && std::fabs(a[0] + 0.3f) < 1e-6f && std::fabs(a[2] - 0.3f) < 1e-6f;
  }
  // Seven X grid lines: the running sum of 0.1 from -0.3 reaches 0.29999999999999993 < 0.3.
  EXPECT_EQ(std::vector<int>({dashed, on, yMarks, gridX, gridY, title}), std::vector<int>({1, 0, 6, 7, 4, 1}));
  // Styles by frame: Curve 1 boxes, Curve 2 a joined line, Curve 3 dots.
  PlotBench three;
  three.wb.experiment.NCurves = 3;
  for (int i = 1; i <= 61; ++i) three.wb.store.YData(3, i) = three.wb.store.YData(2, i) = -three.wb.store.YData(1, i);
  PlotCurves(three.wb);
  EXPECT_EQ(three.ops("box").size(), 62u);
  EXPECT_EQ(three.ops("point").size(), 62u);  // the first point of the line, then 61 dots
  std::vector<DrawCall> segments;
  for (const DrawCall& c : three.ops("line"))
    if (c.args[0] != c.args[2] && c.args[1] != c.args[3]) segments.push_back(c);
  ASSERT_EQ(segments.size(), 60u);
  for (std::size_t k = 1; k < segments.size(); ++k) EXPECT_EQ(segments[k].args[0], segments[k - 1].args[2]);
  // A display list replays the last picture call for call.
  PlotCurves(three.wb);
  DisplayList list;
  Replay(three.cli.platform().plot.calls, list);
  ASSERT_EQ(list.calls().size(), three.picture().size());
  for (std::size_t k = 0; k < list.calls().size(); ++k) EXPECT_EQ(list.calls()[k].op + list.calls()[k].text, three.picture()[k].op + three.picture()[k].text);
  // A range from zero up has no zero line.
  PlotBench above;
  above.options("Yauto=0;YminText=0;YmaxText=4e-5");
  PlotCurves(above.wb);
  EXPECT_TRUE(above.ops("dashed").empty());
}

}  // namespace
}  // namespace voltrix
