// "&Simulate" straight after start-up: the digital run of A + 1 e = B, and
// the quantities of formOption that rest on its surface concentrations.
#include <gtest/gtest.h>

#include "app/commands.h"
#include "support/expect_close.h"
#include "support/headless_workbench.h"
#include "model/number_format.h"
#include "ui/form_ins.h"
#include "ui/form_option.h"
#include "ui/workbench.h"

namespace voltrix::test {
namespace {

struct Started : HeadlessWorkbench {
  Started() { BindMenuCommands(wb); }
  int points() const { return static_cast<int>(wb.experiment.NData.value()); }
};

TEST(DigitalSimulate, StartUpRunsTheTypedCoupleThroughTheMenu) {
  Started s;
  ASSERT_TRUE(RunMenuCommand(s.wb, "mnuSimulate"));
  const Experiment& e = s.wb.experiment;
  EXPECT_TRUE(e.Digital);
  EXPECT_EQ(Count(e.NCharge), 1);
  ASSERT_EQ(s.points(), 121);
  for (const std::string& m : s.messages()) ADD_FAILURE() << m;
  // A reduction wave: the current grows from nothing to a peak and falls
  // back towards the diffusion tail, and matter is conserved at the surface.
  int peak = 1;
  for (int i = 1; i <= 121; ++i)
    if (s.wb.store.YData(1, i) > s.wb.store.YData(1, peak)) peak = i;
  EXPECT_GT(peak, 1);
  EXPECT_LT(peak, 121);
  EXPECT_GT(s.wb.store.YData(1, peak), s.wb.store.YData(1, 121));
  EXPECT_LT(std::fabs(s.wb.store.YData(1, 1)), 1e-3 * s.wb.store.YData(1, peak));
  const double bulk = s.wb.store.SurfC(1, 1) + s.wb.store.SurfC(2, 1);
  EXPECT_GT(bulk, 0);
  for (int i = 1; i <= 121; ++i) EXPECT_CLOSE(s.wb.store.SurfC(1, i) + s.wb.store.SurfC(2, i), bulk, 1e-9);
}

TEST(DigitalSimulate, SurfaceQuantitiesOfTheOptionForm) {
  Started s;
  ASSERT_TRUE(RunMenuCommand(s.wb, "mnuSimulate"));
  const Experiment& e = s.wb.experiment;
  const CurveStore& c = s.wb.store;
  Control& quantity = s.wb.formOption().control("ComboY");

  quantity.setListIndex(3);  // surface concentration C
  ASSERT_TRUE(RunMenuCommand(s.wb, "mnuSimulate"));
  ASSERT_EQ(quantity.text(), "surface concentration C");
  EXPECT_EQ(Count(e.NCurves), 2);
  for (int i = 1; i <= s.points(); i += 10) {
    EXPECT_EQ(c.YData(1, i), c.SurfC(1, i));
    EXPECT_EQ(c.YData(2, i), c.SurfC(2, i));
  }

  // Conductance: area over cell distance times the support electrolyte plus
  // the species at the surface; resistance its inverse.
  const double dis = Val(s.wb.formIns().control("TextDis").text());
  auto solution = [&](int i) {
    return e.ElecC.value() * e.ElecCond.value() + c.SurfC(1, i) * e.Cond(1).value() + c.SurfC(2, i) * e.Cond(2).value();
  };
  quantity.setListIndex(2);
  ASSERT_TRUE(RunMenuCommand(s.wb, "mnuSimulate"));
  for (int i = 1; i <= s.points(); i += 20) EXPECT_CLOSE(c.YData(1, i), e.ARE.value() / dis * solution(i), 1e-12);
  quantity.setListIndex(1);
  ASSERT_TRUE(RunMenuCommand(s.wb, "mnuSimulate"));
  for (int i = 1; i <= s.points(); i += 20) EXPECT_CLOSE(c.YData(1, i), dis / e.ARE.value() / solution(i), 1e-12);
}

}  // namespace
}  // namespace voltrix::test
