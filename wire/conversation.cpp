// SPDX-License-Identifier: MIT
#include "wire/conversation.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <utility>

#include "wire/numbers.h"

namespace ipodwire {
namespace {

constexpr std::size_t kMostQuestions = 32;

Sender OtherSide(Sender sender) {
  return sender == Sender::kIpod ? Sender::kAccessory : Sender::kIpod;
}

std::string Number(std::uint64_t number) { return "#" + std::to_string(number); }

std::string Seconds(Nanoseconds time) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f s", static_cast<double>(time) / 1e9);
  return text.data();
}

std::string Hexadecimal(std::uint16_t number) {
  std::array<char, 8> text{};
  std::snprintf(text.data(), text.size(), "0x%04X", unsigned{number});
  return text.data();
}

// From whichever side: accessories acknowledge too.
bool IsAck(const DecodedFrame& frame) {
  return frame.command != nullptr &&
         (frame.command_name() == "ACK" || frame.command_name() == "iPodACK");
}

bool AwaitsAnswer(const Command& command) { return command.reply.kind != Reply::Kind::kNone; }

bool IsAnswerTo(const DecodedFrame& frame, const Command& question) {
  const Reply& reply = question.reply;
  return (reply.kind == Reply::Kind::kCommand || reply.kind == Reply::Kind::kStream) &&
         reply.command == frame.frame.command;
}

// Whether the command answers any other.
bool IsAnswer(const DecodedFrame& frame) {
  const Lingo* lingo = FindLingo(frame.frame.lingo);
  return lingo != nullptr &&
         std::any_of(lingo->commands.begin(), lingo->commands.end(), [&](const Command& command) {
           return command.sender != frame.sender && IsAnswerTo(frame, command);
         });
}

// Many answers repeat what was asked about, such as the lingo whose version is told. A question
// with another one is another question.
bool RepeatsOf(const std::vector<DecodedField>& question, const std::vector<DecodedField>& answer) {
  constexpr const char* kRepeated[] = {"lingo", "type", "track index", "chapter index"};
  return std::all_of(std::begin(kRepeated), std::end(kRepeated), [&](const char* name) {
    const DecodedField* const asked = FindField(question, name);
    const DecodedField* const told = FindField(answer, name);
    return asked == nullptr || told == nullptr || asked->number == told->number;
  });
}

// What begins an identification, or ends identifiers, is answered in either way.
bool BeginsIdentification(const Frame& frame) {
  return frame.lingo == lingo::kGeneral &&
         (frame.command == general::kStartIdps || frame.command == general::kIdentifyDeviceLingoes);
}

std::vector<std::uint8_t> DataWithoutIdentifier(const DecodedFrame& frame) {
  const std::vector<std::uint8_t>& data = frame.frame.data;
  return {data.begin() + (frame.identifier ? 2 : 0), data.end()};
}

}  // namespace

const char* NameOf(Note::Kind kind) {
  switch (kind) {
    case Note::Kind::kBadChecksum:
      return "bad-checksum";
    case Note::Kind::kDamaged:
      return "damaged";
    case Note::Kind::kRefused:
      return "refused";
    case Note::Kind::kRetry:
      return "retry";
    case Note::Kind::kUnanswered:
      return "unanswered";
    case Note::Kind::kUnasked:
      return "unasked";
    case Note::Kind::kOtherOrder:
      return "other-order";
    case Note::Kind::kLate:
      return "late";
    case Note::Kind::kOtherIdentifier:
      return "other-identifier";
    case Note::Kind::kNoIdentifier:
      return "no-identifier";
    case Note::Kind::kOtherSender:
      return "other-sender";
    case Note::Kind::kNoFrame:
      return "no-frame";
    case Note::Kind::kLine:
      return "line";
    case Note::Kind::kLost:
      return "lost";
  }
  return "";
}

