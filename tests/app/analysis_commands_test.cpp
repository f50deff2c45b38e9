// The "&Analysis" menu end to end: from the forms through a run to the
// report on the result window, in process and through the command line.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "analytic/analytic_run.h"
#include "app/commands.h"
#include "support/expect_close.h"
#include "ui/form_option.h"
#include "ui/text_window.h"

namespace voltrix::test {
namespace {

struct Bench : AnalyticRun {
  Bench() { BindMenuCommands(wb); }
  void menu(const std::string& name) { ASSERT_TRUE(RunMenuCommand(wb, name)) << name; }
  int clears() const { return platform.plot.clears; }
};

double NumberAfter(const std::string& line, const std::string& label) {
  const auto at = line.find(label);
  if (at == std::string::npos) {
    ADD_FAILURE() << "no \"" << label << "\" in \"" << line << "\"";
    return 0;
  }
  return std::stod(line.substr(at + label.size()));
}

// Runs the command line program on a script.
std::vector<std::string> CliLines(const std::string& script) {
  const char* cli = VOLTRIX_CLI_PATH;
  const std::string path = ::testing::TempDir() + "analysis_commands_" +
                           ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".vx";
  {
    std::unique_ptr<FILE, int (*)(FILE*)> f(std::fopen(path.c_str(), "w"), &std::fclose);
    std::fputs(script.c_str(), f.get());
  }
  std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(("'" + std::string(cli) + "' -f '" + path + "' 2>&1").c_str(), "r"),
                                             &pclose);
  std::vector<std::string> lines;
  char buf[512];
  while (pipe && std::fgets(buf, sizeof buf, pipe.get())) {
    std::string l(buf);
    if (!l.empty() && l.back() == '\n') l.pop_back();
    lines.push_back(l);
  }
  std::remove(path.c_str());
  return lines;
}

const char* kAnalyticalReference =
    "click FormMech.CheckDigital\n"
    "set FormExpr.Eze(1)=0\n"
    "set FormExpr.CheckPreEqu=0\n";

TEST(AnalysisCommands, PeakReportOfTheReferenceCycleThroughTheCommandLine) {
  const std::vector<std::string> out =
      CliLines(std::string(kAnalyticalReference) + "set FormIns.ComboScan=cycle\nmenu mnuSimulate\nmenu mnuFindPeak\n");
  ASSERT_EQ(out.size(), 6u) << ::testing::PrintToString(out);
  EXPECT_EQ(out[0], "Curve  1 :");
  EXPECT_EQ(out[1].substr(0, 28), "Peak  1 :     Ep = -0.03    ");
  EXPECT_DIGITS(NumberAfter(out[1], "Ip = "), 8.5007e-5, 5);
  EXPECT_EQ(out[2].substr(0, 28), "Peak  2 :     Ep =  0.03    ");
  EXPECT_DIGITS(NumberAfter(out[2], "Ip = "), -6.3417e-5, 5);
  // With the switching-point correction a reversible couple comes out near
  // 1, and its peaks lie about 59 mV apart (60 mV on the 5 mV grid).
  EXPECT_CLOSE(NumberAfter(out[3], "I pc/I pa = "), 1.0, 0.03);
  EXPECT_CLOSE(NumberAfter(out[4], "Ep2 - Ep1 = "), 0.06, 1e-9);
  EXPECT_EQ(out[5].substr(0, 14), "Peak Area =   ");
}

TEST(AnalysisCommands, HalfWaveReportLabelsCountCurves) {
  const std::vector<std::string> out = CliLines(std::string(kAnalyticalReference) +
                                                "set formOption.overlap=1\n"
                                                "click FormTech.optTech(2)\nmenu mnuSimulate\n"
                                                "set FormIns.V=0.02\nmenu mnuSimulate\n"
                                                "menu mnuFindHalfwaveE\n");
  ASSERT_EQ(out.size(), 2u) << ::testing::PrintToString(out);
  EXPECT_EQ(out[0].substr(0, 14), "Peak  1 :     ");
  EXPECT_EQ(out[1].substr(0, 14), "Peak  2 :     ");
  // A reversible DC wave with equal D has its half-wave potential at E0 = 0
  // and its limiting current at the Cottrell value for t drop 0.5 s.
  EXPECT_NEAR(NumberAfter(out[0], "E1/2 = "), 0.0, 0.0051);
  EXPECT_CLOSE(NumberAfter(out[0], "Id = "), 2.4344e-4, 2e-3);
  // Twice the rate halves t drop: the Cottrell current grows by sqrt(2).
  EXPECT_CLOSE(NumberAfter(out[1], "Id = "), 2.4344e-4 * std::sqrt(2.0), 2e-3);
}

TEST(AnalysisCommands, TheoreticalSquareWaveIsTwoPointFourTimesDifferentialPulse) {
  const std::string ask = "menu mnuTheoPeak\n";
  // "&Analysis" opens with the first curve.
  const std::vector<std::string> out = CliLines(std::string(kAnalyticalReference) + "menu mnuSimulate\n" +
                                                "click FormTech.optTech(4)\n" + ask +
                                                "click FormTech.optTech(5)\n" + ask);
  ASSERT_EQ(out.size(), 6u) << ::testing::PrintToString(out);
  EXPECT_EQ(out[0], "Theoretical limiting current:");
  EXPECT_EQ(out[3], "Theoretical limiting current:");
  const double dp = NumberAfter(out[1], "Ip = "), sw = NumberAfter(out[4], "Ip = ");
  EXPECT_CLOSE(sw / dp, 2.4, 1e-4);  // five printed digits
  EXPECT_NE(out[1].find("Ep = 0.025"), std::string::npos);  // E0 - Epulse / 2
}

TEST(AnalysisCommands, AxisScalingsRestoreAndActOnTheRightCurves) {
  Bench b;
  b.wb.formOption().control("overlap").setValue(1);
  b.menu("mnuSimulate");
  b.menu("mnuSimulate");
  const std::vector<double> x0(b.wb.store.XData.data(), b.wb.store.XData.data() + 122);
  const double y1 = b.wb.store.YData(1, 67), y2 = b.wb.store.YData(2, 67);
  ASSERT_EQ(b.wb.experiment.CurNo, 2);

  const int before = b.clears();
  b.menu("mnuMinusX");
  EXPECT_EQ(b.clears(), before + 1);  // one redraw per command
  EXPECT_EQ(b.wb.store.XData(1), -0.3);
  b.menu("mnuMinusX");
  for (int i = 1; i <= 121; ++i) EXPECT_EQ(b.wb.store.XData(i), x0[i]);
  b.menu("mnu01X");
  b.menu("mnu10X");
  for (int i = 1; i <= 121; ++i) EXPECT_CLOSE(b.wb.store.XData(i), x0[i], 1e-15);

  b.menu("mnuMinusY");  // the current curve only
  EXPECT_EQ(b.wb.store.YData(2, 67), -y2);
  EXPECT_EQ(b.wb.store.YData(1, 67), y1);
  b.menu("mnu1000Y");
  b.menu("mnu0001Y");
  EXPECT_CLOSE(b.wb.store.YData(2, 67), -y2, 1e-15);
}

TEST(AnalysisCommands, DerivativeOfTheIntegralGivesTheCurveBackAndFollowsTheStep) {
  Bench b;
  b.menu("mnuSimulate");
  std::vector<double> y(122);
  for (int i = 1; i <= 121; ++i) y[i] = b.wb.store.YData(1, i);
  b.menu("mnuIntegral");
  b.menu("mnuDerivative");
  // Central differences of a rectangle-rule sum give the mean of neighbours.
  for (int i = 2; i < 121; ++i) EXPECT_CLOSE(b.wb.store.YData(1, i), (y[i] + y[i + 1]) / 2, 1e-9);

  // After 10X the step is ten times larger, so a derivative is ten times smaller.
  Bench c, d;
  c.menu("mnuSimulate");
  d.menu("mnuSimulate");
  c.menu("mnuDerivative");
  d.menu("mnu10X");
  d.menu("mnuDerivative");
  for (int i = 1; i <= 121; ++i) EXPECT_CLOSE(d.wb.store.YData(1, i), c.wb.store.YData(1, i) / 10, 1e-12);
}

TEST(AnalysisCommands, SemiIntegrationIsIntegrationThenSemiDifferentiation) {
  Bench a, b;
  a.menu("mnuSimulate");
  b.menu("mnuSimulate");
  a.menu("mnuSemiInte");
  b.menu("mnuIntegral");
  b.menu("mnuSemi");
  for (int i = 1; i <= 121; ++i) EXPECT_EQ(a.wb.store.YData(1, i), b.wb.store.YData(1, i));
  // The semi-integral of a reversible sweep rises to a plateau at the
  // diffusion-limited end (no peak): its last points barely change.
  EXPECT_CLOSE(a.wb.store.YData(1, 121), a.wb.store.YData(1, 111), 0.02);
}

TEST(AnalysisCommands, ZeroStepIsReportedAndLeavesTheCurve) {
  Bench b;
  b.menu("mnuSimulate");
  b.wb.store.XData(2) = b.wb.store.XData(1);
  const double y = b.wb.store.YData(1, 67);
  b.menu("mnuDerivative");
  ASSERT_FALSE(b.messages().empty());
  EXPECT_NE(b.messages().back().find("Division by zero"), std::string::npos);
  EXPECT_EQ(b.wb.store.YData(1, 67), y);
}

}  // namespace
}  // namespace voltrix::test
