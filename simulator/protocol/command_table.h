// SPDX-License-Identifier: MIT
// The commands of each lingo, by number: what they are called and how long they are.

#pragma once

#include <string>

#include "simulator/base/bytes.h"

namespace ipodsim {

enum Lingo : std::uint8_t {
  kGeneral = 0x00,
  kSimpleRemote = 0x02,
  kDisplayRemote = 0x03,
  kExtended = 0x04,
  kSports = 0x09,
  kStorage = 0x0C,
};

enum class AckStatus : std::uint8_t {
  kOk = 0,
  kFailed = 1,
  kOutOfResources = 2,
  kBadParameter = 3,
  kUnknown = 4,
  kPending = 6,
};

constexpr std::size_t kAnyLength = 0xFFFF;

enum class CommandNature {
  kRequest,         // answered
  kRequestWithout,  // answered; never carries a transaction identifier
  kQuiet,           // not answered
  kQuietWithout,    // not answered; never carries a transaction identifier
  kAnswer,          // answers a request of ours under a transaction identifier of its own
  kAnswerEchoing,   // answers a request of ours under that request's identifier
  kAnswerWithout,   // answers a request of ours, never with an identifier
};

// A command that accessories send. The payload sizes leave the transaction identifier out.
struct CommandRule {
  std::uint8_t lingo;
  std::uint16_t command;
  const char* name;
  std::size_t least;
  std::size_t most;
  CommandNature nature = CommandNature::kRequest;

  bool CarriesIdentifier() const {
    return nature != CommandNature::kRequestWithout && nature != CommandNature::kQuietWithout &&
           nature != CommandNature::kAnswerWithout;
  }
  bool IsAnswer() const {
    return nature == CommandNature::kAnswer || nature == CommandNature::kAnswerEchoing ||
           nature == CommandNature::kAnswerWithout;
  }
};

// Null for a command that no accessory sends.
const CommandRule* FindCommand(std::uint8_t lingo, std::uint16_t command);

const char* LingoName(std::uint8_t lingo);
enum class Sender { kAccessory, kIpod };
// The name of a command of either side, or its number. The sender matters where both sides have a
// command of that number.
std::string CommandName(std::uint8_t lingo, std::uint16_t command,
                        Sender sender = Sender::kAccessory);
// The lingo's acknowledgement from the iPod; 0xFFFF when there is none.
std::uint16_t AckCommand(std::uint8_t lingo);

}  // namespace ipodsim
