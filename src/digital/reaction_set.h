#pragma once
// The compiled mechanism as physical data for the exact engines: species with
// their diffusion coefficients and bulk concentrations, electron transfers
// with Butler-Volmer kinetics, first- and second-order homogeneous steps.
// Concentrations in mol/L, times in s, lengths in cm.
#include <string>
#include <vector>

#include "model/experiment.h"

namespace voltrix {

struct ChargeStep {
  int ox = 0, red = 0;  // species numbers, 1 to NSpecies
  double n = 1, E0 = 0, ks = 0, alpha = 0.5;
};

// a + b = c + d; a place of 0 is empty (a first-order step has b = d = 0).
struct ChemicalStep {
  int a = 0, b = 0, c = 0, d = 0;
  double kf = 0, kb = 0;  // s^-1 or L mol^-1 s^-1 by the order of each side
};

struct ReactionSet {
  int species = 0;
  double D[kMaxSpecies + 1] = {};
  double bulk[kMaxSpecies + 1] = {};
  double fRT = 0;  // F/RT, 1/V
  std::vector<ChargeStep> charge;
  std::vector<ChemicalStep> chemical;
};

// Reads the committed experiment. A second-order constant keeps the unit the
// user typed it in: the program scales second-order rates by the largest
// initial concentration, so kf / Cmax is the rate constant in L mol^-1 s^-1.
// Raises InvalidArgument with a message that names the reaction when a
// reaction cannot be meant (an empty side of a charge reaction, the same
// species on both sides), when a species has no positive D, or when no
// species is present.
ReactionSet ReadReactionSet(const Experiment& e);

// The largest bulk concentration of the set's species, the scale of its
// amounts.
double LargestBulk(const ReactionSet& set);

// Butler-Volmer: the reduction and oxidation rate constants (cm/s) at E.
struct ElectrodeRates {
  double kred = 0, kox = 0;
};
ElectrodeRates RatesAt(const ChargeStep& step, double fRT, double E);

// Net rate of formation of each species (mol L^-1 s^-1) at concentrations c
// (index 1..species), and optionally its derivative jac[i][j] = d rate_i / d c_j.
void HomogeneousRates(const ReactionSet& set, const double* c, double* rate,
                      double (*jac)[kMaxSpecies + 1] = nullptr);

}  // namespace voltrix
