// SPDX-License-Identifier: MIT
// What AddressSanitizer is told, so that it knows on which stack the program is; nothing in other
// builds.
#pragma once

#include <cstddef>

namespace ipodcomm::virtual_platform {

struct WatchedStack {
  const void* bottom = nullptr;  ///< its lowest address
  std::size_t size = 0;          ///< bytes
  void* frames = nullptr;        ///< what is kept of its frames while the program is elsewhere
};

/// The program is about to leave a stack for another one, and to come back.
void LeaveStack(WatchedStack& left, const WatchedStack& next);
/// The same, but it does not come back.
void AbandonStack(const WatchedStack& next);
/// The program has arrived. Where `left` is, which it comes from, is known from now on.
void ArriveOnStack(const WatchedStack& stack, WatchedStack& left);
/// Whatever lay on it is gone.
void ClearStack(const WatchedStack& stack);

}  // namespace ipodcomm::virtual_platform
