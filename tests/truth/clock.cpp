// SPDX-License-Identifier: MIT
// The programs' clock, in virtual time.
#include "console/clock.h"

#include "platform/services.h"
#include "world/world_state.h"

namespace ipodctl {

std::chrono::microseconds SteadyTime() {
  return std::chrono::microseconds(ipodcomm::virtual_platform::CurrentWorld()->clock.now_us());
}

std::chrono::milliseconds UnixTime() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(SteadyTime());
}

// The services sleep whole milliseconds.
void SleepFor(std::chrono::microseconds duration) {
  Sleep(static_cast<DWORD>((duration.count() + 999) / 1000));
}

}  // namespace ipodctl
