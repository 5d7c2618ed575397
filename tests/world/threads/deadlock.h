// SPDX-License-Identifier: MIT
// The host waits for something that cannot come.
#pragma once

#include <stdexcept>
#include <string>

namespace ipodcomm::virtual_platform {

/// Thrown out of the host's waiting service, so that the test fails; what() says who waits on what.
class Deadlock : public std::runtime_error {
 public:
  explicit Deadlock(const std::string& description) : std::runtime_error(description) {}
};

}  // namespace ipodcomm::virtual_platform
