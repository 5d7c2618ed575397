// SPDX-License-Identifier: MIT
// --simulated where there are no pseudo-terminals.
#include "console/failure.h"
#include "ipod/simulated_ipod.h"

namespace ipodctl {

SimulationNames NamesForSimulation() { return {}; }

class SimulatedIpod::Server {};

SimulatedIpod::SimulatedIpod(const SimulationOptions& /*options*/) {
  throw CommandFailure(kFailed,
                       "the simulated iPod needs pseudo-terminals, which this system does not "
                       "have; name the dock's port with --port");
}

SimulatedIpod::~SimulatedIpod() = default;

std::string SimulatedIpod::device() const { return {}; }

std::string SimulatedIpod::NewestFile() const { return {}; }

std::vector<std::string> SimulatedIpod::Stop() { return {}; }

}  // namespace ipodctl
