#include "import_statement.h"

#include <string>
#include <vector>

#include "app/curve_labels.h"
#include "app/import_file.h"
#include "statement_words.h"
#include "ui/commit.h"

namespace voltrix {

namespace {

int CycleNumber(const std::string& value) {
  if (value.empty() || value.size() > 5 || value.find_first_not_of("0123456789") != std::string::npos ||
      std::stoi(value) < 1)
    throw StatementError("import: cycle takes a number from 1, got \"" + value + "\"");
  return std::stoi(value);
}

ImportRequest Request(const std::vector<std::string>& options) {
  ImportRequest request;
  for (const std::string& option : options) {
    const auto eq = option.find('=');
    const std::string key = option.substr(0, eq), value = eq == std::string::npos ? "" : option.substr(eq + 1);
    if (eq == std::string::npos || value.empty())
      throw StatementError("import: expected cycle=N, x=COLUMN or y=COLUMN, got \"" + option + "\"");
    if (key == "cycle") {
      request.cycle = CycleNumber(value);
    } else if (key == "x") {
      request.columns.potential = value;
    } else if (key == "y") {
      request.columns.current = value;
    } else {
      throw StatementError("import: unknown option \"" + key + "\" (cycle, x or y)");
    }
  }
  return request;
}

}  // namespace

void RegisterImportStatement(Cli& cli) {
  cli.addStatement("import", "import FILE [cycle=N] [x=COLUMN] [y=COLUMN]", [](Cli& c, const std::string& rest) {
    const std::vector<std::string> words = StatementWords(rest, "import");
    if (words.empty()) throw StatementError("import: a file name is needed (import FILE [cycle=N] [x=COLUMN] [y=COLUMN])");
    const ImportRequest request = Request({words.begin() + 1, words.end()});
    Workbench& wb = c.workbench();
    StartCurve(wb);
    // A failed import has said why in its message, which the CLI counts.
    if (!ImportCurveFile(wb, words[0], request)) return;
    LabelImportedRow(wb, words[0]);
    ShowImportedCurve(wb);
  });
}

}  // namespace voltrix
