// SPDX-License-Identifier: MIT
// Numbers on the wire: most significant byte first.
#pragma once

#include <cstdint>

namespace ipodcomm {

inline std::uint16_t ReadNumber16(const unsigned char* bytes) {
  return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

inline std::uint32_t ReadNumber32(const unsigned char* bytes) {
  return static_cast<std::uint32_t>(ReadNumber16(bytes)) << 16 | ReadNumber16(bytes + 2);
}

inline void WriteNumber16(unsigned char* bytes, std::uint16_t number) {
  bytes[0] = static_cast<unsigned char>(number >> 8);
  bytes[1] = static_cast<unsigned char>(number);
}

inline void WriteNumber32(unsigned char* bytes, std::uint32_t number) {
  WriteNumber16(bytes, static_cast<std::uint16_t>(number >> 16));
  WriteNumber16(bytes + 2, static_cast<std::uint16_t>(number));
}

}  // namespace ipodcomm
