// SPDX-License-Identifier: MIT
// Starting and ending threads.
#include "platform/posix/threads.h"

#include <limits.h>
#include <pthread.h>
#include <sys/prctl.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "platform/common/out_of_memory.h"

namespace ipodcomm::platform {
namespace {

void* RunThread(void* argument) {
  const std::unique_ptr<std::shared_ptr<Thread>> thread(
      static_cast<std::shared_ptr<Thread>*>(argument));
  (*thread)->Run();
  return nullptr;
}

// The kernel may end a pause 50 microseconds late unless it is told otherwise, and a session pauses
// for 2 ms behind every byte that it reads.
void WakePunctually() {
  constexpr unsigned long kSlackNs = 1;
  prctl(PR_SET_TIMERSLACK, kSlackNs, 0UL, 0UL, 0UL);
}

bool StartDetached(std::unique_ptr<std::shared_ptr<Thread>> thread, std::size_t stack) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  if (stack != 0) {
    pthread_attr_setstacksize(&attributes,
                              std::max(stack, static_cast<std::size_t>(PTHREAD_STACK_MIN)));
  }
  pthread_t unused;
  const bool started = pthread_create(&unused, &attributes, RunThread, thread.get()) == 0;
  pthread_attr_destroy(&attributes);
  if (started) static_cast<void>(thread.release());  // the thread has taken it over
  return started;
}

}  // namespace

void Thread::Run() {
  WakePunctually();
  SetCurrentThread(&state_);
  try {
    state_.EndIfAsked();
    exit_code_ = routine_(argument_);
  } catch (const ThreadEnding&) {
    exit_code_ = state_.requested_exit_code();
  }
  SetCurrentThread(nullptr);
  ended_.Set();
}

}  // namespace ipodcomm::platform

using namespace ipodcomm::platform;

HANDLE CreateThread(SECURITY_ATTRIBUTES* /*security*/, std::size_t stack,
                    THREAD_START_ROUTINE* routine, void* argument, DWORD flags, DWORD* id) {
  if (routine == nullptr || flags != 0) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return nullptr;
  }
  const HANDLE none = nullptr;
  return FailWithoutMemory(none, [&]() -> HANDLE {
    const auto thread = std::make_shared<Thread>(routine, argument);
    auto start = std::make_unique<std::shared_ptr<Thread>>(thread);
    const HANDLE handle = NewHandle(thread);
    if (handle == nullptr) return nullptr;
    if (id != nullptr) *id = thread->state().id();
    if (StartDetached(std::move(start), stack)) return handle;
    Handles().Remove(handle);
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  });
}

BOOL TerminateThread(HANDLE thread, DWORD exit_code) {
  const auto target = OpenObject<Thread>(thread);
  if (target == nullptr) return FALSE;
  target->state().RequestEnd(exit_code);
  // A thread that ends itself does so here, or at its next safe point when it holds a lock.
  if (&target->state() == &CurrentThread()) {
    CurrentThread().EndIfAsked();
    return TRUE;
  }
  target->ended().Wait(INFINITE);
  return TRUE;
}

DWORD GetCurrentThreadId() { return CurrentThread().id(); }
