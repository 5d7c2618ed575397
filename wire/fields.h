// SPDX-License-Identifier: MIT
// The words in which the table of commands is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "wire/table.h"

namespace ipodwire {

/// A number of `size` bytes, shown as it is.
Field Number(std::size_t size, const char* name, const char* unit = "");
inline Field U8(const char* name, const char* unit = "") { return Number(1, name, unit); }
inline Field U16(const char* name, const char* unit = "") { return Number(2, name, unit); }
inline Field U32(const char* name, const char* unit = "") { return Number(4, name, unit); }
inline Field U64(const char* name, const char* unit = "") { return Number(8, name, unit); }
/// A number of `size` bytes, shown in hexadecimal.
Field Hex(std::size_t size, const char* name);
/// A number of `size` bytes, shown by the name of its value.
Field Named(std::size_t size, const char* name, const std::vector<Value>& values);
/// A mask of `size` bytes, shown by the names of the bits that are set.
Field Bits(std::size_t size, const char* name, const std::vector<Bit>& bits);
/// The number of a command of the same lingo, in `size` bytes.
Field CommandNumber(std::size_t size, const char* name);

/// A mask of up to four bytes, the least significant first.
Field LowFirstBits(const char* name, const std::vector<Bit>& bits);
/// Major and minor.
Field Version(const char* name);
/// Three numbers.
Field LongVersion(const char* name);
Field Text(const char* name);
Field Characters(const char* name);
/// To the end when `size` is 0.
Field Bytes(const char* name, std::size_t size = 0);

Field Repeated(const char* name, std::vector<Field> fields);
Field Counted(const char* name, std::vector<Field> fields);
Field Records(const char* name, std::vector<Field> fields);
/// The fields that the value of an earlier field, `selector`, selects.
Field Choice(const char* selector, std::vector<Case> cases, std::vector<Field> otherwise = {});
Field ChoiceBySize(std::vector<Case> cases);

Field Optional(Field field);

constexpr Reply kNoReply = {Reply::Kind::kNone, 0};
constexpr Reply kAcknowledged = {Reply::Kind::kAck, 0};
inline Reply RepliedBy(std::uint16_t command) { return {Reply::Kind::kCommand, command}; }
inline Reply StreamedBy(std::uint16_t command) { return {Reply::Kind::kStream, command}; }

/// For `Command::carries_identifier`.
constexpr bool kNoIdentifier = false;

}  // namespace ipodwire
