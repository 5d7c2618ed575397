// SPDX-License-Identifier: MIT
// The frame assembler's states outside a frame's body.
#include <algorithm>
#include <cstring>

#include "ipodcomm/detail/FrameAssembler.h"
#include "protocol/frame.h"

namespace ipodcomm {

namespace {
constexpr std::uint8_t kStartByte = 0x55;
}  // namespace

void FrameAssembler::Reset() {
  std::memset(buffer_, 0, sizeof buffer_);
  StartOver();
}

void FrameAssembler::StartOver() {
  index_ = 0;
  given_up_ = 0;
  state_ = State::kHuntSync;
}

void FrameAssembler::GiveUp() {
  const std::uint32_t bytes = index_;
  StartOver();
  given_up_ = bytes;
}

// A large frame of length 0 has no end of its own: it goes on up to the size limit, as one that
// is too long does.
void FrameAssembler::BeginBody(std::uint32_t length) {
  body_end_ = length != 0 ? std::min(index_ + length, kSizeLimit) : kSizeLimit;
  state_ = State::kBody;
}

void FrameAssembler::EndBody() {
  if (body_end_ == kSizeLimit) return GiveUp();
  state_ = State::kChecksum;
}

// The bytes from the length byte through the checksum sum to 0.
bool FrameAssembler::ChecksumHolds() const {
  std::uint8_t sum = 0;
  for (std::uint32_t i = length_index_; i < index_; ++i) {
    sum = static_cast<std::uint8_t>(sum + buffer_[i]);
  }
  return sum == 0;
}

bool FrameAssembler::Step(std::uint8_t byte) {
  if (state_ == State::kComplete) StartOver();
  given_up_ = 0;
  buffer_[index_++] = byte;
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
      // A frame that follows a lone FF gets through only so, and hosts in the field rely on it.
      if (byte == kStartByte) {
        state_ = State::kLength;
        length_index_ = index_;
      } else {
        index_ = 0;
      }
      break;
    case State::kLength:
      type_ = byte != 0 ? IPOD_PACKET_TYPE_SMALL : IPOD_PACKET_TYPE_LARGE;
      if (byte != 0) {
        BeginBody(byte);
      } else {
        state_ = State::kLengthHigh;
      }
      break;
    case State::kLengthHigh:
      state_ = State::kLengthLow;
      break;
    case State::kLengthLow:
      BeginBody(buffer_[index_ - 2] * 256U + byte);
      break;
    case State::kChecksum:
      if (ChecksumHolds()) {
        state_ = State::kComplete;
        return true;
      }
      GiveUp();  // without any report
      break;
    case State::kBody:  // Feed takes its bytes
    case State::kComplete:
      break;
  }
  return false;
}

}  // namespace ipodcomm
