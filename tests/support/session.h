#pragma once
// The one set-up of a workbench for tests: the command line in process. A
// script names forms, controls and menu commands as a user's session would
// ("set FormIns.V=0.1; menu mnuSimulate"); what the result window prints
// comes back on out, every message box on err as "message: TEXT".
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>

#include "cli.h"

namespace voltrix::test {

// The reference set-up of the analytical engine: mechanism 1 with E0 0 V and
// no pre-equilibration, so that B starts at 0; and the same couple for the
// digital engine, swept at 0.1 V/s.
inline const std::string kAnalytical = "click FormMech.CheckDigital; set FormExpr.Eze(1)=0; set FormExpr.CheckPreEqu=0; ";
inline const std::string kDigital = "set FormExpr.Eze(1)=0; set FormExpr.CheckPreEqu=0; set FormIns.V=0.1; ";

struct Session {
  std::ostringstream out, err;
  Cli cli{out, err};
  Workbench& wb = cli.workbench();
  Experiment& e = wb.experiment;
  CurveStore& s = wb.store;

  explicit Session(const std::string& script = "") { run(script); }
  // Statements separated by "; " or by line ends; a bad one fails the test.
  void run(std::string script) {
    for (std::size_t at; (at = script.find("; ")) != std::string::npos;) script.replace(at, 2, "\n");
    for (const std::string& statement : ScriptStatements(script)) cli.run(statement);
  }
  int points() const { return static_cast<int>(e.NData.value()); }
  // A point of the curve in hand, or of another row.
  double y(int i, int row = 0) { return s.YData(row ? row : static_cast<long>(e.CurNo), i); }
  // The point of largest size of the curve in hand, the first on ties.
  int peak() {
    const double* row = s.YData.row(static_cast<long>(e.CurNo));
    const auto smaller = [](double a, double b) { return std::fabs(a) < std::fabs(b); };
    return static_cast<int>(std::max_element(row + 1, row + points() + 1, smaller) - row);
  }
};

// Checks the sessions of a transcript (a file under tests/): each block of
// "> statement" lines, up to an empty line, must show the lines that follow
// the statements, in their order; "#" starts a comment line, "$DATA" stands
// for the folder tests/. Blanks at the end of a line are not compared.
inline void CheckTranscript(const std::string& name) {
  std::ifstream file(std::string(VOLTRIX_TEST_DATA) + "/" + name);
  ASSERT_TRUE(file.is_open()) << name;
  const auto trimmed = [](std::string text) {
    for (std::size_t at; (at = text.find(" \n")) != std::string::npos;) text.erase(at, 1);
    return text;
  };
  std::string line, script, expected;
  for (int number = 1, start = 1; std::getline(file, line); ++number) {
    const bool statement = line.rfind("> ", 0) == 0;
    start = statement && script.empty() ? number : start;
    script += statement ? line.substr(2) + "\n" : "";
    expected += !statement && !line.empty() && line[0] != '#' ? line + "\n" : "";
    if (!line.empty() || script.empty()) continue;
    for (std::size_t at; (at = script.find("$DATA")) != std::string::npos;) script.replace(at, 5, VOLTRIX_TEST_DATA);
    Session s(script);
    const std::string shown = trimmed("\n" + s.out.str() + s.err.str());
    std::size_t at = 0;
    std::istringstream lines(expected);
    for (std::string want; std::getline(lines, want);) {
      at = shown.find(trimmed("\n" + want + "\n"), at) + 1;
      ASSERT_NE(at, 0u) << name << ":" << start << " does not show \"" << want << "\" in order:\n" << shown;
    }
    script.clear();
    expected.clear();
  }
  ASSERT_TRUE(script.empty()) << name << " must end with an empty line";
}

}  // namespace voltrix::test
