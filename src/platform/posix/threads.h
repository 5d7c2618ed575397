// SPDX-License-Identifier: MIT
// A thread that the platform started.
#pragma once

#include "platform/posix/objects.h"
#include "platform/posix/signal.h"
#include "platform/posix/thread_state.h"

namespace ipodcomm::platform {

/// Detached, but accounted for: its object lives as long as it runs or has an open handle.
class Thread : public Closable {
 public:
  Thread(THREAD_START_ROUTINE* routine, void* argument) : routine_(routine), argument_(argument) {}

  /// The whole life of the thread, on its own stack.
  void Run();

  ThreadState& state() { return state_; }
  Signal& ended() { return ended_; }
  /// Good once the thread has ended.
  DWORD exit_code() const { return exit_code_; }

 private:
  THREAD_START_ROUTINE* const routine_;
  void* const argument_;
  ThreadState state_;
  Signal ended_{true, false};
  DWORD exit_code_ = 0;
};

}  // namespace ipodcomm::platform
