// SPDX-License-Identifier: MIT
// Services that are told to fail.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "platform/services.h"
#include "world/services/service_list.h"

namespace ipodcomm::virtual_platform {

/// A switch: the `nth` call from now on fails with `code`, once or for ever from then on.
struct Fault {
  ServiceId service;
  unsigned nth = 1;
  DWORD code = ERROR_GEN_FAILURE;
  bool for_ever = false;
  std::string thread;  ///< counts and fails in this thread only; empty: in all
};

class Faults {
 public:
  /// Throws std::invalid_argument for a service that cannot fail.
  void Add(const Fault& fault);
  void Clear() { switches_.clear(); }

  /// Counts a call; the code with which it is to fail, if it is.
  std::optional<DWORD> Count(ServiceId service, const std::string& thread);
  /// Calls so far, failed ones included.
  unsigned calls(ServiceId service) const { return calls_[static_cast<std::size_t>(service)]; }

 private:
  struct Switch {
    Fault fault;
    unsigned seen = 0;
  };

  std::vector<Switch> switches_;
  std::array<unsigned, kServiceCount> calls_ = {};
};

}  // namespace ipodcomm::virtual_platform
