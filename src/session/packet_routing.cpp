// SPDX-License-Identifier: MIT
// CIpodComm: the packet-routing thread, which parts answers from what the iPod sends unasked.
#include "ipodcomm/CIpodComm.h"
#include "ipodcomm/TraceLog.h"
#include "protocol/frame.h"
#include "protocol/transaction_ids.h"
#include "session/ipod_requests.h"

using ipodcomm::FrameBytes;
using ipodcomm::IpodRequest;
using ipodcomm::LockScope;
using ipodcomm::ReceivedFrame;
using ipodcomm::RequestReceiver;

namespace {

constexpr unsigned long kPacketWaitMs = 1000;

}  // namespace

void CIpodComm::RouteNextPacket() {
  tagSERIAL_PACKET packet = {};
  if (serial_.GetNextPacket(&packet, kPacketWaitMs)) RoutePacket(packet);
}

void CIpodComm::RoutePacket(const tagSERIAL_PACKET& packet) {
  const FrameBytes bytes(packet);
  const ReceivedFrame frame = ipodcomm::ParseFrame(bytes);
  const IpodRequest* request = ipodcomm::FindRequest(frame.lingo, frame.command);
  // Also while identifiers are off.
  if (request != nullptr && request->keeps_id) {
    // That of a large request is taken from where it is under the robust conduct only.
    StoreRequestId(request->lingo, robust_ != 0 ? bytes.Number16(frame.data_position)
                                                : ipodcomm::RequestTransactionId(bytes));
  }
  const bool for_commands =
      request == nullptr || request->receiver == RequestReceiver::kWaitingCommand;
  ipodcomm::PacketQueue& queue = for_commands ? response_ : notification_;
  if (!queue.Append(packet)) {
    CKORVATrace::LogSoftwareError(L"CIpodComm::ReadPacketThread",
                                  L"Error storing packet: no memory left");
  }
}

// By default a request is answered under the identifier of the last one that came, also when it is
// an earlier one. Under the robust conduct each is answered under its own, which MeetRequest keeps.
void CIpodComm::StoreRequestId(std::uint8_t lingo, std::uint16_t transaction_id) {
  const LockScope lock(transmit_lock_);
  if (robust_ == 0) outgoing_.ipod_transaction_ids[lingo] = transaction_id;
  outgoing_.own_transaction_id =
      ipodcomm::OwnIdAfterRequest(outgoing_.own_transaction_id, transaction_id);
}
