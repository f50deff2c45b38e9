// "&Open Parameters..." through the CLI: a saved experiment read into fresh
// forms saves the very same file again; a broken file changes nothing. The
// legend of a saved plot names the rows by what filled them. Recent files.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "app/recent_files.h"
#include "cli/run_cli.h"

namespace voltrix::test {
namespace {

std::string Scratch(const std::string& name) {
  return (std::filesystem::temp_directory_path() / ("voltrix-open-" + std::to_string(::getpid()) + "-" + name)).string();
}

// Commits the forms as a run does, saves them, and shows the scan rate.
CliResult Saved(std::vector<std::string> statements, const std::string& file) {
  statements.insert(statements.end(), {"click FormExpr.cmdOK", "menu mnuSave " + file, "show control FormIns.V"});
  return RunCli(statements);
}

TEST(OpenParameters, ASavedExperimentSavesTheSameFileFromFreshForms) {
  // Typed reactions are not in the file: both forms hold them.
  struct Row {
    std::vector<std::string> setup, typed;
  } rows[] = {
      {{"click FormMech.CheckDigital", "click FormMech.mech(6)", "click FormTech.optTech(5)",
        "click FormIns.optElectrode(4)", "set FormIns.radius=0.02", "set FormIns.Estep=0.002", "set FormIns.TextF=25",
        "set FormExpr.D(2)=2e-5", "click FormMech.CheckAccurate"},
       {}},
      {{"click FormMech.CheckDigital", "click FormMech.mech(3)", "click FormTech.optTech(4)",
        "click FormIns.optElectrode(5)", "set FormIns.radius=0.01", "set FormIns.leng=0.1", "set FormIns.Epulse=-0.025",
        "set FormIns.Noise=2", "set FormMech.NEL(2)=2"},
       {}},
      {{"click FormTech.optTech(3)", "click FormIns.optElectrode(3)", "set FormIns.radius=0.005", "set FormIns.V=0.05",
        "set FormExpr.Eze(1)=0.25", "set FormExpr.C(1)=2e-3"},
       {"set FormMech.chem(1)=B", "set FormMech.chem(2)=C"}},
      {{"click FormTech.optTech(2)", "click FormIns.optElectrode(6)", "set FormIns.radius=0.003", "set FormIns.leng=0.2",
        "set FormIns.Estart=0.5", "set FormExpr.ks(1)=0.01", "set FormExpr.alph(1)=0.3", "set FormExpr.Cond(1)=73"},
       {}},
  };
  for (const Row& r : rows) {
    std::vector<std::string> first = r.typed, second = r.typed;
    first.insert(first.end(), r.setup.begin(), r.setup.end());
    second.push_back("menu mnuOpen " + Scratch("first.par"));
    const CliResult a = Saved(first, Scratch("first.par")), b = Saved(second, Scratch("second.par"));
    EXPECT_EQ(ReadFile(Scratch("second.par")), ReadFile(Scratch("first.par"))) << r.setup.back();
    EXPECT_TRUE(b.out.ends_with(a.out)) << b.out;  // the scan rate comes back from the drop time
    EXPECT_EQ(b.err, "");
    if (r.typed.empty()) continue;
    const std::string note = "The file has 3 species; the reactions typed on the Mechanism form have 2.";
    EXPECT_NE(RunCli({"menu mnuOpen " + Scratch("first.par")}).out.find(note), std::string::npos);
  }
}

TEST(OpenParameters, ABrokenFileChangesNothingAndSaysWhy) {
  Saved({"set FormIns.Estep=0.002"}, Scratch("good.par"));
  std::string broken = ReadFile(Scratch("good.par"));
  broken.replace(broken.find("E end :"), 7, "E fin :");
  std::ofstream(Scratch("broken.par"), std::ios::binary) << broken;
  // -k: the script goes on past the failed open to save what the forms hold.
  const CliResult r = Saved({"-k", "set FormIns.Estep=0.002", "menu mnuOpen " + Scratch("broken.par")}, Scratch("again.par"));
  EXPECT_EQ(r.status, 1);
  EXPECT_EQ(r.err, "message: ReadParameters Error: " + std::filesystem::path(Scratch("broken.par")).filename().string() +
                       ", line 9: \"E end :\" expected, found \"E fin :\".\n");
  EXPECT_EQ(ReadFile(Scratch("again.par")), ReadFile(Scratch("good.par")));
}

TEST(CurveLabels, TheLegendNamesRunsAndImports) {
  if (RunCli({"help"}).out.find("plot FILE") == std::string::npos) GTEST_SKIP() << "voltrix-cli was built without pictures";
  const CliResult r = RunCli({"click FormMech.CheckDigital", "set formOption.overlap=1", "set FormIns.V=0.05",
                              "menu mnuSimulate", "set FormIns.ComboScan=cycle", "click FormIns.optElectrode(2)",
                              "menu mnuSimulate", "menu mnuExport " + Scratch("wave.csv"),
                              "menu mnuImport " + Scratch("wave.csv"), "plot " + Scratch("legend.svg")});
  ASSERT_EQ(r.status, 0) << r.err;
  const std::string svg = ReadFile(Scratch("legend.svg"));
  const std::string file = std::filesystem::path(Scratch("wave.csv")).filename().string();
  for (const std::string& label : {std::string("LSV, 0.05 V/s, A + ne = B"), std::string("CV, 0.05 V/s, A + ne = B, Spherical"), file})
    EXPECT_NE(svg.find(">" + label + "<"), std::string::npos) << label;
}

TEST(RecentFiles, NewestFirstEachOnceAtMostEight) {
  RecentFiles recent;
  for (int i = 1; i <= 10; ++i) recent.add("/d/" + std::to_string(i) + ".csv", FileKind::Curve);
  recent.add("/d/5.csv", FileKind::Curve);
  recent.add("/d/run.par", FileKind::Parameters);
  ASSERT_EQ(recent.files().size(), RecentFiles::kMost);
  EXPECT_EQ(recent.files()[0].path, "/d/run.par");
  EXPECT_EQ(recent.files()[1].path, "/d/5.csv");
  EXPECT_EQ(recent.files().back().path, "/d/4.csv");
  EXPECT_EQ(RecentFiles::fromTexts(recent.toTexts()).files(), recent.files());
  EXPECT_EQ(RecentCaption(0, "/d/R&D.par"), "&1 R&&D.par");
  std::ofstream(Scratch("kind.par"), std::ios::binary) << "Technique :\r\n 1 \r\n";
  EXPECT_EQ(OpenCommandOf(KindOfFile(Scratch("kind.par"))), std::string("mnuOpen"));
  EXPECT_EQ(OpenCommandOf(KindOfFile(Scratch("none.csv"))), std::string("mnuImport"));
}

}  // namespace
}  // namespace voltrix::test
