// SPDX-License-Identifier: MIT
// Memory that somebody writes while another thread watches.
#pragma once

#include <cstddef>

namespace ipodctl {

/// The same memory at two addresses: what is written to one can be watched at the other while the
/// writer, who knows of no lock, is at work. Whoever watches may see a part of what is being
/// written and should look twice.
class WatchedMemory {
 public:
  /// Zeroed. Throws std::bad_alloc when the system has none.
  explicit WatchedMemory(std::size_t bytes);
  ~WatchedMemory();
  WatchedMemory(const WatchedMemory&) = delete;
  WatchedMemory& operator=(const WatchedMemory&) = delete;

  void* written() const { return written_; }
  const volatile void* watched() const { return watched_; }

 private:
  std::size_t bytes_;
  void* written_ = nullptr;
  void* watched_ = nullptr;
};

}  // namespace ipodctl
