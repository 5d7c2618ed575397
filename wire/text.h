// SPDX-License-Identifier: MIT
// Frames in words.
#pragma once

#include <string>
#include <vector>

#include "wire/conversation.h"
#include "wire/decode.h"

namespace ipodwire {

/// A text in quotation marks. What could steer a terminal is shown instead of sent: control
/// characters, and bytes that are no UTF-8, as \x1B.
std::string Quoted(const std::string& text);

/// "track length 215000 ms, position 1500 ms, state playing"
std::string Describe(const std::vector<DecodedField>& fields);
/// "Extended Interface ReturnPlayStatus id 0x0007: track length 215000 ms, ..."
std::string Describe(const DecodedFrame& frame);
/// "FF 55 02 ...", the first `most` of them.
std::string HexBytes(const std::vector<std::uint8_t>& bytes, std::size_t most);

}  // namespace ipodwire
