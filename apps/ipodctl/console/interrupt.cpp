// SPDX-License-Identifier: MIT
// Notes interrupts in a flag that long-running commands look at.
#include "console/interrupt.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

#include "console/failure.h"

namespace ipodctl {

namespace {

std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free, "the signal handler may not take a lock");

extern "C" void NoteInterrupt(int signal) {
  interrupted = true;
  std::signal(signal, SIG_DFL);
}

}  // namespace

void CatchInterrupts() {
  std::signal(SIGINT, NoteInterrupt);
  std::signal(SIGTERM, NoteInterrupt);
}

bool Interrupted() { return interrupted; }

bool PauseMs(unsigned duration_ms) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::milliseconds kLook(50);
  const auto end = Clock::now() + std::chrono::milliseconds(duration_ms);
  while (!Interrupted() && Clock::now() < end) {
    std::this_thread::sleep_for(std::min<Clock::duration>(kLook, end - Clock::now()));
  }
  return !Interrupted();
}

void StopIfInterrupted() {
  if (Interrupted()) throw CommandFailure(kInterrupted, "interrupted before it was done");
}

}  // namespace ipodctl
