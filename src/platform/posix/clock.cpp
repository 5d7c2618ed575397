// SPDX-License-Identifier: MIT
// Pauses and the steady clock.
#include <sched.h>
#include <time.h>

#include "platform/posix/thread_state.h"
#include "platform/services.h"

using namespace ipodcomm::platform;

void Sleep(DWORD duration_ms) {
  ThreadState& thread = CurrentThread();
  if (duration_ms == 0) {
    thread.EndIfAsked();
    sched_yield();
    return;
  }
  // Nobody unparks a sleeping thread; only its deadline or its end does. One system call per sleep.
  thread.PreparePark();
  thread.Park(DeadlineIn(duration_ms));
}

DWORD GetTickCount() {
  timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  const auto milliseconds = static_cast<std::uint64_t>(now.tv_sec) * 1000 +
                            static_cast<std::uint64_t>(now.tv_nsec) / 1000000;
  return static_cast<std::uint32_t>(milliseconds);
}
