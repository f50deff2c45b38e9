#pragma once
// voltrix-cli: drives the forms and menus of one workbench by name.
//   set Form.control[(i)]=TEXT   click Form.control[(i)]   menu mnuName [FILE]
//   show experiment   show control Form.control[(i)]   show curves [FILE]
//   help [FORM | fit | menu]
// Result-window lines go to standard output as printed; message boxes go to
// standard error as "message: TEXT".
//
// Exit status: 0 when all went well; 1 when a statement ended in an error,
// that is, raised a message box (every message of the program reports a
// fault) or could not write a file; 2 for a malformed statement. The CLI
// stops after the first statement that ended in an error unless -k is given.
// A statement of another file reports a fault through the workbench's
// message box, or ReportWriteFailure(platform, file, reason) for a file it
// could not write; both are counted here.
#include <functional>
#include <iosfwd>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "model/controls.h"
#include "model/headless_platform.h"
#include "ui/workbench.h"

namespace voltrix {

// A statement that cannot run: malformed, or naming an unknown form,
// control, index or command. The CLI stops with exit status 2.
inline constexpr const char* kVersion = "4.0";

class StatementError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Cli {
 public:
  Cli(std::ostream& out, std::ostream& err);

  // Runs one statement; raises StatementError. A run-time error that no
  // routine handled becomes an "Error: ..." message, as on the desktop.
  void run(const std::string& statement);
  // Runs a whole command line; returns the exit status.
  int main(const std::vector<std::string>& args);
  // Errors counted so far: messages shown and files not written.
  int errors() const { return errors_; }

  // Further statements, registered explicitly by the program that builds
  // the CLI (for example "plot FILE" where a renderer is linked).
  using Handler = std::function<void(Cli& cli, const std::string& rest)>;
  void addStatement(const std::string& word, const std::string& usage, Handler handler);

  Workbench& workbench() { return wb_; }
  HeadlessPlatform& platform() { return platform_; }
  std::ostream& out() { return out_; }
  bool finished() const { return wb_.exitRequested; }

  // The statements and menu commands the CLI knows, one per line.
  std::string help();
  // What "help ARG" prints: every control of a form, the fit slots, or the
  // menu commands with their state now. Raises StatementError for another ARG.
  std::string help(const std::string& topic);
  // The command line's own usage, for --help and a call without arguments.
  std::string usage();

 private:
  void set(const std::string& rest);
  void click(const std::string& rest);
  void menu(const std::string& rest);
  void show(const std::string& rest);
  void showExperiment();
  void showControl(const std::string& target);
  void showCurves(const std::string& file);
  Control& target(const std::string& targetName);
  void dispatch(const std::string& statement);
  std::string statementList();
  std::string helpForm(Form& form);
  std::string helpFit();
  std::string helpMenu();
  std::vector<std::string> readOptions(const std::vector<std::string>& args);

  std::ostream& out_;
  std::ostream& err_;
  HeadlessPlatform platform_;
  Workbench wb_;
  std::map<std::string, std::pair<std::string, Handler>> extra_;
  int errors_ = 0;
  bool keepGoing_ = false;
  bool usageOnly_ = false;
};

// Splits a script into statements: one per line, "#" starts a comment.
std::vector<std::string> ScriptStatements(const std::string& script);

}  // namespace voltrix
