#include "analysis/theoretical_peak.h"

#include <functional>

#include "model/checked.h"
#include "model/errors.h"
#include "model/number_format.h"

namespace voltrix {

namespace {

constexpr double kPi = 3.141592654;
constexpr double kRootPi = 1.77245385;
// 96484.6 * 0.001: the Faraday constant in the units of the current.
const double kFaradayScaled = 96484.6 * 0.001;

// The inputs of reaction r: species 2r - 1 reacts to species 2r.
struct Reaction {
  const Experiment& e;
  int r;
  double n, a, k, D, C;

  Reaction(const Experiment& ex, int reaction)
      : e(ex), r(reaction), n(ex.NEL(reaction)), a(ex.alph(reaction)), k(ex.ks(reaction)),
        D(ex.D(2 * reaction - 1)), C(ex.C(2 * reaction - 1)) {}

  // Formal potential corrected for unequal diffusion of the two forms.
  double E0() const { return Checked(e.Eze(r) + Div(e.RTF, 2 * n) * Log(Div(e.D(2 * r), D))); }
  double B() const { return Checked(kFaradayScaled * e.ARE * C); }
  // Cottrell-type factor of a pulse of length tp.
  double PulseRoot() const { return Sqrt(Div(Div(D, kPi), e.tp)); }
  // The pulse height as a Nernstian ratio s; a differential pulse peak
  // scales with (1 - s) / (1 + s).
  double PulseRatio() const { return Exp(Checked(n * e.fRT * e.Epulse / 2)); }
};

using Formula = std::function<double()>;

class ValueSetter {
 public:
  ValueSetter(int r, TheoreticalPeak& v, std::vector<std::string>& faults) : r_(r), v_(v), faults_(faults) {}
  // name is "line|quantity": "Rev Peak|Ip" tells the user which value is missing.
  void set(std::optional<double> TheoreticalPeak::*field, const char* name, const Formula& f) {
    try {
      v_.*field = Checked(f());
    } catch (const RunError& err) {
      v_.*field = std::nullopt;
      const std::string n(name);
      const auto bar = n.find('|');
      faults_.push_back(n.substr(0, bar) + " " + std::to_string(r_) + ": " + n.substr(bar + 1) +
                        " not computed (" + err.description() + ")");
    }
  }

 private:
  int r_;
  TheoreticalPeak& v_;
  std::vector<std::string>& faults_;
};

void LinearSweep(const Reaction& x, int electrode, ValueSetter& set) {
  const Experiment& e = x.e;
  const double n = x.n, a = x.a, D = x.D;
  switch (electrode) {
    case 1:  // planar: reversible and irreversible peak of a sweep
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] { return x.B() * 0.4463 * n * Sqrt(Checked(n * e.fRT * e.V * D)); });
      set.set(&TheoreticalPeak::Er, "Rev Peak|E", [&] { return x.E0() - Div(1.109 * e.RTF, n); });
      set.set(&TheoreticalPeak::Ii, "Irrev Peak|Ip", [&] { return x.B() * 0.4958 * n * Sqrt(Checked(a * n * e.fRT * e.V * D)); });
      set.set(&TheoreticalPeak::Ei, "Irrev Peak|E", [&] {
        const double root = Sqrt(Div(Checked(D * a * n * e.V), e.RTF));
        return x.E0() - Div(e.RTF, a * n) * (Log(Div(root, x.k)) + 0.78);
      });
      break;
    case 2: case 3: case 5: case 6:  // steady state of a curved electrode
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] { return Div(x.B() * n * D, e.radius); });
      break;
    case 4:  // microdisc, without the Faraday factor or the area
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] { return Checked(0.4 * n * D * x.C * e.radius); });
      break;
    case 7:  // thin film
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] { return x.B() * n * n * e.fRT * e.leng * e.V / 4; });
      set.set(&TheoreticalPeak::Er, "Rev Peak|E", [&] {
        return e.Eze(x.r) + Div(e.RTF, n) * Log(Div(kRootPi * n * e.leng, Sqrt(Checked(e.td * D))));
      });
      break;
    case 8:  // rotating disk
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] {
        const double d = Checked(Div(Div(Div(0.412 * n * e.fRT * e.V, e.omega), 2), kPi) *
                                 Pow(Div(e.Vis, D), 1.0 / 3.0));
        const double b = Div(x.B() * n * D, d);
        return b * 1.86 * Pow(Div(e.Vis, D), 1.0 / 6.0) * Sqrt(Div(Div(Div(e.V, e.omega), kPi), 2));
      });
      break;
    default:
      break;
  }
}

