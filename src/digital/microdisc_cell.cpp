#include "model/errors.h"
#include "digital/transport_cell.h"

namespace voltrix {

std::unique_ptr<TransportCell> MakeMicrodiscCell(const Experiment&, const ReactionSet&, const CellTiming&) {
  Raise(ErrorKind::InvalidOperation, "The exact microdisc is not available yet");
}

}  // namespace voltrix
