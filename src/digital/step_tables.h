#pragma once
// The tables of one finite-difference step. Everything is dimensionless:
// concentrations relative to the largest initial one, rate terms per time
// step, distances in units of the first box. The run driver fills them once
// per run; the solvers read them and advance Conc.
#include <cstdint>

#include "digital/matrix.h"

namespace voltrix {

constexpr int kMaxBoxes = 99;     // NBox; Conc is used up to NBox + 1
constexpr int kBoxStorage = 101;  // box indices 0 to 100
constexpr int kMaxSecondOrder = 3;

struct StepTables {
  int N = 2;  // NBox
  int n = 1;  // NSpecies
  double Conc[kBlockSize][kBoxStorage] = {};  // species, box 0..N+1; box 1 is the surface
  double Lo[kBoxStorage][kBlockSize] = {};    // box, species: coupling towards the electrode
  double Up[kBoxStorage][kBlockSize] = {};    // box, species: coupling away from it
  Matrix Block[kBoxStorage];                  // constant left-hand block of each box
  Matrix KSurf, KBox;                         // electrode relation KSurf S = KBox c(., 1)
  double kfStep[kBlockSize] = {}, kbStep[kBlockSize] = {};  // chemical reaction q
  // Second-order reactions: a + b = c + d, places 1 to 4 (0 = no species).
  int NChem = 0, NChem2 = 0;
  std::int16_t Chem2Map[kMaxSecondOrder + 1][5] = {};
};

// Working storage of the solvers, sized once per run so that a step
// allocates nothing. GBlock and its inverses of the linear solver depend on
// constants only and are kept from the first step on.
struct StepWork {
  Matrix GBlock[kBoxStorage];
  Matrix GInv[kBoxStorage];           // inverse of GBlock(j), j = 2..N
  bool singular[kBoxStorage] = {};    // that inversion met a singular block
  bool diagonalInverse[kBoxStorage] = {};
  Column GRight[kBoxStorage];
  bool linearBlocksReady = false;
  // Without chemistry every kept inverse is diagonal: its diagonals side by
  // side let a step run on plain rows.
  bool allDiagonal = false;
  double inverseDiagonal[kBoxStorage][kBlockSize] = {};
  // KBox changes only where a run writes it; its inverse is kept while it
  // stays the same.
  Matrix KBoxSeen, KBoxInverse;
  bool KBoxReady = false, KBoxSingular = false;
  Matrix electrode;
  Matrix blockTimesKBoxInverse;  // GBlock(1) KBox^-1, kept while both stand
  bool blockTimesKBoxInverseReady = false;
  // Newton passes of the nonlinear solver.
  Matrix JPart[kBoxStorage], JRest[kBoxStorage], JFull[kBoxStorage];
  Column RightBase[kBoxStorage];
  double CPrev[kBoxStorage][kBlockSize] = {};  // box, species
  double CIter[kBoxStorage][kBlockSize] = {};
  double CNew[kBoxStorage][kBlockSize] = {};
  int lastPasses = 0;  // Newton passes of the last nonlinear step
};

}  // namespace voltrix
