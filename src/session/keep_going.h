// SPDX-License-Identifier: MIT
// The host's say in an operation that takes seconds.
#pragma once

#include <algorithm>
#include <cstdint>

#include "ipodcomm/detail/KeepGoing.h"
#include "platform/services.h"

namespace ipodcomm {

/// How long a wait goes on before the host is asked, or the line looked at.
constexpr std::uint32_t kSliceMs = 50;

/// Waits by `wait(ms)`, which returns true when what it waits for has come. A host that may say
/// stop is asked before each slice of 50 ms, and a no ends the wait: with a frame written in
/// between it takes effect within 100 ms.
template <class Wait>
bool WaitInSlices(KeepGoing& host, std::uint32_t ms, Wait wait) {
  if (!host.asks()) return wait(ms);
  do {
    if (!host.Ask()) return false;
    const std::uint32_t slice_ms = std::min(ms, kSliceMs);
    if (wait(slice_ms)) return true;
    ms -= slice_ms;
  } while (ms != 0);
  return false;
}

/// Pauses; no longer than until the host says stop.
inline void PauseInSlices(KeepGoing& host, std::uint32_t ms) {
  WaitInSlices(host, ms, [](std::uint32_t slice_ms) {
    Sleep(slice_ms);
    return false;
  });
}

}  // namespace ipodcomm
