// SPDX-License-Identifier: MIT
// Shared by the tests of the virtual platform.
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "world/threads/race_detector.h"
#include "world/world.h"

namespace ipodcomm::virtual_platform {

/// Starts a thread of the world that runs a function, which must outlive the thread.
inline HANDLE StartThread(const std::function<void()>& body) {
  const auto run = [](void* argument) -> DWORD {
    (*static_cast<const std::function<void()>*>(argument))();
    return 0;
  };
  return CreateThread(nullptr, 0, run, const_cast<std::function<void()>*>(&body), 0, nullptr);
}

/// What threads note down, in the order in which they run. The race detector does not look here.
template <class T>
class Notes {
 public:
  void Add(const T& note) {
    const Unwatched unwatched;
    notes_.push_back(note);
  }
  std::vector<T> all() const {
    const Unwatched unwatched;
    return notes_;
  }

 private:
  std::vector<T> notes_;
};

inline HANDLE OpenPort(const wchar_t* name = L"COM2:") {
  return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
}

/// What one read brings, with the given time-outs.
inline std::vector<std::uint8_t> Read(HANDLE port, DWORD count) {
  std::vector<std::uint8_t> bytes(count);
  DWORD read = 0;
  if (ReadFile(port, bytes.data(), count, &read, nullptr) == FALSE) read = 0;
  bytes.resize(read);
  return bytes;
}

inline bool Write(HANDLE port, const std::vector<std::uint8_t>& bytes) {
  DWORD written = 0;
  return WriteFile(port, bytes.data(), bytes.size(), &written, nullptr) != FALSE &&
         written == bytes.size();
}

inline void SetReadTimeouts(HANDLE port, DWORD interval_ms, DWORD multiplier_ms,
                            DWORD constant_ms) {
  COMMTIMEOUTS timeouts = {interval_ms, multiplier_ms, constant_ms, 0, 0};
  SetCommTimeouts(port, &timeouts);
}

}  // namespace ipodcomm::virtual_platform
