// SPDX-License-Identifier: MIT
// Finds one frame in received bytes.
#include "legacy/frame_hunt.h"

#include "protocol/frame.h"

namespace ipodcomm {

namespace {

constexpr std::uint8_t kStartByte = 0x55;

}  // namespace

bool FrameHunt::Accept(std::uint8_t byte) {
  switch (state_) {
    case State::kSync:
      return AcceptIf(byte == kSyncByte, State::kStart);
    case State::kStart:
      // Whatever comes instead of the start byte, the hunt goes on for it and does not return to
      // the sync byte: on docks in the field that double the sync byte or put noise behind it, the
      // frame is found all the same.
      return AcceptIf(byte == kStartByte, State::kLength);
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
      // A large frame of length 0 wraps to 65535 here. Hosts in the field then get what follows,
      // up to the end of their buffer or of what arrives.
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

//   FF 55 LL body checksum       FF 55 00 HH LL body checksum       with a body of one byte
std::uint32_t FrameHunt::least_missing() const {
  constexpr std::uint32_t kWrapped = 0x10000;
  switch (state_) {
    case State::kSync:
      return 5;
    case State::kStart:
    case State::kLengthHigh:
      return 4;
    case State::kLength:
    case State::kLengthLow:
      return 3;
    case State::kPayload:
      return (remaining_ != 0 ? remaining_ : kWrapped) + 1;
    case State::kChecksum:
      return 1;
    case State::kComplete:
      break;
  }
  return 0;
}

bool FrameHunt::AcceptIf(bool expected, State next) {
  if (expected) state_ = next;
  return expected;
}

}  // namespace ipodcomm
