#include "digital/digital_grid.h"

#include "model/checked.h"
#include "model/errors.h"
#include "model/experiment.h"
#include "digital/step_tables.h"

namespace voltrix {

namespace {
constexpr double kExpansion = 0.5;
constexpr double kFaraday = 96484.6;
constexpr double kGas = 8.31441;
}  // namespace

TimeStructure MakeTimeStructure(int technique, double td, double tp, double Epulse) {
  TimeStructure ts;
  switch (technique) {
    case 2:
      ts.dt = td / 10;
      ts.NSub = 10;
      break;
    case 3:
      ts.dt = tp / 10;
      ts.NSub = Checked(10 * Div(td, tp));
      ts.SubFirst = ts.NSub - 9;
      break;
    case 4:
      ts.dt = tp / 4;
      ts.NSub = Checked(4 * Div(td, tp));
      ts.SubSample = ts.NSub - 5;
      break;
    case 5:
      ts.dt = tp;
      ts.NSub = 2;
      ts.PulseHalf = Epulse / 2;
      break;
    default:
      ts.dt = td;
      ts.NSub = 1;
      break;
  }
  return ts;
}

double ReferenceDiffusion(const Experiment& e) {
  if (Count(e.NChem) + Count(e.NChem2) == 0) return 100;
  const double rate = e.kf(1).value() + e.kb(1).value();
  return Div(Checked(rate * kGas * e.TempK.value()), Checked(kFaraday * std::fabs(e.Estep.value())));
}

int BoxCount(double DMbase, double NData) {
  const double spread = Checked(6 * (Exp(kExpansion) - 1) * Sqrt(Checked(DMbase * NData)));
  const double boxes = Log(1 + spread) * (1.0 / kExpansion) + 2.0;
  const int N = CInt(boxes);
  if (N > kMaxBoxes) Raise(ErrorKind::SubscriptOutOfRange);
  return N;
}

double XEdge(int j) { return (std::exp(kExpansion * (j - 1)) - 1) / (std::exp(kExpansion) - 1); }

double XMid(int j) { return (std::exp(kExpansion * (j - 0.5)) - 1) / (std::exp(kExpansion) - 1); }

GridFamily FamilyOf(int electrode) {
  switch (electrode) {
    case 2:
    case 3:
    case 4:
      return GridFamily::Spherical;
    case 5:
    case 6:
      return GridFamily::Cylindrical;
    default:
      return GridFamily::Planar;
  }
}

namespace {

// Face area over box volume for the shell between a and b, in units of box 1.
double ShellArea(GridFamily family, double radius) {
  switch (family) {
    case GridFamily::Cylindrical: return 2 * radius;
    case GridFamily::Spherical: return 3 * radius * radius;
    default: return 1;
  }
}

double ShellVolume(GridFamily family, double a, double b) {
  switch (family) {
    case GridFamily::Cylindrical: return b * b - a * a;
    case GridFamily::Spherical: return b * b * b - a * a * a;
    default: return b - a;
  }
}

}  // namespace

void GeometryFactors(GridFamily family, double r0, int N, double* GeoLo, double* GeoUp) {
  GeoLo[1] = Div(1.0, XMid(1));
  if (family == GridFamily::Planar) {
    GeoUp[1] = Div(1.0, XMid(2) - XMid(1));
    for (int j = 2; j <= N; ++j) {
      const double width = XEdge(j + 1) - XEdge(j);
      GeoLo[j] = Div(1.0, width * (XMid(j) - XMid(j - 1)));
      GeoUp[j] = Div(1.0, width * (XMid(j + 1) - XMid(j)));
    }
    return;
  }
  const double outer = r0 + 1;
  GeoUp[1] = Div(ShellArea(family, outer), Checked(ShellVolume(family, r0, outer) * (XMid(2) - XMid(1))));
  for (int j = 2; j <= N; ++j) {
    const double a = r0 + XEdge(j), b = r0 + XEdge(j + 1);
    const double volume = Checked(ShellVolume(family, a, b));
    GeoLo[j] = Div(ShellArea(family, a), Checked(volume * (XMid(j) - XMid(j - 1))));
    GeoUp[j] = Div(ShellArea(family, b), Checked(volume * (XMid(j + 1) - XMid(j))));
  }
}

}  // namespace voltrix
