#pragma once
// exp(x^2) * erfc(x), the factor by which a concentration step decays at an
// electrode with finite kinetics. The kernels' curves are made with this
// routine's own constants and term counts; a library erfc differs from it
// from about the seventh digit on.
namespace voltrix {

double ScaledErfc(double x);

}  // namespace voltrix
