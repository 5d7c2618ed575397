// SPDX-License-Identifier: MIT
// CIpodComm: exchanges under the robust conduct, which believes no frame but the exchange's own
// answer.
#include <algorithm>
#include <cstring>

#include "ipodcomm/CIpodComm.h"
#include "platform/services.h"
#include "protocol/commands.h"
#include "protocol/frame.h"
#include "session/exchange.h"
#include "session/ipod_requests.h"
#include "session/keep_going.h"
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
tagIPOD_COMM_ERROR CIpodComm::ExchangeRobustly(const tagIPOD_WRITE_PARAMS& write, OwnAnswers* own,
                                               tagIPOD_READ_PARAMS* read) {
  for (std::int32_t attempt = 0; attempt < read->retries && MayGoOn(); ++attempt) {
    if (!Attempt(write, own)) continue;
    if (write.lingo == ipodcomm::kSimpleRemoteLingo) return IPOD_COMM_OK;
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

// Whether the host, where it has a say, lets the operation go on.
bool CIpodComm::MayGoOn() { return keep_going_ == nullptr || keep_going_->Ask(); }

bool CIpodComm::StoppedByHost() const { return keep_going_ != nullptr && keep_going_->stopped(); }

// Reads until the answer has come, or nothing has arrived on the line for a second.
ipodcomm::AnswerVerdict CIpodComm::AwaitOwnAnswer(OwnAnswers* own, tagIPOD_READ_PARAMS* read) {
  const DWORD started_ms = GetTickCount();
  tagSERIAL_PACKET packet = {};
  while (static_cast<std::uint32_t>(GetTickCount() - started_ms) < kLongestAttemptMs &&
         AwaitPacket(&packet)) {
    ReceivedFrame frame = ipodcomm::ParseFrame(FrameBytes(packet));
    read->lingo = frame.lingo;
    read->received_command = frame.command;
    const Verdict verdict = own->Judge(&frame);
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
  const auto pop = [&](std::uint32_t ms) { return response_.Pop(packet, ms); };
  std::uint32_t bytes_before = 0;
  do {
    bytes_before = serial_.bytes_read_;
    if (ipodcomm::WaitInSlices(keep_going_, ipodcomm::PacketQueue::kWaitMs, pop)) return true;
  } while (!StoppedByHost() && serial_.bytes_read_ != bytes_before &&
           static_cast<std::uint32_t>(GetTickCount() - started_ms) < kLongestAttemptMs);
  return false;
}
