// SPDX-License-Identifier: MIT
// What every thread carries: a place to block, and whether it is being ended.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>

#include "platform/services.h"

namespace ipodcomm::platform {

/// Thrown at a safe point of a thread that is being ended, so that its stack unwinds. Nobody but
/// the thread's entry catches it by name; one swallowed on the way is thrown again at the next safe
/// point.
struct ThreadEnding {};

using Deadline = std::optional<std::chrono::steady_clock::time_point>;

/// The moment `timeout_ms` from now; none for INFINITE.
Deadline DeadlineIn(DWORD timeout_ms);

class ThreadState {
 public:
  ThreadState();
  ThreadState(const ThreadState&) = delete;
  ThreadState& operator=(const ThreadState&) = delete;

  DWORD id() const { return id_; }

  /// Locks that the thread holds; only the thread itself counts and looks.
  void CountLock(int change) { locks_held_ += change; }

  /// Call before telling another thread to Unpark this one.
  void PreparePark();
  /// Blocks the calling thread, whose state this is, until Unpark or the deadline. Throws
  /// ThreadEnding when the thread is to end and holds no lock.
  void Park(const Deadline& deadline);
  /// Ends the thread's Park. Any thread.
  void Unpark();

  /// Asks the thread to end. Any thread.
  void RequestEnd(DWORD exit_code);
  /// Throws ThreadEnding when the thread is to end and holds no lock.
  void EndIfAsked();
  DWORD requested_exit_code() const { return exit_code_; }

 private:
  bool IsToEnd(std::uint32_t flags) const { return (flags & kEnding) != 0 && locks_held_ == 0; }
  void Raise(std::uint32_t flag);

  static constexpr std::uint32_t kUnparked = 1;
  static constexpr std::uint32_t kEnding = 2;

  const DWORD id_;
  int locks_held_ = 0;
  std::atomic<std::uint32_t> flags_{0};  // the thread blocks on this word
  std::atomic<DWORD> exit_code_{0};
};

/// The calling thread's state. Threads that the platform did not start get one at their first call.
ThreadState& CurrentThread();
/// Gives the calling thread its state, at its start; null at its end.
void SetCurrentThread(ThreadState* state);

}  // namespace ipodcomm::platform
