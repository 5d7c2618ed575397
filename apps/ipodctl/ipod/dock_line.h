// SPDX-License-Identifier: MIT
// The serial line of the dock: a named port, the library's own, or the one of a simulated iPod.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "console/system.h"
#include "ipod/simulated_ipod.h"
#include "options.h"

namespace ipodctl {

/// Points the library's port at the device asked for, for as long as it lives.
class DockLine {
 public:
  explicit DockLine(const Options& options);

  const std::string& device() const { return device_; }
  bool simulated() const { return simulated_ != nullptr; }
  /// Of the simulated iPod; see SimulatedIpod.
  std::string NewestFile() const { return simulated_ ? simulated_->NewestFile() : std::string(); }
  /// Takes a simulated iPod out of the dock. @return the protocol mistakes that it saw
  std::vector<std::string> Undock();

  // Each throws the CommandFailure that says what is wrong with the line, and what to do.

  /// @param code the system's
  [[noreturn]] void FailToOpen(long code = kUnknownReason) const;
  /// Nothing is docked. @param evidence what was tried
  [[noreturn]] void FailToFindIpod(const std::string& evidence) const;
  /// What is sent comes back.
  [[noreturn]] void FailForEcho() const;
  /// An iPod was there, and is no longer: a SessionLost.
  [[noreturn]] void FailToReachIpod() const;

 private:
  std::unique_ptr<SimulatedIpod> simulated_;
  std::string device_;
};

}  // namespace ipodctl
