// SPDX-License-Identifier: MIT
// A thread of the world.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "platform/services.h"
#include "world/clock.h"
#include "world/threads/fiber.h"
#include "world/threads/object.h"

namespace ipodcomm::virtual_platform {

/// Why a thread waits.
struct Wait {
  const char* service = "";           ///< the service that blocks
  const Object* object = nullptr;     ///< what it waits for, if anything
  std::int64_t deadline_us = kNever;  ///< when it goes on all the same
  bool safe_point = false;            ///< whether the thread may be ended here
};

/// Unwinds a thread that is being ended. No library code catches it.
struct ThreadEnd {};

enum class ThreadState { kReady, kWaiting, kEnded };

struct Thread : Object {
  Thread(int thread_number, std::string thread_name)
      : Object(std::move(thread_name)), number(thread_number) {}

  const int number;  ///< 1 is the host, the others count in the order of their creation
  ThreadState state = ThreadState::kReady;
  std::unique_ptr<Fiber> fiber;  ///< until it has ended and somebody has looked
  Wait wait;                     ///< while it waits
  bool woken = false;            ///< the wait ended before its deadline
  bool hopeless = false;         ///< the wait can never end

  THREAD_START_ROUTINE* routine = nullptr;
  void* argument = nullptr;
  DWORD exit_code = 0;
  bool end_asked = false;  ///< TerminateThread was called
  bool leaving = false;    ///< its routine has returned
  int sections_held = 0;
};

}  // namespace ipodcomm::virtual_platform