void DirectCurrent(const Reaction& x, int electrode, ValueSetter& set) {
  const Experiment& e = x.e;
  const double n = x.n, D = x.D;
  auto transient = [&] { return Div(1, Sqrt(Checked(kPi * D * e.td))); };
  switch (electrode) {
    case 1:
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] { return x.B() * n * Sqrt(Div(Div(D, kPi), e.td)); });
      set.set(&TheoreticalPeak::Er, "Rev Peak|E", [&] { return x.E0(); });
      set.set(&TheoreticalPeak::Ii, "Irrev Peak|Ip", [&] { return x.B() * n * Sqrt(Div(Div(D, kPi), e.td)); });
      set.set(&TheoreticalPeak::Ei, "Irrev Peak|E", [&] {
        return x.E0() + Div(e.RTF, x.a * n) * Log(Checked(1.35 * x.k * Sqrt(Div(e.td, D))));
      });
      break;
    case 2: case 3: case 4:
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] { return x.B() * n * D * (transient() + Div(1, e.radius)); });
      break;
    case 5: case 6: {
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] {
        const double cylinder = Div(2, Checked(e.radius * Log(Div(Div(Checked(4 * D * e.td), e.radius), e.radius))));
        return x.B() * n * D * (transient() + cylinder);
      });
      break;
    }
    case 8:
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] {
        return x.B() * 0.62 * n * Pow(D, 2.0 / 3.0) * Sqrt(e.omega) * Pow(e.Vis, -1.0 / 6.0);
      });
      break;
    default:  // 7: the thin film has no limiting current
      break;
  }
}

void MechanismOne(const Reaction& x, ValueSetter& set) {
  const Experiment& e = x.e;
  const double n = x.n;
  const int technique = static_cast<int>(e.Technique);
  const int electrode = static_cast<int>(e.Electrode);
  // Pulse techniques share the Cottrell current at the end of the pulse.
  auto pulse = [&] { return x.B() * n * x.PulseRoot(); };
  switch (technique) {
    case 1: LinearSweep(x, electrode, set); break;
    case 2: DirectCurrent(x, electrode, set); break;
    case 3:
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", pulse);
      set.set(&TheoreticalPeak::Er, "Rev Peak|E", [&] { return x.E0() - e.Epulse; });
      break;
    case 4:
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] {
        const double s = x.PulseRatio();
        return Div(Checked(pulse() * (1 - s)), Checked(1 + s));
      });
      set.set(&TheoreticalPeak::Er, "Rev Peak|E", [&] { return x.E0() - e.Epulse / 2; });
      break;
    case 5:
      set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] {
        const double s = x.PulseRatio();
        return Div(Checked(pulse() * (1 - s)), Checked(1 + s)) * 2.4;
      });
      set.set(&TheoreticalPeak::Er, "Rev Peak|E", [&] { return x.E0(); });
      break;
    default:
      break;
  }
}

std::string Formatted(const std::optional<double>& v, const char* pattern) {
  return v ? FormatNumber(*v, pattern) : std::string();
}

}  // namespace

void TheoreticalValues(const Experiment& e, int r, TheoreticalPeak& values, std::vector<std::string>& faults) {
  const Reaction x(e, r);
  ValueSetter set(r, values, faults);
  if (e.Mechanism == 1) {
    MechanismOne(x, set);
  } else if (e.Mechanism == 7) {
    // Catalytic regeneration: a steady current set by kf, whatever the technique.
    set.set(&TheoreticalPeak::Ir, "Rev Peak|Ip", [&] { return x.B() * x.n * Sqrt(Checked(x.D * e.kf(r))); });
    set.set(&TheoreticalPeak::Er, "Rev Peak|E", [&] { return x.E0(); });
  }
}

void TheoreticalPeakReport(const Experiment& e, const LineSink& print) {
  const int technique = static_cast<int>(e.Technique);
  const char* label = (technique == 2 || technique == 3) ? "E1/2 = " : "Ep = ";
  TheoreticalPeak values;
  for (int r = 1; r <= Count(e.NCharge); ++r) {
    std::vector<std::string> faults;
    TheoreticalValues(e, r, values, faults);
    auto line = [&](const char* head, const std::optional<double>& E, const std::optional<double>& I) {
      print(PrintLine().text(head).number(r).text(":").zone()
                .text(label).text(Formatted(E, "0.####")).zone()
                .text("Ip = ").text(Formatted(I, "0.####E-0"))
                .str());
    };
    line("Rev Peak ", values.Er, values.Ir);
    line("Irrev Peak ", values.Ei, values.Ii);
    for (const std::string& fault : faults) print(fault);
  }
}

}  // namespace voltrix
