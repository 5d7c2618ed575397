// SPDX-License-Identifier: MIT
// Packs identification tokens into SetFIDTokenValues packets.
#include "identify/token_packet.h"

namespace ipodcomm {

namespace {
constexpr unsigned long kNoRoom = 0xFFFFFFFF;
}  // namespace

unsigned long TokenPacket::Build(const Builder& builder) {
  const unsigned long size = builder(buffer_ + offset_, kSize - offset_);
  if (size == kNoRoom) return kNoRoom;
  ++buffer_[0];
  offset_ += size;
  return size;
}

TokenPacket::Result TokenPacket::Add(const Builder& builder, const Builder& retry) {
  if (Build(builder) != kNoRoom) return Result::kAdded;
  if (!Send()) return Result::kNotSent;
  return Build(retry) != kNoRoom ? Result::kAdded : Result::kDoesNotFit;
}

bool TokenPacket::Send() {
  if (!sender_(buffer_, offset_)) return false;
  buffer_[0] = 0;
  offset_ = 1;
  return true;
}

}  // namespace ipodcomm
