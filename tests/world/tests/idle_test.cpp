// SPDX-License-Identifier: MIT
// How much faster than real time an idle open session runs: one thread that reads and sleeps in
// turn, two that wait for a second at a time. The figure is printed, not judged.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>

#include "world/world.h"

namespace ipodcomm::virtual_platform {
namespace {

struct IdleSession {
  HANDLE port = nullptr;
  HANDLE event = nullptr;
  CRITICAL_SECTION lock = {};
  std::atomic<int> reads = 0;
};

DWORD ReadThread(void* argument) {
  auto* session = static_cast<IdleSession*>(argument);
  for (;;) {
    unsigned char byte = 0;
    DWORD read = 0;
    EnterCriticalSection(&session->lock);
    ReadFile(session->port, &byte, 1, &read, nullptr);
    LeaveCriticalSection(&session->lock);
    ++session->reads;
    Sleep(2);
  }
}

DWORD WaitThread(void* argument) {
  auto* session = static_cast<IdleSession*>(argument);
  for (;;) WaitForSingleObject(session->event, 1000);
}

TEST(VirtualIdle, SessionRunsFarFasterThanRealTime) {
  constexpr int kVirtualSeconds = 600;
  World world;
  IdleSession session;
  session.port =
      CreateFileW(L"COM2:", GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  COMMTIMEOUTS timeouts = {1, 1, 1, 0, 0};
  SetCommTimeouts(session.port, &timeouts);
  session.event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  InitializeCriticalSection(&session.lock);
  CreateThread(nullptr, 0, ReadThread, &session, 0, nullptr);
  CreateThread(nullptr, 0, WaitThread, &session, 0, nullptr);
  CreateThread(nullptr, 0, WaitThread, &session, 0, nullptr);

  const auto start = std::chrono::steady_clock::now();
  world.Advance(kVirtualSeconds * kSecond);
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  std::printf("idle session: %d virtual seconds in %.3f s, %.0f times faster than real time\n",
              kVirtualSeconds, taken.count(), kVirtualSeconds / taken.count());
  // 2 ms of reading and 2 ms of sleeping make a turn.
  EXPECT_NEAR(session.reads, kVirtualSeconds * 250, 1);
}

}  // namespace
}  // namespace ipodcomm::virtual_platform
