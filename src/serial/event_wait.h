// SPDX-License-Identifier: MIT
// Waiting for an event that a copy of its owner may have closed.
#pragma once

#include "platform/services.h"

namespace ipodcomm {

/// Waits up to `timeout_ms`; true when the event was signalled. A wait that fails at once, because
/// the handle was closed through a copy of the object, still takes a moment (at most 50 ms), so
/// that no thread's loop over it spins.
bool WaitForEvent(HANDLE event, unsigned long timeout_ms);

}  // namespace ipodcomm
