// SPDX-License-Identifier: MIT
// The frame assembler's states outside a frame's body.
#include <cstring>

#include "ipodcomm/detail/FrameAssembler.h"

namespace ipodcomm {

namespace {
constexpr std::uint8_t kSyncByte = 0xFF;
constexpr std::uint8_t kStartByte = 0x55;
}  // namespace

void FrameAssembler::Reset() {
  std::memset(buffer_, 0, sizeof buffer_);
  StartOver();
  sum_ = 0;
}

void FrameAssembler::StartOver() {
  index_ = 0;
  state_ = State::kHuntSync;
  completed_ = false;
}

bool FrameAssembler::Step(std::uint8_t byte) {
  switch (state_) {
    case State::kHuntSync:
      if (byte == kSyncByte) {
        state_ = State::kStart;
      } else {
        index_ = 0;
      }
      break;
    case State::kStart:
      // Another byte than 55 empties the buffer but leaves the state: a 55 that follows is then
      // stored at position 0, and the frame is queued without its sync byte, one byte shorter.
      // Prescribed so; hosts and iPods in the field depend on it.
      if (byte == kStartByte) {
        state_ = State::kLength;
        sum_ = 0;  // the checksum covers the length byte onward
      } else {
        index_ = 0;
      }
      break;
    case State::kLength:
      type_ = byte != 0 ? IPOD_PACKET_TYPE_SMALL : IPOD_PACKET_TYPE_LARGE;
      remaining_ = byte;
      state_ = byte != 0 ? State::kBody : State::kLengthHigh;
      break;
    case State::kLengthHigh:
      remaining_ = byte * 256U;
      state_ = State::kLengthLow;
      break;
    case State::kLengthLow:
      remaining_ |= byte;
      state_ = State::kBody;
      break;
    case State::kChecksum:
      // The sum now includes the checksum byte. A wrong one drops the frame without any report.
      if (sum_ == 0) return completed_ = true;
      StartOver();
      break;
    case State::kBody:  // Feed handles it
      break;
  }
  return false;
}

}  // namespace ipodcomm
