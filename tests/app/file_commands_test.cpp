// "&Save...", "&Export Data..." and "&Import Data..." from the menu, on real
// files in a scratch folder.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "analytic/analytic_run.h"
#include "app/commands.h"
#include "support/expect_close.h"
#include "ui/form_ins.h"
#include "ui/form_option.h"
#include "ui/main_form.h"
#include "ui/text_window.h"

namespace voltrix::test {
namespace {

namespace fs = std::filesystem;

struct Scratch {
  fs::path dir;
  Scratch() {
    static int count = 0;
    dir = fs::temp_directory_path() /
          ("voltrix-file-commands-" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()) +
           "-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
    fs::remove_all(dir);
    fs::create_directories(dir);
  }
  ~Scratch() { fs::remove_all(dir); }
  std::string file(const std::string& name) const { return (dir / name).string(); }
  int entries() const { return static_cast<int>(std::distance(fs::directory_iterator(dir), fs::directory_iterator())); }
};

std::string Contents(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

void Write(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

struct Bench : AnalyticRun {
  Scratch scratch;
  Bench() { BindMenuCommands(wb); }
  // Runs a menu command whose file dialog answers `file` (cancelled when empty).
  void menu(const std::string& name, const std::string& file = "") {
    if (!file.empty()) platform.files.answers.push_back(file);
    ASSERT_TRUE(RunMenuCommand(wb, name)) << name;
    platform.files.answers.clear();
  }
  const std::vector<std::string>& report() { return wb.formResult().lines(); }
  std::string ins(const std::string& name) { return wb.formIns().control(name).text(); }
};

TEST(FileCommands, ExportThenImportGivesTheSameCurveToFifteenDigits) {
  Bench b;
  b.scan("cycle");
  b.menu("mnuSimulate");
  const std::string path = b.scratch.file("cycle.csv");
  b.menu("mnuExport", path);
  ASSERT_EQ(b.platform.files.asked.back().filter, "csv|*.csv|all|*.*");

  Bench c;
  c.menu("mnuImport", path);
  ASSERT_TRUE(c.messages().empty()) << c.messages().front();
  EXPECT_EQ(c.platform.files.asked.back().mode, DialogMode::Open);
  const Experiment& e = c.wb.experiment;
  EXPECT_EQ(e.NData, 242);
  EXPECT_EQ(e.First, 1);
  EXPECT_EQ(e.Last, 242);
  auto digits15 = [](double v) {
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.14e", v);
    return std::string(buf);
  };
  for (int i = 1; i <= 242; ++i) {
    EXPECT_EQ(digits15(c.wb.store.XData(i)), digits15(b.wb.store.XData(i)));
    EXPECT_EQ(digits15(c.wb.store.YData(1, i)), digits15(b.wb.store.YData(1, i)));
  }
  // The file's step and start go back into the instrument form.
  ASSERT_EQ(c.report().size(), 2u);
  // The count and the step stand at the print zone after their labels.
  EXPECT_EQ(c.report()[0], "Number of data point = " + std::string(5, ' ') + " 242 ");
  EXPECT_EQ(c.report()[1], "E step = " + std::string(5, ' ') + " 0.005 ");
  EXPECT_EQ(c.ins("Estart"), "0.3");
  EXPECT_EQ(c.ins("Estep"), "0.005");
  // The menus open as after a run, and the plot is drawn.
  EXPECT_TRUE(c.wb.mainForm().menu("mnuDisplay").enabled());
  EXPECT_TRUE(c.wb.mainForm().menu("mnuData").enabled());
  EXPECT_TRUE(c.wb.formResult().shown());
  EXPECT_FALSE(c.platform.plot.calls.empty());
}

TEST(FileCommands, ImportedStepRewritesTheDropTime) {
  Bench b;
  const std::string path = b.scratch.file("measured.csv");
  Write(path, "\xEF\xBB\xBF" "0.5,1e-6\r\n0.498,2e-6\r\n0.496,3e-6\r\n");
  b.menu("mnuImport", path);
  EXPECT_EQ(b.ins("Estart"), "0.5");
  EXPECT_EQ(b.ins("Estep"), "0.002");
  // t drop is the time of one step at the scan rate 0.01 V/s.
  EXPECT_CLOSE(Val(b.ins("td")), 0.2, 1e-12);
  EXPECT_EQ(b.wb.experiment.NData, 3);
}

TEST(FileCommands, FailedImportSaysWhyAndKeepsTheCurveCountAndRange) {
  Bench b;
  b.menu("mnuSimulate");
  const Experiment& e = b.wb.experiment;
  std::string tooLong;
  for (int i = 1; i <= 4001; ++i) tooLong += std::to_string(i) + ",1\n";
  const std::string path = b.scratch.file("long.csv");
  Write(path, tooLong);
  b.menu("mnuImport", path);
  ASSERT_EQ(b.messages().size(), 1u);
  EXPECT_EQ(b.messages()[0], "ReadData Error: Subscript out of range");
  EXPECT_EQ(e.NData, 121);
  EXPECT_EQ(e.First, 1);
  EXPECT_EQ(e.Last, 121);

  Write(path, "X,Y\r\n0.3,1e-6\r\n");  // titles that name no potential or current: our own reader
  b.menu("mnuImport", path);
  EXPECT_EQ(b.messages().back(), "ReadData Error: Type mismatch");
  b.menu("mnuImport", b.scratch.file("missing.csv"));
  EXPECT_EQ(b.messages().back(), "ReadData Error: File not found");
  EXPECT_EQ(e.NData, 121);
  EXPECT_TRUE(b.report().empty());
}

TEST(FileCommands, FailedFirstImportLeavesTheMenusClosed) {
  Bench b;
  const std::string path = b.scratch.file("junk.csv");
  Write(path, std::string("\x00\x01\xff\xfe", 4) + "PK\x03\x04");
  b.menu("mnuImport", path);
  EXPECT_EQ(b.messages().size(), 1u);
  EXPECT_FALSE(b.wb.mainForm().menu("mnuData").enabled());
  EXPECT_TRUE(b.platform.plot.calls.empty());
}

TEST(FileCommands, EmptyFileImportsNoPoints) {
  Bench b;
  const std::string path = b.scratch.file("empty.csv");
  Write(path, "");
  b.menu("mnuImport", path);
  EXPECT_EQ(b.wb.experiment.NData, 0);
  EXPECT_EQ(b.wb.experiment.First, 1);
  EXPECT_EQ(b.wb.experiment.Last, 0);
  ASSERT_FALSE(b.report().empty());
  EXPECT_EQ(b.report()[0], "Number of data point = " + std::string(5, ' ') + " 0 ");
}

TEST(FileCommands, ImportWithOverlapAddsACurveBesideTheRun) {
  Bench b;
  b.wb.formOption().control("overlap").setValue(1);
  b.menu("mnuSimulate");
  const std::string path = b.scratch.file("second.csv");
  Write(path, "0.3,5\n0.295,6\n");
  b.menu("mnuImport", path);
  EXPECT_EQ(b.wb.experiment.NCurves, 2);
  EXPECT_EQ(b.wb.experiment.CurNo, 2);
  EXPECT_EQ(b.wb.store.YData(2, 2), 6);
}

TEST(FileCommands, ExportWritesTheCurrentRowAfterNextCurve) {
  Bench b;
  b.wb.formOption().control("overlap").setValue(1);
  b.menu("mnuSimulate");
  b.ins("V");
  b.wb.formIns().control("V").setText("0.04");  // a faster sweep: a larger second curve
  b.menu("mnuSimulate");
  b.menu("mnuNextCurve");  // back to curve 1
  ASSERT_EQ(b.wb.experiment.CurNo, 1);
  const std::string path = b.scratch.file("first.csv");
  b.menu("mnuExport", path);
  std::istringstream lines(Contents(path));
  std::string line;
  int i = 0;
  while (std::getline(lines, line)) {
    ++i;
    ASSERT_EQ(line.back(), '\r');
    EXPECT_EQ(line.substr(0, line.size() - 1), PrintLine().number(b.wb.store.XData(i)).text(",").zone().number(b.wb.store.YData(1, i)).str());
  }
  EXPECT_EQ(i, 121);
}

TEST(FileCommands, FailedExportOrSaveKeepsTheOldFileAndSaysNothing) {
  Bench b;
  b.menu("mnuSimulate");
  const std::string path = b.scratch.file("keep.csv");
  Write(path, "the good curve");
  b.wb.experiment.Last = 4001;  // a range beyond the store
  b.menu("mnuExport", path);
  EXPECT_EQ(Contents(path), "the good curve");
  EXPECT_EQ(b.scratch.entries(), 1);
  b.menu("mnuSave", b.scratch.dir.string());  // a folder is no file
  b.menu("mnuExport");                        // cancelled
  b.menu("mnuSave");
  EXPECT_TRUE(b.messages().empty());
  EXPECT_EQ(b.scratch.entries(), 1);
}

TEST(FileCommands, SaveWritesTheCommittedExperiment) {
  Bench b;
  b.menu("mnuSimulate");
  b.wb.formIns().control("Estart").setText("0.9");  // not committed: not in the file
  const std::string path = b.scratch.file("run.par");
  b.menu("mnuSave", path);
  EXPECT_EQ(b.platform.files.asked.back().filter, "parameter (*.par)|*.par|all|*.*");
  EXPECT_EQ(b.platform.files.asked.back().mode, DialogMode::Save);
  const std::string text = Contents(path);
  EXPECT_EQ(text.rfind(
                "Technique :\r\n 1 \r\nMechisim :\r\n 1 \r\nElectorde\r\n 1 \r\nE start :\r\n 0.3 \r\nE end :\r\n-0.3 \r\n"
            "E Step :\r\n 0.005 \r\n",
                0),
            0u);
  EXPECT_NE(text.find("No. OF DATA :\r\n 121 \r\nNUMBER OF SPECIES :\r\n 2 \r\nSpecies \r\n 1 \r\n"), std::string::npos);
}

}  // namespace
}  // namespace voltrix::test
