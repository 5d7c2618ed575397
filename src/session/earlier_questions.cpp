// SPDX-License-Identifier: MIT
// The answers that may still come to commands without transaction identifiers.
#include <algorithm>

#include "ipodcomm/detail/EarlierQuestions.h"
#include "protocol/frame.h"
#include "session/answer_rules.h"

namespace ipodcomm {

namespace {

// A doubled answer follows at once; a late one within the second after which the command is asked
// again, and a little.
constexpr std::uint32_t kDoubledMs = 20;
constexpr std::uint32_t kLateMs = 2000;

// Whether an answer repeats all that is asked for, and so is told from every other.
bool IsIdentified(const tagIPOD_WRITE_PARAMS& question) {
  const AnswerRule* rule = FindAnswerRule(question.lingo, question.command);
  return rule != nullptr && rule->repeated_bytes != 0 && rule->repeated_bytes == question.length;
}

}  // namespace

std::uint32_t EarlierQuestions::QuietMsBefore(const tagIPOD_WRITE_PARAMS& question) const {
  const std::uint32_t index = IndexOf(question);
  if (index == kMost) return 0;
  const Question& earlier = questions_[index];
  const bool acknowledged = FindAnswerRule(question.lingo, question.command) == nullptr;
  const bool same = Same(earlier, question);
  // An ACK to the same command says the same, whichever attempt it answers.
  const bool same_answer = acknowledged && same;
  if (earlier.owed != 0 && !same_answer) return kLateMs;
  return index == last_ && !acknowledged && !same ? kDoubledMs : 0;
}

void EarlierQuestions::Note(const tagIPOD_WRITE_PARAMS& question, std::uint32_t owed) {
  if (IsIdentified(question)) return;
  std::uint32_t index = IndexOf(question);
  if (index == kMost) index = (last_ + 1) % kMost;
  questions_[index] = Noted(question, owed);
  last_ = index;
}

auto EarlierQuestions::Noted(const tagIPOD_WRITE_PARAMS& question, std::uint32_t owed) -> Question {
  Question noted = {owed, question.length, {}, question.command, question.lingo, true};
  std::copy_n(question.data, std::min(question.length, kMostBytes), noted.data);
  return noted;
}

void EarlierQuestions::NoteMore(const tagIPOD_WRITE_PARAMS& question, std::uint32_t owed) {
  const std::uint32_t index = IndexOf(question);
  Note(question, index == kMost ? owed : questions_[index].owed + owed);
}

// One that was not sent owes nothing, and another may still.
void EarlierQuestions::NoteStopped(const tagIPOD_WRITE_PARAMS& question, std::uint32_t attempts) {
  if (attempts != 0) questions_[kStopped] = Noted(question, attempts);
}

std::uint32_t EarlierQuestions::QuietMsAfterStop() const {
  return questions_[kStopped].owed != 0 ? kLateMs : 0;
}

void EarlierQuestions::NoteArrival(const ReceivedFrame& frame) {
  Ack ack = {};
  const bool is_ack = ReadAck(frame, &ack);
  for (Question& earlier : questions_) {
    if (!earlier.used || earlier.owed == 0 || earlier.lingo != frame.lingo) continue;
    const AnswerRule* rule = FindAnswerRule(earlier.lingo, earlier.command);
    const bool answers = is_ack ? ack.command == earlier.command && ack.status != kAckPending
                                : rule != nullptr && rule->answer == frame.command;
    if (answers) --earlier.owed;
  }
}

void EarlierQuestions::Settle(const tagIPOD_WRITE_PARAMS& question) {
  const std::uint32_t index = IndexOf(question);
  if (index != kMost) questions_[index].owed = 0;
}

bool EarlierQuestions::Same(const Question& earlier, const tagIPOD_WRITE_PARAMS& question) {
  return earlier.length == question.length &&
         std::equal(earlier.data, earlier.data + std::min(earlier.length, kMostBytes),
                    question.data);
}

// kMost when such a command was not asked, or is forgotten.
std::uint32_t EarlierQuestions::IndexOf(const tagIPOD_WRITE_PARAMS& question) const {
  for (std::uint32_t index = 0; index < kMost; ++index) {
    const Question& earlier = questions_[index];
    if (earlier.used && earlier.lingo == question.lingo && earlier.command == question.command) {
      return index;
    }
  }
  return kMost;
}

}  // namespace ipodcomm
