#include "digital/exact_resistance.h"

#include <cmath>

#include "model/checked.h"

namespace voltrix {

namespace {

constexpr double kTolerance = 1e-10;  // V
constexpr int kMostTrials = 200;

// E - Eapplied - Ru I(E), each evaluation a trial of the step at E.
class Balance {
 public:
  Balance(TransportCell& cell, double Ebegin, double Eapplied, double dt, double Ru)
      : cell_(cell), Ebegin_(Ebegin), Eapplied_(Eapplied), dt_(dt), Ru_(Ru) {}

  double operator()(double E) {
    if (++trials_ > kMostTrials) Raise(ErrorKind::InvalidOperation, "No interfacial potential balances the resistance");
    last.E = E;
    last.currents = cell_.trial(Ebegin_, E, dt_);
    return Checked(E - Eapplied_ - Ru_ * last.currents.total);
  }

  InterfaceStep last;

 private:
  TransportCell& cell_;
  double Ebegin_, Eapplied_, dt_, Ru_;
  int trials_ = 0;
};

}  // namespace

InterfaceStep SolveInterface(TransportCell& cell, double Ebegin, double Eapplied, double dt, double Ru, double guess) {
  if (Ru == 0) return {Eapplied, cell.trial(Ebegin, Eapplied, dt)};
  Balance f(cell, Ebegin, Eapplied, dt, Ru);
  double a = Checked(Eapplied + Ru * guess);
  double fa = f(a);
  if (std::fabs(fa) <= kTolerance) return f.last;
  // The balance rises at least as fast as E wherever the current falls with
  // E, so a - fa lies across the root; further out where it does not.
  double reach = 1;
  double b = Checked(a - fa);
  double fb = f(b);
  while (fa * fb > 0 && std::fabs(fb) > kTolerance) {
    reach *= 2;
    a = b;
    fa = fb;
    b = Checked(a - reach * fa);
    fb = f(b);
  }
  // Illinois: false position that halves the weight of a stale end.
  while (std::fabs(fb) > kTolerance && std::fabs(b - a) > 1e-14 * (1 + std::fabs(b))) {
    const double c = b - fb * (b - a) / (fb - fa);
    const double fc = f(c);
    if (fc * fb < 0) {
      a = b;
      fa = fb;
    } else {
      fa /= 2;
    }
    b = c;
    fb = fc;
  }
  return f.last;
}

}  // namespace voltrix
