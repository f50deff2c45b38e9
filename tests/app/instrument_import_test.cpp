// "&Import Data..." and the CLI's import statement on instrument files: the
// settings the file states reach the forms, a simulation afterwards runs on
// the very grid of the imported curve, and a file that cannot be read
// changes nothing.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "app/commands.h"
#include "app/import_file.h"
#include "cli/run_cli.h"
#include "support/headless_workbench.h"
#include "ui/commit.h"
#include "ui/form_ins.h"
#include "ui/form_option.h"
#include "ui/form_tech.h"
#include "ui/text_window.h"

namespace voltrix::test {
namespace {

const std::filesystem::path kFixtures = std::filesystem::path(__FILE__).parent_path().parent_path() / "files" / "fixtures";

struct Bench : HeadlessWorkbench {
  Bench() { BindMenuCommands(wb); }
  void menu(const std::string& name, const std::string& fixture = "") {
    if (!fixture.empty()) platform.files.answers.push_back((kFixtures / fixture).string());
    ASSERT_TRUE(RunMenuCommand(wb, name)) << name;
  }
  std::string text(const std::string& form, const std::string& control, int index = -1) {
    return wb.formNamed(form)->find(control, index)->text();
  }
  // Everything an import may touch: the curve range, row 1 and every box of the forms.
  std::map<std::string, std::string> state() {
    std::map<std::string, std::string> s;
    const Experiment& e = wb.experiment;
    s["range"] = std::to_string(e.NData.value()) + " " + std::to_string(e.First.value()) + " " + std::to_string(e.Last.value());
    for (int i = 1; i <= 130; ++i) s["row " + std::to_string(i)] = std::to_string(wb.store.XData(i)) + " " + std::to_string(wb.store.YData(1, i));
    for (const char* form : {"FormIns", "FormTech"})
      for (const Control* c : wb.formNamed(form)->controls())
        s[std::string(form) + "." + c->fullName()] = c->text() + "|" + std::to_string(c->value());
    return s;
  }
};

struct FormCase {
  const char* file;
  const char* form;
  const char* control;
  int index;
  const char* text;  // or the value of an option button, "1"
};

TEST(InstrumentImport, WhatTheFileStatesGoesOntoTheForms) {
  const FormCase cases[] = {
      {"chi_cv.csv", "FormIns", "Estart", -1, "0.2"},    {"chi_cv.csv", "FormIns", "Eend", -1, "-0.2"},
      {"chi_cv.csv", "FormIns", "Estep", -1, "0.05"},    {"chi_cv.csv", "FormIns", "ComboScan", -1, "cycle"},
      {"chi_cv.csv", "FormIns", "V", -1, "0.1"},
      {"chi_cv.csv", "FormIns", "td", -1, "0.5"},  // a step of 50 mV at 0.1 V/s takes 0.5 s
      {"gamry_dpv.DTA", "FormTech", "optTech", 4, "1"},  // differential pulse
      {"gamry_dpv.DTA", "FormIns", "Epulse", -1, "-0.025"},  // 25 mV the way of the scan, towards -0.04 V
      {"gamry_dpv.DTA", "FormIns", "tp", -1, "0.05"},   {"gamry_dpv.DTA", "FormIns", "ComboScan", -1, "single"},
      {"eclab_cv.mpt", "FormIns", "ARE", -1, "0.071"},  {"gamry_cv.DTA", "FormIns", "ARE", -1, "0.5"},
      {"gamry_cv.DTA", "FormIns", "V", -1, "0.05"},     // 50 mV/s
      {"chi_swv.txt", "FormTech", "optTech", 5, "1"},   // square wave
      {"chi_swv.txt", "FormIns", "Epulse", -1, "-0.05"},  // the wave spans twice the 25 mV amplitude
      {"chi_swv.txt", "FormIns", "TextF", -1, "15"},
      {"chi_swv.txt", "FormIns", "tp", -1, "0.0333333333333333"},  // half a period of 15 Hz
      {"generic_lsv.csv", "FormIns", "txttemp", -1, "30"}, {"generic_lsv.csv", "FormIns", "ARE", -1, "0.0707"},
  };
  for (const FormCase& c : cases) {
    SCOPED_TRACE(std::string(c.file) + " " + c.control);
    Bench b;
    b.menu("mnuImport", c.file);
    ASSERT_TRUE(b.messages().empty()) << b.messages().front();
    const Control* control = b.wb.formNamed(c.form)->find(c.control, c.index);
    const std::string shown = control->kind() == ControlKind::OptionButton ? std::to_string(control->value()) : control->text();
    EXPECT_EQ(shown, c.text);
  }
}

TEST(InstrumentImport, SimulateAfterAnImportRunsOnTheImportedGrid) {
  for (const char* file : {"chi_cv.csv", "eclab_cv.mpt", "eclab_lsv.txt", "gamry_cv.DTA", "gamry_dpv.DTA",
                           "autolab_cv.txt", "palmsens_cv.csv", "generic_lsv.csv", "gamry_cycles.DTA",
                           "chi_swv.txt"}) {
    SCOPED_TRACE(file);
    Bench b;
    b.wb.formOption().control("overlap").setValue(1);
    b.menu("mnuImport", file);
    const int n = static_cast<int>(b.wb.experiment.NData.value());
    std::vector<double> imported;
    for (int i = 1; i <= n; ++i) imported.push_back(b.wb.store.XData(i));
    b.menu("mnuSimulate");
    ASSERT_TRUE(b.messages().empty()) << b.messages().front();
    EXPECT_EQ(b.wb.experiment.NData, n);
    for (int i = 1; i <= n; ++i) EXPECT_EQ(b.wb.store.XData(i), imported[static_cast<std::size_t>(i - 1)]) << i;
  }
}

TEST(InstrumentImport, TheResultWindowSaysWhatWasReadAndWhenTheStepGrewCoarser) {
  Bench b;
  b.menu("mnuImport", "chi_cv.csv");
  const std::vector<std::string>& lines = b.wb.formResult().lines();
  for (const char* line : {"File format =               CH Instruments text, UTF-8", "Number of data point =       18 ",
                           "E step =       0.05 ", "Note: the header's Segment is 4; the data hold 2 sweeps"})
    EXPECT_NE(std::find(lines.begin(), lines.end(), std::string(line)), lines.end()) << line;
  // A 4 V battery cycle every 0.1 mV: 80001 points, far beyond 4000.
  const std::string path = (std::filesystem::temp_directory_path() / ("battery-" + std::to_string(::getpid()) + ".txt")).string();
  std::ofstream(path) << [] {
    std::string t = "E (V)\tI (mA)\n";
    for (int k = -40000; k <= 40000; ++k) t += std::to_string(4 - std::abs(k) * 1e-4) + "\t1\n";
    return t;
  }();
  b.platform.files.answers.push_back(path);
  b.menu("mnuImport");
  std::filesystem::remove(path);
  const std::vector<std::string>& report = b.wb.formResult().lines();
  EXPECT_EQ(report[report.size() - 2], "E step made coarser than the data's 0.0001 V: the cycle would pass 4000 points");
  EXPECT_EQ(report.back(), "Settings taken: E start 0 V, E end 4.0005 V, E step 0.0021 V, scan cycle");
  EXPECT_EQ(b.wb.experiment.NData, 3812);
}

TEST(InstrumentImport, FilesThatCannotBeReadChangeNothing) {
  Bench b;
  b.menu("mnuSimulate");
  const auto before = b.state();
  b.menu("mnuImport", "binary.mpr");
  b.menu("mnuImport", "cut_short.mpt");
  b.platform.cycles.answers.push_back(std::nullopt);  // the dialog cancelled: no message
  b.menu("mnuImport", "gamry_cv.DTA");
  EXPECT_FALSE(ImportCurveFile(b.wb, (kFixtures / "eclab_cv.mpt").string(), ImportRequest{3, {}}));
  ASSERT_EQ(b.messages().size(), 3u);
  EXPECT_EQ(b.messages()[2], "ReadData Error: BioLogic EC-Lab ASCII: the file holds 2 cycles; there is no cycle 3");
  EXPECT_EQ(b.state(), before);
}

TEST(InstrumentImport, SeveralCyclesAreOfferedWithTheFirstCompleteOneSuggested) {
  Bench b;
  b.platform.cycles.answers.push_back(1);
  b.menu("mnuImport", "palmsens_cv.csv");
  ASSERT_EQ(b.platform.cycles.asked.size(), 1u);
  EXPECT_EQ(b.platform.cycles.asked[0], (std::vector<std::string>{
                                            "CV i vs E Scan 1: -0.2 V to 0.2 V to -0.2 V, 9 points",
                                            "CV i vs E Scan 2: -0.2 V to 0.2 V, 5 points (incomplete)"}));
  EXPECT_EQ(b.wb.experiment.NData, 5);  // the second scan, one sweep
  EXPECT_EQ(b.text("FormIns", "ComboScan"), "single");
}

TEST(ImportStatement, TakesACycleAndColumnsAndFailsWithTheMessage) {
  const std::string dir = kFixtures.string() + "/";
  const CliResult second = RunCli({"import " + dir + "eclab_cv.mpt cycle=2", "show curves"});
  EXPECT_EQ(second.status, 0);
  EXPECT_NE(second.out.find("\nX,Y1\n0.5,0.003\n"), std::string::npos) << second.out;  // 2 (1 + E) mA
  const CliResult applied = RunCli({"import " + dir + "autolab_cv.txt x=\"Potential applied (V)\"", "show curves"});
  EXPECT_NE(applied.out.find("Columns =     Potential applied (V), WE(1).Current (A)"), std::string::npos);
  const CliResult binary = RunCli({"import " + dir + "binary.mpr", "show experiment"});
  EXPECT_EQ(binary.status, 1);
  EXPECT_EQ(binary.err.rfind("message: ReadData Error: BioLogic EC-Lab binary file (.mpr)", 0), 0u) << binary.err;
  EXPECT_EQ(binary.out, "");  // the run stops at the failed import
  EXPECT_EQ(RunCli({"import " + dir + "chi_cv.csv cycle=0"}).status, 2);
}

}  // namespace
}  // namespace voltrix::test
