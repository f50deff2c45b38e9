#pragma once
// The microdisc cell of a run whose outline is known before it starts: a
// run whose least work is past the budget is refused at once, before the
// program is kept busy.
#include <memory>

#include "digital/exact_budget.h"
#include "digital/transport_cell.h"

namespace voltrix {

std::unique_ptr<TransportCell> MakeMicrodiscCell(const Experiment& e, const ReactionSet& set,
                                                 const CellTiming& timing, const RunOutline& outline);

}  // namespace voltrix
