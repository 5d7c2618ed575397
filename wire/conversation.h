// SPDX-License-Identifier: MIT
// Follows what goes over a line, and says what stands out.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "wire/decode.h"

namespace ipodwire {

using Nanoseconds = std::int64_t;

/// Bytes that one side sent together: a frame, or bytes that are none.
struct Observed {
  std::uint64_t number = 0;  ///< by which people find it, such as that of a packet
  Nanoseconds time = 0;
  Sender sender = Sender::kAccessory;
  std::vector<std::uint8_t> bytes;
};

struct Note {
  enum class Kind {
    kBadChecksum,
    kDamaged,          ///< the data do not fit the command
    kRefused,          ///< by the iPod, or the accessory
    kRetry,            ///< the same question again
    kUnanswered,       ///< no answer came to an earlier question
    kUnasked,          ///< an answer without a question, such as one that comes twice
    kOtherOrder,       ///< a record of a stream that does not follow the one before it
    kLate,             ///< an answer to a question that was given up
    kOtherIdentifier,  ///< an answer under another identifier than its question
    kNoIdentifier,     ///< an answer without an identifier, which its question has
    kOtherSender,      ///< a command that belongs to the other side, such as an echo
    kNoFrame,          ///< bytes that are no frame
    kLine,             ///< the line itself: a framing error, a break, a line that has gone
    kLost,             ///< something is missing in the recording
  };
  Kind kind;
  std::string text;
  std::uint64_t question = 0;  ///< of a retry, and of what is unanswered: the question's number
};

/// The name of a kind of note, as machines are told it: "bad-checksum".
const char* NameOf(Note::Kind kind);

/// What one run of bytes is, in its conversation.
struct Told {
  Observed observed;
  bool is_event = false;                  ///< of the line, which has no bytes and no sender
  std::optional<DecodedFrame> frame;      ///< none for bytes that are no frame
  std::optional<std::uint64_t> question;  ///< the number of what it answers
  std::optional<Nanoseconds> response_time;
  std::vector<Note> notes;
};

/// Not more than a few dozen questions are remembered, whatever the length of the conversation.
class Conversation {
 public:
  /// An answer that takes longer is late: so long accessories wait.
  static constexpr Nanoseconds kLongestWait = 1'000'000'000;

  /// What comes next on the line. The times do not run backwards.
  Told Next(const Observed& observed);

  /// What was still unanswered at the end.
  std::vector<Note> End() const;

 private:
  struct Question {
    std::uint64_t number;
    Nanoseconds time;
    Sender sender;
    Frame frame;
    const Command* command;
    std::optional<std::uint16_t> identifier;
    std::vector<std::uint8_t> data;  // without the identifier
    std::vector<DecodedField> fields;
    std::optional<std::uint64_t> last_record;  // of a stream
    bool answered = false;
    bool reported = false;  // as unanswered, or asked again
    bool extended = false;  // the other side asked for time
  };

  Identifier ExpectIdentifier(const Frame& frame, Sender sender);
  void NoticeIdentifiers(const DecodedFrame& frame);
  void NoticeSilence(const DecodedFrame& frame, Nanoseconds now, std::vector<Note>* notes);
  void NoticeQuestion(const DecodedFrame& frame, Told* told);
  void NoticeAnswer(const DecodedFrame& frame, Told* told);
  void NoticeAck(const DecodedFrame& frame, Question* question, Told* told);
  Question* FindQuestion(const DecodedFrame& answer);
  static void NoticeOrder(const DecodedFrame& answer, Question* question, Told* told);
  void Settle(const DecodedFrame& answer, Question* question, Told* told);

  std::deque<Question> questions_;  // the oldest first
  Identifier from_accessory_ = Identifier::kAbsent;
  Identifier from_ipod_ = Identifier::kAbsent;
};

}  // namespace ipodwire
