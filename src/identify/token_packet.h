// SPDX-License-Identifier: MIT
// The buffer in which identification tokens are packed for one command.
#pragma once

#include "identify/tokens.h"

namespace ipodcomm {

/// A count byte, then tokens back to back. Each is written at end() by its builder.
class TokenPacket {
 public:
  unsigned char* end() { return bytes_ + size_; }
  unsigned long room() const { return kCapacity - size_; }

  /// Adds the token of `size` bytes that was written at end(). False for kNoRoom.
  bool Add(unsigned long size);
  /// Empties the packet. Its old bytes stay behind the end.
  void Clear();

  bool empty() const { return bytes_[0] == 0; }
  unsigned char* bytes() { return bytes_; }
  unsigned long size() const { return size_; }

 private:
  static constexpr unsigned long kCapacity = 520;

  unsigned char bytes_[kCapacity] = {};
  unsigned long size_ = 1;
};

}  // namespace ipodcomm
