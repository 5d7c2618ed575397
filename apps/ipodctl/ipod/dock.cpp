// SPDX-License-Identifier: MIT
// Chooses the device.
#include "ipod/dock.h"

#include "console/failure.h"
#include "console/host.h"

namespace ipodctl {

Dock::Dock(const Options& options) {
  if (options.simulation) {
    simulated_ = std::make_unique<SimulatedIpod>(*options.simulation);
    ChoosePortDevice(simulated_->device());
  } else if (!options.port.empty() && !ChoosePortDevice(options.port)) {
    throw CommandFailure(kUsage, "cannot use " + options.port +
                                     ": on this system the dock is always " + PortDevice() +
                                     "; give its adapter this name");
  }
  device_ = PortDevice();
}

std::vector<std::string> Dock::Undock() {
  return simulated_ ? simulated_->Stop() : std::vector<std::string>();
}

}  // namespace ipodctl
