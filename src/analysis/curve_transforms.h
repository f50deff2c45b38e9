#pragma once
// In-place rewrites of the curve in hand: the X axis that all curves share,
// or row CurNo of YData, over points 1 to NData. There is no undo: a
// transform applied twice is applied twice.
#include "model/curve_store.h"
#include "model/experiment.h"

namespace voltrix {

// Each XData(i) times factor (-1 negates).
void ScaleX(const Experiment& e, CurveStore& s, double factor);

// Each YData(CurNo, i) times factor.
void ScaleY(const Experiment& e, CurveStore& s, double factor);

// Semi-integration: the running integral, then the half-order derivative of
// it, with the derivative's scale carried along.
void SemiIntegrate(const Experiment& e, CurveStore& s);

}  // namespace voltrix
