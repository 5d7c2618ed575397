// SPDX-License-Identifier: MIT
// What this process holds.
#pragma once

#include <cstddef>

namespace terminal {

struct Held {
  unsigned handles = 0;
  unsigned threads = 0;
  std::size_t heap = 0;  // bytes
};

Held HeldNow();

/// What has grown, or null when nothing has: handles and threads are the same in number, the heap
/// has at most 64 kB more.
const char* Grown(const Held& first, const Held& last);

}  // namespace terminal
