// SPDX-License-Identifier: MIT
// What the exported classes are made of; hosts have no use for it.
#pragma once

#include <cstdint>

#include "ipodcomm/IpodTypes.h"

namespace ipodcomm {

struct ReceivedFrame;

/// The commands that went out last without a transaction identifier, and how many answers to them
/// may still come: every attempt may be answered, however late. Such an answer cannot be told from
/// that to the next command of the same number, unless it repeats all that the command asks for.
///
///   count category 5, asked twice    <-- 60, believed     one answer is owed
///   count category 2                                      wait until the line has been quiet
///                                    <-- 60, dropped
///                                    (asked now)
///                                    <-- 4, believed
class EarlierQuestions {
 public:
  /// How long the line must have been quiet before `question` is asked, in milliseconds: 0, a
  /// moment in which a doubled answer arrives, or the time in which an owed one does.
  std::uint32_t QuietMsBefore(const tagIPOD_WRITE_PARAMS& question) const;

  /// `question` has been asked, and `owed` answers to it may still come.
  void Note(const tagIPOD_WRITE_PARAMS& question, std::uint32_t owed);
  /// The same, beside what such a command is owed already.
  void NoteMore(const tagIPOD_WRITE_PARAMS& question, std::uint32_t owed);
  /// A frame came; if it answers a command of which answers are owed, one less is.
  void NoteArrival(const ReceivedFrame& frame);
  /// Nothing is owed to such a command any more: the line has been quiet, or a refusal has ended
  /// it.
  void Settle(const tagIPOD_WRITE_PARAMS& question);

  /// The host has stopped `question`, sent `attempts` times. Of such commands the last is kept.
  void NoteStopped(const tagIPOD_WRITE_PARAMS& question, std::uint32_t attempts);
  /// How long the line must have been quiet before anything is asked; 0 once its answers have come.
  std::uint32_t QuietMsAfterStop() const;
  /// The line has been.
  void SettleStopped() { questions_[kStopped].owed = 0; }

 private:
  static constexpr std::uint32_t kMost = 8;
  static constexpr std::uint32_t kStopped = kMost;  // the place behind them
  static constexpr std::uint32_t kMostBytes = 12;

  struct Question {
    std::uint32_t owed;
    std::uint32_t length;  // of the data, of which the first bytes are kept
    unsigned char data[kMostBytes];
    std::uint16_t command;
    std::uint8_t lingo;
    bool used;
  };

  static Question Noted(const tagIPOD_WRITE_PARAMS& question, std::uint32_t owed);
  static bool Same(const Question& earlier, const tagIPOD_WRITE_PARAMS& question);
  std::uint32_t IndexOf(const tagIPOD_WRITE_PARAMS& question) const;

  Question questions_[kMost + 1] = {};
  std::uint32_t last_ = 0;  // asked last
};

}  // namespace ipodcomm
