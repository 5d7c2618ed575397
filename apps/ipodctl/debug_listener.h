// SPDX-License-Identifier: MIT
// Hears what the library tells on its debug output.
#pragma once

#include <cstddef>
#include <memory>

namespace ipodctl {

/// The library does not return whether the lines of a workout's header and its summary were
/// written; it tells of failures on its debug output only, which on some systems is standard error.
/// There this takes standard error over for as long as it lives: the program's own messages go on
/// to where it led before, what others write is listened to, and passed on only when verbose.
/// Elsewhere it hears nothing.
class DebugListener {
 public:
  /// To be made before a session, whose threads read the environment that this sets.
  DebugListener();
  ~DebugListener();
  DebugListener(const DebugListener&) = delete;
  DebugListener& operator=(const DebugListener&) = delete;

  /// How many writes to a file have failed since the last call.
  std::size_t TakeFailedFileWrites();

 private:
  class Pipe;
  std::unique_ptr<Pipe> pipe_;
};

}  // namespace ipodctl
