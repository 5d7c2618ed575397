// SPDX-License-Identifier: MIT
// The baton as a futex.
#include "world/threads/baton.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ipodcomm::virtual_platform {

static_assert(sizeof(std::atomic<std::uint32_t>) == sizeof(std::uint32_t),
              "the kernel looks at the value itself");

void Baton::Give() {
  given_.store(1, std::memory_order_release);
  syscall(SYS_futex, &given_, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
}

void Baton::Await() {
  while (given_.exchange(0, std::memory_order_acquire) == 0) {
    syscall(SYS_futex, &given_, FUTEX_WAIT_PRIVATE, 0, nullptr, nullptr, 0);
  }
}

}  // namespace ipodcomm::virtual_platform
