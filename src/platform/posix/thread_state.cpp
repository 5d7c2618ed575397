// SPDX-License-Identifier: MIT
// What every thread carries: a place to block, and whether it is being ended.
#include "platform/posix/thread_state.h"

#include <errno.h>
#include <linux/futex.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <new>

namespace ipodcomm::platform {
namespace {

// A plain pointer, so that it is still good while the process runs its last destructors.
thread_local ThreadState* current = nullptr;
// Where the state of a thread lies that somebody else started: the first call of a service must not
// fail for want of memory.
alignas(ThreadState) thread_local unsigned char own_state[sizeof(ThreadState)];

DWORD NextId() {
  static std::atomic<DWORD> next{1};
  return next.fetch_add(1, std::memory_order_relaxed);
}

// The state of a thread that somebody else started goes with the thread.
void EndState(void* state) {
  current = nullptr;
  static_cast<ThreadState*>(state)->~ThreadState();
}

// Blocks while `word` has `value`, until it is woken or until the deadline; then false. An open
// session sleeps some 250 times a second, and this takes a single system call each time, where a
// condition variable takes two.
bool BlockWhile(const std::atomic<std::uint32_t>& word, std::uint32_t value,
                const Deadline& deadline) {
  timespec until = {};
  if (deadline) {
    using std::chrono::nanoseconds;
    const auto since_boot = nanoseconds(deadline->time_since_epoch()).count();
    until.tv_sec = static_cast<time_t>(since_boot / 1000000000);
    until.tv_nsec = static_cast<long>(since_boot % 1000000000);
  }
  const long result = syscall(SYS_futex, &word, FUTEX_WAIT_BITSET_PRIVATE, value,
                              deadline ? &until : nullptr, nullptr, FUTEX_BITSET_MATCH_ANY);
  return result == 0 || errno != ETIMEDOUT;
}

pthread_key_t MakeKey() {
  pthread_key_t key;
  pthread_key_create(&key, EndState);
  return key;
}

}  // namespace

Deadline DeadlineIn(DWORD timeout_ms) {
  if (timeout_ms == INFINITE) return std::nullopt;
  return std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
}

ThreadState::ThreadState() : id_(NextId()) {}

void ThreadState::PreparePark() { flags_.fetch_and(~kUnparked, std::memory_order_relaxed); }

void ThreadState::Park(const Deadline& deadline) {
  for (;;) {
    const std::uint32_t flags = flags_.load(std::memory_order_acquire);
    if ((flags & kUnparked) != 0) return;
    if (IsToEnd(flags)) throw ThreadEnding();
    if (!BlockWhile(flags_, flags, deadline)) return;
  }
}

void ThreadState::Unpark() { Raise(kUnparked); }

void ThreadState::RequestEnd(DWORD exit_code) {
  exit_code_ = exit_code;
  Raise(kEnding);
}

void ThreadState::EndIfAsked() {
  if (IsToEnd(flags_.load(std::memory_order_acquire))) throw ThreadEnding();
}

void ThreadState::Raise(std::uint32_t flag) {
  flags_.fetch_or(flag, std::memory_order_release);
  syscall(SYS_futex, &flags_, FUTEX_WAKE_PRIVATE, 1);
}

ThreadState& CurrentThread() {
  if (current == nullptr) {
    static const pthread_key_t key = MakeKey();
    current = new (own_state) ThreadState;
    pthread_setspecific(key, current);
  }
  return *current;
}

void SetCurrentThread(ThreadState* state) { current = state; }

}  // namespace ipodcomm::platform
