// SPDX-License-Identifier: MIT
// CIpodSerial: the queue of received packets, from the assembler to its consumers.
#include <cstring>
#include <new>

#include "ipodcomm/CIpodSerial.h"
#include "ipodcomm/TraceLog.h"
#include "platform/services.h"
#include "protocol/frame.h"
#include "serial/event_wait.h"

using ipodcomm::LockScope;

namespace {

constexpr DWORD kReadPacketWaitMs = 2000;

// Unsigned, so that a result compares equal to 0x80004005 whatever the width of long.
constexpr long kGeneralFailure = static_cast<long>(0x80004005UL);

}  // namespace

void CIpodSerial::QueueAssembledFrame() {
  pace_.FrameReceived();
  // Where damaged frames are read again, the one behind a lone sync byte gets its own back.
  const bool lacks_sync = pace_.rereads_damaged() && assembler_.data()[0] != ipodcomm::kSyncByte;
  const std::uint32_t start = lacks_sync ? 1 : 0;
  staging_.data[0] = ipodcomm::kSyncByte;
  staging_.length = start + assembler_.length();
  std::memcpy(staging_.data + start, assembler_.data(), assembler_.length());
  if (StoreStaged()) {
    EventModify(packet_event_, EVENT_SET);
  } else {
    CKORVATrace::LogSoftwareError(L"CIpodSerial::PortReadThread",
                                  L"Error storing received packet: no memory left");
  }
}

// False, and the packet is dropped, when memory is out.
bool CIpodSerial::StoreStaged() {
  bool flooded = false;
  try {
    const LockScope lock(state_lock_);
    flooded = limit_.MakeRoom(&received_);
    received_.push_back(staging_);
  } catch (const std::bad_alloc&) {
    return false;
  }
  if (flooded) {
    CKORVATrace::LogSoftwareError(L"CIpodSerial::PortReadThread",
                                  L"Received packets dropped: nobody takes them");
  }
  return true;
}

// Copies and removes the front packet; the caller holds the state lock.
bool CIpodSerial::PopPacket(tagSERIAL_PACKET* packet) {
  if (received_.empty()) return false;
  const tagSERIAL_PACKET& front = received_.front();
  std::memcpy(packet->data, front.data, front.length);
  packet->length = front.length;
  received_.pop_front();
  return true;
}

bool CIpodSerial::GetNextPacket(tagSERIAL_PACKET* packet, unsigned long timeout_ms) {
  {
    const LockScope lock(state_lock_);
    if (PopPacket(packet)) {
      // The signal of a packet taken without waiting must not wake the next wait for nothing.
      EventModify(packet_event_, EVENT_RESET);
      return true;
    }
  }
  if (!ipodcomm::WaitForEvent(packet_event_, timeout_ms)) return false;
  const LockScope lock(state_lock_);
  return PopPacket(packet);
}

long CIpodSerial::ReadPacket(unsigned char* buffer, unsigned long size, unsigned long* length,
                             tagIPOD_PACKET_TYPE* type) {
  if (port_ == INVALID_HANDLE_VALUE) return ERROR_INVALID_HANDLE;
  bool waiting = false;
  {
    const LockScope lock(state_lock_);
    waiting = !received_.empty();
    if (waiting) EventModify(packet_event_, EVENT_RESET);
  }
  if (!waiting && !ipodcomm::WaitForEvent(packet_event_, kReadPacketWaitMs)) {
    return kGeneralFailure;
  }
  tagSERIAL_PACKET packet = {};
  {
    const LockScope lock(state_lock_);
    if (!PopPacket(&packet)) return kGeneralFailure;
  }
  // A buffer exactly as long as the packet is too small, and the packet is lost. The type is that
  // of the frame assembled last, not of this packet. Hosts in the field are written around both.
  if (packet.length >= size) return kGeneralFailure;
  std::memcpy(buffer, packet.data, packet.length);
  *length = packet.length;
  if (type != nullptr) *type = packet_type_;
  return ERROR_SUCCESS;
}

// Empty, and logged, when memory is out.
std::list<tagSERIAL_PACKET> CIpodSerial::CopyOfQueue() const {
  try {
    const LockScope lock(state_lock_);
    return received_;
  } catch (const std::bad_alloc&) {
    CKORVATrace::LogSoftwareError(L"CIpodSerial::CIpodSerial",
                                  L"Error copying received packets: no memory left");
    return {};
  }
}