Told Conversation::Next(const Observed& observed) {
  Told told;
  told.observed = observed;
  Frame frame;
  if (!ParseFrame(observed.bytes, &frame)) {
    const bool wakes = std::all_of(observed.bytes.begin(), observed.bytes.end(),
                                   [](std::uint8_t byte) { return byte == 0xFF; });
    if (!wakes) told.notes.push_back({Note::Kind::kNoFrame, "no frame"});
    return told;
  }
  DecodedFrame decoded = Decode(frame, observed.sender, ExpectIdentifier(frame, observed.sender));
  if (!frame.checksum_holds) {
    // Neither side takes it for anything.
    told.notes.push_back({Note::Kind::kBadChecksum, "bad checksum"});
    told.frame = std::move(decoded);
    return told;
  }
  for (const std::string& problem : decoded.problems) {
    told.notes.push_back({Note::Kind::kDamaged, problem});
  }
  const Command* command = decoded.command;
  if (command != nullptr && command->sender == OtherSide(observed.sender)) {
    told.notes.push_back({Note::Kind::kOtherSender, observed.sender == Sender::kIpod
                                                        ? "a command of accessories"
                                                        : "a command of iPods"});
  } else if (command != nullptr) {
    if (IsAck(decoded) || IsAnswer(decoded)) NoticeAnswer(decoded, &told);
    NoticeSilence(decoded, observed.time, &told.notes);
    if (AwaitsAnswer(*command)) NoticeQuestion(decoded, &told);
    NoticeIdentifiers(decoded);
  }
  told.frame = std::move(decoded);
  return told;
}

Identifier Conversation::ExpectIdentifier(const Frame& frame, Sender sender) {
  Identifier& known = sender == Sender::kIpod ? from_ipod_ : from_accessory_;
  const auto proven = ProvenIdentifier(frame, sender);
  if (!proven) return known;
  // Neither StartIDPS nor what answers it tells of the frames that follow: it is sent in both ways.
  const bool begins = frame.lingo == lingo::kGeneral && frame.command == general::kStartIdps;
  if (!begins && frame.checksum_holds) known = *proven;
  return *proven;
}

// From an accepted StartIDPS on frames carry identifiers, from an accepted IdentifyDeviceLingoes on
// none. Where a side does otherwise, its next frame of a known size tells.
void Conversation::NoticeIdentifiers(const DecodedFrame& frame) {
  if (frame.frame.lingo != lingo::kGeneral || !IsAck(frame) || frame.sender != Sender::kIpod)
    return;
  if (frame.Number("status") != status::kOk) return;
  if (frame.Number("command") == general::kStartIdps) {
    from_accessory_ = from_ipod_ = Identifier::kPresent;
  } else if (frame.Number("command") == general::kIdentifyDeviceLingoes) {
    from_accessory_ = from_ipod_ = Identifier::kAbsent;
  }
}

// Tells of questions that have waited too long by now.
void Conversation::NoticeSilence(const DecodedFrame& frame, Nanoseconds now,
                                 std::vector<Note>* notes) {
  for (Question& question : questions_) {
    if (question.answered || question.reported || question.extended) continue;
    if (now - question.time <= kLongestWait) continue;
    const bool asked_again = frame.sender == question.sender &&
                             frame.frame.lingo == question.frame.lingo &&
                             frame.command == question.command;
    if (asked_again) continue;  // which is told as a retry
    question.reported = true;
    notes->push_back({Note::Kind::kUnanswered,
                      Number(question.number) + " " + question.command->name + " is unanswered",
                      question.number});
  }
}

void Conversation::NoticeQuestion(const DecodedFrame& frame, Told* told) {
  Question question = {
      told->observed.number, told->observed.time,          frame.sender, frame.frame, frame.command,
      frame.identifier,      DataWithoutIdentifier(frame), frame.fields, std::nullopt};
  for (Question& earlier : questions_) {
    if (earlier.answered || earlier.sender != question.sender ||
        earlier.command != question.command || earlier.data != question.data) {
      continue;
    }
    if (!earlier.reported) {
      told->notes.push_back({Note::Kind::kRetry,
                             "retry of " + Number(earlier.number) + ", unanswered for " +
                                 Seconds(question.time - earlier.time),
                             earlier.number});
    }
    earlier.reported = true;
  }
  questions_.push_back(std::move(question));
  if (questions_.size() > kMostQuestions) questions_.pop_front();
}

