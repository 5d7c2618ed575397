// SPDX-License-Identifier: MIT
// A frame told in one readable line.

#pragma once

#include <string>

#include "frame.h"
#include "simulator/protocol/command_table.h"

namespace ipodsim {

struct TraceLine {
  enum class Direction { kFromAccessory, kToAccessory, kNote };
  Microseconds at;
  Direction direction;
  std::string text;
};

/// For example "Extended Interface GetPlayStatus id 0x0007" or "General ACK ok for StartIDPS".
/// `has_identifier` says whether the data begin with a transaction identifier.
std::string Describe(const Frame& whole, bool has_identifier, Sender sender = Sender::kAccessory);

/// "  12.345678 > General ..." with the time in seconds; > is towards the iPod, < from it.
std::string Format(const TraceLine& line);

}  // namespace ipodsim
