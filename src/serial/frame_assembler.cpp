// SPDX-License-Identifier: MIT
// The frame assembler's work on runs of bytes.
#include <cstring>

#include "ipodcomm/detail/FrameAssembler.h"

namespace ipodcomm {

namespace {
constexpr std::uint32_t kLengthPosition = 2;
constexpr std::uint32_t kAroundTheBody = 4;  // sync, start and length byte, checksum
}  // namespace

void FrameAssembler::Reset() {
  std::memset(buffer_, 0, sizeof buffer_);
  complete_length_ = 0;
  given_up_ = 0;
  StartOver();
}

// Most frames lie in a run as a whole, and in the short form; the others go byte by byte.
bool FrameAssembler::FeedRun(const std::uint8_t** next, const std::uint8_t* end) {
  while (*next != end) {
    bool complete = false;
    if (state_ == State::kHuntSync && HoldsWholeFrame(*next, end)) {
      const std::uint32_t size = (*next)[kLengthPosition] + kAroundTheBody;
      complete = TakeWholeFrame(*next, size);
      *next += size;
    } else {
      complete = Feed(*(*next)++);
    }
    if (complete || given_up_ != 0) return complete;
  }
  return false;
}

bool FrameAssembler::HoldsWholeFrame(const std::uint8_t* next, const std::uint8_t* end) const {
  const auto left = static_cast<std::size_t>(end - next);
  return left > kAroundTheBody && next[0] == kSyncByte && next[1] == kStartByte &&
         next[kLengthPosition] != 0 && left >= next[kLengthPosition] + kAroundTheBody;
}

// Copies and sums in one pass, as fast as the compiler can make it.
bool FrameAssembler::TakeWholeFrame(const std::uint8_t* frame, std::uint32_t size) {
  std::uint8_t sum = static_cast<std::uint8_t>(0 - kSyncByte - kStartByte);  // not covered
  for (std::uint32_t i = 0; i < size; ++i) {
    buffer_[i] = frame[i];
    sum = static_cast<std::uint8_t>(sum + frame[i]);
  }
  type_ = IPOD_PACKET_TYPE_SMALL;
  complete_length_ = size;
  given_up_ = sum == 0 ? 0 : size;
  return sum == 0;
}

}  // namespace ipodcomm
