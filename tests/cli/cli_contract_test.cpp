// The command-line contract, on the real binary from a shell: statements,
// what they print where, and the exit status.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "run_cli.h"

namespace voltrix {
namespace {

using test::RunCli;

TEST(Cli, StatementsPrintWhatTheyShowAndStopAtTheFirstBadOne) {
  const struct {
    std::vector<std::string> args;
    int status;
    std::string out, err;  // expected in the output, "" for nothing expected
  } cases[] = {
      {{"set FormIns.ComboScan=cycle", "show control FormIns.ComboScan"}, 0,
       "FormIns.ComboScan: text=\"cycle\" value=0 index=1 visible=1 enabled=1\n", ""},
      {{"show curves"}, 0, "X\n", ""},  // no run yet: no curve
      {{"set FormMech.chem(1)=C", "set FormMech.chem(2)=D", "set FormMech.chem(3)=E", "set FormMech.chem(4)=F",
        "set FormMech.chem(5)=G", "click FormMech.Command1"},
       1, "", "message: Error: Species number cannot > 6.\n"},  // a message box is an error for a script
      {{"help"}, 0, "  set Form.control[(i)]=TEXT\n  click Form.control[(i)]\n  menu mnuName [FILE]\n", ""},
      {{"help"}, 0, "  mnuSemiInte  S&emi-intergrate\n", ""},
      {{"show control FormIns.Estart", "bogus", "show control FormIns.Eend"}, 2,
       "FormIns.Estart: text=\"0.3\" value=0 visible=1 enabled=1\n", "bogus"},  // the statements before it ran
      {{"set FormIns.ComboScan=3 cycles"}, 2, "", "3 cycles"},      {{"set FormMech.CheckDigital=yes"}, 2, "", "CheckDigital"},
      {{"menu mnuFindPeak"}, 2, "", "mnuFindPeak"},  // disabled before the first curve
      {{"menu mnuFly"}, 2, "", "mnuFly"},                        {{"set FormNope.x=1"}, 2, "", "FormNope"},
      {{"set FormIns.Nope=1"}, 2, "", "FormIns.Nope"},           {{"show control FormExpr.C(9)"}, 2, "", "C(9)"},
      {{"set FormIns.Estart"}, 2, "", "set FormIns.Estart"},     {{"show control FormIns.C(x)"}, 2, "", "FormIns.C(x)"},
      {{"-f", "/nonexistent/script"}, 2, "", ""},
  };
  for (const auto& c : cases) {
    const auto r = RunCli(c.args);
    EXPECT_EQ(r.status, c.status) << c.args[0] << "\n" << r.err;
    EXPECT_NE(r.out.find(c.out), std::string::npos) << c.args[0] << "\n" << r.out;
    EXPECT_NE(r.err.find(c.err), std::string::npos) << c.args[0] << "\n" << r.err;
  }
}

// A script comes first, a line a statement, "#" starting a comment; then the
// arguments.
TEST(Cli, ScriptThenArguments) {
  const auto script = std::filesystem::temp_directory_path() / ("voltrix-script-" + std::to_string(::getpid()));
  std::ofstream(script) << "# a comment line\n\nset FormIns.Estep=0.001   # trailing comment\nshow control FormIns.td\n";
  const auto r = RunCli({"-f", script.string(), "show control FormIns.Estep"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "FormIns.td: text=\"0.1\" value=0 visible=1 enabled=0\nFormIns.Estep: text=\"0.001\" value=0 visible=1 enabled=1\n");
  std::filesystem::remove(script);
  EXPECT_EQ(RunCli({"menu mnuExit", "show control FormIns.Estart"}).out, "");  // "E&xit" ends the session
}

// The accurate-physics box is an input like any other: committed by the chain
// and written to the parameter file only when ticked, so classic files stay.
TEST(CliSet, AccuratePhysicsBoxIsCommittedAndSavedOnlyWhenTicked) {
  const auto file = std::filesystem::temp_directory_path() / ("voltrix-accurate-" + std::to_string(::getpid()) + ".par");
  for (const char* tick : {"0", "1"}) {
    const auto r = RunCli({std::string("set FormMech.CheckAccurate=") + tick, "click FormExpr.cmdOK", "show experiment",
                           "menu mnuSave " + file.string()});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find(tick[0] == '1' ? "Accurate = True\n" : "Accurate = False\n"), std::string::npos);
    EXPECT_EQ(test::ReadFile(file).find("Accurate physics :\r\n 1 \r\n") != std::string::npos, tick[0] == '1');
  }
  std::filesystem::remove(file);
}

}  // namespace
}  // namespace voltrix
