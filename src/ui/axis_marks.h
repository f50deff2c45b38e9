#pragma once
// Marks of an axis for any part of the data: steps of 1, 2 or 5 times a
// power of ten ("nice numbers" for graph labels) and labels with the
// decimals that the step needs.
#include <string>
#include <vector>

namespace voltrix {

// The step of 1, 2 or 5 times a power of ten that cuts span into about
// `parts` parts.
double NiceStep(double span, int parts);

// The multiples of step from lo to hi, both ends included within a
// millionth of a step. At most a thousand.
std::vector<double> MarksWithin(double lo, double hi, double step);

// A mark's text with as many decimals as its step needs and no sign on a
// value that rounds to zero: 0.25 at a step of 0.05 reads "0.25".
std::string MarkLabel(double value, double step);

// The power of ten d with d <= m < 10 d, for m > 0; 1 otherwise.
double DecadeOf(double m);

}  // namespace voltrix
