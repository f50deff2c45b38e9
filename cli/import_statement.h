#pragma once
// "import FILE [cycle=N] [x=COLUMN] [y=COLUMN]": "&Import Data..." on a named
// file, through the same readers. cycle picks one of several cycles (from
// 1; the first complete one when not given); x and y name the potential and
// current columns by title or by number from 1. A title with blanks goes in
// double quotes: x="WE(1).Potential (V)".
#include "cli.h"

namespace voltrix {

void RegisterImportStatement(Cli& cli);

}  // namespace voltrix
