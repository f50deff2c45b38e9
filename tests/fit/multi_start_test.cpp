// Multi-start: the hypercube spreads its points as a Latin hypercube must,
// and a fit that a single start leaves in the wrong one of two minima finds
// the right one from several.
#include "fit/multi_start.h"

#include <gtest/gtest.h>

#include <set>

#include "fit/fit_driver.h"
#include "fit/latin_hypercube.h"
#include "headless_workbench.h"
#include "model/number_format.h"
#include "noisy_fit.h"
#include "ui/text_window.h"

namespace voltrix {
namespace {

using test::HeadlessWorkbench;

// Each axis cut into n equal slices of the box (log for the decades of a
// rate constant) holds one point per slice; the same seed, the same points.
TEST(LatinHypercube, PutsOnePointInEverySliceOfEveryAxis) {
  ParameterVector lower, upper;
  lower(1) = -0.2, upper(1) = 0.2;   // E0, linear
  lower(2) = 1e-4, upper(2) = 100;   // ks, six decades
  const int n = 16;
  const auto points = LatinHypercube(n, 2, lower, upper, 3);
  for (int j = 1; j <= 2; ++j) {
    std::set<int> slices;
    for (const ParameterVector& p : points) slices.insert(static_cast<int>(BoxCoordinate(p(j), lower(j), upper(j)) * n));
    EXPECT_EQ(slices.size(), static_cast<std::size_t>(n));
    EXPECT_EQ(*slices.begin(), 0);
    EXPECT_EQ(*slices.rbegin(), n - 1);
  }
  EXPECT_EQ(LatinHypercube(n, 2, lower, upper, 3)[5](2), points[5](2));
  EXPECT_NE(LatinHypercube(n, 2, lower, upper, 4)[5](2), points[5](2));
}

// Two reactions 150 mV apart, A twice as concentrated as C. Fitting both E0
// from a start with the two swapped runs into a local minimum that swaps
// the waves back only in part; a spread of eight starts finds the true pair.
TEST(MultiStart, FindsTheGlobalMinimumThatASingleStartMisses) {
  HeadlessWorkbench hw;
  Workbench& wb = hw.wb;
  test::ClosedFormSweep(wb, "0.005");
  wb.formMech().control("mech", 4).setValue(1);
  wb.formExpr().control("C", 3).setText("0.5e-3");
  wb.formExpr().control("Eze", 1).setText("0.05");
  wb.formExpr().control("Eze", 2).setText("-0.1");
  test::CleanCurve(wb);
  wb.formExpr().control("Eze", 1).setText("-0.1");
  wb.formExpr().control("Eze", 2).setText("0.05");
  wb.formExpr().control("CheckFitted", 1).setValue(0);
  for (int slot : {13, 14}) wb.formExpr().control("CheckFitted", slot).setValue(1);
  const auto fitted = [&wb](int slot) { return Val(wb.formExpr().control("CheckFitted", slot).caption()); };
  AutoFit(wb);
  ASSERT_TRUE(hw.messages().empty()) << hw.messages().front();
  EXPECT_GT(std::fabs(fitted(13) - 0.05), 0.02);
  wb.formExpr().control("TextStarts").setText("8");
  AutoFit(wb);
  ASSERT_TRUE(hw.messages().empty()) << hw.messages().front();
  EXPECT_NEAR(fitted(13), 0.05, 1e-4);
  EXPECT_NEAR(fitted(14), -0.1, 1e-4);
  const auto& lines = wb.formResult().lines();
  const auto head = std::find_if(lines.begin(), lines.end(), [](const std::string& l) { return l.rfind("Minimum", 0) == 0; });
  ASSERT_NE(head, lines.end());
  ASSERT_GE(lines.end() - head, 3);  // the true minimum and the local one at least
  EXPECT_LT(Val(head[1].substr(14, 14)), 1e-5 * Val(head[2].substr(14, 14)));
}

}  // namespace
}  // namespace voltrix
