// SPDX-License-Identifier: MIT
// Whose answer a frame is: the robust conduct's view of one exchange.
#pragma once

#include <cstdint>

#include "ipodcomm/IpodTypes.h"
#include "ipodcomm/detail/SentIds.h"
#include "protocol/frame.h"
#include "session/answer_rules.h"

namespace ipodcomm {

/// What a frame is to the running exchange.
enum class AnswerVerdict : std::uint8_t {
  kForeign,  // another question's answer, the request's own bytes, or no answer at all
  kDamaged,  // ours, but cut short
  kPending,  // ours: the iPod works on it
  kRefusal,  // ours: an ACK in place of the answer
  kAnswer,   // ours
};

/// The running exchange, which recognises its own answer among what arrives.
///
/// With transaction identifiers an answer belongs to the exchange when it carries the identifier of
/// any of its attempts: a late answer to the first attempt is as good as one to the second, and an
/// answer to an earlier exchange carries an older identifier. Without identifiers an answer is
/// recognised by what it repeats of its request, and an ACK by the command that it names.
class OwnAnswers {
 public:
  /// @param request borrowed. @param expected command of the answer
  OwnAnswers(const tagIPOD_WRITE_PARAMS& request, std::uint16_t expected);

  /// Notes an attempt, and its identifier. Without any, answers are expected to carry none.
  void AddAttempt() { ++noted_.attempts; }
  void AddAttempt(std::uint16_t transaction_id);

  /// Judges a frame and notes what came with it. When it is ours, its identifier is skipped, so
  /// that the data are the answer's alone.
  AnswerVerdict Judge(ReceivedFrame* frame);

  /// What has come so far. The time is left to whoever measures it.
  const tagIPOD_EXCHANGE& noted() const { return noted_; }

 private:
  bool IsOwnRequest(const ReceivedFrame& frame) const;
  bool SkipOwnIdentifier(ReceivedFrame* frame) const;
  void SkipUnaskedIdentifier(ReceivedFrame* frame) const;
  AnswerVerdict JudgeOther(ReceivedFrame* frame) const;
  AnswerVerdict JudgeAck(const Ack& ack, std::uint16_t command) const;
  void Note(AnswerVerdict verdict, const ReceivedFrame& frame, bool carried_id);
  void NoteData(tagIPOD_EXCHANGE_RESULT result, const ReceivedFrame& frame, bool carried_id);

  const tagIPOD_WRITE_PARAMS& request_;
  std::uint16_t expected_;
  const AnswerRule* rule_;
  SentIds sent_ = {};
  tagIPOD_EXCHANGE noted_ = {};
};

}  // namespace ipodcomm
