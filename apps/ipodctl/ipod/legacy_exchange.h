// SPDX-License-Identifier: MIT
// Questions through the legacy interface whose answers are told from whatever else arrives.
//
// The interface's own operations take the next frame for the answer. What comes late, twice or in
// between, such as a question of the iPod's own, moves every answer after it by one. Here frames
// are read until the answer itself comes, and what the iPod asks meanwhile is answered.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ipodcomm/ipod.h"

namespace ipodctl {

/// A command and what answers it.
struct LegacyQuestion {
  std::function<int(ipod& docked)> send;
  std::uint8_t command;
  std::uint8_t answer;   // IPOD_COMMAND_EXTENDEDACK for commands that are only acknowledged
  std::size_t least;     // bytes of data in a whole answer
  bool is_text = false;  // the data end with a 0 byte
  std::vector<std::uint8_t> repeated = {};    // bytes of the request with which the data begin
  std::uint8_t ack = ipod::IPOD_COMMAND_ACK;  // the number of the lingo's ACK, if it has one byte
};

struct LegacyAnswer {
  enum class Result {
    kAnswered,
    kRefused,
    kUnclear,  // something came, but no whole answer
    kUnanswered
  };

  Result result = Result::kUnanswered;
  std::uint8_t status = 0;  // of the refusing ACK
  std::vector<std::uint8_t> data;

  bool answered() const { return result == Result::kAnswered; }
  bool refused() const { return result == Result::kRefused; }
  std::uint32_t Number(std::size_t at) const;
};

/// Asks up to three times. Silence costs three seconds an attempt.
LegacyAnswer AskLegacy(ipod& docked, const LegacyQuestion& question);

/// The same of a command of another lingo, whose number has one byte. The interface passes over the
/// ACK of one that the iPod refuses, so after the first silence that is asked for, and after the
/// last, as the first may have come damaged.
LegacyAnswer AskLegacyShort(ipod& docked, const LegacyQuestion& question);

/// Sends a command of another lingo than the Extended Interface and reads its ACK alone, which
/// operations that await data pass over.
LegacyAnswer AskForAck(ipod& docked, const LegacyQuestion& question);

/// The player's status: nothing changes by it, and every iPod in remote user-interface mode knows
/// it. What was late before has come when it is answered.
LegacyQuestion StatusQuestion();
/// Any iPod's name.
LegacyQuestion NameQuestion();
/// Any iPod's model: four bytes of identifier, then a text.
LegacyQuestion ModelQuestion();

/// Any iPod's serial number.
LegacyQuestion SerialNumberQuestion();
/// Any iPod's software version, in three bytes.
LegacyQuestion SoftwareVersionQuestion();

/// The text in an answer's data from `at` on.
std::string TextIn(const LegacyAnswer& answer, std::size_t at = 0);
/// Three bytes as the interface shows them, joined by dots from the second on.
std::string Dotted(const std::vector<std::uint8_t>& bytes, const char* first_separator);
/// The number of a model from its four bytes, as the interface shows it: "0014|0000".
std::string ShownModelNumber(const std::vector<std::uint8_t>& id);

}  // namespace ipodctl
