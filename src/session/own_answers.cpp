// SPDX-License-Identifier: MIT
// Judging the frames that arrive during an exchange.
#include "session/own_answers.h"

#include <algorithm>

#include "protocol/commands.h"
#include "protocol/transaction_ids.h"

namespace ipodcomm {

namespace {

// An ACK of just its status and command, which a pending one exceeds by the time to wait.
std::uint32_t BareAckLength(std::uint8_t lingo) { return lingo == kExtendedLingo ? 3 : 2; }

}  // namespace

OwnAnswers::OwnAnswers(const tagIPOD_WRITE_PARAMS& request, std::uint16_t expected)
    : request_(request),
      expected_(expected),
      rule_(FindAnswerRule(request.lingo, request.command)) {
  noted_.result = IPOD_EXCHANGE_UNANSWERED;
  noted_.command = request.command;
  noted_.lingo = request.lingo;
  if (request.length != 0) noted_.argument = request.data[0];
}

void OwnAnswers::AddAttempt(std::uint16_t transaction_id) {
  AddAttempt();
  sent_.Add(transaction_id);
  noted_.carried_id = 1;
}

// On a line that is wired to itself, or bridged, what was sent comes back.
bool OwnAnswers::IsOwnRequest(const ReceivedFrame& frame) const {
  if (noted_.attempts == 0 || frame.lingo != request_.lingo || frame.command != request_.command) {
    return false;
  }
  ReceivedFrame request = frame;
  if (sent_.any) SkipIdOf(sent_, &request);
  return request.data_length == request_.length &&
         std::equal(request.data, request.data + request.data_length, request_.data);
}

// iPods acknowledge StartIDPS, and some of them a refused command, without the identifier that the
// command carried: an ACK of just its status and command is then recognised by the command.
bool OwnAnswers::SkipOwnIdentifier(ReceivedFrame* frame) const {
  if (!sent_.any) {
    SkipUnaskedIdentifier(frame);
    return true;
  }
  Ack bare = {};
  if (frame->data_length == BareAckLength(frame->lingo) && ReadAck(*frame, &bare)) return true;
  return SkipIdOf(sent_, frame);
}

// Some iPods put an identifier before an ACK though the command carried none.
void OwnAnswers::SkipUnaskedIdentifier(ReceivedFrame* frame) const {
  if (frame->data_length != kTransactionIdSize + BareAckLength(frame->lingo)) return;
  ReceivedFrame skipped = *frame;
  SkipTransactionId(&skipped);
  Ack ack = {};
  if (ReadAck(skipped, &ack) && ack.command == request_.command) *frame = skipped;
}

AnswerVerdict OwnAnswers::JudgeAck(const Ack& ack, std::uint16_t command) const {
  if (ack.command != request_.command) return AnswerVerdict::kForeign;
  if (ack.status == kAckPending) return AnswerVerdict::kPending;
  if (command == expected_) return AnswerVerdict::kAnswer;
  // An iPod may acknowledge a request before it answers it.
  return ack.status == kAckOk ? AnswerVerdict::kForeign : AnswerVerdict::kRefusal;
}

AnswerVerdict OwnAnswers::JudgeOther(ReceivedFrame* frame) const {
  Ack ack = {};
  if (frame->lingo != request_.lingo || !SkipOwnIdentifier(frame)) return AnswerVerdict::kForeign;
  if (ReadAck(*frame, &ack)) return JudgeAck(ack, frame->command);
  if (frame->command != expected_) return AnswerVerdict::kForeign;
  if (rule_ == nullptr || rule_->answer != expected_) {
    // An ACK cut short, or a command of the host's own, of which nothing more is known.
    return IsAck(*frame) ? AnswerVerdict::kDamaged : AnswerVerdict::kAnswer;
  }
  if (!IsWhole(*rule_, *frame)) return AnswerVerdict::kDamaged;
  return Repeats(*rule_, request_, *frame) ? AnswerVerdict::kAnswer : AnswerVerdict::kForeign;
}

AnswerVerdict OwnAnswers::Judge(ReceivedFrame* frame) {
  if (IsOwnRequest(*frame)) {
    if (noted_.result == IPOD_EXCHANGE_UNANSWERED) noted_.result = IPOD_EXCHANGE_ECHOED;
    return AnswerVerdict::kForeign;
  }
  const std::uint32_t length = frame->data_length;
  const AnswerVerdict verdict = JudgeOther(frame);
  Note(verdict, *frame, frame->data_length != length);
  return verdict;
}

// An answer or a refusal counts more than what else came.
void OwnAnswers::Note(AnswerVerdict verdict, const ReceivedFrame& frame, bool carried_id) {
  Ack ack = {};
  switch (verdict) {
    case AnswerVerdict::kAnswer:
    case AnswerVerdict::kRefusal:
      NoteData(IPOD_EXCHANGE_ANSWERED, frame, carried_id);
      noted_.status = 0;
      if (!ReadAck(frame, &ack) || ack.status == kAckOk) break;
      noted_.result = IPOD_EXCHANGE_REFUSED;
      noted_.status = ack.status;
      break;
    case AnswerVerdict::kDamaged:
      if (noted_.result == IPOD_EXCHANGE_ANSWERED || noted_.result == IPOD_EXCHANGE_REFUSED) break;
      NoteData(IPOD_EXCHANGE_DAMAGED, frame, carried_id);
      break;
    case AnswerVerdict::kForeign:
    case AnswerVerdict::kPending:
      break;
  }
}

void OwnAnswers::NoteData(tagIPOD_EXCHANGE_RESULT result, const ReceivedFrame& frame,
                          bool carried_id) {
  constexpr std::uint32_t kMostBytes = sizeof noted_.data;
  const std::uint32_t bytes = std::min(kMostBytes, frame.data_length);
  noted_.result = result;
  noted_.answer_carried_id = carried_id ? 1 : 0;
  noted_.data_bytes = static_cast<std::uint8_t>(bytes);
  std::copy_n(frame.data, bytes, noted_.data);
}

}  // namespace ipodcomm
