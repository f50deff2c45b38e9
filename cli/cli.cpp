#include "cli.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>

#include "app/commands.h"
#include "files/safe_write.h"
#include "fit/fit_residual.h"
#include "model/number_format.h"
#include "show_experiment.h"
#include "ui/main_form.h"
#include "ui/text_window.h"

namespace voltrix {

namespace {

std::string Trim(const std::string& s) {
  const auto b = s.find_first_not_of(" \t\r");
  if (b == std::string::npos) return {};
  const auto e = s.find_last_not_of(" \t\r");
  return s.substr(b, e - b + 1);
}

// "Form.control" or "Form.control(i)".
struct Target {
  std::string form, control;
  int index = -1;
};

Target ParseTarget(const std::string& targetName) {
  Target t;
  const auto dot = targetName.find('.');
  if (dot == std::string::npos || dot == 0) throw StatementError("expected Form.control, got \"" + targetName + "\"");
  t.form = targetName.substr(0, dot);
  std::string rest = targetName.substr(dot + 1);
  const auto open = rest.find('(');
  if (open != std::string::npos) {
    if (rest.back() != ')') throw StatementError("malformed index in \"" + targetName + "\"");
    const std::string digits = rest.substr(open + 1, rest.size() - open - 2);
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos)
      throw StatementError("malformed index in \"" + targetName + "\"");
    t.index = std::stoi(digits);
    rest = rest.substr(0, open);
  }
  if (rest.empty()) throw StatementError("expected Form.control, got \"" + targetName + "\"");
  t.control = rest;
  return t;
}

std::string Unquote(const std::string& s) {
  if (s.size() >= 2 && s.front() == '"' && s.back() == '"') return s.substr(1, s.size() - 2);
  return s;
}

}  // namespace

std::vector<std::string> ScriptStatements(const std::string& script) {
  std::vector<std::string> out;
  std::istringstream in(script);
  std::string line;
  while (std::getline(in, line)) {
    for (std::size_t i = 0; i < line.size(); ++i)
      if (line[i] == '#' && (i == 0 || line[i - 1] == ' ' || line[i - 1] == '\t')) {
        line.resize(i);
        break;
      }
    line = Trim(line);
    if (!line.empty()) out.push_back(line);
  }
  return out;
}

Cli::Cli(std::ostream& out, std::ostream& err) : out_(out), err_(err), wb_(platform_.platform()) {
  platform_.messages.onShow = [this](const std::string& text) {
    err_ << "message: " << text << std::endl;
    ++errors_;
  };
  auto echo = [this](const std::string* line) {
    if (line) out_ << *line << std::endl;
  };
  wb_.formResult().addLineObserver(echo);
  wb_.formAbout().addLineObserver(echo);
  BindMenuCommands(wb_);
  wb_.platform.writeFailed = [this](const std::string& file, const std::string& reason) {
    err_ << "voltrix-cli: cannot write " << file << ": " << reason << std::endl;
    ++errors_;
  };
}

void Cli::addStatement(const std::string& word, const std::string& usage, Handler handler) {
  extra_[word] = {usage, std::move(handler)};
}

Control& Cli::target(const std::string& targetName) {
  const Target t = ParseTarget(targetName);
  Form* form = wb_.formNamed(t.form);
  if (!form) throw StatementError("unknown form " + t.form);
  if (!form->hasControlNamed(t.control)) throw StatementError("unknown control " + t.form + "." + t.control);
  Control* c = form->find(t.control, t.index);
  if (!c) throw StatementError("unknown index " + targetName);
  return *c;
}

void Cli::run(const std::string& statement) {
  try {
    dispatch(statement);
  } catch (const RunError& err) {
    wb_.platform.messages.show("Error: " + err.description());
  }
}

void Cli::dispatch(const std::string& statement) {
  const std::string s = Trim(statement);
  const auto space = s.find_first_of(" \t");
  const std::string word = s.substr(0, space);
  const std::string rest = space == std::string::npos ? std::string() : Trim(s.substr(space));
  if (word == "set") return set(rest);
  if (word == "click") return click(rest);
  if (word == "menu") return menu(rest);
  if (word == "show") return show(rest);
  if (word == "help") {
    out_ << (rest.empty() ? help() : help(rest));
    return;
  }
  if (auto it = extra_.find(word); it != extra_.end()) return it->second.second(*this, rest);
  throw StatementError("unknown statement \"" + s + "\"");
}

void Cli::set(const std::string& rest) {
  const auto eq = rest.find('=');
  if (eq == std::string::npos) throw StatementError("expected set Form.control=TEXT, got \"set " + rest + "\"");
  Control& c = target(Trim(rest.substr(0, eq)));
  const std::string text = Unquote(rest.substr(eq + 1));
  switch (c.kind()) {
    case ControlKind::TextBox:
      c.setText(text);
      return;
    case ControlKind::ComboBox:
      if (!c.state().editable &&
          std::find(c.items().begin(), c.items().end(), text) == c.items().end())
        throw StatementError("no item \"" + text + "\" in " + c.form().name() + "." + c.fullName());
      c.setText(text);
      return;
    case ControlKind::CheckBox:
      if (text != "0" && text != "1") throw StatementError("a check box takes 0 or 1: " + c.fullName());
      c.setValue(text == "1");
      return;
    case ControlKind::OptionButton:
      if (text != "1") throw StatementError("an option button is selected with 1: " + c.fullName());
      c.setValue(1);
      return;
    default:
      throw StatementError(std::string("a ") + KindName(c.kind()) + " cannot be set: " + c.fullName());
  }
}

