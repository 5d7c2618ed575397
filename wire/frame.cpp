// SPDX-License-Identifier: MIT
#include "wire/frame.h"

#include <numeric>

#include "wire/table.h"

namespace ipodwire {
namespace {

constexpr std::size_t kLengthAt = 2;

}  // namespace

bool ParseFrame(const std::vector<std::uint8_t>& bytes, Frame* frame) {
  if (bytes.size() < kLengthAt + 1 || bytes[0] != 0xFF || bytes[1] != 0x55) return false;
  frame->large = bytes[kLengthAt] == 0;
  const std::size_t lingo_at = frame->large ? 5 : 3;
  if (bytes.size() <= lingo_at) return false;
  const std::size_t length =
      frame->large ? (std::size_t{bytes[3]} << 8) + bytes[4] : bytes[kLengthAt];
  if (bytes.size() != lingo_at + length + 1) return false;

  frame->lingo = bytes[lingo_at];
  const std::size_t command_size = CommandSize(frame->lingo);
  if (length < 1 + command_size) return false;
  const std::uint8_t* command = &bytes[lingo_at + 1];
  frame->command =
      command_size == 1 ? command[0] : static_cast<std::uint16_t>((command[0] << 8) | command[1]);
  frame->data.assign(command + command_size, &bytes[lingo_at] + length);
  frame->checksum_holds = (std::accumulate(bytes.begin() + kLengthAt, bytes.end(), 0U) & 0xFF) == 0;
  return true;
}

}  // namespace ipodwire
