// SPDX-License-Identifier: MIT
// A stack on which a thread of the world runs, and the way from one to another. No thread of the
// system stands behind it: those take several times longer to wake than a thread of the world runs.
#pragma once

#include <ucontext.h>

#include <memory>

#include "world/threads/stack_watch.h"

namespace ipodcomm::virtual_platform {

class Fiber {
 public:
  /// The stack on which the caller is.
  Fiber();
  /// A stack of its own, on which `entry` is called with `argument` when it is first switched to.
  /// `entry` never returns, but leaves for another one at last.
  /// @return null when there is no memory for a stack
  static std::unique_ptr<Fiber> Make(void (*entry)(void*), void* argument);
  Fiber(const Fiber&) = delete;
  Fiber& operator=(const Fiber&) = delete;
  /// Nobody may be on it any more.
  ~Fiber();

  /// Goes on at `next`, and returns when somebody switches back. Called on this one, and unwatched.
  void SwitchTo(Fiber& next);
  /// Goes on at `next` for ever. Nothing may be left on the stack that wants to be destroyed.
  [[noreturn]] void LeaveFor(Fiber& next);

 private:
  explicit Fiber(char* stack);
  [[noreturn]] static void Begin();
  [[noreturn, gnu::always_inline]] static inline void Jump(const Fiber& next);

  char* const stack_;  // null where the stack was there before
  void* const detected_;
  WatchedStack watched_;
  void (*entry_)(void*) = nullptr;
  void* argument_ = nullptr;
  ucontext_t context_ = {};
  bool leaving_ = false;
};

}  // namespace ipodcomm::virtual_platform