void Cli::click(const std::string& rest) {
  Control& c = target(rest);
  if (c.kind() != ControlKind::CommandButton && c.kind() != ControlKind::CheckBox &&
      c.kind() != ControlKind::OptionButton)
    throw StatementError(std::string("a ") + KindName(c.kind()) + " cannot be clicked: " + c.fullName());
  c.click();
}

void Cli::menu(const std::string& rest) {
  std::istringstream words(rest);
  std::string name, file;
  words >> name;
  std::getline(words, file);
  file = Unquote(Trim(file));
  Control* item = wb_.mainForm().find(name);
  if (name.empty() || !item || item->kind() != ControlKind::Menu) throw StatementError("unknown menu command " + name);
  if (item->caption() == "-") throw StatementError("a separator is no command: " + name);
  platform_.files.answers.clear();
  if (!file.empty()) platform_.files.answers.push_back(file);
  const bool ran = RunMenuCommand(wb_, name);
  platform_.files.answers.clear();
  if (!ran) throw StatementError("menu command " + name + " is disabled");
}

void Cli::show(const std::string& rest) {
  std::istringstream words(rest);
  std::string what, arg;
  words >> what;
  std::getline(words, arg);
  arg = Unquote(Trim(arg));
  if (what == "experiment" && arg.empty()) return showExperiment();
  if (what == "control" && !arg.empty()) return showControl(arg);
  if (what == "curves") return showCurves(arg);
  throw StatementError("unknown statement \"show " + rest + "\"");
}

void Cli::showExperiment() { WriteExperiment(out_, wb_.experiment); }

void Cli::showControl(const std::string& targetName) {
  const Control& c = target(targetName);
  out_ << targetName << ": text=\"" << c.shownText() << "\" value=" << c.value();
  if (c.kind() == ControlKind::ComboBox) out_ << " index=" << c.listIndex();
  out_ << " visible=" << (c.visible() ? 1 : 0) << " enabled=" << (c.enabled() ? 1 : 0) << "\n";
}

void Cli::showCurves(const std::string& file) {
  const Experiment& e = wb_.experiment;
  const CurveStore& s = wb_.store;
  std::ostringstream csv;
  const int curves = Count(e.NCurves);
  // Data minus fit, only while a fit's residual stands.
  const std::vector<double> residual = CurrentResidual(wb_);
  csv << "X";
  for (int r = 1; r <= curves; ++r) csv << ",Y" << r;
  csv << (residual.empty() ? "" : ",Residual") << "\n";
  try {
    // Index 0 has no meaning: before any run or import there is no point.
    for (int i = std::max(1, static_cast<int>(e.First)); i <= static_cast<int>(e.Last); ++i) {
      csv << GeneralText(s.XData(i));
      for (int r = 1; r <= curves; ++r) csv << "," << GeneralText(s.YData(r, i));
      if (!residual.empty()) csv << "," << (i < static_cast<int>(residual.size()) ? GeneralText(residual[i]) : "");
      csv << "\n";
    }
  } catch (const RunError& err) {
    throw StatementError("show curves: " + err.description());
  }
  if (file.empty()) {
    out_ << csv.str();
    return;
  }
  const WriteOutcome w = WriteFileSafely(file, [&csv](std::ostream& f) { return bool(f << csv.str()); });
  if (!w) ReportWriteFailure(wb_.platform, file, w.reason);
}

int Cli::main(const std::vector<std::string>& args) {
  try {
    const std::vector<std::string> statements = readOptions(args);
    if (usageOnly_) {
      out_ << usage();
      return 0;
    }
    for (std::size_t i = 0; i < statements.size(); ++i) {
      const int before = errors_;
      run(statements[i]);
      if (finished()) break;
      if (errors_ == before || keepGoing_) continue;
      if (i + 1 < statements.size())
        err_ << "voltrix-cli: stopped after \"" << statements[i] << "\" ended in an error (-k keeps going)" << std::endl;
      break;
    }
  } catch (const StatementError& e) {
    out_.flush();
    err_ << "voltrix-cli: " << e.what() << std::endl;
    return 2;
  }
  out_.flush();
  return errors_ > 0 ? 1 : 0;
}

// Options come first; the statements of a script come before those of the
// arguments. Nothing to run at all asks for the usage.
std::vector<std::string> Cli::readOptions(const std::vector<std::string>& args) {
  std::vector<std::string> statements;
  std::size_t i = 0;
  bool script = false;
  for (; i < args.size() && !args[i].empty() && args[i][0] == '-'; ++i) {
    const std::string& option = args[i];
    if (option == "-h" || option == "--help") {
      usageOnly_ = true;
      return {};
    }
    if (option == "--version") {
      out_ << "voltrix-cli (Voltrix) " << kVersion << "\n";
      usageOnly_ = false;
      return {};
    }
    if (option == "-k" || option == "--keep-going") {
      keepGoing_ = true;
      continue;
    }
    if (option != "-f") throw StatementError("unknown option " + option + " (voltrix-cli --help lists them)");
    if (i + 1 >= args.size()) throw StatementError("-f needs a script file");
    const std::string& file = args[++i];
    std::stringstream buf;
    if (file == "-") {
      buf << std::cin.rdbuf();
    } else {
      std::ifstream f(file, std::ios::binary);
      if (!f) throw StatementError("cannot read script " + file);
      buf << f.rdbuf();
    }
    for (std::string& s : ScriptStatements(buf.str())) statements.push_back(std::move(s));
    script = true;
  }
  for (; i < args.size(); ++i) statements.push_back(args[i]);
  usageOnly_ = statements.empty() && !script;
  return statements;
}

}  // namespace voltrix
