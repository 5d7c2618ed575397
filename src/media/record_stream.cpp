// SPDX-License-Identifier: MIT
// CIpodComm: taking the records that were asked for, one by one.
#include <algorithm>

#include "ipodcomm/CIpodComm.h"
#include "media/records.h"
#include "protocol/frame.h"
#include "protocol/transaction_ids.h"
#include "session/answer_rules.h"

using ipodcomm::FrameBytes;
using ipodcomm::ReceivedFrame;
using ipodcomm::RecordReply;
using ipodcomm::RecordStream;

namespace {

// For what is left of the stream.
ipodcomm::RecordRequest Request(const RecordStream& stream) {
  return {stream.category, stream.next, stream.left};
}

// What a frame is to a stream of records.
enum class Verdict {
  kForeign,  // no record of this stream, or one that came before
  kDamaged,
  kLater,  // the next one is missing
  kRefusal,
  kNext,
};

Verdict Judge(const RecordStream& stream, ReceivedFrame* frame) {
  constexpr std::uint16_t kRequest = ipodcomm::extended::kRetrieveCategorizedDatabaseRecords;
  if (frame->lingo != ipodcomm::kExtendedLingo) return Verdict::kForeign;
  if (stream.sent.any && !ipodcomm::SkipIdOf(stream.sent, frame)) return Verdict::kForeign;
  ipodcomm::Ack ack = {};
  if (ipodcomm::ReadAck(*frame, &ack)) {
    const bool refused = ack.command == kRequest && ack.status != ipodcomm::kAckOk;
    return refused ? Verdict::kRefusal : Verdict::kForeign;
  }
  const ipodcomm::AnswerRule& rule = *ipodcomm::FindAnswerRule(frame->lingo, kRequest);
  if (frame->command != rule.answer) return Verdict::kForeign;
  if (!ipodcomm::IsWhole(rule, *frame)) return Verdict::kDamaged;
  const std::uint32_t index = ipodcomm::ReadNumber32(frame->data);
  if (index == stream.next) return Verdict::kNext;
  return index > stream.next ? Verdict::kLater : Verdict::kForeign;
}

}  // namespace

unsigned long CIpodComm::Command_RetrieveCategorizedDatabaseRecords(unsigned long start,
                                                                    unsigned long count,
                                                                    unsigned char category) {
  browsing_.records = {};
  if (!MayGoOn()) return 0;
  browsing_.records = {CategoryOnWire(category),
                       static_cast<std::uint32_t>(start),
                       static_cast<std::uint32_t>(count),
                       {}};
  if (conduct_.robust != 0 && transaction_id_mode_ == 0) {
    AwaitQuiet(Request(browsing_.records).Write());
  }
  std::uint16_t transaction_id = 0;
  return AskForRecords(&transaction_id) ? transaction_id : 0UL;
}

// Without identifiers nothing tells a record from one of another list, so that each one asked for
// is owed until it comes.
bool CIpodComm::AskForRecords(std::uint16_t* transaction_id) {
  RecordStream& stream = browsing_.records;
  const ipodcomm::RecordRequest request = Request(stream);
  const bool with_id = transaction_id_mode_ != 0;
  LimitQueues();
  if (Send(request.Write(), transaction_id) != IPOD_COMM_OK) return false;
  if (with_id) stream.sent.Add(*transaction_id);
  if (conduct_.robust != 0 && !with_id) earlier_.NoteMore(request.Write(), stream.left);
  return true;
}

int CIpodComm::GetNextCategorizedRecord(wchar_t* name, unsigned long chars) {
  unsigned long index = 0;
  return GetNextCategorizedRecord(&index, name, chars);
}

int CIpodComm::GetNextCategorizedRecord(unsigned long* index, wchar_t* name, unsigned long chars) {
  std::fill_n(name, chars, L'\0');
  RecordReply reply;
  tagIPOD_READ_PARAMS read = reply.Awaited();
  const bool received =
      conduct_.robust != 0 ? ReadNextRecord(&read) : ReadCommand(&read) == IPOD_COMM_OK;
  if (!received) return 0;
  *index = reply.Index();
  reply.CopyName(name, chars);
  return 1;
}

// The robust conduct: when the next record is missing or damaged, it and what follows it is asked
// for again.
bool CIpodComm::ReadNextRecord(tagIPOD_READ_PARAMS* read) {
  RecordStream& stream = browsing_.records;
  if (stream.left == 0) return false;
  for (std::int32_t attempt = 0; attempt < read->retries && MayGoOn(); ++attempt) {
    std::uint16_t transaction_id = 0;
    if (attempt != 0 && !AskForRecords(&transaction_id)) continue;
    if (AwaitNextRecord(attempt == 0, read)) {
      ++stream.next;
      if (--stream.left == 0) LimitQueues();
      return true;
    }
    if (stream.left == 0) break;  // refused
  }
  if (stream.left == 0) LimitQueues();
  return false;
}

// A later record than the next one shows that one is missing. Once that has been asked for, what
// is still under way of the first stream is passed over, whole or damaged.
bool CIpodComm::AwaitNextRecord(bool stop_at_gap, tagIPOD_READ_PARAMS* read) {
  RecordStream& stream = browsing_.records;
  tagSERIAL_PACKET packet = {};
  while (AwaitPacket(ipodcomm::PacketQueue::kWaitMs, &packet)) {
    ReceivedFrame frame = ipodcomm::ParseFrame(FrameBytes(packet));
    switch (Judge(stream, &frame)) {
      case Verdict::kNext:
        earlier_.NoteArrival(frame);
        ipodcomm::StoreData(frame, read);
        return true;
      case Verdict::kRefusal:
        earlier_.Settle(Request(stream).Write());
        stream.left = 0;
        return false;
      case Verdict::kDamaged:
      case Verdict::kLater:
        earlier_.NoteArrival(frame);
        if (stop_at_gap) return false;
        break;
      case Verdict::kForeign:
        PassOver(packet);
        break;
    }
  }
  return false;
}
