// SPDX-License-Identifier: MIT
// What tells the answer to a request from every other frame that the iPod may send meanwhile.
#pragma once

#include <cstdint>

#include "ipodcomm/IpodTypes.h"
#include "protocol/frame.h"

namespace ipodcomm {

/// How a request is answered. An answer that repeats something of its request, such as the lingo
/// whose version was asked for, is told apart from the answer to an earlier request by that.
struct AnswerRule {
  std::uint8_t lingo;
  std::uint16_t request;
  std::uint16_t answer;
  std::uint8_t least_bytes;  ///< of its data; a shorter one is damaged
  bool ends_with_text;       ///< and so with a 0 byte
  /// The bytes of the request's data that the answer's begin with: how many, and where they lie.
  std::uint8_t repeated_bytes = 0;
  std::uint8_t repeated_at_request = 0;
};

/// Whether a request may be sent again before it is known what came of the first. One that toggles
/// or skips would do so twice.
bool MayBeRepeated(const tagIPOD_WRITE_PARAMS& request);

/// The rule of a request that is answered by data; null for one that is answered by an ACK alone.
const AnswerRule* FindAnswerRule(std::uint8_t lingo, std::uint16_t request);

/// What an ACK says: its status, and the command that it acknowledges.
struct Ack {
  std::uint8_t status;
  std::uint16_t command;
};

constexpr std::uint8_t kAckOk = 0x00;
constexpr std::uint8_t kAckPending = 0x06;

/// Whether a frame is its lingo's ACK, whole or not.
bool IsAck(const ReceivedFrame& frame);

/// Reads an ACK of any lingo. False for another command, or an ACK cut short.
bool ReadAck(const ReceivedFrame& frame, Ack* ack);

/// The time that a pending ACK asks for, in milliseconds; 0 where it names none.
std::uint32_t PendingMs(const ReceivedFrame& ack);

/// Whether the data are long enough, and a text ended, for the answer to be whole.
bool IsWhole(const AnswerRule& rule, const ReceivedFrame& answer);

/// Whether the answer repeats what `request` asked for.
bool Repeats(const AnswerRule& rule, const tagIPOD_WRITE_PARAMS& request,
             const ReceivedFrame& answer);

}  // namespace ipodcomm
