// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "wire/decode.h"

namespace wire_test {

using Bytes = std::vector<std::uint8_t>;

/// A frame around `content`, which is the lingo, the command and the data.
Bytes Small(const Bytes& content);
Bytes Large(const Bytes& content);

/// What a frame from the iPod, or from the accessory, without a transaction identifier says, in
/// words. Each problem follows behind " ! ".
std::string FromIpod(const Bytes& content);
std::string FromAccessory(const Bytes& content);
/// The same of a frame whose data begin with a transaction identifier.
std::string FromIpodWithId(const Bytes& content);
std::string FromAccessoryWithId(const Bytes& content);

/// The bytes of `text`, without a zero byte at the end.
Bytes Ascii(const std::string& text);
Bytes operator+(Bytes left, const Bytes& right);

}  // namespace wire_test
