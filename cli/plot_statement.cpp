#include "plot_statement.h"

#include <string>

#include "cli.h"
#include "render/picture_file.h"
#include "ui/plot_display_list.h"

namespace voltrix {

void RegisterPlotStatement(Cli& cli) {
  cli.addStatement("plot", "plot FILE", [](Cli& c, const std::string& rest) {
    const auto begin = rest.find_first_not_of(" \t");
    if (begin == std::string::npos) throw StatementError("plot: a file name is needed (plot FILE)");
    const auto end = rest.find_last_not_of(" \t");
    const std::string file = rest.substr(begin, end - begin + 1);
    // A plot window never drawn on gives an empty picture, as on screen.
    const std::string error = WritePictureFile(LastPicture(c.platform().plot.calls), file);
    if (!error.empty()) throw StatementError("plot: " + error);
  });
}

}  // namespace voltrix
