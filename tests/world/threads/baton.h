// SPDX-License-Identifier: MIT
// The right to run, one per thread, of which only one is ever given.
#pragma once

#include <atomic>
#include <cstdint>

namespace ipodcomm::virtual_platform {

/// Waits in the kernel, on nothing that the race detector knows.
class Baton {
 public:
  /// Lets the owner go on. At most once before the owner has it.
  void Give();
  /// Called by the owner: returns once the baton was given.
  void Await();

 private:
  std::atomic<std::uint32_t> given_{0};
};

}  // namespace ipodcomm::virtual_platform
