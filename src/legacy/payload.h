// SPDX-License-Identifier: MIT
// What a command's payload is written from.
#pragma once

#include <cstdint>

namespace ipodcomm {

/// One field of a payload: a byte, or a number whose most significant byte goes first. Payloads
/// read as lists of them: {type, Number32(track), Number16(chapter)}.
struct PayloadField {
  PayloadField(std::uint8_t byte)  // NOLINT(google-explicit-constructor): for such lists
      : PayloadField(byte, 1) {}
  PayloadField(std::uint32_t number, int bytes) : value(number), size(bytes) {}

  std::uint32_t value;
  int size;
};

inline PayloadField Number16(std::uint16_t number) { return {number, 2}; }
inline PayloadField Number32(unsigned long number) {
  return {static_cast<std::uint32_t>(number), 4};
}

}  // namespace ipodcomm
