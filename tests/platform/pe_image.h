// SPDX-License-Identifier: MIT
// Executable files made by hand: the least that carries a version resource.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ipodcomm::test {

using Bytes = std::vector<std::uint8_t>;

void Put16(Bytes& bytes, std::size_t offset, unsigned value);
void Put32(Bytes& bytes, std::size_t offset, std::uint32_t value);

/// One node of a version resource. `value_length` is written as it is given; a text's counts
/// characters, its terminator included.
Bytes VersionNode(const std::u16string& key, bool is_text, unsigned value_length,
                  const Bytes& value, const std::vector<Bytes>& children);
/// UTF-16 with its terminator.
Bytes Text16(const std::u16string& text);
/// A text value of a string table.
Bytes StringNode(const std::u16string& key, const std::u16string& text);
/// A whole resource: the fixed part, one string table "040904b0" with `strings`, and a translation.
Bytes VersionResource(const std::vector<Bytes>& strings);

// Where things stand in an image.
inline constexpr std::size_t kPeSignature = 0x40;
inline constexpr std::size_t kOptionalHeader = 0x58;
inline constexpr std::size_t kResources = 0x200;              // in the file
inline constexpr std::uint32_t kResourceAddress = 0x1000;     // in memory
inline constexpr std::size_t kDataEntry = kResources + 0x48;  // address and size of the version
inline constexpr std::size_t kVersion = kResources + 0x58;

/// A 32- or 64-bit image whose only section holds `version_resource`.
Bytes PeImage(int bits, const Bytes& version_resource);

}  // namespace ipodcomm::test
