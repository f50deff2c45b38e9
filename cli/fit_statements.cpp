#include "fit_statements.h"

#include <signal.h>

#include <atomic>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "app/fit_set_file.h"
#include "cli.h"
#include "fit/global_fit.h"
#include "model/fit_progress.h"
#include "model/number_format.h"
#include "statement_words.h"

namespace voltrix {

namespace {

// Set by SIGINT while a fit runs; the fit polls it between passes. A signal
// handler can touch nothing else.
std::atomic<bool> interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void OnInterrupt(int) { interrupted.store(true); }

// Ctrl-C during a fit stops it between passes; a second Ctrl-C ends the
// program as usual, for a single simulation that takes too long.
class InterruptProgress : public FitProgress {
 public:
  void begin() override {
    interrupted.store(false);
    struct sigaction on {};
    on.sa_handler = OnInterrupt;
    sigemptyset(&on.sa_mask);
    on.sa_flags = SA_RESETHAND;
    installed_ = sigaction(SIGINT, &on, &before_) == 0;
  }
  void report(const FitProgressReport&) override {}
  bool stopRequested() override { return interrupted.load(); }
  void end() override {
    if (installed_) sigaction(SIGINT, &before_, nullptr);
    installed_ = false;
  }

 private:
  struct sigaction before_ {};
  bool installed_ = false;
};

// "Form.control(i)=TEXT", checked on a workbench of its own so that a
// setting that cannot be made is refused when it is added.
FormSetting ParseSetting(const std::string& word) {
  const auto eq = word.find('=');
  const auto dot = word.find('.');
  if (eq == std::string::npos || dot == std::string::npos || dot > eq)
    throw StatementError("fitset: expected Form.control=TEXT, got \"" + word + "\"");
  FormSetting s{word.substr(0, dot), word.substr(dot + 1, eq - dot - 1), -1, word.substr(eq + 1)};
  const auto open = s.control.find('(');
  if (open != std::string::npos) {
    const std::string digits = s.control.substr(open + 1, s.control.size() - open - 2);
    if (s.control.back() != ')' || digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos)
      throw StatementError("fitset: malformed index in \"" + word + "\"");
    s.index = std::stoi(digits);
    s.control.resize(open);
  }
  return s;
}

std::vector<FormSetting> ParseSettings(const std::vector<std::string>& words, std::size_t from) {
  std::vector<FormSetting> settings;
  HeadlessPlatform platform;
  Workbench scratch(platform.platform());
  for (std::size_t i = from; i < words.size(); ++i) {
    settings.push_back(ParseSetting(words[i]));
    try {
      ApplySetting(scratch, settings.back());
    } catch (const RunError& err) {
      throw StatementError("fitset: " + err.description());
    }
  }
  return settings;
}

void AddToSet(Cli& cli, SetCurve curve) {
  std::vector<SetCurve>& set = cli.workbench().fits.curveSet;
  if (static_cast<int>(set.size()) >= kMostSetCurves)
    throw StatementError("fitset: the set holds at most " + std::to_string(kMostSetCurves) + " curves");
  if (curve.points() < 2) throw StatementError("fitset: " + curve.name + " has fewer than 2 points");
  set.push_back(std::move(curve));
}

// Read as "&Import Data..." reads it: an instrument file brings its own
// settings, which those typed after it override.
SetCurve ReadSetCurve(Cli& cli, const std::string& file) {
  try {
    return ReadSetCurveFile(cli.workbench(), file);
  } catch (const RunError& err) {
    throw StatementError("fitset add: " + file + ": " + err.description());
  }
}

SetCurve PlottedRow(Cli& cli, const std::string& word) {
  const Workbench& wb = cli.workbench();
  const int row = word.find_first_not_of("0123456789") == std::string::npos && !word.empty() ? std::stoi(word) : 0;
  if (row < 1 || row > Count(wb.experiment.NCurves)) throw StatementError("fitset row: no plotted row " + word);
  const int first = static_cast<int>(wb.experiment.First), last = static_cast<int>(wb.experiment.Last);
  SetCurve c;
  c.name = "row " + word;
  c.x.push_back(0);
  c.y.push_back(0);
  for (int i = std::max(first, 1); i <= last; ++i) {
    c.x.push_back(wb.store.XData(i));
    c.y.push_back(wb.store.YData(row, i));
  }
  return c;
}

std::string SettingText(const FormSetting& s) {
  return s.form + "." + s.control + (s.index >= 0 ? "(" + std::to_string(s.index) + ")" : "") + "=" + s.text;
}

void ListSet(Cli& cli) {
  const std::vector<SetCurve>& set = cli.workbench().fits.curveSet;
  for (std::size_t m = 0; m < set.size(); ++m) {
    const SetCurve& c = set[m];
    cli.out() << m + 1 << "  " << c.name << "  " << c.points() << " points";
    for (const FormSetting& s : c.settings) cli.out() << "  " << SettingText(s);
    if (!c.fitted.empty()) cli.out() << "  least square" << PlainNumber(c.leastSquare);
    cli.out() << "\n";
  }
  cli.out() << set.size() << " curves in the set\n";
}

// X, the data, the fitted curve and the residual of curve I of the set.
void WriteSetCurve(Cli& cli, const std::vector<std::string>& words) {
  const std::vector<SetCurve>& set = cli.workbench().fits.curveSet;
  const std::string& which = words.size() > 1 ? words[1] : std::string();
  const int m = which.find_first_not_of("0123456789") == std::string::npos && !which.empty() ? std::stoi(which) : 0;
  if (m < 1 || m > static_cast<int>(set.size())) throw StatementError("fitset curve: no curve " + which + " in the set");
  const SetCurve& c = set[m - 1];
  std::ostringstream csv;
  csv << (c.fitted.empty() ? "X,Y\n" : "X,Y,Fit,Residual\n");
  for (int i = 1; i <= c.points(); ++i) {
    csv << GeneralText(c.x[i]) << "," << GeneralText(c.y[i]);
    if (!c.fitted.empty()) csv << "," << GeneralText(c.fitted[i]) << "," << GeneralText(c.y[i] - c.fitted[i]);
    csv << "\n";
  }
  if (words.size() < 3) {
    cli.out() << csv.str();
    return;
  }
  std::ofstream f(words[2], std::ios::binary);
  if (!(f << csv.str())) throw StatementError("fitset curve: cannot write " + words[2]);
}

void FitSetStatement(Cli& cli, const std::string& rest) {
  const std::vector<std::string> words = StatementWords(rest, "fitset");
  const std::string verb = words.empty() ? std::string() : words[0];
  if ((verb == "add" || verb == "row") && words.size() >= 2) {
    SetCurve c = verb == "add" ? ReadSetCurve(cli, words[1]) : PlottedRow(cli, words[1]);
    for (FormSetting& typed : ParseSettings(words, 2)) c.settings.push_back(std::move(typed));
    return AddToSet(cli, std::move(c));
  }
  if (verb == "list" && words.size() == 1) return ListSet(cli);
  if (verb == "clear" && words.size() == 1) return cli.workbench().fits.curveSet.clear();
  if (verb == "fit" && words.size() == 1) return GlobalFit(cli.workbench());
  if (verb == "curve" && words.size() >= 2 && words.size() <= 3) return WriteSetCurve(cli, words);
  throw StatementError("unknown statement \"fitset " + rest + "\"");
}

}  // namespace

void RegisterFitStatements(Cli& cli) {
  auto progress = std::make_shared<InterruptProgress>();
  cli.workbench().platform.fitProgress = progress.get();
  const auto handler = [progress](Cli& c, const std::string& rest) { FitSetStatement(c, rest); };
  cli.addStatement("fitset", "fitset add FILE [Form.control[(i)]=TEXT ...] | row N [...] | list | clear | fit | curve I [FILE]",
                   handler);
}

}  // namespace voltrix
