#pragma once
// Writes a recorded plot picture to a PNG, SVG or PDF file, chosen by the
// file's extension. Qt-free on the outside so that the CLI can call it; a
// Qt application object on the offscreen platform is made when none exists.
#include <string>
#include <vector>

#include "model/headless_platform.h"
#include "ui/plot_presentation.h"

namespace voltrix {

struct PictureSize {
  int width = 800;
  int height = 450;
};

// Returns an empty text on success, else what went wrong, in the user's words.
std::string WritePictureFile(const std::vector<DrawCall>& calls, const std::string& path, PictureSize size = {});

// The plot as the window presents it: zoomed, with its legend and panel.
std::string WritePictureFile(const PlotPresentation& plot, const std::string& path, PictureSize size = {});

}  // namespace voltrix
