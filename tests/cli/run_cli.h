#pragma once
// Runs the real voltrix-cli binary and collects its exit status and output.
#include <sys/wait.h>
#include <unistd.h>

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
  std::stringstream s;
  s << std::ifstream(p, std::ios::binary).rdbuf();
  return s.str();
}

inline CliResult RunCli(const std::vector<std::string>& args) {
  static int counter = 0;
  const auto base = std::filesystem::temp_directory_path() / ("voltrix-cli-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
  std::string cmd = Quote(VOLTRIX_CLI_PATH);
  for (const std::string& a : args) cmd += " " + Quote(a);
  const int raw = std::system((cmd + " >" + Quote(base.string() + ".out") + " 2>" + Quote(base.string() + ".err") + " </dev/null").c_str());
  CliResult r{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, ReadFile(base.string() + ".out"), ReadFile(base.string() + ".err")};
  std::filesystem::remove(base.string() + ".out");
  std::filesystem::remove(base.string() + ".err");
  return r;
}

}  // namespace voltrix::test
