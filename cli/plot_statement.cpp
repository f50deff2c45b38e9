#include "plot_statement.h"

#include <filesystem>
#include <string>

#include "cli.h"
#include "render/picture_file.h"
#include "ui/plot_display_list.h"

namespace voltrix {

namespace {

bool KnownPictureType(const std::string& file) {
  const std::string ext = std::filesystem::path(file).extension().string();
  return ext == ".png" || ext == ".svg" || ext == ".pdf" || ext == ".PNG" || ext == ".SVG" || ext == ".PDF";
}

// The painter only says that it failed; the folder usually tells why.
std::string WhyNotWritten(const std::string& file, const std::string& error) {
  std::error_code ec;
  const std::filesystem::path folder = std::filesystem::absolute(file, ec).parent_path();
  if (!std::filesystem::is_directory(folder, ec)) return "No such file or directory";
  return error;
}

}  // namespace

void RegisterPlotStatement(Cli& cli) {
  cli.addStatement("plot", "plot FILE", [](Cli& c, const std::string& rest) {
    const auto begin = rest.find_first_not_of(" \t");
    if (begin == std::string::npos) throw StatementError("plot: a file name is needed (plot FILE)");
    const auto end = rest.find_last_not_of(" \t");
    const std::string file = rest.substr(begin, end - begin + 1);
    if (!KnownPictureType(file)) throw StatementError("plot: " + file + " is no .png, .svg or .pdf file");
    // A plot window never drawn on gives an empty picture, as on screen.
    const std::string error = WritePictureFile(LastPicture(c.platform().plot.calls), file);
    if (!error.empty()) ReportWriteFailure(c.workbench().platform, file, WhyNotWritten(file, error));
  });
}

}  // namespace voltrix
