// SPDX-License-Identifier: MIT
// The fixture of the conformance suite, and a thread that runs a function.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "world.h"

namespace ipodcomm::test {

class PlatformTest : public ::testing::Test {
 protected:
  World world;
};

/// Skips the rest of a test on platforms that promise less.
#define REQUIRE_TRAIT(trait, reason)                   \
  do {                                                 \
    if (!world.traits().trait) GTEST_SKIP() << reason; \
  } while (false)

/// A thread of the platform. The destructor waits for it to end.
class TestThread {
 public:
  explicit TestThread(std::function<void()> body) : body_(std::move(body)) {
    handle_ = CreateThread(nullptr, 0, Run, this, 0, &id_);
  }
  TestThread(const TestThread&) = delete;
  TestThread& operator=(const TestThread&) = delete;
  ~TestThread() {
    WaitForSingleObject(handle_, INFINITE);
    CloseHandle(handle_);
  }

  HANDLE handle() const { return handle_; }
  DWORD id() const { return id_; }
  /// Waits for the thread to end.
  bool Join() { return WaitForSingleObject(handle_, INFINITE) == WAIT_OBJECT_0; }

 private:
  static DWORD WINAPI Run(void* self) {
    static_cast<TestThread*>(self)->body_();
    return 0;
  }

  std::function<void()> body_;
  HANDLE handle_ = nullptr;
  DWORD id_ = 0;
};

/// A value that is no handle, for every service to refuse.
inline HANDLE NoHandle() {
  return reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(0x00ABCDE0));
}

}  // namespace ipodcomm::test
