// The menu commands end to end, as a user's session: the run and its clock,
// the display commands, the curve rows of each quantity, the curve
// transforms, and the files a session writes and reads.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "app/commands.h"
#include "model/number_format.h"
#include "support/expect_close.h"
#include "support/session.h"
#include "ui/form_ins.h"
#include "ui/main_form.h"
#include "ui/text_window.h"

namespace voltrix::test {
namespace {

namespace fs = std::filesystem;

struct Scratch {
  fs::path dir = fs::temp_directory_path() / ("voltrix-commands-" + std::to_string(::getpid()));
  Scratch() { fs::create_directories(dir); }
  ~Scratch() { fs::remove_all(dir); }
  std::string file(const std::string& name, const std::string& text = "") {
    const std::string path = (dir / name).string();
    if (!text.empty()) std::ofstream(path, std::ios::binary) << text;
    return path;
  }
};

// What a session shows, on the result window or in a message box.
TEST(MenuCommands, WhatASessionShows) { CheckTranscript("app/sessions.txt"); }

// A failed import of a file too long for the store keeps the curve's range.
TEST(MenuCommands, AFailedImportKeepsTheCurve) {
  Scratch scratch;
  std::string tooLong;
  for (int i = 1; i <= 4001; ++i) tooLong += std::to_string(i) + ",1\n";
  Session s("menu mnuSimulate; menu mnuImport " + scratch.file("long.csv", tooLong));
  EXPECT_EQ(s.err.str(), "message: ReadData Error: Subscript out of range\n");
  EXPECT_EQ(s.e.NData, 121);
  EXPECT_EQ(s.e.Last, 121);
}

// "&Simulate" reads the clock, shows the hourglass, commits, runs and draws;
// the time covers all of it, and "&Time" prints it.
TEST(MenuCommands, SimulateTimesTheWholeCommandUnderTheHourglass) {
  struct Clock : voltrix::Clock {
    double seconds() override { return reading += 6.25; }
    double reading = 100;
  } clock;
  HeadlessPlatform hp;
  Workbench wb(Platform{hp.messages, hp.files, clock, hp.pointer, hp.plot, hp.picture});
  BindMenuCommands(wb);
  EXPECT_FALSE(RunMenuCommand(wb, "mnuTime"));  // "&Display" waits for a curve
  wb.mainForm().menu("mnuDisplay").enabled(true);
  RunMenuCommand(wb, "mnuTime");
  RunMenuCommand(wb, "mnuSimulate");
  RunMenuCommand(wb, "mnuTime");
  EXPECT_EQ(wb.formResult().lines(), (std::vector<std::string>{"time = s", "time =  6.25 s"}));
  EXPECT_EQ(hp.pointer.shapes, (std::vector<int>{11, 0}));
  RunMenuCommand(wb, "mnuClear");
  EXPECT_TRUE(wb.formResult().lines().empty());
  EXPECT_GT(wb.store.YData(1, 67), 0);  // the curves stay
}

// Resistance and conductance of the solution from the surface
// concentrations: G = A / Dis (C_el lambda_el + sum C_i lambda_i), R = 1 / G.
TEST(MenuCommands, QuantitiesOfTheCurveRows) {
  Session s("set FormIns.TextDis=2; menu mnuSimulate");
  const auto solution = [&](int i) { return 0.01 * 100 + s.s.SurfC(1, i) * 100 + s.s.SurfC(2, i) * 200; };
  for (int i = 1; i <= 121; i += 30) EXPECT_NEAR(s.s.SurfC(1, i) + s.s.SurfC(2, i), s.e.C(1) + s.e.C(2), 1e-12) << i;
  s.run("set formOption.ComboY=conductance Cond; click formOption.cmdOK");
  for (int i = 1; i <= 121; i += 20) EXPECT_CLOSE(s.y(i), solution(i) / 2, 1e-12) << i;
  s.run("set formOption.ComboY=resistance R; click formOption.cmdOK");
  for (int i = 1; i <= 121; i += 20) EXPECT_CLOSE(s.y(i), 2 / solution(i), 1e-12) << i;
  // "&Plot" draws what the rows hold: a quantity waits for the form's OK.
  s.run("set formOption.ComboY=current I; menu mnuPlot");
  EXPECT_CLOSE(s.y(60), 2 / solution(60), 1e-12);
  s.run("click formOption.cmdOK");
  EXPECT_EQ(s.y(121), s.s.YSim(2, 121));
}

// The transforms of "&Analysis" act on the curve in hand (the X axis on all):
// two sign changes and a scaling back restore it; the derivative of the
// integral gives neighbour means; after 10X a derivative is ten times smaller.
TEST(MenuCommands, CurveTransformsAndTheirInverses) {
  Session s(kAnalytical + "set formOption.overlap=1; menu mnuSimulate; menu mnuSimulate");
  const std::vector<double> x(s.s.XData.data(), s.s.XData.data() + 122), y(s.s.YData.row(2), s.s.YData.row(2) + 122);
  s.run("menu mnuMinusX");
  EXPECT_EQ(s.s.XData(1), -0.3);
  s.run("menu mnuMinusX; menu mnu01X; menu mnu10X; menu mnu1000X; menu mnu0001X; menu mnuMinusY; menu mnu1000Y; menu mnu0001Y; menu mnu10Y; menu mnu01Y");
  for (int i = 1; i <= 121; ++i) {
    ASSERT_NEAR(s.s.XData(i), x[i], 1e-15);
    ASSERT_NEAR(s.y(i, 2), -y[i], 1e-15 * std::fabs(y[i]));
    ASSERT_EQ(s.y(i, 1), y[i]);  // the other curve stays
  }
  s.run("menu mnuMinusY; menu mnuIntegral; menu mnuDerivative");
  for (int i = 2; i < 121; ++i) ASSERT_NEAR(s.y(i), (y[i] + y[i + 1]) / 2, 1e-9 * std::fabs(y[i])) << i;
  Session plain(kAnalytical + "menu mnuSimulate; menu mnuDerivative"), scaled(kAnalytical + "menu mnuSimulate; menu mnu10X; menu mnuDerivative");
  for (int i = 1; i <= 121; ++i) ASSERT_NEAR(scaled.y(i), plain.y(i) / 10, 1e-12 * std::fabs(plain.y(i)));
  Session semi(kAnalytical + "menu mnuSimulate; menu mnuSemiInte"), steps(kAnalytical + "menu mnuSimulate; menu mnuIntegral; menu mnuSemi");
  for (int i = 1; i <= 121; ++i) ASSERT_EQ(semi.y(i), steps.y(i));
  EXPECT_CLOSE(semi.y(121), semi.y(111), 0.02);  // the semi-integral of a reversible sweep levels off
  Session flat(kAnalytical + "menu mnuSimulate");
  flat.s.XData(2) = flat.s.XData(1);
  flat.run("menu mnuDerivative");
  EXPECT_NE(flat.err.str().find("Division by zero"), std::string::npos);
  EXPECT_EQ(flat.y(60), Session(kAnalytical + "menu mnuSimulate").y(60));
}

// Export and import give the same curve to 15 digits; the export writes the
// curve in hand; a failed write keeps the old file.
TEST(MenuCommands, FilesOfASession) {
  Scratch scratch;
  const std::string path = scratch.file("cycle.csv");
  Session a(kAnalytical + "set FormIns.ComboScan=cycle; set formOption.overlap=1; menu mnuSimulate; set FormIns.V=0.04; "
            "menu mnuSimulate; menu mnuNextCurve; menu mnuExport " + path);
  Session b("menu mnuImport " + path);
  EXPECT_EQ(b.e.NData, 242);
  EXPECT_EQ(b.wb.formIns().control("Estart").text(), "0.3");
  for (int i = 1; i <= 242; ++i) {
    ASSERT_NEAR(b.s.XData(i), a.s.XData(i), 1e-15);
    ASSERT_NEAR(b.y(i), a.y(i, 1), 5e-15 * std::fabs(a.y(i, 1)));
  }
  const std::string keep = scratch.file("keep.par", "the good file");
  Session c("menu mnuSimulate");
  c.e.Last = 4001;  // a range beyond the store
  c.run("menu mnuExport " + keep + "; menu mnuSave " + scratch.dir.string());
  // The desktop commands stay silent; a script is told of both failures.
  EXPECT_EQ(c.err.str(), "voltrix-cli: cannot write " + keep + ": the data could not be written whole\n" +
                             "voltrix-cli: cannot write " + scratch.dir.string() + ": it is a folder\n");
  std::ifstream kept(keep);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), "the good file");
  // Save writes the committed experiment, not what stands in a form since.
  c.run("set FormIns.Estart=0.9; menu mnuSave " + keep);
  std::ifstream saved(keep, std::ios::binary);
  const std::string text(std::istreambuf_iterator<char>(saved), {});
  EXPECT_EQ(text.rfind("Technique :\r\n 1 \r\nMechisim :\r\n 0 \r\nElectorde\r\n 1 \r\nE start :\r\n 0.3 \r\n", 0), 0u);
  EXPECT_NE(text.find("No. OF DATA :\r\n 121 \r\nNUMBER OF SPECIES :\r\n 2 \r\n"), std::string::npos);
  EXPECT_EQ(std::distance(fs::directory_iterator(scratch.dir), fs::directory_iterator()), 2);
}

}  // namespace
}  // namespace voltrix::test
