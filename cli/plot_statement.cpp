#include "plot_statement.h"

#include <filesystem>
#include <sstream>
#include <string>

#include "app/present_plot.h"
#include "cli.h"
#include "model/number_format.h"
#include "render/picture_file.h"
#include "ui/form_plot.h"
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

// "zoom XMIN XMAX YMIN YMAX" shows that window of the data; "zoom reset"
// the classic limits again.
void Zoom(Cli& c, const std::string& rest) {
  PlotViewState& view = c.workbench().formPlot().view();
  if (rest == "reset") {
    view.zoom.reset();
    return;
  }
  std::istringstream words(rest);
  std::string limit[4];
  for (std::string& word : limit)
    if (!(words >> word) || !IsNumeric(word)) throw StatementError("zoom: four numbers are needed (zoom XMIN XMAX YMIN YMAX), or reset");
  const DataRect window = Spanned(Val(limit[0]), Val(limit[2]), Val(limit[1]), Val(limit[3]));
  if (!ZoomView(view, LastPicture(c.platform().plot.calls), window))
    throw StatementError("zoom: there is no plot to zoom, or that window cannot be drawn");
}

void Legend(Cli& c, const std::string& rest) {
  if (rest != "on" && rest != "off") throw StatementError("legend: on or off");
  c.workbench().formPlot().view().legendShown = rest == "on";
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
    const RecordingSurface& surface = c.platform().plot;
    const PlotPresentation plot = PresentPlot(c.workbench(), LastPicture(surface.calls), surface.rowMarks);
    const std::string error = WritePictureFile(plot, file);
    if (!error.empty()) ReportWriteFailure(c.workbench().platform, file, WhyNotWritten(file, error));
  });
  cli.addStatement("zoom", "zoom XMIN XMAX YMIN YMAX | zoom reset", Zoom);
  cli.addStatement("legend", "legend on|off", Legend);
}

}  // namespace voltrix
