// SPDX-License-Identifier: MIT
// CIpodComm: exchanges under the robust conduct, which believes no frame but the exchange's own
// answer.
#include <algorithm>
#include <cstring>

#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "protocol/frame.h"
#include "protocol/transaction_ids.h"
#include "session/exchange.h"
#include "session/ipod_requests.h"
#include "session/own_answers.h"

using ipodcomm::FrameBytes;
using ipodcomm::OwnAnswers;
using ipodcomm::ReceivedFrame;

namespace {

using Verdict = ipodcomm::AnswerVerdict;

// An iPod that sends other things all the time does not keep an attempt alive for longer.
constexpr DWORD kLongestAttemptMs = 10000;

void StoreRefusal(const ReceivedFrame& frame, tagIPOD_READ_PARAMS* read) {
  read->ack_received = 1;
  const auto wanted = std::min<std::size_t>(sizeof read->ack, frame.data_length);
  std::memcpy(&read->ack, frame.data, wanted);
}

}  // namespace

// A refusal is an answer: it is not asked for again. Silence and a damaged answer are.
tagIPOD_COMM_ERROR CIpodComm::ExchangeRobustly(const tagIPOD_WRITE_PARAMS& write,
                                               tagIPOD_READ_PARAMS* read) {
  OwnAnswers own(write, read->expected_command);
  for (std::int32_t attempt = 0; attempt < read->retries; ++attempt) {
    const bool with_id =
        transaction_id_mode_ != 0 && ipodcomm::MayCarryTransactionId(write.lingo, write.command);
    std::uint16_t transaction_id = 0;
    if (Send(write, &transaction_id) != IPOD_COMM_OK) continue;
    if (write.lingo == ipodcomm::kSimpleRemoteLingo) return IPOD_COMM_OK;
    if (with_id) own.AddAttempt(transaction_id);
    switch (AwaitOwnAnswer(own, read)) {
      case Verdict::kAnswer:
        return IPOD_COMM_OK;
      case Verdict::kRefusal:
        return IPOD_COMM_NO_ANSWER;
      default:
        break;
    }
  }
  return IPOD_COMM_RETRIES_EXHAUSTED;
}

// Reads until the answer has come, or nothing has arrived on the line for a second.
ipodcomm::AnswerVerdict CIpodComm::AwaitOwnAnswer(const OwnAnswers& own,
                                                  tagIPOD_READ_PARAMS* read) {
  const DWORD started_ms = GetTickCount();
  tagSERIAL_PACKET packet = {};
  while (static_cast<std::uint32_t>(GetTickCount() - started_ms) < kLongestAttemptMs &&
         AwaitPacket(&packet)) {
    ReceivedFrame frame = ipodcomm::ParseFrame(FrameBytes(packet));
    read->lingo = frame.lingo;
    read->received_command = frame.command;
    const Verdict verdict = own.Judge(&frame);
    switch (verdict) {
      case Verdict::kAnswer:
        ipodcomm::StoreData(frame, read);
        return verdict;
      case Verdict::kRefusal:
        StoreRefusal(frame, read);
        return verdict;
      case Verdict::kDamaged:
        return verdict;
      case Verdict::kPending:
        break;
      case Verdict::kForeign:
        MeetRequest(packet, ipodcomm::RequestReceiver::kWaitingCommand);
        break;
    }
  }
  return Verdict::kForeign;
}

// Waits until the line has been silent for a second, however long a frame takes to arrive.
bool CIpodComm::AwaitPacket(tagSERIAL_PACKET* packet) {
  const DWORD started_ms = GetTickCount();
  std::uint32_t bytes_before = 0;
  do {
    bytes_before = serial_.bytes_read_;
    if (GetNextReadPacket(packet)) return true;
  } while (serial_.bytes_read_ != bytes_before &&
           static_cast<std::uint32_t>(GetTickCount() - started_ms) < kLongestAttemptMs);
  return false;
}
