// SPDX-License-Identifier: MIT
// Finds one frame in received bytes.
#include "legacy/frame_hunt.h"

#include "protocol/frame.h"

namespace ipodcomm {

namespace {

constexpr std::uint8_t kStartByte = 0x55;

}  // namespace

bool FrameHunt::Take(std::uint8_t byte) {
  switch (state_) {
    case State::kSync:
      return TakeIf(byte == kSyncByte, State::kStart);
    case State::kStart:
      // Whatever comes instead of the start byte, the hunt goes on for it and does not return to
      // the sync byte. Prescribed so; iPods in the field depend on it.
      return TakeIf(byte == kStartByte, State::kLength);
    case State::kLength:
      remaining_ = byte;
      state_ = byte != 0 ? State::kPayload : State::kLengthHigh;
      return true;
    case State::kLengthHigh:
      remaining_ = static_cast<std::uint16_t>(byte << 8);
      state_ = State::kLengthLow;
      return true;
    case State::kLengthLow:
      remaining_ = static_cast<std::uint16_t>(remaining_ + byte);
      state_ = State::kPayload;
      return true;
    case State::kPayload:
      // A large frame of length 0 wraps to 65535 here. Prescribed so.
      --remaining_;
      if (remaining_ == 0) state_ = State::kChecksum;
      return true;
    case State::kChecksum:
      state_ = State::kComplete;
      return true;
    case State::kComplete:
      break;
  }
  return false;
}

bool FrameHunt::TakeIf(bool expected, State next) {
  if (expected) state_ = next;
  return expected;
}

}  // namespace ipodcomm
