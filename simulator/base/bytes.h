// SPDX-License-Identifier: MIT
// Bytes on the wire, most significant first.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace ipodsim {

using Bytes = std::vector<std::uint8_t>;

inline void Put8(Bytes& bytes, std::uint32_t value) {
  bytes.push_back(static_cast<std::uint8_t>(value & 0xFF));
}

inline void Put16(Bytes& bytes, std::uint32_t value) {
  Put8(bytes, value >> 8);
  Put8(bytes, value);
}

inline void Put32(Bytes& bytes, std::uint32_t value) {
  Put16(bytes, value >> 16);
  Put16(bytes, value);
}

inline void Put64(Bytes& bytes, std::uint64_t value) {
  Put32(bytes, static_cast<std::uint32_t>(value >> 32));
  Put32(bytes, static_cast<std::uint32_t>(value));
}

/// Text travels as UTF-8 and ends with a zero byte.
inline void PutText(Bytes& bytes, std::string_view text) {
  bytes.insert(bytes.end(), text.begin(), text.end());
  bytes.push_back(0);
}

inline std::uint16_t Get16(const Bytes& bytes, std::size_t at) {
  return static_cast<std::uint16_t>((bytes[at] << 8) | bytes[at + 1]);
}

inline std::uint32_t Get32(const Bytes& bytes, std::size_t at) {
  return (static_cast<std::uint32_t>(Get16(bytes, at)) << 16) | Get16(bytes, at + 2);
}

}  // namespace ipodsim
