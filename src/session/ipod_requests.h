// SPDX-License-Identifier: MIT
// What the iPod asks of the accessory, or tells it, without having been asked.
#pragma once

#include <cstdint>

namespace ipodcomm {

/// Who meets a request.
enum class RequestReceiver : std::uint8_t {
  kNotificationThread,  // at once, also while the host does nothing
  kWaitingCommand,      // the decoder of the next command that waits for an answer
};

/// What is done about it.
enum class RequestReaction : std::uint8_t {
  kNone,
  kStorePlayStatus,
  kReturnAccessoryInfo,
  kReturnSportsVersion,
  kReturnSportsCaps,
  kReturnStorageCaps,
};

struct IpodRequest {
  std::uint8_t lingo;
  std::uint16_t command;
  std::uint16_t answer;  // kNoAnswer when there is nothing to answer
  bool keeps_id;         // its transaction identifier is kept, and echoed by the answer
  RequestReceiver receiver;
  RequestReaction reaction;

  static constexpr std::uint16_t kNoAnswer = 0xFFFF;
};

/// The request with this number; null for everything else, which answers the accessory's commands.
const IpodRequest* FindRequest(std::uint8_t lingo, std::uint16_t command);

/// The request that a command of the accessory answers, null when it answers none.
const IpodRequest* FindRequestAnsweredBy(std::uint8_t lingo, std::uint16_t command);

}  // namespace ipodcomm
