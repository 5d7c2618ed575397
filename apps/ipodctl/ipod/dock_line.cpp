// SPDX-License-Identifier: MIT
// Chooses the device, and explains what is wrong with it.
#include "ipod/dock_line.h"

#include "console/failure.h"

namespace ipodctl {

DockLine::DockLine(const Options& options) {
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

std::vector<std::string> DockLine::Undock() {
  return simulated_ ? simulated_->Stop() : std::vector<std::string>();
}

void DockLine::FailToOpen(long code) const {
  const PortProblem problem = WhyNotOpened(device_, code);
  throw CommandFailure(kPortUnavailable, "cannot open " + device_ + ": " + problem.text,
                       problem.finding);
}

void DockLine::FailToFindIpod(const std::string& evidence) const {
  throw CommandFailure(kNothingDocked, "no iPod answers on " + device_ + " (" + evidence +
                                           "); check that it is docked and switched on");
}

void DockLine::FailForEcho() const {
  throw CommandFailure(kNothingDocked,
                       "what is sent on " + device_ +
                           " comes back: the line is wired to itself, or bridged "
                           "with no iPod behind it; check the cable",
                       "E202");
}

void DockLine::FailToReachIpod() const {
  throw SessionLost(kFailed, "the iPod on " + device_ +
                                 " no longer answers; check that it is docked and the cable is "
                                 "plugged in");
}

}  // namespace ipodctl
