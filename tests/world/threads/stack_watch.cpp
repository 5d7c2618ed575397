// SPDX-License-Identifier: MIT
#include "world/threads/stack_watch.h"

#if defined(IPODCOMM_ADDRESS_SANITIZER)

#include <sanitizer/asan_interface.h>
#include <sanitizer/common_interface_defs.h>

namespace ipodcomm::virtual_platform {

void LeaveStack(WatchedStack& left, const WatchedStack& next) {
  __sanitizer_start_switch_fiber(&left.frames, next.bottom, next.size);
}

void AbandonStack(const WatchedStack& next) {
  __sanitizer_start_switch_fiber(nullptr, next.bottom, next.size);
}

void ArriveOnStack(const WatchedStack& stack, WatchedStack& left) {
  __sanitizer_finish_switch_fiber(stack.frames, &left.bottom, &left.size);
}

// Not by the macro for it, which does nothing where this file is not instrumented itself.
void ClearStack(const WatchedStack& stack) {
  __asan_unpoison_memory_region(stack.bottom, stack.size);
}

}  // namespace ipodcomm::virtual_platform

#else

namespace ipodcomm::virtual_platform {

void LeaveStack(WatchedStack& /*left*/, const WatchedStack& /*next*/) {}
void AbandonStack(const WatchedStack& /*next*/) {}
void ArriveOnStack(const WatchedStack& /*stack*/, WatchedStack& /*left*/) {}
void ClearStack(const WatchedStack& /*stack*/) {}

}  // namespace ipodcomm::virtual_platform

#endif
