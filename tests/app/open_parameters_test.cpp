// "&Open Parameters...", the labels of curve rows and the recent files: a
// saved experiment read into fresh forms saves the very same file again.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "app/commands.h"
#include "app/recent_files.h"
#include "support/headless_workbench.h"
#include "ui/form_expr.h"
#include "ui/form_ins.h"
#include "ui/form_plot.h"
#include "ui/text_window.h"

namespace voltrix::test {
namespace {

namespace fs = std::filesystem;

std::string Scratch(const std::string& name) {
  const fs::path dir = fs::temp_directory_path() / ("voltrix-open-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  return (dir / name).string();
}

std::string Contents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

// "FormIns.radius=0.02" types into a box; "FormMech.mech(6)" clicks.
struct Bench : HeadlessWorkbench {
  Bench() { BindMenuCommands(wb); }
  void apply(const std::vector<std::string>& edits) {
    for (const std::string& edit : edits) {
      const auto dot = edit.find('.'), open = edit.find('('), eq = edit.find('=');
      const auto nameEnd = std::min(open, eq);
      Form* form = wb.formNamed(edit.substr(0, dot));
      const int index = open < eq ? std::stoi(edit.substr(open + 1)) : -1;
      Control& c = form->control(edit.substr(dot + 1, nameEnd - dot - 1), index);
      if (eq == std::string::npos) c.click();
      else c.setText(edit.substr(eq + 1));
    }
  }
  void menu(const std::string& name, const std::string& file = "") {
    if (!file.empty()) platform.files.answers.push_back(file);
    ASSERT_TRUE(RunMenuCommand(wb, name));
  }
  std::string saved(const std::string& name) {
    wb.formExpr().OK();  // the commit chain of a run
    menu("mnuSave", Scratch(name));
    return Contents(Scratch(name));
  }
  std::string control(const char* form, const char* name) { return wb.formNamed(form)->control(name).shownText(); }
};

TEST(OpenParameters, ASavedExperimentSavesTheSameFileFromFreshForms) {
  // Typed reactions are not in the file: both forms hold them.
  struct Row {
    std::vector<std::string> setup, typed;
  } rows[] = {
      {{"FormMech.CheckDigital"}, {}},
      {{"FormMech.CheckDigital", "FormMech.mech(6)", "FormTech.optTech(5)", "FormIns.optElectrode(4)",
        "FormIns.radius=0.02", "FormIns.Estep=0.002", "FormIns.TextF=25", "FormExpr.D(2)=2e-5", "FormMech.CheckAccurate"},
       {}},
      {{"FormMech.CheckDigital", "FormMech.mech(3)", "FormTech.optTech(4)", "FormIns.optElectrode(5)",
        "FormIns.radius=0.01", "FormIns.leng=0.1", "FormIns.Epulse=-0.025", "FormIns.Noise=2", "FormMech.NEL(2)=2"},
       {}},
      {{"FormTech.optTech(3)", "FormIns.optElectrode(3)", "FormIns.radius=0.005", "FormIns.V=0.05",
        "FormExpr.Eze(1)=0.25", "FormExpr.C(1)=2e-3"},
       {"FormMech.chem(1)=B", "FormMech.chem(2)=C"}},
      {{"FormTech.optTech(2)", "FormIns.optElectrode(6)", "FormIns.radius=0.003", "FormIns.leng=0.2",
        "FormIns.Estart=0.5", "FormExpr.ks(1)=0.01", "FormExpr.alph(1)=0.3", "FormExpr.Cond(1)=73"},
       {}},
  };
  for (const Row& r : rows) {
    Bench first, second, untyped;
    first.apply(r.typed);
    first.apply(r.setup);
    const std::string file = first.saved("first.par");
    second.apply(r.typed);
    second.menu("mnuOpen", Scratch("first.par"));
    EXPECT_EQ(second.saved("second.par"), file) << r.setup.back();
    EXPECT_EQ(second.control("FormIns", "V"), first.control("FormIns", "V"));  // the rate from the drop time
    EXPECT_TRUE(second.messages().empty());
    if (r.typed.empty()) continue;
    untyped.menu("mnuOpen", Scratch("first.par"));
    EXPECT_EQ(untyped.wb.formResult().lines().back(), "The file has 3 species; the reactions typed on the Mechanism form have 2.");
  }
}

TEST(OpenParameters, ABrokenFileChangesNothingAndSaysWhy) {
  Bench b;
  b.apply({"FormIns.Estep=0.002"});
  const std::string before = b.saved("good.par");
  std::string broken = before;
  broken.replace(broken.find("E end :"), 7, "E fin :");
  std::ofstream(Scratch("broken.par"), std::ios::binary) << broken;
  b.menu("mnuOpen", Scratch("broken.par"));
  ASSERT_EQ(b.messages().size(), 1u);
  EXPECT_EQ(b.messages()[0], "ReadParameters Error: broken.par, line 9: \"E end :\" expected, found \"E fin :\".");
  EXPECT_EQ(b.saved("again.par"), before);
  EXPECT_EQ(b.control("FormIns", "Estep"), "0.002");
}

TEST(CurveLabels, RunsAndImportsNameTheirRows) {
  Bench b;
  b.apply({"FormMech.CheckDigital", "formOption.overlap", "FormIns.V=0.05"});
  b.menu("mnuSimulate");
  b.apply({"FormIns.ComboScan=cycle", "FormTech.optTech(1)", "FormIns.optElectrode(2)"});
  b.menu("mnuSimulate");
  b.menu("mnuExport", Scratch("wave.csv"));
  b.menu("mnuImport", Scratch("wave.csv"));
  const auto& labels = b.wb.formPlot().view().rowLabels;
  EXPECT_EQ(labels[1], "LSV, 0.05 V/s, A + ne = B");
  EXPECT_EQ(labels[2], "CV, 0.05 V/s, A + ne = B, Spherical");
  EXPECT_EQ(labels[3], "wave.csv");
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
  EXPECT_EQ(OpenCommandOf(KindOfFile(Scratch("wave.csv"))), std::string("mnuImport"));
}

}  // namespace
}  // namespace voltrix::test
