// SPDX-License-Identifier: MIT
// The far end of COM2, in the hand of a program beside this one that runs outside of Windows
// (tests/windows/run-with-far-end).
#pragma once

#include <cstddef>
#include <cstdint>

#include "world.h"

namespace ipodcomm::test {

/// A line with a far end, there for as long as it lives or until it hangs up.
class FarEnd {
 public:
  /// @param port where the program listens, a number
  /// Throws std::runtime_error when it does not.
  explicit FarEnd(const char* port);
  FarEnd(const FarEnd&) = delete;
  FarEnd& operator=(const FarEnd&) = delete;
  ~FarEnd();

  // As the members of World.

  void Send(const Bytes& bytes);
  Bytes Receive(std::size_t count);
  /// Returns when the line has gone away.
  void HangUp();

 private:
  bool Readable() const;

  std::uintptr_t connection_;
};

}  // namespace ipodcomm::test
