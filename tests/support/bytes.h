// SPDX-License-Identifier: MIT
// Bytes as tests write and print them: "FF 55 02 00 13 EB".
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace test {

using Bytes = std::vector<std::uint8_t>;

/// Bytes of hexadecimal text; blanks and line ends between them do not count.
Bytes Hex(std::string_view text);

std::string ToHex(const std::uint8_t* bytes, std::size_t count);
inline std::string ToHex(const Bytes& bytes) { return ToHex(bytes.data(), bytes.size()); }

/// Parts what was sent into frames, each as text. A lone sync byte in front of a frame, as the
/// wake-up is, stands for itself.
std::vector<std::string> Frames(const Bytes& sent);

}  // namespace test