// The one under the answer's identifier, or like it under none; of several the oldest that waits,
// or else the last that a stream answers.
Conversation::Question* Conversation::FindQuestion(const DecodedFrame& answer) {
  const bool ack = IsAck(answer);
  const auto acknowledged = answer.Number("command");
  Question* best = nullptr;
  int best_rank = 0;
  bool has_come = false;
  for (Question& question : questions_) {
    if (question.sender == answer.sender || question.frame.lingo != answer.frame.lingo) continue;
    const bool fits =
        ack ? acknowledged == question.frame.command : IsAnswerTo(answer, *question.command);
    const bool streams = question.command->reply.kind == Reply::Kind::kStream;
    const bool same = answer.identifier == question.identifier;  // also where neither has one
    if (fits && same && answer.identifier && question.answered && !streams) has_come = true;
    if (!fits || (question.answered && !streams)) continue;
    if (!ack && !RepeatsOf(question.fields, answer.fields)) continue;
    const int rank = (same ? 4 : 0) + (question.answered ? 1 : question.reported ? 2 : 3);
    // Of equals the later one when it has been answered already, and otherwise the earlier.
    if (rank > best_rank || (rank == best_rank && question.answered)) {
      best = &question;
      best_rank = rank;
    }
  }
  // Under an identifier that has been answered it comes a second time, whoever waits by now.
  const bool is_best_by_identifier = best != nullptr && best->identifier == answer.identifier;
  return has_come && !is_best_by_identifier ? nullptr : best;
}

void Conversation::NoticeAnswer(const DecodedFrame& frame, Told* told) {
  Question* question = FindQuestion(frame);
  if (question == nullptr) {
    told->notes.push_back({Note::Kind::kUnasked, "nothing asked for it"});
  } else {
    told->question = question->number;
    told->response_time = told->observed.time - question->time;
  }
  if (IsAck(frame)) {
    NoticeAck(frame, question, told);
  } else if (question != nullptr) {
    Settle(frame, question, told);
  }
}

void Conversation::NoticeAck(const DecodedFrame& frame, Question* question, Told* told) {
  const auto status = frame.Number("status");
  if (status == status::kPending) {
    if (question != nullptr) question->extended = true;
    return;
  }
  if (status && status != status::kOk) {
    const auto command = static_cast<std::uint16_t>(frame.Number("command").value_or(0));
    told->notes.push_back(
        {Note::Kind::kRefused, CommandName(frame.frame.lingo, command, OtherSide(frame.sender)) +
                                   " refused: " + frame.fields.front().value});
  }
  if (question != nullptr) Settle(frame, question, told);
}

void Conversation::Settle(const DecodedFrame& answer, Question* question, Told* told) {
  const bool waited_too_long = !question->answered && !question->extended &&
                               (question->reported || *told->response_time > kLongestWait);
  if (waited_too_long) {
    told->notes.push_back({Note::Kind::kLate, "late answer to " + Number(question->number) +
                                                  ", after " + Seconds(*told->response_time)});
  }
  // The accessory answers in its own name where the table says so; the iPod repeats the question's.
  if (answer.identifier && question->identifier && answer.identifier != question->identifier &&
      answer.sender == Sender::kIpod) {
    told->notes.push_back({Note::Kind::kOtherIdentifier, "not under its question's identifier, " +
                                                             Hexadecimal(*question->identifier)});
  }
  if (!answer.identifier && question->identifier && answer.sender == Sender::kIpod &&
      !BeginsIdentification(question->frame)) {
    told->notes.push_back({Note::Kind::kNoIdentifier, "without an identifier, its question has " +
                                                          Hexadecimal(*question->identifier)});
  }
  NoticeOrder(answer, question, told);
  question->answered = true;
}

// Records come one after the other, and each once.
void Conversation::NoticeOrder(const DecodedFrame& answer, Question* question, Told* told) {
  const auto record = answer.Number("record index");
  if (!record || question->command->reply.kind != Reply::Kind::kStream) return;
  const auto last = std::exchange(question->last_record, record);
  if (!last || *record == *last + 1) return;
  const char* const what = *record > *last    ? "records before it are missing"
                           : *record == *last ? "a record that has come already"
                                              : "a record that comes after a later one";
  told->notes.push_back({Note::Kind::kOtherOrder, what});
}

std::vector<Note> Conversation::End() const {
  std::vector<Note> notes;
  for (const Question& question : questions_) {
    if (question.answered || question.reported) continue;
    notes.push_back({Note::Kind::kUnanswered,
                     Number(question.number) + " " + question.command->name + " is unanswered",
                     question.number});
  }
  return notes;
}

}  // namespace ipodwire
