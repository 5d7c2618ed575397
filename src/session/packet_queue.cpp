// SPDX-License-Identifier: MIT
// A session's queue of packets.
#include <cstring>
#include <new>

#include "ipodcomm/TraceLog.h"
#include "ipodcomm/detail/PacketQueue.h"
#include "platform/services.h"
#include "protocol/frame.h"
#include "serial/event_wait.h"

namespace ipodcomm {

PacketQueue::PacketQueue() : event_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

PacketQueue::PacketQueue(const PacketQueue& other)
    : packets_(other.Packets()), event_(other.event_), limit_(other.limit_) {}

PacketQueue& PacketQueue::operator=(const PacketQueue& other) {
  if (this == &other) return *this;
  std::list<tagSERIAL_PACKET> packets = other.Packets();
  const LockScope lock(lock_);
  packets_.swap(packets);
  event_ = other.event_;
  limit_ = other.limit_;
  return *this;
}

std::list<tagSERIAL_PACKET> PacketQueue::Packets() const {
  try {
    const LockScope lock(lock_);
    return packets_;
  } catch (const std::bad_alloc&) {
    CKORVATrace::LogSoftwareError(L"CIpodComm::CIpodComm",
                                  L"Error copying queued packets: no memory left");
    return {};
  }
}

void PacketQueue::Destroy() {
  CloseHandle(event_);
  lock_.Delete();
  packets_.clear();
}

void PacketQueue::Wake() { EventModify(event_, EVENT_SET); }

void PacketQueue::Clear() {
  const LockScope lock(lock_);
  packets_.clear();
  EventModify(event_, EVENT_RESET);
}

bool PacketQueue::Append(const tagSERIAL_PACKET& packet) {
  bool flooded = false;
  try {
    const LockScope lock(lock_);
    flooded = limit_.MakeRoom(&packets_);
    packets_.push_back(packet);
    EventModify(event_, EVENT_SET);
  } catch (const std::bad_alloc&) {
    return false;
  }
  if (flooded) {
    CKORVATrace::LogSoftwareError(L"CIpodComm::ReadPacketThread",
                                  L"Packets dropped: nobody takes them");
  }
  return true;
}

bool PacketQueue::Pop(tagSERIAL_PACKET* packet, std::uint32_t wait_ms) {
  {
    const LockScope lock(lock_);
    if (PopFront(packet)) {
      EventModify(event_, EVENT_RESET);
      return true;
    }
  }
  if (!WaitForEvent(event_, wait_ms)) return false;
  const LockScope lock(lock_);
  return PopFront(packet);
}

std::uint16_t PacketQueue::PeekCommand(std::uint32_t wait_ms) {
  std::uint16_t command = kNoCommand;
  {
    const LockScope lock(lock_);
    if (PeekFront(&command)) return command;
  }
  if (!WaitForEvent(event_, wait_ms)) return kNoCommand;
  const LockScope lock(lock_);
  PeekFront(&command);
  return command;
}

bool PacketQueue::PopFront(tagSERIAL_PACKET* packet) {
  if (packets_.empty()) return false;
  const tagSERIAL_PACKET& front = packets_.front();
  std::memcpy(packet->data, front.data, front.length);
  packet->length = front.length;
  packets_.pop_front();
  return true;
}

bool PacketQueue::PeekFront(std::uint16_t* command) const {
  if (packets_.empty()) return false;
  *command = ParseFrame(FrameBytes(packets_.front())).command;
  return true;
}

}  // namespace ipodcomm
