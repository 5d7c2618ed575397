// SPDX-License-Identifier: MIT
// The lingoes, commands and statuses that are known by number where a conversation is followed.
// What a command holds is in the table.
#pragma once

#include <cstdint>

namespace ipodwire {

namespace lingo {
constexpr std::uint8_t kGeneral = 0x00;
constexpr std::uint8_t kStorage = 0x0C;
}  // namespace lingo

namespace general {
constexpr std::uint16_t kRequestIdentify = 0x00;
constexpr std::uint16_t kAck = 0x02;
constexpr std::uint16_t kRequestLingoProtocolVersion = 0x0F;
constexpr std::uint16_t kReturnLingoProtocolVersion = 0x10;
constexpr std::uint16_t kIdentifyDeviceLingoes = 0x13;
constexpr std::uint16_t kGetDevAuthenticationInfo = 0x14;
constexpr std::uint16_t kGetDevAuthenticationSignature = 0x17;
constexpr std::uint16_t kStartIdps = 0x38;
constexpr std::uint16_t kRetFidTokenValueAcks = 0x3A;
constexpr std::uint16_t kIdpsStatus = 0x3C;
}  // namespace general

/// Of an acknowledgement.
namespace status {
constexpr std::uint64_t kOk = 0;
constexpr std::uint64_t kOutOfResources = 2;
constexpr std::uint64_t kUnknownId = 4;
constexpr std::uint64_t kPending = 6;
constexpr std::uint64_t kNotAuthenticated = 7;
}  // namespace status

}  // namespace ipodwire
