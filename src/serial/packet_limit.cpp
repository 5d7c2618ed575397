// SPDX-License-Identifier: MIT
// Bounding a queue of packets.
#include "ipodcomm/detail/PacketLimit.h"

namespace ipodcomm {

bool PacketLimit::MakeRoom(std::list<tagSERIAL_PACKET>* packets) {
  const std::uint32_t most = most_;
  if (most == 0) return false;
  if (packets->size() <= most / 2) flooded_ = 0;
  if (packets->size() < most) return false;
  while (packets->size() >= most) {
    packets->pop_front();
    dropped_.fetch_add(1);
  }
  return flooded_.exchange(1) == 0;
}

}  // namespace ipodcomm
