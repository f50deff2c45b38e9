#pragma once
// Closed-form peak and limiting currents and their potentials, per charge
// reaction, for the technique, electrode and mechanism in force.
#include <optional>
#include <string>
#include <vector>

#include "analysis/report.h"
#include "model/experiment.h"

namespace voltrix {

// The four values of the report. They live through the whole report: a
// reaction whose formulas leave one alone shows what the reaction before left.
struct TheoreticalPeak {
  std::optional<double> Er, Ir, Ei, Ii;
};

// Works out the values of charge reaction r into `values`. A value whose
// formula faults (a zero denominator, the logarithm of a number not above 0)
// becomes unset, and the reason is added to `faults`.
void TheoreticalValues(const Experiment& e, int r, TheoreticalPeak& values, std::vector<std::string>& faults);

// The lines of the report for reactions 1 to NCharge, after its heading.
// The Experiment must be freshly committed.
void TheoreticalPeakReport(const Experiment& e, const LineSink& print);

}  // namespace voltrix
