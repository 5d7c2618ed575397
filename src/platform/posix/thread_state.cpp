// SPDX-License-Identifier: MIT
// What every thread carries: a place to block, and whether it is being ended.
#include "platform/posix/thread_state.h"

#include <pthread.h>

#include <atomic>

namespace ipodcomm::platform {
namespace {

// A plain pointer, so that it is still good while the process runs its last destructors.
thread_local ThreadState* current = nullptr;

DWORD NextId() {
  static std::atomic<DWORD> next{1};
  return next.fetch_add(1, std::memory_order_relaxed);
}

// The state of a thread that somebody else started goes with the thread.
void DeleteState(void* state) {
  current = nullptr;
  delete static_cast<ThreadState*>(state);
}

pthread_key_t MakeKey() {
  pthread_key_t key;
  pthread_key_create(&key, DeleteState);
  return key;
}

}  // namespace

Deadline DeadlineIn(DWORD timeout_ms) {
  if (timeout_ms == INFINITE) return std::nullopt;
  return std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
}

ThreadState::ThreadState() : id_(NextId()) {}

void ThreadState::PreparePark() {
  const std::lock_guard lock(mutex_);
  unparked_ = false;
}

void ThreadState::Park(const Deadline& deadline) {
  std::unique_lock lock(mutex_);
  const bool may_end = locks_held_ == 0;
  const auto done = [this, may_end] { return unparked_ || (ending_ && may_end); };
  if (deadline) {
    changed_.wait_until(lock, *deadline, done);
  } else {
    changed_.wait(lock, done);
  }
  if (ending_ && may_end && !unparked_) throw ThreadEnding();
}

void ThreadState::Unpark() {
  const std::lock_guard lock(mutex_);
  unparked_ = true;
  changed_.notify_one();
}

void ThreadState::RequestEnd(DWORD exit_code) {
  const std::lock_guard lock(mutex_);
  ending_ = true;
  exit_code_ = exit_code;
  changed_.notify_one();
}

void ThreadState::EndIfAsked() {
  const std::lock_guard lock(mutex_);
  if (ending_ && locks_held_ == 0) throw ThreadEnding();
}

ThreadState& CurrentThread() {
  if (current == nullptr) {
    static const pthread_key_t key = MakeKey();
    current = new ThreadState;
    pthread_setspecific(key, current);
  }
  return *current;
}

void SetCurrentThread(ThreadState* state) { current = state; }

}  // namespace ipodcomm::platform
