// SPDX-License-Identifier: MIT
// What is known of each command: what it is called, how long it is, whether it is answered.

#pragma once

#include <string>

#include "simulator/base/bytes.h"
#include "simulator/protocol/commands.h"

namespace ipodsim {

enum class AckStatus : std::uint8_t {
  kOk = 0,
  kFailed = 1,
  kOutOfResources = 2,
  kBadParameter = 3,
  kUnknown = 4,
  kPending = 6,
  kNotAuthenticated = 7,
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

/// A command that accessories send. The payload sizes leave the transaction identifier out.
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

/// Null for a command that no accessory sends.
const CommandRule* FindCommand(std::uint8_t lingo, std::uint16_t command);

const char* LingoName(std::uint8_t lingo);
enum class Sender { kAccessory, kIpod };
/// The name of a command of either side, or its number. The sender matters where both sides have a
/// command of that number.
std::string CommandName(std::uint8_t lingo, std::uint16_t command,
                        Sender sender = Sender::kAccessory);
/// The lingo's acknowledgement from the iPod; kNoAck where there is none.
constexpr std::uint16_t kNoAck = 0xFFFF;
std::uint16_t AckCommand(std::uint8_t lingo);

}  // namespace ipodsim
