#pragma once
// The Experiment: a flat record of every input parameter and derived
// constant, copied from the forms by the commit chain, plus the state of the
// last run. Arrays are stored from index 0 and used from index 1.
#include <cstdint>
#include <string>

#include "model/field.h"
#include "model/table.h"

namespace voltrix {

constexpr int kMaxPoints = 4000;
constexpr int kMaxSpecies = 6;
constexpr int kMaxCharge = 3;
constexpr int kMaxChem = 4;
constexpr int kMaxCurves = 6;
constexpr int kMaxPeaks = 20;
constexpr int kParameterSlots = 23;
constexpr int kMaxFitted = 20;

using ReactionArray = Table1<Field, 7>;  // indices 0 to 6, used from 1
using SpeciesMap = Table2<std::int16_t, 7, 3>;   // reaction, place (1 left, 2 right)
using Chem2SpeciesMap = Table2<std::int16_t, 7, 5>;  // reaction, places 1 to 4

struct Experiment {
  // Instrument, committed by FormIns.OK in this order.
  Field Estart, Eend, Estep, ARE, Cdl, Ru, TempK, Epulse, Noise, td, tp, V, leng, radius, omega, Cycles;
  // From the electrode geometry.
  Field Vsol;

  // Chemical system, committed by CommitInputs.
  Field Vis, ElecC, ElecCond;
  ReactionArray alph, Eze, ks, NEL;  // charge reactions 1 to 3
  ReactionArray kf, kb, Keq, pl;     // chemical reactions 1 to 4
  ReactionArray D, C, Cond;          // species 1 to 6

  // Selectors and counts.
  Field Technique, Electrode, Mechanism, Code, fRT, RTF;
  bool Digital = false;
  // Exact models in place of the closed forms' approximations; off, every
  // result is the classic one.
  bool Accurate = false;
  Field NSpecies, NCharge, NChem, NChem2;

  // Reaction tables of the mechanism compiler.
  SpeciesMap ChargeMap, ChemMap;
  Chem2SpeciesMap Chem2Map;
  Table1<std::string, 7> SpeciesName;
  Table1<std::string, 4> ChargeText;
  Table1<std::string, 5> ChemText;  // room for a fourth chemical reaction

  // State of the run.
  Field dirSign, NHalf, NData, First, Last, NTotalRow, CurNo, NCurves, NOverlay;
  bool AutoFitFlag = false;
  Field tElapsed;
  Field Xmin, Xmax, Ymin, Ymax;
  bool GridFlag = false, OverlapFlag = false;

  // Shared state of a fit.
  Field FittedCount, ObjectiveCount, DataSpread;
  Table1<std::int16_t, kMaxFitted + 1> FittedSlots;
};

// Species and reaction counts as loop bounds.
inline int Count(const Field& f) { return static_cast<int>(f.value()); }

}  // namespace voltrix
