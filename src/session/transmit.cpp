// SPDX-License-Identifier: MIT
// CIpodComm: framing and sending commands, with their transaction identifiers.
#include <cstring>

#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "protocol/frame.h"
#include "protocol/numbers.h"

using ipodcomm::LockScope;

namespace {

/// Answers of the accessory, which echo the identifier of the iPod's request.
bool AnswersRequest(std::uint8_t lingo, std::uint16_t command) {
  return (lingo == ipodcomm::kGeneralLingo && command == ipodcomm::general::kRetAccessoryInfo) ||
         (lingo == ipodcomm::kSportsLingo && command == ipodcomm::sports::kRetDeviceCaps) ||
         (lingo == ipodcomm::kStorageLingo && command == ipodcomm::storage::kRetAccessoryCaps);
}

}  // namespace

/// Three General commands never carry an identifier; the same numbers in other lingoes do.
bool CIpodComm::CarriesTransactionId(std::uint8_t lingo, std::uint16_t command) const {
  if (transaction_id_mode_ == 0) return false;
  if (lingo != ipodcomm::kGeneralLingo) return true;
  const bool never = command == ipodcomm::general::kIdentifyDeviceLingoes ||
                     command == ipodcomm::general::kRetAccessoryInfo ||
                     command == ipodcomm::general::kRequestRemoteUiMode;
  return !never;
}

/// The caller holds the transmit lock.
void CIpodComm::AddTransactionID(unsigned char* destination, unsigned char lingo,
                                 unsigned short command) {
  const bool echoed = AnswersRequest(lingo, command);
  ipodcomm::WriteNumber16(destination, echoed ? outgoing_.ipod_transaction_ids[lingo]
                                              : static_cast<std::uint16_t>(own_transaction_id_));
}

/// Builds the frame in the transmit buffer and copies it to `frame`. Returns its size, 0 when the
/// command does not fit a frame. Host and notification thread both come here, one at a time.
std::uint32_t CIpodComm::BuildFrame(const tagIPOD_WRITE_PARAMS& write, unsigned char* frame) {
  const LockScope lock(transmit_lock_);
  const bool with_id = CarriesTransactionId(write.lingo, write.command);
  const std::uint32_t size = ipodcomm::FrameSize(write.lingo, with_id, write.length);
  if (size == 0) return 0;
  unsigned char* built = outgoing_.frame;
  unsigned char* next = built + ipodcomm::WriteHeader(built, size, write.lingo, write.command);
  if (with_id) {
    AddTransactionID(next, write.lingo, write.command);
    next += 2;
    // The own identifier steps also when the frame echoed the iPod's.
    own_transaction_id_ = static_cast<std::uint16_t>(own_transaction_id_ + 1);
  }
  if (write.length != 0) std::memcpy(next, write.data, write.length);
  ipodcomm::WriteChecksum(built, size);
  std::memcpy(frame, built, size);
  return size;
}

tagIPOD_COMM_ERROR CIpodComm::WriteCommand(tagIPOD_WRITE_PARAMS* write) {
  unsigned char frame[sizeof Outgoing::frame];
  const std::uint32_t size = BuildFrame(*write, frame);
  if (size == 0) return IPOD_COMM_NO_ANSWER;
  return serial_.WritePacket(frame, size) == ERROR_SUCCESS ? IPOD_COMM_OK : IPOD_COMM_NO_ANSWER;
}
