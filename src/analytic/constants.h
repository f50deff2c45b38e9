#pragma once
// The program's own physical and mathematical constants. Results are
// compared with curves made by these exact values, so no library or CODATA
// value may stand in for them.
namespace voltrix {

constexpr double kFaraday = 96484.6;      // C/mol
constexpr double kGasConstant = 8.31441;  // J/(mol K)
constexpr double kCelsiusZero = 273.14;   // K
constexpr double kPi = 3.141592654;
constexpr double kRootPi = 1.77245385;
constexpr double kTwoPi = 6.283185308;    // the noise generator's angle

}  // namespace voltrix
