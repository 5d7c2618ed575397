// SPDX-License-Identifier: MIT
// Driver handles are never used twice.
#include "world/services/device_manager.h"

namespace ipodcomm::virtual_platform {
namespace {

// Far from the handles of ports, threads and events, and small enough for a 32-bit registry value.
constexpr std::uintptr_t kFirstHandle = 0x0DE70001;

}  // namespace

HANDLE DeviceManager::Activate(const std::string& driver, DWORD client_info, std::int64_t now_us) {
  const HANDLE handle = reinterpret_cast<HANDLE>(kFirstHandle + instances_.size());
  instances_.push_back({driver, client_info, handle, true, now_us, 0});
  return handle;
}

bool DeviceManager::Deactivate(HANDLE handle, std::int64_t now_us) {
  for (DriverInstance& instance : instances_) {
    if (instance.handle != handle || !instance.active) continue;
    instance.active = false;
    instance.deactivated_us = now_us;
    return true;
  }
  return false;
}

std::string DeviceManager::NameOf(HANDLE handle) const {
  if (handle == nullptr) return "null";
  if (handle == INVALID_HANDLE_VALUE) return "invalid";
  for (std::size_t i = 0; i < instances_.size(); ++i) {
    if (instances_[i].handle == handle) return "driver" + std::to_string(i + 1);
  }
  return "unknown";
}

}  // namespace ipodcomm::virtual_platform
