// Help, exit statuses and -k, on the real binary.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "run_cli.h"

namespace voltrix {
namespace {

using test::RunCli;
using Args = std::vector<std::string>;

bool Contains(const std::string& haystack, const std::string& needle) {
  return haystack.find(needle) != std::string::npos;
}

// The line of help output that starts with the name, or "".
std::string LineOf(const std::string& help, const std::string& name) {
  const auto at = help.find("\n  " + name + " ");
  return at == std::string::npos ? "" : help.substr(at + 1, help.find('\n', at + 1) - at - 1);
}

// Each row: statements before, the help topic, the line's name, what it must
// show. Units and defaults are those of the model's field table and forms.
TEST(CliHelp, FormsFitSlotsAndMenuAsTheyStandNow) {
  const struct {
    Args before;
    const char *topic, *name;
    std::vector<const char*> shown;
  } rows[] = {
      {{}, "FormIns", "Estart", {"text box", "\"E start (V)\"", " V ", "\"0.3\""}},
      {{}, "FormIns", "td", {" s ", "\"0.5\"", "(disabled)"}},
      {{}, "FormIns", "ComboScan", {"combo box", "items \"single\" | \"cycle\" | \"2 cycles\""}},
      {{}, "FormExpr", "D(1..6)", {"cm\xC2\xB2/s", "1=\"1e-5\""}},
      {{"set FormIns.Estep=0.002"}, "FormIns", "td", {"\"0.2\""}},  // the change event has run
      {{"click FormMech.CheckDigital", "set FormExpr.CheckFitted(13)=1", "menu mnuExperimental"},
       "fit", "CheckFitted(13)", {"Eze(1)", " V ", "yes", "reaction 1 (A+ne=B)"}},
      {{"menu mnuSimulate"}, "menu", "  mnuFindPeak", {"  enabled"}},
      {{"menu mnuSimulate", "click FormMech.CheckDigital"}, "menu", "  mnuTheoPeak", {"  enabled"}},
  };
  for (const auto& row : rows) {
    Args args = row.before;
    args.push_back(std::string("help ") + row.topic);
    const std::string line = LineOf(RunCli(args).out, row.name);
    for (const char* part : row.shown) EXPECT_TRUE(Contains(line, part)) << row.name << ": " << line << " lacks " << part;
  }
  EXPECT_EQ(RunCli({"help FormNope"}).status, 2);
}

TEST(CliExitStatus, ZeroOneOrTwoByHowTheStatementsEnded) {
  const std::string dir = "/nonexistent-voltrix-dir/", usage = "usage: voltrix-cli [-k] [-f SCRIPT] [STATEMENT...]\n";
  const struct {
    Args args;
    int status;
    std::string err, out = "";
  } rows[] = {
      {{}, 0, "", usage},
      {{"--help"}, 0, "", usage},
      {{"-k"}, 0, "", usage},
      {{"--version"}, 0, "", "voltrix-cli (Voltrix) 4.0\n"},
      {{"--frobnicate"}, 2, "unknown option --frobnicate"},
      {{"menu mnuSimulate"}, 0, ""},
      {{"set FormIns.Estep=0", "menu mnuSimulate"}, 1, "Division by zero"},
      {{"set FormIns.V=abc", "menu mnuSimulate"}, 1, "message: Error: Type mismatch\n"},  // no stale drop time
      {{"set FormIns.Estep=0.01V", "click FormIns.cmdOK"}, 1, "message: Error: Type mismatch\n"},
      {{"menu mnuImport " + dir + "in.csv"}, 1, "message: ReadData Error"},
      {{"menu mnuSave " + dir + "x.par"}, 1, "cannot write " + dir + "x.par: No such file or directory"},
      {{"menu mnuSimulate", "menu mnuExport " + dir + "x.csv"}, 1, "cannot write " + dir + "x.csv: "},
      {{"show curves " + dir + "x.csv"}, 1, "cannot write " + dir + "x.csv: "},
      {{"set FormIns.Nope=1"}, 2, "unknown control FormIns.Nope"},
  };
  for (const auto& row : rows) {
    auto r = RunCli(row.args);
    EXPECT_EQ(r.status, row.status) << testing::PrintToString(row.args) << r.err;
    EXPECT_TRUE(Contains(r.err, row.err)) << r.err;
    EXPECT_EQ(r.out.rfind(row.out, 0), 0u) << r.out;
  }
}

TEST(CliExitStatus, StopsAtTheFirstErrorUnlessKeepGoing) {
  const Args script = {"set FormIns.Estep=0", "menu mnuSimulate", "show control FormIns.Estart"};
  EXPECT_EQ(RunCli(script).out, "");
  auto on = RunCli({"-k", script[0], script[1], script[2]});
  EXPECT_EQ(on.status, 1);
  EXPECT_EQ(on.out, "FormIns.Estart: text=\"0.3\" value=0 visible=1 enabled=1\n");
  EXPECT_EQ(RunCli({"-k", "bogus", "show control FormIns.Estart"}).status, 2);  // malformed stops even so
}

}  // namespace
}  // namespace voltrix
