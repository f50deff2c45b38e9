#pragma once
// Starting points spread over the min-max boxes of the fitted parameters.
#include <cstdint>
#include <vector>

#include "fit/marquardt.h"

namespace voltrix {

// Where a value lies in its box, from 0 to 1: on a log scale for a box of
// positive limits that spans two decades or more (rate constants,
// concentrations), else linearly.
double BoxCoordinate(double value, double lower, double upper);
double BoxValue(double coordinate, double lower, double upper);

// n points in the box of parameters 1 to k, a Latin hypercube: each axis cut
// into n equal slices (in box coordinates) holds exactly one point in each
// slice. The same seed gives the same points on every machine.
std::vector<ParameterVector> LatinHypercube(int n, int k, const ParameterVector& lower, const ParameterVector& upper,
                                            std::uint64_t seed);

}  // namespace voltrix
