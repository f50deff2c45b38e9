#include "digital/run_digital.h"

#include "model/platform.h"

namespace voltrix {

// The finite-difference engine comes with the digital simulation; until then
// the rows stay at 0 and the user is told.
void RunDigital(Experiment&, CurveStore&, MessageBox& messages) {
  messages.show("Digital simulation is not available yet: the curve stays at 0.");
}

}  // namespace voltrix
