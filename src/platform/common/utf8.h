// SPDX-License-Identifier: MIT
// UTF-8 decoded and encoded one character at a time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ipodcomm::platform {

/// Stands for whatever cannot be decoded or encoded.
inline constexpr char32_t kReplacementCharacter = 0xFFFD;

/// The longest encoding of one character.
inline constexpr std::size_t kMaxUtf8Bytes = 4;

/// Decodes the first character of `source`, which is not empty, and removes it. Malformed input is
/// removed in pieces as long as they could still have begun a character ("maximal subparts"), at
/// least one byte, each giving kReplacementCharacter. Surrogates, overlong forms and values above
/// 0x10FFFF are malformed.
char32_t PopUtf8Character(std::string_view& source);

/// Writes the encoding of `character` and returns its bytes. What is not a Unicode character
/// (a surrogate, a value above 0x10FFFF) is encoded as kReplacementCharacter.
std::size_t EncodeUtf8(char32_t character, char (&encoded)[kMaxUtf8Bytes]);

std::wstring Utf8ToWide(std::string_view source);
std::string WideToUtf8(std::wstring_view source);

}  // namespace ipodcomm::platform
