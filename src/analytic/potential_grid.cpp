#include <cmath>
#include <cstdint>

#include "analytic/run_steps.h"
#include "model/checked.h"

namespace voltrix {

void BuildPotentialGrid(Experiment& e, XAxis& X) {
  e.dirSign = e.Eend > e.Estart ? 1 : -1;
  // The count and its +1 are 16-bit integer arithmetic: 32767 steps overflow.
  const int steps = CInt(Div(std::fabs(e.Eend - e.Estart), e.Estep));
  if (steps + 1 > INT16_MAX) Raise(ErrorKind::Overflow);
  e.NHalf = steps + 1.0;
  e.NData = (e.NHalf * 2) * e.Cycles;
  const long half = static_cast<long>(e.NHalf.value());
  // X(i) writes are bound-checked: a run longer than 4000 points stops at
  // point 4001 with Subscript out of range.
  for (long i = 1; i <= half; ++i) X(i) = e.Estart + (e.Estep * static_cast<double>(i - 1)) * e.dirSign;
  if (e.Cycles == 1 || e.Cycles == 2) {
    // The turning potential stands twice, and the scan ends on X(1).
    for (long i = 1; i <= half; ++i) X(half + i) = X(half - i + 1);
  }
  if (e.Cycles == 2) {
    for (long i = 1; i <= 2 * half; ++i) X(2 * half + i) = X(i);
  }
  CheckIndex(static_cast<long>(e.NData.value()), kMaxPoints + 1);
}

}  // namespace voltrix
