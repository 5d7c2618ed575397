// SPDX-License-Identifier: MIT
// Numbers as executable files hold them.
#pragma once

#include <cstdint>

namespace ipodcomm::platform {

inline std::uint16_t Little16(const std::uint8_t* bytes) {
  return static_cast<std::uint16_t>(bytes[0] | (bytes[1] << 8));
}

inline std::uint32_t Little32(const std::uint8_t* bytes) {
  return Little16(bytes) | (static_cast<std::uint32_t>(Little16(bytes + 2)) << 16);
}

}  // namespace ipodcomm::platform
