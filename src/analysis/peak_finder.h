#pragma once
// Peaks, reversibility figures and areas of every plotted curve.
#include "analysis/report.h"
#include "model/curve_store.h"
#include "model/experiment.h"

namespace voltrix {

// A peak is a local maximum of |y| that rises strictly over two steps of two
// points on each side and stands above 2 % of the plotted Y range. Searches
// rows 1 to NCurves between start and end (First + 2 and Last - 2 from the
// menu), fills PeakPotential, PeakCurrent and PeakCount, and prints the
// report of each curve.
void FindPeaks(const Experiment& e, CurveStore& s, long start, long end, const LineSink& print);

}  // namespace voltrix
