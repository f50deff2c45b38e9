#pragma once
// The steps of an analytical run, each on its own so that the driver reads
// as the list of steps and each step can be checked alone. Rows and points
// are numbered from 1; every step raises a RunError on an arithmetic fault
// or a point beyond 4000.
#include "model/curve_store.h"
#include "model/experiment.h"

namespace voltrix {

using XAxis = Table1<double, kMaxPoints + 1>;
using SimRows = Table2<double, 9, kMaxPoints + 1>;

constexpr int kCatalyticRow = 8;  // YSim row of mechanism 7's regeneration term

// dirSign, NHalf and NData, then XData: one sweep from Estart in steps of
// Estep, mirrored for "cycle", repeated for "2 cycles". Raises at point 4001.
void BuildPotentialGrid(Experiment& e, XAxis& X);

// Everything a kernel needs of charge reaction r besides the potential.
struct ReactionInputs {
  double ks = 0, alpha = 0, n = 0;
  double Sox = 0, Sred = 0;  // roots of D(2r-1), D(2r); the coefficients for Code 18 and 28
  double Eze = 0;             // the typed standard potential
  double E0r = 0, Cox = 0, Cred = 0;  // E0r: as the mechanism (or the film) shifts it
  double Tau = 0, CatRoot = 0, CatScale = 0;  // mechanism 7
  double FilmScale = 0;                       // Code 17
};

// Mechanism 7: Tau (td for a sweep or DC, tp for pulses) and
// CatRoot = sqrt(kf(1) * Tau), the catalytic rate on the time of a point.
double CatalyticTime(const Experiment& e);
double CatalyticRoot(const Experiment& e);

// Species pair, potential and the mechanism's constants of reaction r.
ReactionInputs SetUpReaction(const Experiment& e, int r, double currentScale);

// YSim(r, i) before the current scale: the kernel that Code picks, at E. The
// differential pulse sign flips on the way back (points above NHalf).
double ReactionPoint(const Experiment& e, const ReactionInputs& in, int code, double E, int i);

// Rows 1 to NCharge of YSim from the kernels, times CurrentScale; row 8 for
// mechanism 7 with techniques 1 to 3.
void FillReactionRows(const Experiment& e, const XAxis& X, SimRows& Y, double currentScale);

// Row NTotalRow = the sum of rows 1 to NCharge (added onto what it holds).
void SumReactionRows(const Experiment& e, SimRows& Y);

// The terms that belong to the sum row only, in their order: the sweep's
// semi-differentiation (all rows), the spherical term, the film's
// differentiation (all rows), mechanism 7's catalytic term.
void ApplySumRowSteps(const Experiment& e, const XAxis& X, SimRows& Y, double currentScale);

// Double-layer charging, Q = Cdl * ARE * V, signed by the scan direction.
void AddChargingCurrent(const Experiment& e, const XAxis& X, SimRows& Y);

// Ymin and Ymax of the sum row; returns Big, the signed one of larger size.
double SumRowExtremes(Experiment& e, const SimRows& Y);

// The run's pseudo-random generator: seeded from NData alone, so equal runs
// carry equal noise.
class RunNoise {
 public:
  explicit RunNoise(double nData) : s_(2 * nData) {}
  // A normal deviate from two draws (Box-Muller).
  double next();

 private:
  double draw();
  double s_;
};

// Gaussian noise on the sum row: each percent of Noise is a standard
// deviation of 0.25 % of Big. None for a fit run.
void AddNoise(const Experiment& e, SimRows& Y, double big);

}  // namespace voltrix
