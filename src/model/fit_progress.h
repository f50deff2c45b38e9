#pragma once
// How a long fit tells the front end how far it has come, and how the user
// stops it. The fit reports and asks only between passes, on the thread of
// the command, so a front end may process its events there.
namespace voltrix {

struct FitProgressReport {
  int start = 1;   // the start under way; with several starts, those finished
  int starts = 1;  // starts in all
  int pass = 0;    // passes of the start under way
  double leastSquare = 0;
};

class FitProgress {
 public:
  virtual ~FitProgress() = default;
  // A fit begins: a stop asked for before it no longer counts.
  virtual void begin() {}
  virtual void report(const FitProgressReport& progress) = 0;
  // True once the user has asked the fit to stop.
  virtual bool stopRequested() = 0;
  virtual void end() {}
};

}  // namespace voltrix
