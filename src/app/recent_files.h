#pragma once
// The files of recent sessions, for File > Recent Files: parameter files
// and curve or instrument files, newest first, each once.
#include <cstddef>
#include <string>
#include <vector>

namespace voltrix {

enum class FileKind { Parameters, Curve };

struct RecentFile {
  std::string path;
  FileKind kind = FileKind::Curve;
  bool operator==(const RecentFile&) const = default;
};

class RecentFiles {
 public:
  static constexpr std::size_t kMost = 8;

  // To the front; a file already listed moves there.
  void add(const std::string& path, FileKind kind);
  void remove(const std::string& path);
  const std::vector<RecentFile>& files() const { return files_; }

  // One text a file, "P|path" or "C|path", for a settings store; texts of
  // another form are passed over.
  std::vector<std::string> toTexts() const;
  static RecentFiles fromTexts(const std::vector<std::string>& texts);

 private:
  std::vector<RecentFile> files_;
};

// A parameter file by its first line ("Technique :"); anything else is read
// as a curve or instrument file.
FileKind KindOfFile(const std::string& path);

// The menu command that opens a file of that kind.
const char* OpenCommandOf(FileKind kind);

// The menu caption of entry `index` (from 0): "&1 wave.csv".
std::string RecentCaption(std::size_t index, const std::string& path);

}  // namespace voltrix
