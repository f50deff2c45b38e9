#pragma once
// Half-wave potential and wave height of every plotted curve.
#include "analysis/report.h"
#include "model/curve_store.h"
#include "model/experiment.h"

namespace voltrix {

// For each curve: the first point, in index order, whose |y| above the
// smallest |y| lies within 5 % of half the wave height. A curve without such
// a point reports the potential found for the curve before it.
void FindHalfWave(const Experiment& e, const CurveStore& s, const LineSink& print);

}  // namespace voltrix
