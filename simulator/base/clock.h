// SPDX-License-Identifier: MIT
// The clock that everything here is handed.

#pragma once

#include <cstdint>
#include <limits>
#include <optional>

namespace ipodsim {

/// A point on the clock that the caller hands in, or a span of it.
using Microseconds = std::int64_t;

constexpr Microseconds kMillisecond = 1000;
constexpr Microseconds kSecond = 1000 * kMillisecond;

/// Whether the time for something that may never be due has come.
inline bool HasCome(const std::optional<Microseconds>& due, Microseconds now) {
  return due.value_or(std::numeric_limits<Microseconds>::max()) <= now;
}

}  // namespace ipodsim
