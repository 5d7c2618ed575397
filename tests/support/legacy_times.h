// SPDX-License-Identifier: MIT
// How long the legacy interface waits in vain.
#pragma once

#include <cstdint>

#include "world/world.h"

namespace test {

using ipodcomm::virtual_platform::kMillisecond;
using ipodcomm::virtual_platform::kSecond;

/// Silence as the legacy interface waits for it: five empty reads of 400 ms, 200 ms after each.
inline constexpr std::int64_t kEmptyReadsUs = 3 * kSecond;
/// A command that nobody answers: its frame goes out 5 ms behind the sync byte.
inline constexpr std::int64_t kSilenceUs = 5 * kMillisecond + kEmptyReadsUs;

}  // namespace test
