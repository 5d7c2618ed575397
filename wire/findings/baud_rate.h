// SPDX-License-Identifier: MIT
// At which rate a device sends, told from what is received of it at another rate.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace ipodwire {

/// The rate, in baud, at which the bytes were sent that were received as `runs` at `listening`
/// baud: 9600, 19200, 38400, 57600 or 115200. Nothing when they do not prove it.
///
/// Every frame begins with FF 55. Sent at another rate the two are received as other bytes, which
/// tell the rate: FE 66 66 was sent at half the rate, FC 1C 1C 1C at a third.
///
/// @param runs bytes that came without a pause, each run from its first byte
std::optional<std::uint32_t> SendingRate(const std::vector<std::vector<std::uint8_t>>& runs,
                                         std::uint32_t listening);

}  // namespace ipodwire
