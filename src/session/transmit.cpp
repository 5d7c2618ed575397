// SPDX-License-Identifier: MIT
// CIpodComm: framing and sending commands, with their transaction identifiers.
#include <cstring>

#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/frame.h"
#include "protocol/numbers.h"
#include "protocol/transaction_ids.h"
#include "session/ipod_requests.h"

using ipodcomm::LockScope;

// The caller holds the transmit lock.
void CIpodComm::AddTransactionID(unsigned char* destination, unsigned char lingo,
                                 unsigned short command) {
  const ipodcomm::IpodRequest* answered = ipodcomm::FindRequestAnsweredBy(lingo, command);
  const bool echoes = answered != nullptr && answered->keeps_id;
  const std::uint16_t own = outgoing_.own_transaction_id;
  ipodcomm::WriteNumber16(destination, echoes ? outgoing_.ipod_transaction_ids[lingo] : own);
}

// The frame is built in the transmit buffer and copied to `frame`. The caller holds the transmit
// lock: host and notification thread both come here, one at a time.
std::uint32_t CIpodComm::BuildFrame(const tagIPOD_WRITE_PARAMS& write, unsigned char* frame,
                                    std::uint16_t* own_transaction_id) {
  *own_transaction_id = outgoing_.own_transaction_id;
  const bool with_id =
      transaction_id_mode_ != 0 && ipodcomm::MayCarryTransactionId(write.lingo, write.command);
  const std::uint32_t size = ipodcomm::FrameSize(write.lingo, with_id, write.length);
  if (size == 0) return 0;
  unsigned char* built = outgoing_.frame;
  unsigned char* next = built + ipodcomm::WriteHeader(built, size, write.lingo, write.command);
  if (with_id) {
    AddTransactionID(next, write.lingo, write.command);
    next += ipodcomm::kTransactionIdSize;
    // The own identifier steps also when the frame echoes the iPod's.
    outgoing_.own_transaction_id = static_cast<std::uint16_t>(*own_transaction_id + 1);
  }
  if (write.length != 0) std::memcpy(next, write.data, write.length);
  ipodcomm::WriteChecksum(built, size);
  std::memcpy(frame, built, size);
  return size;
}

// The port has a lock of its own, so of two threads that send at once the frame that is numbered
// first may leave second. Under a robust conduct no other frame is numbered until this one has
// left: nothing else holds two locks, and nothing that holds the port's waits for this one.
tagIPOD_COMM_ERROR CIpodComm::Send(const tagIPOD_WRITE_PARAMS& write,
                                   std::uint16_t* own_transaction_id) {
  unsigned char frame[sizeof Outgoing::frame];
  const LockScope numbering(transmit_lock_);
  const std::uint32_t size = BuildFrame(write, frame, own_transaction_id);
  // What is left here is not left once more at the end.
  if (robust_ == 0) transmit_lock_.Leave();
  const bool left = size != 0 && serial_.WritePacket(frame, size) == ERROR_SUCCESS;
  return left ? IPOD_COMM_OK : IPOD_COMM_NO_ANSWER;
}

tagIPOD_COMM_ERROR CIpodComm::WriteCommand(tagIPOD_WRITE_PARAMS* write) {
  std::uint16_t own_transaction_id = 0;
  return Send(*write, &own_transaction_id);
}

void CIpodComm::SetOwnTransactionId(std::uint16_t id) {
  const LockScope lock(transmit_lock_);
  outgoing_.own_transaction_id = id;
}
