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
#include "session/keep_going.h"
#include "session/own_answers.h"

using ipodcomm::FrameBytes;
using ipodcomm::OwnAnswers;
using ipodcomm::ReceivedFrame;

namespace {

using Verdict = ipodcomm::AnswerVerdict;

// An iPod that sends other things all the time does not keep an attempt alive for longer.
constexpr DWORD kLongestAttemptMs = 10000;

// An iPod that asks for time gets it, and the ordinary wait on top.
std::uint32_t PatienceMs(std::uint32_t pending_ms) {
  constexpr std::uint32_t kLongestMs = kLongestAttemptMs;
  return std::min(pending_ms, kLongestMs - ipodcomm::PacketQueue::kWaitMs) +
         ipodcomm::PacketQueue::kWaitMs;
}

void StoreRefusal(const ReceivedFrame& frame, tagIPOD_READ_PARAMS* read) {
  read->ack_received = 1;
  const auto wanted = std::min<std::size_t>(sizeof read->ack, frame.data_length);
  std::memcpy(&read->ack, frame.data, wanted);
}

}  // namespace

// A refusal is an answer: it is not asked for again. Silence and a damaged answer are, unless the
// request may not be sent twice: then its answer is awaited for as long as three attempts last.
tagIPOD_COMM_ERROR CIpodComm::ExchangeRobustly(const tagIPOD_WRITE_PARAMS& write, OwnAnswers* own,
                                               tagIPOD_READ_PARAMS* read) {
  const bool told_apart =
      write.lingo == ipodcomm::kSimpleRemoteLingo ||  // never answered
      (transaction_id_mode_ != 0 && ipodcomm::MayCarryTransactionId(write.lingo, write.command));
  if (!told_apart) AwaitQuiet(write);
  std::uint32_t arrived = 0;
  const tagIPOD_COMM_ERROR result = AttemptRobustly(write, own, read, &arrived);
  const bool kept_from_asking = StoppedByHost() && own->noted().attempts == 0;
  if (!told_apart && !kept_from_asking) earlier_.Note(write, own->noted().attempts - arrived);
  return result;
}

tagIPOD_COMM_ERROR CIpodComm::AttemptRobustly(const tagIPOD_WRITE_PARAMS& write, OwnAnswers* own,
                                              tagIPOD_READ_PARAMS* read, std::uint32_t* arrived) {
  for (std::int32_t attempt = 0; attempt < read->retries && MayGoOn(); ++attempt) {
    const bool sent = own->noted().attempts != 0;
    if ((!sent || ipodcomm::MayBeRepeated(write)) && !Attempt(write, own)) continue;
    if (write.lingo == ipodcomm::kSimpleRemoteLingo) return IPOD_COMM_OK;
    const Verdict verdict = AwaitOwnAnswer(own, read);
    if (verdict != Verdict::kForeign && *arrived < own->noted().attempts) ++*arrived;
    if (verdict == Verdict::kAnswer) return IPOD_COMM_OK;
    if (verdict == Verdict::kRefusal) return IPOD_COMM_NO_ANSWER;
  }
  return IPOD_COMM_RETRIES_EXHAUSTED;
}

// Without identifiers what has come before a question is asked does not answer it. Neither does
// what may still come of an earlier one, so that is waited for.
void CIpodComm::AwaitQuiet(const tagIPOD_WRITE_PARAMS& question) {
  const DWORD started_ms = GetTickCount();
  tagSERIAL_PACKET packet = {};
  const auto pop = [&](std::uint32_t ms) { return response_.Pop(&packet, ms); };
  while (static_cast<std::uint32_t>(GetTickCount() - started_ms) < kLongestAttemptMs &&
         ipodcomm::WaitInSlices(HostToAsk(), earlier_.QuietMsBefore(question), pop)) {
    PassOver(packet);
  }
  if (!StoppedByHost()) earlier_.Settle(question);
}

// A packet that is no answer of the running exchange.
void CIpodComm::PassOver(tagSERIAL_PACKET& packet) {
  earlier_.NoteArrival(ipodcomm::ParseFrame(FrameBytes(packet)));
  MeetRequest(packet, ipodcomm::RequestReceiver::kWaitingCommand);
}

// Reads until the answer has come, or nothing has arrived on the line for a second, or for the time
// that a pending ACK asked for.
ipodcomm::AnswerVerdict CIpodComm::AwaitOwnAnswer(OwnAnswers* own, tagIPOD_READ_PARAMS* read) {
  const DWORD started_ms = GetTickCount();
  std::uint32_t silence_ms = ipodcomm::PacketQueue::kWaitMs;
  tagSERIAL_PACKET packet = {};
  while (static_cast<std::uint32_t>(GetTickCount() - started_ms) < kLongestAttemptMs &&
         AwaitPacket(silence_ms, &packet)) {
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
        silence_ms = PatienceMs(ipodcomm::PendingMs(frame));
        break;
      case Verdict::kForeign:
        PassOver(packet);
        break;
    }
  }
  return Verdict::kForeign;
}

// Waits until the line has been silent for that long, however long a frame takes to arrive.
bool CIpodComm::AwaitPacket(std::uint32_t silence_ms, tagSERIAL_PACKET* packet) {
  const DWORD started_ms = GetTickCount();
  std::uint32_t silent_ms = 0;
  while (silent_ms < silence_ms && MayGoOn() &&
         static_cast<std::uint32_t>(GetTickCount() - started_ms) < kLongestAttemptMs) {
    const std::uint32_t bytes_before = serial_.bytes_read_;
    const std::uint32_t slice_ms = std::min(silence_ms - silent_ms, ipodcomm::kSliceMs);
    if (response_.Pop(packet, slice_ms)) return true;
    silent_ms = serial_.bytes_read_ == bytes_before ? silent_ms + slice_ms : 0;
  }
  return false;
}
