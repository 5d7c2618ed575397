// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <cstdint>
#include <list>

#include "ipodcomm/IpodTypes.h"
#include "ipodcomm/detail/Lock.h"
#include "ipodcomm/detail/PacketLimit.h"
#include "ipodcomm/detail/Shared.h"
#include "ipodcomm/platform.h"

namespace ipodcomm {

/// A session's queue of packets with its lock and its event. A copy holds the same packets, or none
/// of them when memory is out, and shares the event.
class PacketQueue {
 public:
  /// The ordinary wait for a packet.
  static constexpr std::uint32_t kWaitMs = 1000;
  static constexpr std::uint16_t kNoCommand = 0xFFFF;

  /// Creates the lock, then the event.
  PacketQueue();
  PacketQueue(const PacketQueue& other);
  PacketQueue& operator=(const PacketQueue& other);
  ~PacketQueue() = default;

  /// Closes the event and deletes the lock. No thread may be using the queue.
  void Destroy();
  /// Signals the event, to wake a waiting thread.
  void Wake();

  /// Bounds the queue.
  PacketLimit& limit() { return limit_; }

  void Clear();
  /// False, and the packet is dropped, when memory is out. Packets dropped for a limit are logged
  /// once per flood.
  bool Append(const tagSERIAL_PACKET& packet);
  /// Copies and removes the front packet, waiting for one.
  bool Pop(tagSERIAL_PACKET* packet, std::uint32_t wait_ms = kWaitMs);
  /// Command of the front packet, waiting for one; kNoCommand when there is none.
  std::uint16_t PeekCommand(std::uint32_t wait_ms = kWaitMs);

 private:
  std::list<tagSERIAL_PACKET> Packets() const;
  bool PopFront(tagSERIAL_PACKET* packet);
  bool PeekFront(std::uint16_t* command) const;

  std::list<tagSERIAL_PACKET> packets_;  // needs no memory while it is empty
  mutable Lock lock_;
  Shared<HANDLE> event_;
  PacketLimit limit_;
};

}  // namespace ipodcomm
