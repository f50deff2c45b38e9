#pragma once
// The uncompensated resistance, solved at each time step: the interface
// sees E = Eapplied + Ru I(E), with I the faradaic current at the end of the
// step (reduction positive), so a reduction current pulls the interface
// back towards positive potentials.
#include "digital/transport_cell.h"

namespace voltrix {

struct InterfaceStep {
  double E = 0;  // interfacial potential at the end of the step, V
  CellCurrents currents;
};

// Tries the step at interfacial potentials until E - Eapplied - Ru I(E) is
// below 1e-10 V; the cell's last trial is the answer, ready to be accepted.
// `guess` is the current expected (the last step's). Raises InvalidOperation
// when no potential balances the drop.
InterfaceStep SolveInterface(TransportCell& cell, double Ebegin, double Eapplied, double dt, double Ru, double guess);

}  // namespace voltrix
