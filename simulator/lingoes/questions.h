// SPDX-License-Identifier: MIT
// The questions that the iPod asks an accessory once it has identified.

#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "simulator/wire/link.h"

namespace ipodsim {

class Questions {
 public:
  Questions(Link* link, const Settings& settings) : link_(link), settings_(settings) {}

  /// Asks one question after another: what information there is and each piece of it, then the
  /// capabilities in the Sports and the Storage lingo if they were announced.
  void Start(std::uint32_t announced_lingoes);
  /// Asks no more. Answers that are still under way are accepted, and not missed.
  void Stop();
  /// The accessory is gone.
  void Forget();
  /// One question out of turn.
  void AskOutOfTurn();
  /// What it wants to know about a lingo whose services the accessory is about to use.
  void AskAbout(const Request& request);

  /// True when the frame is an answer, right or wrong.
  bool Handle(const Request& request);
  /// The accessory sent something else, so it is there, and what it does not answer is a mistake.
  void NoticeFrame();
  /// Nothing more will come: what should have been answered by now is a mistake.
  void Finish();

  /// Gives up on answers that do not come.
  void Advance(Microseconds now);
  std::optional<Microseconds> NextTimeout() const;

  /// What the accessory told, by information type: texts without their ending, versions as bytes.
  const std::map<std::uint8_t, Bytes>& answers() const { return answers_; }
  /// What the accessory's identification tokens said, to compare the answers with.
  void Expect(std::uint8_t type, Bytes value) { expected_[type] = std::move(value); }

 private:
  struct Question {
    std::uint8_t lingo;
    std::uint16_t command;
    Bytes data;
    std::uint16_t answer;
    std::uint16_t identifier = 0;
    bool carried = false;  // the identifier was sent
    Microseconds asked_at = 0;
    bool forgiven = false;     // an answer is welcome but not expected
    bool heard_since = false;  // the accessory, with something else
  };

  void Ask(Question question, Microseconds due);
  void AskAside(Question question);
  void AskNext();
  bool Answers(const Question& question, const Request& request) const;
  bool IsOverdue(const Question& question) const;
  void DropOverdue();
  void ReportMissing(const Question& question);
  void CheckAnswer(const Question& question, const Request& request);
  void CheckInformation(const Request& request);

  Link* link_;
  const Settings& settings_;
  std::deque<Question> waiting_;  // to be asked
  std::vector<Question> asked_;   // and not answered; the last is the one waited for
  bool in_turn_ = false;          // waiting for an answer before the next question
  std::map<std::uint8_t, Bytes> answers_;
  std::map<std::uint8_t, Bytes> expected_;
};

}  // namespace ipodsim
