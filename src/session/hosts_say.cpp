// SPDX-License-Identifier: MIT
// CIpodComm: the host's say in commands, and what becomes of one that it has stopped.
#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/frame.h"
#include "protocol/transaction_ids.h"
#include "session/ipod_requests.h"
#include "session/keep_going.h"

void CIpodComm::SetKeepGoing(bool (*keep_going)(void* context), void* context) {
  keep_going_ = {keep_going, context};
}

ipodcomm::KeepGoing& CIpodComm::HostToAsk() {
  return keep_identifying_ != nullptr ? *keep_identifying_ : keep_going_;
}

// Whether the host, where it has a say, lets the operation go on.
bool CIpodComm::MayGoOn() { return HostToAsk().Ask(); }

bool CIpodComm::StoppedByHost() const {
  return keep_identifying_ != nullptr ? keep_identifying_->stopped() : keep_going_.stopped();
}

// The default conduct takes an answer by its command alone, so what may still come of a command
// that was stopped is let go by before the next one is sent.
void CIpodComm::AwaitStopped() {
  constexpr DWORD kLongestMs = 10000;
  if (earlier_.QuietMsAfterStop() == 0) return;
  const DWORD started_ms = GetTickCount();
  tagSERIAL_PACKET packet = {};
  const auto pop = [&](std::uint32_t ms) { return response_.Pop(&packet, ms); };
  while (static_cast<std::uint32_t>(GetTickCount() - started_ms) < kLongestMs &&
         earlier_.QuietMsAfterStop() != 0 &&
         ipodcomm::WaitInSlices(HostToAsk(), earlier_.QuietMsAfterStop(), pop)) {
    ipodcomm::ReceivedFrame frame = ipodcomm::ParseFrame(ipodcomm::FrameBytes(packet));
    constexpr std::uint32_t kBareAck = 3;
    if (transaction_id_mode_ != 0 && frame.data_length > kBareAck) {
      ipodcomm::SkipTransactionId(&frame);
    }
    earlier_.NoteArrival(frame);
    MeetRequest(packet, ipodcomm::RequestReceiver::kWaitingCommand);
  }
  if (!StoppedByHost()) earlier_.SettleStopped();
}
