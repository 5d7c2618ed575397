// SPDX-License-Identifier: MIT
// CIpodComm: the packet-routing thread, which parts answers from what the iPod sends unasked.
#include "ipodcomm/CIpodComm.h"
#include "protocol/commands.h"
#include "protocol/frame.h"

using ipodcomm::FrameBytes;
using ipodcomm::LockScope;
using ipodcomm::ReceivedFrame;

namespace {

constexpr unsigned long kPacketWaitMs = 1000;

/// What the iPod sends unasked. Everything else is an answer.
struct Route {
  std::uint8_t lingo;
  std::uint16_t command;
  bool is_request;  // its transaction identifier is echoed by the accessory's answer
};

constexpr Route kNotificationRoutes[] = {
    {ipodcomm::kExtendedLingo, ipodcomm::extended::kPlayStatusChangeNotification, false},
    {ipodcomm::kGeneralLingo, ipodcomm::general::kNotifyIpodStateChange, false},
    {ipodcomm::kGeneralLingo, ipodcomm::general::kGetAccessoryInfo, true},
    {ipodcomm::kStorageLingo, ipodcomm::storage::kGetAccessoryCaps, true},
    {ipodcomm::kGeneralLingo, ipodcomm::general::kIpodNotification, true},
    {ipodcomm::kSportsLingo, ipodcomm::sports::kGetDeviceCaps, true},
};

const Route* FindNotificationRoute(const ReceivedFrame& frame) {
  for (const Route& route : kNotificationRoutes) {
    if (route.lingo == frame.lingo && route.command == frame.command) return &route;
  }
  return nullptr;
}

}  // namespace

void CIpodComm::RouteNextPacket() {
  tagSERIAL_PACKET packet = {};
  if (serial_.GetNextPacket(&packet, kPacketWaitMs)) RoutePacket(packet);
}

void CIpodComm::RoutePacket(const tagSERIAL_PACKET& packet) {
  const FrameBytes bytes(packet);
  const Route* route = FindNotificationRoute(ipodcomm::ParseFrame(bytes));
  if (route == nullptr) {
    response_.Append(packet);
    return;
  }
  // Bytes 5 and 6 are taken whatever the form, and also while identifiers are off.
  if (route->is_request) NoteRequest(route->lingo, bytes.Number16(5));
  notification_.Append(packet);
}

/// Keeps the identifier that the answer must echo. The own identifier steps by one when it is not
/// ahead of the iPod's; it is not set to the iPod's plus one, so the two are not resynchronised.
/// Prescribed so; iPods in the field accept it.
void CIpodComm::NoteRequest(std::uint8_t lingo, std::uint16_t transaction_id) {
  const LockScope lock(transmit_lock_);
  outgoing_.ipod_transaction_ids[lingo] = transaction_id;
  const std::uint16_t own = own_transaction_id_;
  if (own <= transaction_id) own_transaction_id_ = static_cast<std::uint16_t>(own + 1);
}
