#pragma once
// Runs the real voltrix-cli binary and collects its exit status and output.
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace voltrix::test {

struct CliResult {
  int status = -1;
  std::string out, err;
};

inline std::string Quote(const std::string& s) {
  std::string q = "'";
  for (char c : s) q += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return q + "'";
}

inline std::string ReadFile(const std::filesystem::path& p) {
  std::ifstream f(p, std::ios::binary);
  std::stringstream s;
  s << f.rdbuf();
  return s.str();
}

inline CliResult RunCli(const std::vector<std::string>& args) {
  namespace fs = std::filesystem;
  static int counter = 0;
  const fs::path dir = fs::temp_directory_path() / ("voltrix-cli-test-" + std::to_string(::getpid()));
  fs::create_directories(dir);
  const fs::path out = dir / ("out" + std::to_string(counter));
  const fs::path err = dir / ("err" + std::to_string(counter++));
  std::string cmd = Quote(VOLTRIX_CLI_PATH);
  for (const std::string& a : args) cmd += " " + Quote(a);
  cmd += " >" + Quote(out.string()) + " 2>" + Quote(err.string()) + " </dev/null";
  const int raw = std::system(cmd.c_str());
  CliResult r;
  r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  r.out = ReadFile(out);
  r.err = ReadFile(err);
  return r;
}

}  // namespace voltrix::test
