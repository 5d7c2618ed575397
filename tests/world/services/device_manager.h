// SPDX-License-Identifier: MIT
// The drivers that were loaded and unloaded.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/services.h"

namespace ipodcomm::virtual_platform {

/// A driver instance, from its activation on.
struct DriverInstance {
  std::string driver;  ///< its registry key
  DWORD client_info = 0;
  HANDLE handle = nullptr;
  bool active = false;
  std::int64_t activated_us = 0;
  std::int64_t deactivated_us = 0;
};

class DeviceManager {
 public:
  HANDLE Activate(const std::string& driver, DWORD client_info, std::int64_t now_us);
  /// False when no instance with this handle is active.
  bool Deactivate(HANDLE handle, std::int64_t now_us);
  const std::vector<DriverInstance>& instances() const { return instances_; }
  /// "driver1", in the order of activation.
  std::string NameOf(HANDLE handle) const;

 private:
  std::vector<DriverInstance> instances_;
};

}  // namespace ipodcomm::virtual_platform
