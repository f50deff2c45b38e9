#include "digital/run_digital.h"

#include <cmath>
#include <memory>

#include "digital/digital_grid.h"
#include "digital/electrode_relation.h"
#include "digital/fd_solver.h"
#include "model/checked.h"
#include "model/curve_store.h"
#include "model/errors.h"
#include "model/experiment.h"
#include "model/platform.h"

namespace voltrix {

namespace {

constexpr double kFluxToAmperes = 96484.6 * 0.001;  // Faraday times 0.001 L per cm3

// Everything one run needs, sized once: the solver never allocates.
struct DigitalRun {
  StepTables t;
  StepWork w;
  TimeStructure time;
  ChargeChain chain = ChargeChain::None;
  int nCharge = 0;
  double DMbase = 0, Cmax = 0, FluxScale = 0, Dx1 = 0;
  int RefSpecies = 1;
  double Cnorm[kBlockSize] = {}, DM[kBlockSize] = {}, Gap[kBlockSize] = {};
  double GeoLo[kBoxStorage] = {}, GeoUp[kBoxStorage] = {};
  double kRed[4] = {}, kOx[4] = {};
  double Ework = 0, Itotal = 0;
  double PreSample[4] = {};
};

int SpeciesCount(const Experiment& e) {
  const int n = Count(e.NSpecies);
  if (n < 0 || n > kMaxSpecies) Raise(ErrorKind::SubscriptOutOfRange);
  return n;
}

int ChargeCount(const Experiment& e) {
  const int r = Count(e.NCharge);
  if (r < 0 || r > kMaxCharge) Raise(ErrorKind::SubscriptOutOfRange);
  return r;
}

// The species of largest C sets the concentration scale; the lowest number
// wins a tie.
void PickReference(const Experiment& e, DigitalRun& run) {
  run.RefSpecies = 1;
  run.Cmax = e.C(1).value();
  for (int i = 2; i <= run.t.n; ++i)
    if (e.C(i).value() > run.Cmax) {
      run.RefSpecies = i;
      run.Cmax = e.C(i).value();
    }
}

void ScaleSpecies(const Experiment& e, DigitalRun& run) {
  const double Dref = e.D(run.RefSpecies).value();
  for (int i = 1; i <= run.t.n; ++i) {
    run.Cnorm[i] = Div(e.C(i).value(), run.Cmax);
    run.DM[i] = Div(Checked(run.DMbase * e.D(i).value()), Dref);
  }
}

void ScaleRates(const Experiment& e, DigitalRun& run) {
  const int reactions = Count(e.NChem) + Count(e.NChem2);
  if (reactions > kMaxChem) Raise(ErrorKind::SubscriptOutOfRange);
  for (int q = 1; q <= reactions; ++q) {
    run.t.kfStep[q] = Checked(e.kf(q).value() * run.time.dt);
    run.t.kbStep[q] = Checked(e.kb(q).value() * run.time.dt);
  }
}

// Every box, and box 0 and N + 1, at the bulk values; row 0 stands for the
// empty place of a charge reaction and stays 1.
void UniformProfile(DigitalRun& run) {
  for (int j = 0; j <= run.t.N + 1; ++j) {
    run.t.Conc[0][j] = 1;
    for (int i = 1; i <= run.t.n; ++i) run.t.Conc[i][j] = run.Cnorm[i];
  }
}

void LayOutGrid(const Experiment& e, DigitalRun& run) {
  const GridFamily family = FamilyOf(Count(e.Electrode));
  double r0 = 0;
  if (family != GridFamily::Planar) {
    const int ref = run.RefSpecies;
    r0 = Checked(e.radius.value() * Sqrt(Div(run.DM[ref], Checked(e.D(ref).value() * run.time.dt))));
  }
  GeometryFactors(family, r0, run.t.N, run.GeoLo, run.GeoUp);
}

void ScaleTransport(const Experiment& e, DigitalRun& run) {
  const int ref = run.RefSpecies;
  run.FluxScale = Checked(kFluxToAmperes * e.ARE.value() * run.Cmax);
  run.Dx1 = Sqrt(Div(Checked(e.D(ref).value() * run.time.dt), run.DM[ref]));
  for (int i = 1; i <= run.t.n; ++i)
    for (int j = 1; j <= run.t.N; ++j) {
      run.t.Lo[j][i] = Checked(run.DM[i] * run.GeoLo[j]);
      run.t.Up[j][i] = Checked(run.DM[i] * run.GeoUp[j]);
    }
  // Distance from the electrode to the first midpoint, in cm, over D(i).
  for (int i = 1; i <= run.t.n; ++i) run.Gap[i] = Div(Div(run.Dx1, run.GeoLo[1]), e.D(i).value());
}

void BuildBlocks(const Experiment& e, DigitalRun& run) {
  StepTables& t = run.t;
  for (int j = 1; j <= t.N; ++j) {
    t.Block[j] = Matrix{};
    for (int p = 1; p <= t.n; ++p) t.Block[j](p, p) = Checked(1 + t.Lo[j][p] + t.Up[j][p]);
  }
  for (int r = 1; r <= Count(e.NChem); ++r) {
    const int a = e.ChemMap(r, 1), b = e.ChemMap(r, 2);
    for (int j = 1; j <= t.N; ++j) {
      Matrix& B = t.Block[j];
      B(a, a) = Checked(B(a, a) + t.kfStep[r]);
      B(b, b) = Checked(B(b, b) + t.kbStep[r]);
      B(a, b) = Checked(B(a, b) - t.kbStep[r]);
      B(b, a) = Checked(B(b, a) - t.kfStep[r]);
    }
  }
}

void CopySecondOrder(const Experiment& e, DigitalRun& run) {
  run.t.NChem = Count(e.NChem);
  run.t.NChem2 = Count(e.NChem2);
  if (run.t.NChem2 > kMaxSecondOrder) Raise(ErrorKind::SubscriptOutOfRange);
  for (int r = 1; r <= run.t.NChem2; ++r)
    for (int s = 1; s <= 4; ++s) run.t.Chem2Map[r][s] = e.Chem2Map(r, s);
}

void Prepare(const Experiment& e, DigitalRun& run) {
  run.t.n = SpeciesCount(e);
  run.nCharge = ChargeCount(e);
  run.DMbase = ReferenceDiffusion(e);
  run.time = MakeTimeStructure(Count(e.Technique), e.td.value(), e.tp.value(), e.Epulse.value());
  run.t.N = BoxCount(run.DMbase, e.NData.value());
  PickReference(e, run);
  ScaleSpecies(e, run);
  ScaleRates(e, run);
  UniformProfile(run);
  LayOutGrid(e, run);
  ScaleTransport(e, run);
  run.chain = FindChain(e.ChargeMap);
  SetStandingRelation(run.t, run.chain);
  BuildBlocks(e, run);
  CopySecondOrder(e, run);
}

// The potential of substep s of point t, before the resistive drop.
void ApplyPulse(const Experiment& e, DigitalRun& run, double X, int t, int s) {
  const double P = t > e.NHalf.value() ? -e.Epulse.value() : e.Epulse.value();
  switch (Count(e.Technique)) {
    case 3:
      run.Ework = Checked(X + P);
      break;
    case 4:
      if (s > run.time.SubSample) run.Ework = Checked(X + P);
      break;
    case 5:
      run.Ework = Checked(s == 2 ? X + run.time.PulseHalf : X - run.time.PulseHalf);
      break;
    default:
      break;
  }
}

// Butler-Volmer rate constants at the working potential, cm/s.
void RateConstants(const Experiment& e, DigitalRun& run) {
  for (int r = 1; r <= run.nCharge; ++r) {
    const double x = Checked(Checked(e.NEL(r).value() * e.fRT.value()) * (run.Ework - e.Eze(r).value()));
    const double alpha = e.alph(r).value();
    run.kRed[r] = Checked(e.ks(r).value() * Exp(Checked(-alpha * x)));
    run.kOx[r] = Checked(e.ks(r).value() * Exp(Checked((1 - alpha) * x)));
  }
}

void Step(DigitalRun& run, MessageBox& messages) {
  if (run.t.NChem2 != 0)
    SolveNonlinearStep(run.t, run.w, messages);
  else
    SolveLinearStep(run.t, run.w, messages);
}

void RecordSurface(DigitalRun& run, CurveStore& s, int t) {
  for (int i = 1; i <= run.t.n; ++i) s.SurfC(i, t) = Checked(run.t.Conc[i][1] * run.Cmax);
}

// Surface flux of each charge reaction to amperes; a reduction is positive.
void Sample(const Experiment& e, DigitalRun& run, CurveStore& s, int t, int sub) {
  double sum = 0;
  const int technique = Count(e.Technique);
  for (int r = 1; r <= run.nCharge; ++r) {
    const int a = e.ChargeMap(r, 1), b = e.ChargeMap(r, 2);
    const double flux = Checked(run.kRed[r] * run.t.Conc[a][1] - run.kOx[r] * run.t.Conc[b][1]);
    const double n = e.NEL(r).value();
    const double I = Checked(Checked(n * Div(flux, Sqrt(n))) * Sqrt(n) * run.FluxScale);
    sum = Checked(sum + I);
    if (technique == 4 || technique == 5) {
      if (sub == run.time.SubSample) run.PreSample[r] = I;
      if (sub == run.time.NSub) s.YSim(r, t) = Checked(I - run.PreSample[r]);
    } else {
      s.YSim(r, t) = I;
    }
  }
  run.Itotal = sum;
}

void RunPoint(const Experiment& e, DigitalRun& run, CurveStore& s, MessageBox& messages, int t) {
  const double X = s.XData(t);
  run.Ework = X;
  const int technique = Count(e.Technique);
  if (technique >= 2 && technique <= 4) UniformProfile(run);  // every point is a new drop
  const int first = CInt(run.time.SubFirst), last = CInt(run.time.NSub);
  const double Ru = e.Ru.value();
  for (int sub = first; sub <= last; ++sub) {
    ApplyPulse(e, run, X, t, sub);
    if (Ru > 0) run.Ework = Checked(run.Ework + Ru * run.Itotal);
    RateConstants(e, run);
    SetStepRelation(run.t, run.chain, e, run.kRed, run.kOx, run.Gap);
    Step(run, messages);
    RecordSurface(run, s, t);
    if (sub == run.time.SubSample || sub == run.time.NSub) Sample(e, run, s, t, sub);
  }
}

}  // namespace

void RunDigital(Experiment& e, CurveStore& s, MessageBox& messages) {
  try {
    auto run = std::make_unique<DigitalRun>();
    Prepare(e, *run);
    const int points = static_cast<int>(e.NData.value());
    for (int t = 1; t <= points; ++t) RunPoint(e, *run, s, messages, t);
  } catch (const RunError& error) {
    messages.show("CV Error: " + error.description() + "! Please try again by other initial values.");
  }
}

}  // namespace voltrix
