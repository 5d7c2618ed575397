// SPDX-License-Identifier: MIT
// What an iPod says when it refuses.
#pragma once

#include <cstdint>
#include <string>

namespace ipodctl {

/// The status of an ACK with which an accessory that is not authenticated is turned away.
constexpr std::uint8_t kNotAuthenticated = 7;

/// Whether a status says that the iPod does not know what it was asked about, rather than that it
/// failed this time.
bool SaysUnknown(std::uint8_t status);

/// "status 4, unknown to it"; for a status that was not kept, 0, "no status told".
std::string StatusText(std::uint8_t status);

/// "the iPod refused to pause (status 1, command failed); nothing may be playing"
/// @param what what it refused to do; what follows a ';' is advice
std::string Refusal(const std::string& what, std::uint8_t status);

}  // namespace ipodctl
