#include "statement_words.h"

#include "cli.h"

namespace voltrix {

std::vector<std::string> StatementWords(const std::string& rest, const std::string& statement) {
  std::vector<std::string> words;
  std::string word;
  bool quoted = false, any = false;
  for (char c : rest) {
    if (c == '"') {
      quoted = !quoted;
      any = true;
    } else if ((c == ' ' || c == '\t') && !quoted) {
      if (any) words.push_back(word);
      word.clear();
      any = false;
    } else {
      word.push_back(c);
      any = true;
    }
  }
  if (quoted) throw StatementError(statement + ": a quote is not closed");
  if (any) words.push_back(word);
  return words;
}

}  // namespace voltrix
