// The command-line contract, exercised on the real binary from a shell.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "run_cli.h"

namespace voltrix {
namespace {

using test::RunCli;

bool Contains(const std::string& haystack, const std::string& needle) {
  return haystack.find(needle) != std::string::npos;
}

TEST(CliSet, TextBoxEditRaisesItsChangeEvent) {
  auto r = RunCli({"set FormIns.V=0.1", "show control FormIns.td"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "FormIns.td: text=\"0.05\" value=0 visible=1 enabled=0\n");
}

TEST(CliSet, DropDownItemIsPickedByItsText) {
  auto r = RunCli({"set FormIns.ComboScan=cycle", "show control FormIns.ComboScan"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out, "FormIns.ComboScan: text=\"cycle\" value=0 index=1 visible=1 enabled=1\n");
  auto bad = RunCli({"set FormIns.ComboScan=3 cycles"});
  EXPECT_EQ(bad.status, 2);
  EXPECT_TRUE(Contains(bad.err, "3 cycles")) << bad.err;
}

TEST(CliSet, CheckBoxAndOptionButton) {
  auto r = RunCli({"set FormMech.CheckDigital=0", "set FormMech.mech(3)=1", "menu mnuExperimental",
                   "show control FormExpr.heter(3)", "show control FormMech.mech(1)"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "FormExpr.heter(3): text=\"C+ne=D\" value=0 visible=1 enabled=1\n"
            "FormMech.mech(1): text=\"1)  A + ne = B\" value=0 visible=1 enabled=1\n");
  EXPECT_EQ(RunCli({"set FormMech.CheckDigital=yes"}).status, 2);
}

TEST(CliClick, CheckBoxClickRunsTheModeSwitch) {
  auto r = RunCli({"click FormMech.CheckDigital", "show control FormMech.Frame1",
                   "show control MDIForm1.mnuTheoPeak"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Contains(r.out, "FormMech.Frame1: text=\"Analytical Simulation\" value=0 visible=1 enabled=1"));
  EXPECT_TRUE(Contains(r.out, "MDIForm1.mnuTheoPeak: text=\"&Theoretical Peak\" value=0 visible=1 enabled=1"));
}

TEST(CliMenu, ChemicalsOpenWithTheMechanismInForce) {
  auto r = RunCli({"menu mnuExperimental", "show control FormExpr.Cinit(1)", "show control FormExpr.Cinit(2)"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "FormExpr.Cinit(1): text=\"9.996e-4\" value=0 visible=1 enabled=1\n"
            "FormExpr.Cinit(2): text=\"4.159e-7\" value=0 visible=1 enabled=1\n");
}

TEST(CliMenu, DisabledAndUnknownCommandsStopWithStatusTwo) {
  auto disabled = RunCli({"menu mnuFindPeak"});
  EXPECT_EQ(disabled.status, 2);
  EXPECT_TRUE(Contains(disabled.err, "mnuFindPeak"));
  auto unknown = RunCli({"menu mnuFly"});
  EXPECT_EQ(unknown.status, 2);
  EXPECT_TRUE(Contains(unknown.err, "mnuFly"));
}

TEST(CliShow, ExperimentListsEveryFieldInPlainPrint) {
  auto r = RunCli({"click FormExpr.cmdOK", "show experiment"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_TRUE(Contains(r.out, "TempK =  298.14 \n"));
  EXPECT_TRUE(Contains(r.out, "Estart =  0.3 \n"));
  EXPECT_TRUE(Contains(r.out, "Eend = -0.3 \n"));
  EXPECT_TRUE(Contains(r.out, "C(2) =  4.159E-07 \n"));
  EXPECT_TRUE(Contains(r.out, "ChargeMap(1,2) =  2 \n"));
  EXPECT_TRUE(Contains(r.out, "SpeciesName(2) = B\n"));
  EXPECT_TRUE(Contains(r.out, "Digital = True\n"));
  EXPECT_TRUE(Contains(r.out, "NData = \n"));  // never given a value
  EXPECT_TRUE(Contains(r.out, "ks(4) = \n"));
}

// The accurate-physics box is an input like any other: committed by the chain
// and written to the parameter file only when ticked, so classic files stay.
TEST(CliSet, AccuratePhysicsBoxIsCommittedAndSavedOnlyWhenTicked) {
  namespace fs = std::filesystem;
  const fs::path file = fs::temp_directory_path() / ("voltrix-accurate-" + std::to_string(::getpid()) + ".par");
  const struct {
    const char* tick;
    const char* shown;
    bool inFile;
  } cases[] = {{"set FormMech.CheckAccurate=0", "Accurate = False\n", false},
               {"set FormMech.CheckAccurate=1", "Accurate = True\n", true}};
  for (const auto& c : cases) {
    auto r = RunCli({c.tick, "click FormExpr.cmdOK", "show experiment", "menu mnuSave " + file.string()});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(Contains(r.out, c.shown)) << c.tick;
    EXPECT_EQ(Contains(test::ReadFile(file), "Accurate physics :\r\n 1 \r\n"), c.inFile) << c.tick;
  }
  fs::remove(file);
}

TEST(CliShow, CurvesAsCsvWithAHeader) {
  namespace fs = std::filesystem;
  const fs::path file = fs::temp_directory_path() / ("voltrix-curves-" + std::to_string(::getpid()) + ".csv");
  auto r = RunCli({"show curves " + file.string()});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(test::ReadFile(file), "X\n");  // no run yet: no curve, no points
  fs::remove(file);
}

TEST(CliErrors, UnknownFormControlIndexOrStatementIsNamed) {
  const std::pair<const char*, const char*> cases[] = {
      {"set FormNope.x=1", "FormNope"},        {"set FormIns.Nope=1", "FormIns.Nope"},
      {"show control FormExpr.C(9)", "C(9)"},  {"fly away", "fly away"},
      {"set FormIns.Estart", "set FormIns.Estart"}, {"set FormExpr.Cinit(1)=1", "Cinit(1)"},
      {"show control FormIns.C(x)", "FormIns.C(x)"}};
  for (auto [statement, named] : cases) {
    auto r = RunCli({statement});
    EXPECT_EQ(r.status, 2) << statement;
    EXPECT_TRUE(Contains(r.err, named)) << statement << " -> " << r.err;
  }
}

TEST(CliErrors, StatementsBeforeTheBadOneHaveRun) {
  auto r = RunCli({"show control FormIns.Estart", "bogus", "show control FormIns.Eend"});
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(r.out, "FormIns.Estart: text=\"0.3\" value=0 visible=1 enabled=1\n");
}

TEST(CliScript, StatementsComeFromTheFileThenTheArguments) {
  namespace fs = std::filesystem;
  const fs::path script = fs::temp_directory_path() / ("voltrix-script-" + std::to_string(::getpid()) + ".txt");
  {
    std::ofstream f(script);
    f << "# a comment line\n\nset FormIns.Estep=0.001   # trailing comment\nshow control FormIns.td\n";
  }
  auto r = RunCli({"-f", script.string(), "show control FormIns.Estep"});
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.out,
            "FormIns.td: text=\"0.1\" value=0 visible=1 enabled=0\n"
            "FormIns.Estep: text=\"0.001\" value=0 visible=1 enabled=1\n");
  fs::remove(script);
  EXPECT_EQ(RunCli({"-f", "/nonexistent/script"}).status, 2);
}

TEST(CliMessages, MessageBoxesGoToStandardErrorInOrder) {
  const char* seven[] = {"set FormMech.chem(1)=C", "set FormMech.chem(2)=D", "set FormMech.chem(3)=E",
                         "set FormMech.chem(4)=F", "set FormMech.chem(5)=G", "menu mnuMechamism",
                         "click FormMech.Command1"};
  auto r = RunCli(std::vector<std::string>(std::begin(seven), std::end(seven)));
  EXPECT_EQ(r.status, 1);  // the mechanism was cut to six species: an error for a script
  EXPECT_EQ(r.err, "message: Error: Species number cannot > 6.\n");
}

TEST(CliHelp, ListsEveryStatementAndMenuCommand) {
  auto r = RunCli({"help"});
  EXPECT_EQ(r.status, 0);
  for (const char* line : {"  set Form.control[(i)]=TEXT\n", "  click Form.control[(i)]\n", "  menu mnuName [FILE]\n",
                           "  show experiment\n", "  show control Form.control[(i)]\n", "  show curves [FILE]\n",
                           "  mnuSimulate  &Simulate\n", "  mnuSemiInte  S&emi-intergrate\n",
                           "  mnuMechamism  &Mechamism...\n", "  formOption\n"})
    EXPECT_TRUE(Contains(r.out, line)) << line;
}

}  // namespace
}  // namespace voltrix
