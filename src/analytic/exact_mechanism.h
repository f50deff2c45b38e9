#pragma once
// One of the eight closed-form mechanisms as physical data for the exact
// path, and its species regrouped into transport channels: combinations of
// concentrations that each diffuse with one coefficient and decay at one
// rate, so that a damped diffusion kernel carries each of them alone.
#include <vector>

#include "model/experiment.h"

namespace voltrix {

struct ExactCharge {
  int ox = 0, red = 0;  // species 1 to 4
  double n = 1, E0 = 0, ks = 0, alpha = 0.5;
};

// A channel is the combination sum(in[s] c[s]) of deviations from the bulk;
// it diffuses with D and decays at `damping` (1/s); species s receives
// out[s] times it. Without chemistry each species is its own channel.
struct TransportChannel {
  double D = 0, damping = 0;
  double in[kMaxSpecies + 1] = {}, out[kMaxSpecies + 1] = {};
};

struct ExactMechanism {
  double fRT = 0;
  double bulk[kMaxSpecies + 1] = {};  // mol/L at the start
  std::vector<ExactCharge> charge;
  std::vector<TransportChannel> channels;
  double largestN() const;
  // Value of a channel in the bulk after t seconds of homogeneous reaction.
  double channelBulk(const TransportChannel& c, double t) const;
};

// Reads Mechanism 1 to 8 with its rate constants. The reaction of mechanism
// 8, C = A + pD, runs with D in excess: its back rate is kb C(4)^p. Raises
// InvalidArgument, with a sentence the run shows, where no exact model
// exists: a chemical step between species of unequal diffusion coefficients.
ExactMechanism ReadExactMechanism(const Experiment& e);

}  // namespace voltrix
