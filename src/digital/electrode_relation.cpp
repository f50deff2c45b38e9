#include "digital/electrode_relation.h"

#include "model/checked.h"

namespace voltrix {

ChargeChain FindChain(const SpeciesMap& ChargeMap) {
  // The places are compared as they stand: an empty right side of reaction 1
  // meets the empty left side of a missing reaction 2.
  if (ChargeMap(1, 2) != ChargeMap(2, 1)) return ChargeChain::None;
  const int third = ChargeMap(3, 1);
  if (third != 0 && third == ChargeMap(2, 2)) return ChargeChain::Chain3;
  return ChargeChain::Chain2;
}

void SetStandingRelation(StepTables& t, ChargeChain chain) {
  t.KSurf = Matrix{};
  for (int i = 1; i <= t.n; ++i) t.KSurf(i, i) = 1;
  t.KSurf(2, 1) = 1;
  if (chain == ChargeChain::Chain3) {
    t.KSurf(3, 4) = 1;
    // Row 2 spans the whole chain, species 1 to 4: with only 1 to 3 the
    // material that the third wave makes would appear from nowhere and its
    // current would grow without bound.
    t.KSurf(2, 3) = 1;
    t.KSurf(2, 4) = 1;
  } else if (chain == ChargeChain::Chain2) {
    t.KSurf(2, 3) = 1;
  }
  t.KBox = t.KSurf;
}

void SetStepRelation(StepTables& t, ChargeChain chain, const Experiment& e, const double* kRed,
                     const double* kOx, const double* Gap) {
  Matrix& K = t.KSurf;
  if (chain != ChargeChain::None) {
    K(1, 1) = Checked(1 + kRed[1] * Gap[1]);
    K(1, 2) = Checked(-kOx[1] * Gap[1]);
    K(3, 2) = Checked(-kRed[2] * Gap[3]);
    K(3, 3) = Checked(1 + kOx[2] * Gap[3]);
    if (chain == ChargeChain::Chain3) {
      K(4, 3) = Checked(-kRed[3] * Gap[4]);
      K(4, 4) = Checked(1 + kOx[3] * Gap[4]);
    }
    return;
  }
  for (int r = 1; r <= Count(e.NCharge); ++r) {
    const int a = e.ChargeMap(r, 1), b = e.ChargeMap(r, 2);
    K(a, a) = Checked(1 + kRed[r] * Gap[a]);
    K(a, b) = Checked(-kOx[r] * Gap[a]);
    K(b, a) = 1;
    t.KBox(b, a) = 1;
  }
}

}  // namespace voltrix
