// The fit statements of voltrix-cli as a user runs them: a curve set built
// from an exported file and a plotted row, its global fit and fitted curves,
// the residual column of "show curves", refusals, and Ctrl-C during a fit.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "cli/run_cli.h"
#include "model/number_format.h"

namespace voltrix {
namespace {

using test::RunCli;

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

std::string Line(const std::string& text, const std::string& head) {
  const auto at = text.find(head);
  return at == std::string::npos ? std::string() : text.substr(at, text.find('\n', at) - at);
}

// Two sweeps of one couple (ks 0.01 cm/s, E0 0.1 V) at 0.05 and 1 V/s: one
// from its exported file, one as plotted; from ks 0.015 and E0 20 mV off,
// the global fit of both returns the values they were simulated with.
TEST(FitStatements, AGlobalFitOfAFileAndARowReturnsTheirValues) {
  const std::string file = (std::filesystem::temp_directory_path() / "voltrix-fitset-slow.csv").string();
  const auto r = RunCli({"click FormMech.CheckDigital", "set FormExpr.ks(1)=0.01", "set FormIns.V=0.05",
                         "menu mnuSimulate", "show curves", "menu mnuExport " + file, "set FormIns.V=1",
                         "menu mnuSimulate", "fitset add " + file + " FormIns.V=0.05", "fitset row 1 FormIns.V=1",
                         "set FormIns.V=7", "set FormExpr.ks(1)=0.015", "set FormExpr.Eze(1)=0.12",
                         "set FormExpr.CheckFitted(7)=1", "set FormExpr.CheckFitted(13)=1", "fitset fit",
                         "fitset list", "show control FormExpr.CheckFitted(7)", "show control FormExpr.CheckFitted(13)",
                         "fitset curve 2", "set FormExpr.CheckUncertainty=1", "menu mnuManualFit",
                         "show curves"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, "");
  EXPECT_TRUE(Has(r.out, "X,Y1\n"));  // no fit yet: no residual
  EXPECT_TRUE(Has(r.out, "Global fit of 2 curves\n"));
  EXPECT_TRUE(Has(r.out, "\nUncertainty\n"));
  EXPECT_TRUE(Has(r.out, "2 curves in the set\n"));
  EXPECT_TRUE(Has(Line(r.out, "1  " + file), "points  FormIns.V=0.05  least square"));
  const auto caption = [&r](const char* box) { return Val(Line(r.out, box).substr(std::string(box).size() + 8)); };
  EXPECT_NEAR(caption("FormExpr.CheckFitted(7)"), 0.01, 1e-4);
  EXPECT_NEAR(caption("FormExpr.CheckFitted(13)"), 0.1, 1e-4);
  const std::string curve = r.out.substr(r.out.find("X,Y,Fit,Residual\n"));
  ASSERT_TRUE(Has(curve, "\n0.3,"));
  EXPECT_TRUE(Has(r.out, "X,Y1,Y2,Residual\n"));  // after Manual Fit
  EXPECT_TRUE(Has(r.out.substr(r.out.rfind("Least square = ")), "\nUncertainty\nParameter"));
}

// An instrument file joins the set with the settings its header states
// (hand-written fixture: a cycle from 0.3 to -0.1 V at 0.05 V/s on 0.5 cm2),
// and a setting typed after the file wins.
TEST(FitStatements, AnInstrumentFileBringsItsOwnSettings) {
  const std::string dta =
      (std::filesystem::path(__FILE__).parent_path().parent_path() / "files" / "fixtures" / "gamry_cv.DTA").string();
  const auto r = RunCli({"fitset add " + dta + " FormIns.ARE=2", "fitset list"});
  ASSERT_EQ(r.status, 0) << r.err;
  const std::string line = Line(r.out, "1  " + dta);
  for (const char* setting : {"FormIns.Eend=-0.1", "FormIns.Estep=0.1", "FormIns.ComboScan=cycle", "FormIns.V=0.05",
                              "FormIns.ARE=0.5  FormIns.ARE=2"})
    EXPECT_TRUE(Has(line, setting)) << setting << " in " << line;
}

TEST(FitStatements, RefuseWhatCannotBeDoneAndSaySo) {
  struct Case {
    std::vector<std::string> statements;
    int status;
    std::string err;
  };
  const Case cases[] = {
      {{"fitset add /nonexistent/curve.csv"}, 2,
       "voltrix-cli: fitset add: /nonexistent/curve.csv: ReadData Error: File not found\n"},
      {{"menu mnuSimulate", "fitset row 1 FormIns.Nope=1"}, 2, "voltrix-cli: fitset: There is no control FormIns.Nope\n"},
      {{"menu mnuSimulate", "fitset row 3"}, 2, "voltrix-cli: fitset row: no plotted row 3\n"},
      {{"fitset fly"}, 2, "voltrix-cli: unknown statement \"fitset fly\"\n"},
      {{"click FormMech.CheckDigital", "menu mnuSimulate", "fitset row 1 FormIns.Estep=0.01", "fitset fit"}, 1,
       "message: Fit Error: Curve 1 (row 1) has 121 points, but its settings simulate 61! Please try again by other "
       "initial values.\n"},
      {{"fitset fit"}, 1,
       "message: Fit Error: The curve set is empty: add curves to it first! Please try again by other initial "
       "values.\n"},
  };
  for (const Case& c : cases) {
    const auto r = RunCli(c.statements);
    EXPECT_EQ(r.status, c.status) << c.statements.back();
    EXPECT_EQ(r.err, c.err);
  }
}

// Ctrl-C during a fit of 1000 starts (several seconds) stops it between
// passes; the report of the starts that ran follows, and the program goes on
// to its end. "menu mnuTime" marks the moment just before the fit.
TEST(FitStatements, CtrlCStopsALongFitAndKeepsWhatItFound) {
  int out[2];
  ASSERT_EQ(pipe(out), 0);
  const pid_t pid = fork();
  ASSERT_GE(pid, 0);
  if (pid == 0) {
    dup2(out[1], 1);
    close(out[0]);
    execl(VOLTRIX_CLI_PATH, VOLTRIX_CLI_PATH, "click FormMech.CheckDigital", "set FormIns.Noise=1", "menu mnuSimulate",
          "set FormIns.Noise=0", "set FormExpr.TextStarts=1000", "set FormExpr.CheckFitted(7)=1",
          "set FormExpr.CheckFitted(13)=1", "menu mnuTime", "menu mnuAutoFit", "show control FormExpr.CheckFitted(13)",
          static_cast<char*>(nullptr));
    _exit(127);
  }
  close(out[1]);
  std::string text;
  char buf[4096];
  for (ssize_t got; !Has(text, "time =") && (got = read(out[0], buf, sizeof buf)) > 0;) text.append(buf, got);
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  const auto sent = std::chrono::steady_clock::now();
  kill(pid, SIGINT);
  for (ssize_t got; (got = read(out[0], buf, sizeof buf)) > 0;) text.append(buf, got);
  int status = 0;
  waitpid(pid, &status, 0);
  close(out[0]);
  ASSERT_TRUE(WIFEXITED(status)) << text;
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - sent, std::chrono::seconds(5));
  EXPECT_TRUE(Has(text, "Stopped by the user: ")) << text;
  EXPECT_TRUE(Has(text, "FormExpr.CheckFitted(13): text=\"")) << text;
}

}  // namespace
}  // namespace voltrix
