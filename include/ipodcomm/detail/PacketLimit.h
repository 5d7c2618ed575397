// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <cstdint>
#include <list>

#include "ipodcomm/IpodTypes.h"
#include "ipodcomm/detail/Shared.h"

namespace ipodcomm {

/// How many packets a queue may hold when nobody takes them: the oldest then make room for the
/// newest. No limit until one is chosen.
class PacketLimit {
 public:
  /// 0: none. Any thread.
  void Choose(std::uint32_t most) { most_ = most; }
  std::uint32_t dropped() const { return dropped_; }

  /// Makes room for one more packet. The caller holds the queue's lock.
  /// @return true for the first packet that a flood drops. It is over once the queue is half empty.
  bool MakeRoom(std::list<tagSERIAL_PACKET>* packets);

 private:
  Shared<std::uint32_t> most_ = 0;
  Shared<std::uint32_t> dropped_ = 0;
  Shared<std::int32_t> flooded_ = 0;
};

}  // namespace ipodcomm
