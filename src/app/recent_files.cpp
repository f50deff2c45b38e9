#include "app/recent_files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "files/parameter_reader.h"

namespace voltrix {

void RecentFiles::add(const std::string& path, FileKind kind) {
  remove(path);
  files_.insert(files_.begin(), {path, kind});
  if (files_.size() > kMost) files_.resize(kMost);
}

void RecentFiles::remove(const std::string& path) {
  files_.erase(std::remove_if(files_.begin(), files_.end(), [&](const RecentFile& f) { return f.path == path; }),
               files_.end());
}

std::vector<std::string> RecentFiles::toTexts() const {
  std::vector<std::string> texts;
  for (const RecentFile& f : files_) texts.push_back((f.kind == FileKind::Parameters ? "P|" : "C|") + f.path);
  return texts;
}

RecentFiles RecentFiles::fromTexts(const std::vector<std::string>& texts) {
  RecentFiles recent;
  for (auto it = texts.rbegin(); it != texts.rend(); ++it) {
    const std::string& t = *it;
    if (t.size() < 3 || t[1] != '|' || (t[0] != 'P' && t[0] != 'C')) continue;
    recent.add(t.substr(2), t[0] == 'P' ? FileKind::Parameters : FileKind::Curve);
  }
  return recent;
}

FileKind KindOfFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return in && LooksLikeParameterFile(in) ? FileKind::Parameters : FileKind::Curve;
}

const char* OpenCommandOf(FileKind kind) { return kind == FileKind::Parameters ? "mnuOpen" : "mnuImport"; }

std::string RecentCaption(std::size_t index, const std::string& path) {
  // An ampersand in a name is shown, not taken as the item's key.
  std::string name;
  for (char c : std::filesystem::path(path).filename().string()) {
    if (c == '&') name += '&';
    name += c;
  }
  const std::string number = std::to_string(index + 1);
  return (index < 9 ? "&" + number : number) + " " + name;
}

}  // namespace voltrix
