#include "files/instrument_cycles.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace voltrix {

namespace {

// A sweep shorter than this share of the cycle's longest is a stub: the few
// points a file puts before a cycle's start or after its end.
constexpr double kStubShare = 0.05;
// A scan that starts between its limits runs a lead-in sweep noticeably
// shorter than the sweeps that follow.
constexpr double kLeadInShare = 0.9;

double Span(const std::vector<double>& E, const Sweep& s) { return std::fabs(E[s.last] - E[s.first]); }

std::size_t ExtremeIndex(const std::vector<double>& E, std::size_t from, std::size_t to, int dir) {
  std::size_t best = from;
  for (std::size_t i = from + 1; i <= to; ++i)
    if ((E[i] - E[best]) * dir > 0) best = i;
  return best;
}

std::string Volts(double v) {
  char buf[48];
  std::snprintf(buf, sizeof buf, "%.4g V", v);
  return buf;
}

MeasuredCycle MakeCycle(std::string label, std::vector<double> E, std::vector<double> I) {
  MeasuredCycle c;
  c.label = std::move(label);
  c.sweeps = SplitSweeps(E);
  c.E = std::move(E);
  c.I = std::move(I);
  return c;
}

// The sweeps of a cycle without the stubs at either end.
std::vector<Sweep> MainSweeps(const MeasuredCycle& c) {
  double longest = 0;
  for (const Sweep& s : c.sweeps) longest = std::max(longest, Span(c.E, s));
  std::size_t b = 0, e = c.sweeps.size();
  while (e - b > 1 && Span(c.E, c.sweeps[b]) < kStubShare * longest) ++b;
  while (e - b > 1 && Span(c.E, c.sweeps[e - 1]) < kStubShare * longest) --e;
  return {c.sweeps.begin() + static_cast<std::ptrdiff_t>(b), c.sweeps.begin() + static_cast<std::ptrdiff_t>(e)};
}

bool ReturnsToStart(const MeasuredCycle& c) {
  const std::vector<Sweep> main = MainSweeps(c);
  if (main.size() != 2) return false;
  const double start = c.E[main[0].first], end = c.E[main[1].last];
  const double tolerance = std::max(2 * TypicalStep(c.E), 0.02 * Span(c.E, main[0]));
  return std::fabs(end - start) <= tolerance;
}

void MarkComplete(std::vector<MeasuredCycle>& cycles) {
  const bool allSingle = std::all_of(cycles.begin(), cycles.end(),
                                     [](const MeasuredCycle& c) { return MainSweeps(c).size() == 1; });
  for (MeasuredCycle& c : cycles) c.complete = allSingle || ReturnsToStart(c);
}

std::vector<double> Slice(const std::vector<double>& v, std::size_t first, std::size_t last) {
  return {v.begin() + static_cast<std::ptrdiff_t>(first), v.begin() + static_cast<std::ptrdiff_t>(last) + 1};
}

void PairSweeps(const MeasuredScan& scan, CycleSplit& out) {
  const std::vector<Sweep> sweeps = SplitSweeps(scan.E);
  if (sweeps.size() <= 2) {
    out.cycles.push_back(MakeCycle("cycle 1", scan.E, scan.I));
    return;
  }
  std::size_t k = 0;
  if (Span(scan.E, sweeps[0]) < kLeadInShare * Span(scan.E, sweeps[1])) {
    out.notes.push_back("the lead-in sweep from " + Volts(scan.E[sweeps[0].first]) + " to " +
                        Volts(scan.E[sweeps[0].last]) + " is no cycle and was left out");
    k = 1;
  }
  for (int number = 1; k < sweeps.size(); k += 2, ++number) {
    const std::size_t first = sweeps[k].first;
    const std::size_t last = k + 1 < sweeps.size() ? sweeps[k + 1].last : sweeps[k].last;
    out.cycles.push_back(
        MakeCycle("cycle " + std::to_string(number), Slice(scan.E, first, last), Slice(scan.I, first, last)));
  }
}

}  // namespace

double TypicalStep(const std::vector<double>& E) {
  std::vector<double> steps;
  for (std::size_t i = 1; i < E.size(); ++i) {
    const double d = std::fabs(E[i] - E[i - 1]);
    if (d > 0) steps.push_back(d);
  }
  if (steps.empty()) return 0;
  const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
  std::nth_element(steps.begin(), middle, steps.end());
  return *middle;
}

std::vector<Sweep> SplitSweeps(const std::vector<double>& E) {
  std::vector<Sweep> sweeps;
  if (E.empty()) return sweeps;
  const double back = 3 * TypicalStep(E);
  std::size_t start = 0, extreme = 0;
  int dir = 0;
  for (std::size_t i = 1; i < E.size(); ++i) {
    if (dir == 0) {
      if (std::fabs(E[i] - E[start]) <= back) continue;
      dir = E[i] > E[start] ? 1 : -1;
      extreme = ExtremeIndex(E, start, i, dir);
    } else if ((E[i] - E[extreme]) * dir > 0) {
      extreme = i;
    } else if ((E[extreme] - E[i]) * dir > back) {
      sweeps.push_back({start, extreme});
      start = extreme;
      dir = -dir;
      extreme = ExtremeIndex(E, start, i, dir);
    }
  }
  sweeps.push_back({start, E.size() - 1});
  return sweeps;
}

CycleSplit SplitCycles(const std::vector<MeasuredScan>& scans) {
  CycleSplit out;
  std::vector<const MeasuredScan*> filled;
  for (const MeasuredScan& s : scans)
    if (!s.E.empty()) filled.push_back(&s);
  if (filled.size() == 1) PairSweeps(*filled[0], out);
  if (filled.size() > 1)
    for (const MeasuredScan* s : filled) out.cycles.push_back(MakeCycle(s->label, s->E, s->I));
  MarkComplete(out.cycles);
  return out;
}

std::size_t FirstCompleteCycle(const std::vector<MeasuredCycle>& cycles) {
  for (std::size_t k = 0; k < cycles.size(); ++k)
    if (cycles[k].complete) return k;
  return 0;
}

std::string DescribeCycle(const MeasuredCycle& c) {
  std::string text = c.label + ": ";
  const std::vector<Sweep> main = c.sweeps.empty() ? std::vector<Sweep>{} : MainSweeps(c);
  if (!main.empty()) text += Volts(c.E[main.front().first]);
  for (const Sweep& s : main) text += " to " + Volts(c.E[s.last]);
  text += ", " + std::to_string(c.E.size()) + " points";
  if (!c.complete) text += " (incomplete)";
  return text;
}

}  // namespace voltrix
