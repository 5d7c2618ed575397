// SPDX-License-Identifier: MIT
// Judging the frames that arrive during an exchange.
#include "session/own_answers.h"

#include "protocol/commands.h"
#include "protocol/transaction_ids.h"

namespace ipodcomm {

// iPods acknowledge StartIDPS, and some of them a refused command, without the identifier that the
// command carried: an ACK of just its status and command is then recognised by the command.
bool OwnAnswers::SkipOwnIdentifier(ReceivedFrame* frame) const {
  if (!sent_.any) return true;
  Ack bare = {};
  const std::uint32_t bare_length = frame->lingo == kExtendedLingo ? 3 : 2;
  if (frame->data_length == bare_length && ReadAck(*frame, &bare)) return true;
  return SkipIdOf(sent_, frame);
}

AnswerVerdict OwnAnswers::JudgeAck(const Ack& ack, std::uint16_t command) const {
  if (ack.command != request_.command) return AnswerVerdict::kForeign;
  if (ack.status == kAckPending) return AnswerVerdict::kPending;
  if (command == expected_) return AnswerVerdict::kAnswer;
  // An iPod may acknowledge a request before it answers it.
  return ack.status == kAckOk ? AnswerVerdict::kForeign : AnswerVerdict::kRefusal;
}

AnswerVerdict OwnAnswers::Judge(ReceivedFrame* frame) const {
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

}  // namespace ipodcomm
