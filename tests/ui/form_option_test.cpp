// formOption read into the model: flags, manual limits, the line style of
// each curve row, and the limit boxes that follow the auto check boxes.
#include <gtest/gtest.h>

#include "headless_workbench.h"
#include "ui/form_option.h"
#include "ui/text_window.h"

namespace voltrix {
namespace {

TEST(FormOption, DefaultStylesAreBoxesLineThenDots) {
  test::HeadlessWorkbench hw;
  hw.wb.formOption().OK();
  const CurveStore& s = hw.wb.store;
  EXPECT_EQ(s.LineStyle(1), 2);
  EXPECT_EQ(s.LineStyle(2), 3);
  for (int i = 3; i <= 5; ++i) EXPECT_EQ(s.LineStyle(i), 1);
  EXPECT_EQ(s.LineStyle(6), 0);  // no frame for a sixth curve
  EXPECT_FALSE(hw.wb.experiment.GridFlag);
  EXPECT_FALSE(hw.wb.experiment.OverlapFlag);
  EXPECT_EQ(hw.wb.formOption().control("ComboY").text(), "current I");
}

TEST(FormOption, ManualLimitsAreReadOnlyWhenAutoIsOff) {
  test::HeadlessWorkbench hw;
  FormOption& f = hw.wb.formOption();
  Experiment& e = hw.wb.experiment;
  e.Xmin = 5;
  f.OK();
  EXPECT_EQ(e.Xmin, 5);  // auto: the boxes are not read
  EXPECT_FALSE(f.control("XminText").visible());
  f.control("Xauto").click();
  EXPECT_TRUE(f.control("XminText").visible());
  EXPECT_TRUE(f.control("Label3").visible());
  f.control("XmaxText").setText("0.5 V");
  f.control("Yauto").click();
  f.control("YminText").setText("");
  f.control("CheckGrid").click();
  f.control("linestyle3", 4).setValue(1);
  f.OK();
  EXPECT_DOUBLE_EQ(e.Xmin, -0.3);
  EXPECT_DOUBLE_EQ(e.Xmax, 0.5);
  EXPECT_DOUBLE_EQ(e.Ymax, 1e-3);
  EXPECT_EQ(e.Ymin, 0.0);  // an empty box counts as 0
  EXPECT_TRUE(e.GridFlag);
  EXPECT_EQ(hw.wb.store.LineStyle(5), 3);
  EXPECT_EQ(f.control("linestyle1", 4).value(), 0);  // one style per frame
}

TEST(ResultWindow, KeepsEveryLineAndTellsObservers) {
  test::HeadlessWorkbench hw;
  FormResult& r = hw.wb.formResult();
  std::vector<std::string> seen;
  r.addLineObserver([&](const std::string* line) { seen.push_back(line ? *line : "<clear>"); });
  for (int i = 0; i < 500; ++i) r.print(PrintLine().text("line").number(i));
  EXPECT_EQ(r.lines().size(), 500u);
  EXPECT_EQ(r.lines()[499], "line 499 ");
  r.clear();
  EXPECT_TRUE(r.lines().empty());
  EXPECT_EQ(seen.size(), 501u);
  EXPECT_EQ(seen.back(), "<clear>");
}

}  // namespace
}  // namespace voltrix
