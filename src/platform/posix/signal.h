// SPDX-License-Identifier: MIT
// The thing that is waited for: the signal of an event, or of a thread's end.
#pragma once

#include <mutex>

#include "platform/posix/thread_state.h"

namespace ipodcomm::platform {

/// A manual signal stays set and lets everybody pass. An automatic one lets one waiter pass, the
/// one that has waited longest, or is kept, once, for the next.
class Signal {
 public:
  Signal(bool manual, bool set) : manual_(manual), set_(set) {}

  void Set();
  void Reset();
  /// WAIT_OBJECT_0 or WAIT_TIMEOUT. A safe point: a thread that is to end ends here, and takes no
  /// signal with it that it was not already given.
  DWORD Wait(DWORD timeout_ms);

 private:
  // A link of the chain of waiters; it lies on the waiting thread's stack.
  struct Waiter {
    ThreadState& thread;
    bool granted = false;
    Waiter* next = nullptr;
  };
  // Withdraws a waiter however its wait ends; its answer tells whether the signal came.
  class Enrolment;

  void Append(Waiter& waiter);
  void Remove(const Waiter& waiter);

  const bool manual_;
  std::mutex mutex_;
  bool set_;
  Waiter* waiters_ = nullptr;  // the one that has waited longest first
};

}  // namespace ipodcomm::platform
