#pragma once

#include <string>
#include <vector>

namespace voltrix {

// The words of a statement's arguments, split at blanks; double quotes keep
// blanks inside a word. An unclosed quote is a malformed STATEMENT.
std::vector<std::string> StatementWords(const std::string& rest, const std::string& statement);

}  // namespace voltrix
