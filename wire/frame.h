// SPDX-License-Identifier: MIT
// The outside of a frame.
//
//   small   FF 55 length lingo command data... checksum
//   large   FF 55 00 length-high length-low lingo command data... checksum
//
// The length counts the lingo through the last byte of the data. The command's number is one byte,
// in the Extended Interface two. All bytes from the length through the checksum sum to 0 modulo
// 256.
#pragma once

#include <cstdint>
#include <vector>

namespace ipodwire {

struct Frame {
  bool large = false;
  std::uint8_t lingo = 0;
  std::uint16_t command = 0;
  std::vector<std::uint8_t> data;  ///< a transaction identifier included
  bool checksum_holds = false;
};

/// False for bytes that are no whole frame, or one too short to hold a command.
bool ParseFrame(const std::vector<std::uint8_t>& bytes, Frame* frame);

}  // namespace ipodwire
