// SPDX-License-Identifier: MIT
// Text on the wire is UTF-8; hosts get wide text.
#pragma once

#include <cstddef>

namespace ipodcomm {

/// Converts exactly `source_bytes` of UTF-8, terminators inside included, into the host's buffer of
/// `capacity` characters. What is malformed, or incomplete at the end, becomes U+FFFD. A text that
/// does not fit is cut between two characters; the buffer always ends with a terminator within its
/// capacity. `source_bytes` is at most 1024.
void TextFromUtf8(const unsigned char* source, std::size_t source_bytes, wchar_t* destination,
                  std::size_t capacity);

/// Converts `text` to at most `capacity - 1` bytes of UTF-8 and a terminator. A text that does not
/// fit is cut between two characters. @return the bytes without the terminator.
std::size_t Utf8FromText(const wchar_t* text, char* destination, std::size_t capacity);

/// Bytes of `text` without a last character whose end is missing.
std::size_t WholeUtf8(const char* text, std::size_t length);

/// Clears a last character whose end is missing, for a reply of `size` bytes that may hold only
/// part of a longer text.
void ClearCutCharacter(unsigned char* text, std::size_t size);

}  // namespace ipodcomm
