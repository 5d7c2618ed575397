// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <cstdint>
#include <deque>

#include "ipodcomm/IpodTypes.h"
#include "ipodcomm/detail/Lock.h"
#include "ipodcomm/detail/Shared.h"
#include "ipodcomm/platform.h"

namespace ipodcomm {

/// A session's queue of packets with its lock and its event. A copy holds the same packets and
/// shares the event.
class PacketQueue {
 public:
  /// Creates the lock, then the event.
  PacketQueue();
  PacketQueue(const PacketQueue& other);
  PacketQueue& operator=(const PacketQueue& other);
  ~PacketQueue() = default;

  /// Closes the event and deletes the lock. No thread may be using the queue.
  void Destroy();
  /// Signals the event, to wake a waiting thread.
  void Wake();

  void Clear();
  void Append(const tagSERIAL_PACKET& packet);
  /// Takes the front packet, waiting up to 1000 ms for one.
  bool Take(tagSERIAL_PACKET* packet);
  /// Command of the front packet, waiting up to 1000 ms for one; 0xFFFF when there is none.
  std::uint16_t PeekCommand();

 private:
  std::deque<tagSERIAL_PACKET> Packets() const;
  bool TakeFront(tagSERIAL_PACKET* packet);
  bool PeekFront(std::uint16_t* command) const;

  std::deque<tagSERIAL_PACKET> packets_;
  mutable Lock lock_;
  Shared<HANDLE> event_;
};

}  // namespace ipodcomm
