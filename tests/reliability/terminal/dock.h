// SPDX-License-Identifier: MIT
// A simulated iPod behind a pseudo-terminal, in a process of its own, so that what is counted in
// this one is the library's.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

#include "simulator/settings/settings.h"

namespace terminal {

/// What the iPod's end has seen.
struct Account {
  std::uint64_t bytes_from_accessory = 0;
  std::uint64_t bytes_to_accessory = 0;
  std::uint64_t buttons = 0;      // whole frames with the state of the buttons
  std::uint64_t asked_again = 0;  // before the answer was complete, after it had paused for long
  std::uint64_t mistakes = 0;     // others
  std::uint64_t files = 0;
  std::uint64_t open_files = 0;
};

class Dock {
 public:
  /// @param link to make, where the library finds the terminal
  /// @param baud as of ipodsim::PtyServer
  Dock(const ipodsim::Settings& settings, const std::string& link, std::uint32_t baud);
  ~Dock();
  Dock(const Dock&) = delete;
  Dock& operator=(const Dock&) = delete;

  void Unplug();
  /// In a few milliseconds; to be awaited.
  void BeginUnplug();
  void AwaitUnplug();
  void Replug();
  /// Prints what the accessory did wrong, each mistake once.
  Account Report();

 private:
  enum class Order : char { kUnplug = 'u', kUnplugSoon = 's', kReplug = 'r', kReport = 'a' };
  class Far;

  void Tell(Order order);
  void AwaitDone();

  pid_t process_ = -1;
  int orders_ = -1;
};

}  // namespace terminal
