// SPDX-License-Identifier: MIT
// Where the iPod is: on a named port, on the library's own, or simulated.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ipod/simulated_ipod.h"
#include "options.h"

namespace ipodctl {

/// Points the library's port at the device asked for, for as long as it lives.
class Dock {
 public:
  explicit Dock(const Options& options);

  const std::string& device() const { return device_; }
  bool simulated() const { return simulated_ != nullptr; }
  /// Of a simulated iPod; see there.
  std::string NewestFile() const { return simulated_ ? simulated_->NewestFile() : std::string(); }
  /// Takes a simulated iPod out of the dock. @return the protocol mistakes that it saw
  std::vector<std::string> Undock();

 private:
  std::unique_ptr<SimulatedIpod> simulated_;
  std::string device_;
};

}  // namespace ipodctl
