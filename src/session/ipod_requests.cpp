// SPDX-License-Identifier: MIT
// CIpodComm: the table of the iPod's requests, and what is done about each.
#include "session/ipod_requests.h"

#include <algorithm>
#include <iterator>

#include "ipodcomm/CIpodComm.h"
#include "protocol/commands.h"
#include "protocol/frame.h"
#include "protocol/transaction_ids.h"

namespace ipodcomm {

namespace {

using Reaction = RequestReaction;

constexpr std::uint16_t kNoAnswer = IpodRequest::kNoAnswer;
constexpr RequestReceiver kThread = RequestReceiver::kNotificationThread;
constexpr RequestReceiver kCommand = RequestReceiver::kWaitingCommand;

// clang-format off
constexpr IpodRequest kRequests[] = {
    // lingo, request, answer, identifier kept and echoed, who meets it, what is done
    {kGeneralLingo, general::kNotifyIpodStateChange, kNoAnswer, false, kThread, Reaction::kNone},
    {kGeneralLingo, general::kIpodNotification, kNoAnswer, true, kThread, Reaction::kNone},
    {kGeneralLingo, general::kGetAccessoryInfo, general::kRetAccessoryInfo, true, kThread, Reaction::kReturnAccessoryInfo},
    {kExtendedLingo, extended::kPlayStatusChangeNotification, kNoAnswer, false, kThread, Reaction::kStorePlayStatus},
    {kSportsLingo, sports::kGetDeviceVersion, sports::kRetDeviceVersion, false, kCommand, Reaction::kReturnSportsVersion},
    {kSportsLingo, sports::kGetDeviceCaps, sports::kRetDeviceCaps, true, kThread, Reaction::kReturnSportsCaps},
    {kStorageLingo, storage::kGetAccessoryCaps, storage::kRetAccessoryCaps, true, kThread, Reaction::kReturnStorageCaps},
};
// clang-format on

template <class Predicate>
const IpodRequest* Find(Predicate predicate) {
  const auto* found = std::find_if(std::begin(kRequests), std::end(kRequests), predicate);
  return found != std::end(kRequests) ? found : nullptr;
}

}  // namespace

const IpodRequest* FindRequest(std::uint8_t lingo, std::uint16_t command) {
  return Find([=](const IpodRequest& request) {
    return request.lingo == lingo && request.command == command;
  });
}

const IpodRequest* FindRequestAnsweredBy(std::uint8_t lingo, std::uint16_t command) {
  if (command == IpodRequest::kNoAnswer) return nullptr;
  return Find([=](const IpodRequest& request) {
    return request.lingo == lingo && request.answer == command;
  });
}

}  // namespace ipodcomm

// Does what a packet asks for, if it is a request of the iPod that `receiver` is to meet. The data
// of a large one are taken from where they are under the robust conduct only.
void CIpodComm::MeetRequest(tagSERIAL_PACKET& packet, ipodcomm::RequestReceiver receiver) {
  const ipodcomm::FrameBytes bytes(packet);
  ipodcomm::ReceivedFrame frame =
      robust_ != 0 ? ipodcomm::ParseFrame(bytes) : ipodcomm::ParseNotification(bytes);
  const ipodcomm::IpodRequest* request = ipodcomm::FindRequest(frame.lingo, frame.command);
  if (request == nullptr || request->receiver != receiver) return;
  if (robust_ != 0 && request->keeps_id) {
    const ipodcomm::LockScope lock(transmit_lock_);
    outgoing_.ipod_transaction_ids[frame.lingo] = bytes.Number16(frame.data_position);
  }
  if (transaction_id_mode_ != 0) ipodcomm::SkipTransactionId(&frame);
  ReactTo(*request, packet.data + frame.data_position, frame.data_length);
}

void CIpodComm::ReactTo(const ipodcomm::IpodRequest& request, unsigned char* data,
                        std::uint32_t length) {
  using Reaction = ipodcomm::RequestReaction;
  // The accessory's capabilities are those of version 1.02 of the Storage lingo.
  constexpr unsigned char kStorageMajor = 1;
  constexpr unsigned char kStorageMinor = 2;
  switch (request.reaction) {
    case Reaction::kNone:
      break;
    case Reaction::kStorePlayStatus:
      StorePlayStatus(ipodcomm::FrameBytes(data, length));
      break;
    case Reaction::kReturnAccessoryInfo:
      Return_AccessoryInfo(data, length);
      break;
    case Reaction::kReturnSportsVersion:
      Return_SportsDeviceVersion();
      break;
    case Reaction::kReturnSportsCaps:
      Return_SportsDeviceCaps();
      break;
    case Reaction::kReturnStorageCaps:
      // By default the write offset starts over with it, which breaks a document that is open.
      if (robust_ != 0) {
        ReturnStorageCaps(kStorageMajor, kStorageMinor);
      } else {
        Command_ST_RetAccessoryCaps(kStorageMajor, kStorageMinor);
      }
      break;
  }
}
