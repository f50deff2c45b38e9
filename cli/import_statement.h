#pragma once
// "import FILE [cycle=N] [x=COLUMN] [y=COLUMN]": "&Import Data..." on a named
// file, through the same readers. cycle picks one of several cycles (from
// 1; the first complete one when not given); x and y name the potential and
// current columns by title or by number from 1. A title with blanks goes in
// double quotes: x="WE(1).Potential (V)".
#include "cli.h"

namespace voltrix {

// An import that ended in a message (the message has gone to standard error).
// A StatementError, so that the run stops there.
class ImportFailed : public StatementError {
 public:
  using StatementError::StatementError;
};

void RegisterImportStatement(Cli& cli);

}  // namespace voltrix
