// SPDX-License-Identifier: MIT
// The buffer in which identification tokens are packed for one command.
#include "identify/token_packet.h"

namespace ipodcomm {

bool TokenPacket::Add(unsigned long size) {
  if (size == kNoRoom) return false;
  ++bytes_[0];
  size_ += size;
  return true;
}

void TokenPacket::Clear() {
  bytes_[0] = 0;
  size_ = 1;
}

}  // namespace ipodcomm
