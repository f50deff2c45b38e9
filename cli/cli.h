#pragma once
// voltrix-cli: drives the forms and menus of one workbench by name.
//   set Form.control[(i)]=TEXT   click Form.control[(i)]   menu mnuName [FILE]
//   show experiment   show control Form.control[(i)]   show curves [FILE]   help
// Result-window lines go to standard output as printed; message boxes go to
// standard error as "message: TEXT".
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
class StatementError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Cli {
 public:
  Cli(std::ostream& out, std::ostream& err);

  // Runs one statement; raises StatementError.
  void run(const std::string& statement);
  // Runs a whole command line; returns the exit status.
  int main(const std::vector<std::string>& args);

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

 private:
  void set(const std::string& rest);
  void click(const std::string& rest);
  void menu(const std::string& rest);
  void show(const std::string& rest);
  void showExperiment();
  void showControl(const std::string& target);
  void showCurves(const std::string& file);
  Control& target(const std::string& targetName);

  std::ostream& out_;
  std::ostream& err_;
  HeadlessPlatform platform_;
  Workbench wb_;
  std::map<std::string, std::pair<std::string, Handler>> extra_;
};

// Splits a script into statements: one per line, "#" starts a comment.
std::vector<std::string> ScriptStatements(const std::string& script);

}  // namespace voltrix
