// SPDX-License-Identifier: MIT
// Notes interrupts in a flag that long-running commands look at.
#include "console/interrupt.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <optional>
#include <string>

#include "console/clock.h"
#include "console/failure.h"
#include "console/system.h"

namespace ipodctl {

namespace {

std::atomic<bool> interrupted = false;
// Set before there are threads.
std::optional<std::chrono::microseconds> time_out;
double time_out_s = 0;
std::atomic<bool> timed_out = false;
static_assert(std::atomic<bool>::is_always_lock_free, "the signal handler may not take a lock");

std::string Seconds() {
  char text[32];
  std::snprintf(text, sizeof text, "%g", time_out_s);
  return text;
}

extern "C" void NoteInterrupt(int signal) {
  interrupted = true;
  std::signal(signal, SIG_DFL);
}

// Comes twice when a terminal is closed, from the system and from the shell.
extern "C" void NoteHangUp(int /*signal*/) { interrupted = true; }

}  // namespace

void CatchInterrupts() {
  std::signal(SIGINT, NoteInterrupt);
  std::signal(SIGTERM, NoteInterrupt);
  CatchHangUp(NoteHangUp);
}

void InterruptAfter(double seconds) {
  time_out_s = seconds;
  const auto duration = std::chrono::duration<double>(seconds);
  time_out = SteadyTime() + std::chrono::duration_cast<std::chrono::microseconds>(duration);
}

bool Interrupted() {
  if (!interrupted && time_out && SteadyTime() >= *time_out) interrupted = timed_out = true;
  return interrupted;
}

void Interrupt() {
  interrupted = true;
  std::signal(SIGINT, SIG_DFL);
}

bool PauseMs(unsigned duration_ms) {
  constexpr std::chrono::microseconds kLook = std::chrono::milliseconds(50);
  const std::chrono::microseconds end = SteadyTime() + std::chrono::milliseconds(duration_ms);
  for (auto left = end - SteadyTime(); !Interrupted() && left.count() > 0;
       left = end - SteadyTime()) {
    SleepFor(std::min(kLook, left));
  }
  return !Interrupted();
}

void StopIfInterrupted() {
  if (!Interrupted()) return;
  throw CommandFailure(kInterrupted, timed_out ? "not done within " + Seconds() + " seconds"
                                               : "interrupted before it was done");
}

}  // namespace ipodctl
