#pragma once
// The electrode relation KSurf S = KBox c(., 1): one flux balance per
// reactant of a charge reaction, and the balance of the species it turns
// into, so that what leaves one form at the surface arrives as the other.
#include "model/experiment.h"
#include "digital/step_tables.h"

namespace voltrix {

// How the charge reactions follow one another: a chain uses the species 1
// to 4 in order.
enum class ChargeChain { None, Chain2, Chain3 };

// Chain2: the right side of reaction 1 is the left side of reaction 2;
// Chain3: besides, reaction 3 starts from the right side of reaction 2. All
// rows of ChargeMap are read, whatever NCharge says.
ChargeChain FindChain(const SpeciesMap& ChargeMap);

// Standing part, set once per run: the identity on 1..n, the balance row 2,
// and the chain links. KBox is a copy of KSurf at this point.
void SetStandingRelation(StepTables& t, ChargeChain chain);

// Per-substep elements from the heterogeneous rate constants (cm/s) and the
// surface-to-first-midpoint gaps (s/cm) of the species.
void SetStepRelation(StepTables& t, ChargeChain chain, const Experiment& e, const double* kRed,
                     const double* kOx, const double* Gap);

}  // namespace voltrix
