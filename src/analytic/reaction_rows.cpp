#include "analytic/constants.h"
#include "analytic/electrode_responses.h"
#include "analytic/run_steps.h"
#include "model/checked.h"

namespace voltrix {

namespace {

int Technique(const Experiment& e) { return static_cast<int>(e.Technique.value()); }

// Mechanism 8, C = A + pD before A + ne = B: the preceding equilibrium
// shifts the apparent standard potential.
double ShiftedPotential(const Experiment& e, int r) {
  return Checked(e.Eze(r) + Div(e.RTF, e.NEL(r)) * (Log(e.Keq(1)) - e.pl(1) * Log(e.C(4))));
}

// Thin film: the film's finite volume enters as an apparent potential.
double FilmPotential(const Experiment& e, int r, double Sox) {
  const double argument = Div(Div((kRootPi * e.NEL(r)) * e.leng, Sox), Sqrt(e.td));
  return Checked(e.Eze(r) + Div(e.RTF, e.NEL(r)) * Log(argument));
}

}  // namespace

double CatalyticTime(const Experiment& e) { return Technique(e) <= 2 ? e.td.value() : e.tp.value(); }

double CatalyticRoot(const Experiment& e) { return Sqrt(Checked(e.kf(1) * CatalyticTime(e))); }

ReactionInputs SetUpReaction(const Experiment& e, int r, double currentScale) {
  const int code = static_cast<int>(e.Code.value());
  const int mechanism = static_cast<int>(e.Mechanism.value());
  ReactionInputs in;
  in.ks = e.ks(r);
  in.Eze = e.Eze(r);
  in.alpha = e.alph(r);
  in.n = e.NEL(r);
  const bool disk = code == 18 || code == 28;
  in.Sox = disk ? e.D(2 * r - 1).value() : Sqrt(e.D(2 * r - 1));
  in.Sred = disk ? e.D(2 * r).value() : Sqrt(e.D(2 * r));
  if (mechanism == 8) {
    in.E0r = ShiftedPotential(e, r);
    in.Cox = e.C(2);
    in.Cred = e.C(3);
  } else {
    in.E0r = e.Eze(r);
    in.Cox = e.C(2 * r - 1);
    in.Cred = e.C(2 * r);
  }
  if (mechanism == 7) {
    in.Tau = CatalyticTime(e);
    in.CatRoot = CatalyticRoot(e);
    in.CatScale = Checked((in.CatRoot * kRootPi) * currentScale);
  }
  if (code == 17) {
    in.FilmScale = Checked((Sqrt(Div(kPi * e.td, e.D(1))) * e.leng) * e.V);
    in.E0r = FilmPotential(e, r, in.Sox);
  }
  return in;
}

double ReactionPoint(const Experiment& e, const ReactionInputs& in, int code, double E, int i) {
  const double td = e.td, tp = e.tp, Epulse = e.Epulse;
  const double ks = in.ks, a = in.alpha, n = in.n, Cox = in.Cox, Sox = in.Sox, Cred = in.Cred, Sred = in.Sred;
  switch (code) {
    case 11: case 12: case 13: case 14: case 15: case 16: case 21: case 27:
      return PlanarResponse(e, E, ks, a, n, in.E0r, Cox, Sox, td, Cred, Sred);
    case 17:
      return Checked(in.FilmScale * PlanarResponse(e, E, ks, a, n, in.E0r, Cox, Sox, td, Cred, Sred));
    case 18: case 28:
      return RotatingDiskResponse(e, E, ks, a, n, in.Eze, Cox, Sox, Cred, Sred);
    case 22: case 23: case 24: case 25: case 26:
      return SphericalResponse(e, E, ks, a, n, in.E0r, Cox, Sox, td, Cred, Sred);
    // Normal pulse: the point at E is sampled as if the electrode stood at E + Epulse.
    case 31:
      return PlanarResponse(e, E, ks, a, n, in.Eze - Epulse, Cox, Sox, tp, Cred, Sred);
    case 32: case 33: case 34: case 35: case 36:
      return SphericalResponse(e, E, ks, a, n, in.Eze - Epulse, Cox, Sox, tp, Cred, Sred);
    case 41:
    case 42: case 43: case 44: case 45: case 46: {
      const double pulse = i <= static_cast<int>(e.NHalf.value()) ? Epulse : -Epulse;
      return code == 41 ? DiffPulsePlanar(e, E, ks, a, n, in.Eze, Cox, Sox, tp, td, Cred, Sred, pulse)
                        : DiffPulseSpherical(e, E, ks, a, n, in.Eze, Cox, Sox, tp, td, Cred, Sred, pulse);
    }
    case 51:
      return Checked(2.4 * SquareWavePlanar(e, E, ks, a, n, in.Eze + Epulse / 2, Cox, Sox, tp, Cred, Sred, Epulse));
    case 52: case 53: case 54: case 55: case 56:
      return Checked(2.4 * SquareWaveSpherical(e, E, ks, a, n, in.Eze + Epulse / 2, Cox, Sox, tp, Cred, Sred, Epulse));
    default:
      // Pulses at a thin film or a rotating disk (37, 38, 47, 48, 57, 58)
      // carry no current.
      return 0;
  }
}

void FillReactionRows(const Experiment& e, const XAxis& X, SimRows& Y, double currentScale) {
  const int code = static_cast<int>(e.Code.value());
  const int nData = static_cast<int>(e.NData.value());
  const bool catalytic = static_cast<int>(e.Mechanism.value()) == 7 && Technique(e) <= 3;
  const double* x = X.data();
  for (int r = 1; r <= Count(e.NCharge); ++r) {
    const ReactionInputs in = SetUpReaction(e, r, currentScale);
    double* row = Y.row(r);
    for (int i = 1; i <= nData; ++i) row[i] = ReactionPoint(e, in, code, x[i], i);
    if (catalytic) {
      // Regeneration of A from B: a planar term on the time scale Tau, for
      // every electrode; the row is overwritten for each reaction.
      double* cat = Y.row(kCatalyticRow);
      for (int i = 1; i <= nData; ++i)
        cat[i] = Checked(in.CatScale * PlanarResponse(e, x[i], in.ks, in.alpha, in.n, in.E0r, in.Cox, in.Sox,
                                                      in.Tau, in.Cred, in.Sred));
    }
  }
  for (int r = 1; r <= Count(e.NCharge); ++r) {
    double* row = Y.row(r);
    for (int i = 1; i <= nData; ++i) row[i] = Checked(row[i] * currentScale);
  }
}

}  // namespace voltrix
