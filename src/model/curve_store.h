#pragma once
// The CurveStore: the fixed-size arrays of the X axis and of all curves.
// Every element is 0 until first written. Index 4000 is the last point.
#include "model/experiment.h"
#include "model/table.h"

namespace voltrix {

struct CurveStore {
  Table1<double, kMaxPoints + 1> XData;
  Table2<double, kMaxCurves + 1, kMaxPoints + 1> YData;  // rows 0 to 6
  Table2<double, 9, kMaxPoints + 1> YSim;                // rows 0 to 8
  Table2<double, 8, kMaxPoints + 1> SurfC;               // rows 0 to 7
  Table1<int, kMaxCurves + 1> LineStyle;                 // 0 to 6
  Table2<double, kMaxCurves + 1, kMaxPeaks + 1> PeakPotential, PeakCurrent;
  int PeakCount = 0;
};

}  // namespace voltrix
