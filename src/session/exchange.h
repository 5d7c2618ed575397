// SPDX-License-Identifier: MIT
// The two records of an exchange, filled as operations need them: the command to send and the
// answer to await.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "ipodcomm/IpodTypes.h"
#include "protocol/commands.h"
#include "protocol/frame.h"

namespace ipodcomm {

/// Attempts of an ordinary command.
constexpr std::int32_t kAttempts = 3;

/// The nearest number that a record's field holds. Hosts give sizes of any width.
template <class Field>
Field Saturated(std::size_t size) {
  return static_cast<Field>(
      std::min<std::uint64_t>(size, static_cast<std::uint64_t>(std::numeric_limits<Field>::max())));
}

/// A command without data.
inline tagIPOD_WRITE_PARAMS Command(std::uint8_t lingo, std::uint16_t command) {
  return {command, lingo, nullptr, 0};
}

/// A command with data, which it borrows.
inline tagIPOD_WRITE_PARAMS Command(std::uint8_t lingo, std::uint16_t command,
                                    const unsigned char* data, std::size_t length) {
  return {command, lingo, data, Saturated<std::uint32_t>(length)};
}

template <std::size_t kLength>
tagIPOD_WRITE_PARAMS Command(std::uint8_t lingo, std::uint16_t command,
                             const unsigned char (&data)[kLength]) {
  return Command(lingo, command, data, kLength);
}

/// The answer awaited, into `size` bytes at `buffer`.
inline tagIPOD_READ_PARAMS Answer(std::uint16_t expected, unsigned char* buffer, std::size_t size) {
  tagIPOD_READ_PARAMS read = {};
  read.expected_command = expected;
  read.buffer = buffer;
  read.size = Saturated<std::int32_t>(size);
  read.retries = kAttempts;
  return read;
}

template <std::size_t kSize>
tagIPOD_READ_PARAMS Answer(std::uint16_t expected, unsigned char (&buffer)[kSize]) {
  return Answer(expected, buffer, kSize);
}

/// Stores the data of an answer, cut to the buffer.
void StoreData(const ReceivedFrame& answer, tagIPOD_READ_PARAMS* read);

}  // namespace ipodcomm
