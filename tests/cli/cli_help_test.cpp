// Help, exit statuses and -k, on the real binary.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run_cli.h"

namespace voltrix {
namespace {

using test::RunCli;

bool Contains(const std::string& haystack, const std::string& needle) {
  return haystack.find(needle) != std::string::npos;
}

// The line of help output that starts with the control's name.
std::string LineOf(const std::string& help, const std::string& name) {
  const auto at = help.find("\n  " + name + " ");
  if (at == std::string::npos) return {};
  return help.substr(at + 1, help.find('\n', at + 1) - at - 1);
}

TEST(CliUsage, HelpOptionAndNoArgumentsPrintUsageAndSucceed) {
  const std::vector<std::vector<std::string>> calls = {{}, {"--help"}, {"-h"}, {"-k"}};
  for (const auto& args : calls) {
    auto r = RunCli(args);
    EXPECT_EQ(r.status, 0) << testing::PrintToString(args);
    EXPECT_EQ(r.out.rfind("usage: voltrix-cli [-k] [-f SCRIPT] [STATEMENT...]\n", 0), 0u) << r.out;
    EXPECT_TRUE(Contains(r.out, "  2  a statement was malformed")) << r.out;
  }
  EXPECT_EQ(RunCli({"--version"}).out, "voltrix-cli (Voltrix) 4.0\n");
  EXPECT_EQ(RunCli({"--frobnicate"}).status, 2);
}

// Units of the instrument and chemical inputs, as the model's field table
// gives them, and the defaults a fresh program shows.
TEST(CliHelp, FormListsEachControlWithCaptionUnitAndValue) {
  const struct {
    const char* form;
    const char* control;
    std::vector<const char*> shown;
  } rows[] = {
      {"FormIns", "Estart", {"text box", "\"E start (V)\"", " V ", "\"0.3\""}},
      {"FormIns", "V", {"\"v (V/s)\"", "V/s", "\"0.01\""}},
      {"FormIns", "td", {"\"t drop  (s)\"", " s ", "\"0.5\"", "(disabled)"}},
      {"FormIns", "txttemp", {"\xC2\xB0" "C", "\"25\""}},
      {"FormIns", "tp", {"\"0.05\"", "(hidden)"}},
      {"FormIns", "ComboScan", {"combo box", "items \"single\" | \"cycle\" | \"2 cycles\""}},
      {"FormIns", "optElectrode(1..8)", {"option button", "1=\"1)  Planar\":1", "8=\"8)  Rotating disk\":0"}},
      {"FormExpr", "D(1..6)", {"cm\xC2\xB2/s", "1=\"1e-5\""}},
      {"FormExpr", "Cinit(1..6)", {"\"C init (M)\"", " M ", "1=\"1.e-3\""}},
      {"FormExpr", "Cond(0..5)", {"per M", "0=\"100\"", "5=\"500\""}},
      {"FormExpr", "CheckFitted(1..23)", {"check box", "1=1 2=0"}},
      {"FormMech", "NEL(1..3)", {"electrons", "items \"1\" | \"2\" | \"3\""}},
      {"formOption", "ComboY", {"\"current I\"", "\"surface concentration C\""}},
  };
  for (const auto& row : rows) {
    const std::string line = LineOf(RunCli({std::string("help ") + row.form}).out, row.control);
    ASSERT_FALSE(line.empty()) << row.form << "." << row.control;
    for (const char* part : row.shown) EXPECT_TRUE(Contains(line, part)) << line << " lacks " << part;
  }
  // The value is the current one, after the change events have run.
  const std::string after = RunCli({"set FormIns.Estep=0.002", "help FormIns"}).out;
  EXPECT_TRUE(Contains(LineOf(after, "Estep"), "\"0.002\""));
  EXPECT_TRUE(Contains(LineOf(after, "td"), "\"0.2\""));
  EXPECT_EQ(RunCli({"help FormNope"}).status, 2);
}

// Slots: 1-6 concentrations, 7-9 ks, 10-12 alpha, 13-15 E0, 16-19 kf, 20-23 kb.
TEST(CliHelp, FitListsEverySlotWithItsParameter) {
  const std::string out =
      RunCli({"click FormMech.CheckDigital", "set FormExpr.CheckFitted(13)=1", "menu mnuExperimental", "help fit"}).out;
  const struct {
    const char* slot;
    std::vector<const char*> shown;
  } rows[] = {
      {"CheckFitted(1)", {"C(1)", " M ", "yes", "species A"}},
      {"CheckFitted(8)", {"ks(2)", "cm/s", "not in the mechanism"}},
      {"CheckFitted(10)", {"alph(1)", "reaction 1 (A+ne=B)"}},
      {"CheckFitted(13)", {"Eze(1)", " V ", "yes", "-0.2", "0.2"}},
      {"CheckFitted(16)", {"kf(1)", "1/s"}},
      {"CheckFitted(23)", {"kb(4)", "backward"}},
  };
  for (const auto& row : rows) {
    const std::string line = LineOf(out, row.slot);
    for (const char* part : row.shown) EXPECT_TRUE(Contains(line, part)) << line << " lacks " << part;
  }
}

TEST(CliHelp, MenuTellsWhichCommandsAreEnabledNow) {
  const struct {
    std::vector<std::string> before;
    const char* item;
    const char* state;
  } rows[] = {
      {{}, "mnuFindPeak", "disabled"},
      {{"menu mnuSimulate"}, "mnuFindPeak", "enabled"},
      {{"menu mnuSimulate"}, "mnuTheoPeak", "disabled"},  // digital mode at start
      {{"menu mnuSimulate", "click FormMech.CheckDigital"}, "mnuTheoPeak", "enabled"},
  };
  for (const auto& row : rows) {
    std::vector<std::string> args = row.before;
    args.push_back("help menu");
    const std::string line = LineOf(RunCli(args).out, std::string("  ") + row.item);
    EXPECT_TRUE(Contains(line, std::string("  ") + row.state)) << row.item << ": " << line;
  }
}

TEST(CliExitStatus, ZeroOneOrTwoByHowTheStatementsEnded) {
  const std::string dir = "/nonexistent-voltrix-dir/";
  const struct {
    std::vector<std::string> args;
    int status;
    const char* err;
  } rows[] = {
      {{"menu mnuSimulate"}, 0, ""},
      {{"set FormIns.Estep=0", "menu mnuSimulate"}, 1, "Division by zero"},
      {{"menu mnuImport " + dir + "in.csv"}, 1, "message: ReadData Error"},
      {{"menu mnuSave " + dir + "x.par"}, 1, "cannot write /nonexistent-voltrix-dir/x.par: No such file or directory"},
      {{"menu mnuSimulate", "menu mnuExport " + dir + "x.csv"}, 1, "cannot write /nonexistent-voltrix-dir/x.csv: "},
      {{"show curves " + dir + "x.csv"}, 1, "cannot write /nonexistent-voltrix-dir/x.csv: "},
      {{"set FormIns.Nope=1"}, 2, "unknown control FormIns.Nope"},
  };
  for (const auto& row : rows) {
    auto r = RunCli(row.args);
    EXPECT_EQ(r.status, row.status) << testing::PrintToString(row.args) << r.err;
    EXPECT_TRUE(Contains(r.err, row.err)) << r.err;
  }
}

TEST(CliExitStatus, StopsAtTheFirstErrorUnlessKeepGoing) {
  const std::vector<std::string> script = {"set FormIns.Estep=0", "menu mnuSimulate", "show control FormIns.Estart"};
  auto stop = RunCli(script);
  EXPECT_EQ(stop.status, 1);
  EXPECT_EQ(stop.out, "");
  std::vector<std::string> keep = {"-k"};
  keep.insert(keep.end(), script.begin(), script.end());
  auto on = RunCli(keep);
  EXPECT_EQ(on.status, 1);
  EXPECT_EQ(on.out, "FormIns.Estart: text=\"0.3\" value=0 visible=1 enabled=1\n");
  // A malformed statement stops even with -k.
  EXPECT_EQ(RunCli({"-k", "menu mnuSimulate", "bogus", "show control FormIns.Estart"}).status, 2);
}

}  // namespace
}  // namespace voltrix

namespace voltrix {
namespace {

// Step and scan rate must hold numbers; the run does not start from a stale
// drop time, and the command that committed says why.
TEST(CliErrors, NonNumericStepOrScanRateStopsTheCommandThatCommits) {
  const struct {
    const char* statement;
    int status;
  } rows[] = {
      {"set FormIns.V=abc", 1}, {"set FormIns.V=", 1}, {"set FormIns.Estep=0.01V", 1},
      {"set FormIns.Estep= 0.002 ", 0}, {"set FormIns.V=2e-2", 0},
  };
  for (const auto& row : rows) {
    auto r = test::RunCli({"-k", row.statement, "menu mnuSimulate", "show control FormIns.Estep"});
    EXPECT_EQ(r.status, row.status) << row.statement << ": " << r.err;
    EXPECT_EQ(Contains(r.err, "message: Error: Type mismatch\n"), row.status == 1) << row.statement << ": " << r.err;
  }
  auto ok = test::RunCli({"set FormIns.V=abc", "click FormIns.cmdOK"});
  EXPECT_EQ(ok.status, 1);
  EXPECT_EQ(ok.err, "message: Error: Type mismatch\n");
}

}  // namespace
}  // namespace voltrix
