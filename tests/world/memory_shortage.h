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

/// While one exists, its thread finds memory all the same.
class EnoughMemory {
 public:
  EnoughMemory() { ++depth; }
  EnoughMemory(const EnoughMemory&) = delete;
  EnoughMemory& operator=(const EnoughMemory&) = delete;
  ~EnoughMemory() { --depth; }

  static bool here() { return depth > 0; }

 private:
  inline static thread_local int depth = 0;
};

}  // namespace ipodcomm::virtual_platform
