#pragma once
// The plot as seen through a zoomed window: the frame where the classic
// frame stands on the screen, the recorded curves clipped to the window,
// marks and labels for the window, the unit line in the window's decade.
// Drawn afresh from the recorded picture, which stays as it is.
#include <vector>

#include "model/headless_platform.h"
#include "ui/picture_geometry.h"

namespace voltrix {

struct ViewPicture {
  std::vector<DrawCall> calls;
  std::vector<RowMark> rows;  // where each curve row begins in calls
};

ViewPicture ZoomedPicture(const std::vector<DrawCall>& recorded, const std::vector<RowMark>& rows,
                          const PictureGeometry& geometry, const DataRect& window);

// The scale that puts `window` where the frame of `geometry` stands.
ScaleBox WindowScale(const PictureGeometry& geometry, const DataRect& window);

// Clips the segment to the rectangle; false when none of it lies inside.
bool ClipSegment(const DataRect& r, double& x0, double& y0, double& x1, double& y1);

}  // namespace voltrix
