// SPDX-License-Identifier: MIT
// Memory that runs out when a test says so. The test program links the target
// virtual_world_memory, which replaces operator new.
#pragma once

namespace ipodcomm::virtual_platform {

/// Makes operator new fail in every thread, from its `first`th use on (1 is the next), `times`
/// times. One at a time. The world's own work is exempt: its uses neither count nor fail.
class MemoryShortage {
 public:
  static constexpr unsigned kForEver = 0xFFFFFFFF;

  explicit MemoryShortage(unsigned first = 1, unsigned times = kForEver);
  MemoryShortage(const MemoryShortage&) = delete;
  MemoryShortage& operator=(const MemoryShortage&) = delete;
  /// There is memory again.
  ~MemoryShortage();

  /// Whether any use failed.
  bool felt() const;
};

/// While one exists, its thread finds memory all the same. Unwatched by ThreadSanitizer: the
/// threads of a world are one for the system, and have what is each one's own at the same address.
class EnoughMemory {
 public:
  [[gnu::no_sanitize_thread]] EnoughMemory() { ++depth(); }
  EnoughMemory(const EnoughMemory&) = delete;
  EnoughMemory& operator=(const EnoughMemory&) = delete;
  [[gnu::no_sanitize_thread]] ~EnoughMemory() { --depth(); }

  [[gnu::no_sanitize_thread]] static bool here() { return depth() > 0; }
  /// How many there are in the running thread.
  static int& depth() {
    static thread_local int depth = 0;
    return depth;
  }
};

}  // namespace ipodcomm::virtual_platform
