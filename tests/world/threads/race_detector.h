// SPDX-License-Identifier: MIT
// What ThreadSanitizer is told, so that it judges the library and not the world around it.
//
// Only one thread runs at a time, so if the detector saw how one goes on after another, every
// access would look ordered and no race would ever be found. The platform's own code therefore runs
// unwatched: its accesses, its locks and the switches leave no trace. The order that a service
// truly gives its callers (a lock, an event, a thread's start and end) is told explicitly.
#pragma once

#include <cstddef>

#include "world/memory_shortage.h"

#if defined(IPODCOMM_THREAD_SANITIZER)
extern "C" void __tsan_switch_to_fiber(void* fiber, unsigned flags);
#endif

namespace ipodcomm::virtual_platform {

/// While one exists, the detector ignores what the thread does, and a MemoryShortage does not
/// concern it. They nest.
class Unwatched {
 public:
  Unwatched();
  // Does nothing only where there is no detector.
  ~Unwatched();  // NOLINT(performance-trivially-destructible)
  Unwatched(const Unwatched&) = delete;
  Unwatched& operator=(const Unwatched&) = delete;

 private:
  const EnoughMemory enough_memory_;
};

/// All that the thread did so far comes before what follows an Acquired of the same object.
/// Effective also while unwatched.
void Released(const void* object);
void Acquired(const void* object);

/// The caller's memory is read or written by the service: watched, even while unwatched.
void CallerMemoryRead(const void* memory, std::size_t size);
void CallerMemoryWritten(void* memory, std::size_t size);

/// How many Unwatched there are in the running thread.
int& UnwatchedDepth();

/// What the detector takes for a thread: the caller, or a new one, which is to be forgotten when it
/// has ended.
void* DetectedCaller();
void* NewDetected();
void ForgetDetected(void* detected);
/// The caller goes on as another one, which orders nothing. Inlined, for the detector counts the
/// calls of each thread: none may begin in one and return in another.
[[gnu::always_inline]] inline void GoOnAs([[maybe_unused]] void* detected) {
#if defined(IPODCOMM_THREAD_SANITIZER)
  constexpr unsigned kWithoutOrder = 1;
  __tsan_switch_to_fiber(detected, kWithoutOrder);
#endif
}

}  // namespace ipodcomm::virtual_platform
