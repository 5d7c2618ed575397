// SPDX-License-Identifier: MIT
// Waiting for an event that a copy of its owner may have closed.
#include "serial/event_wait.h"

#include <algorithm>

namespace ipodcomm {

bool WaitForEvent(HANDLE event, unsigned long timeout_ms) {
  constexpr unsigned long kFailedWaitMs = 50;
  const DWORD result = WaitForSingleObject(event, timeout_ms);
  if (result == WAIT_FAILED) Sleep(std::min(timeout_ms, kFailedWaitMs));
  return result == WAIT_OBJECT_0;
}

}  // namespace ipodcomm
