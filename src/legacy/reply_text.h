// SPDX-License-Identifier: MIT
// What the legacy getters share: replies come as text, one byte to a character.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ipodcomm {

/// Characters that a text reply is read with; hosts' buffers for converted text have as many.
constexpr unsigned char kReplyCharacters = 250;

/// The extractors' last argument, which they ignore.
constexpr int kIgnored = 0;

/// A byte of a reply.
inline std::uint8_t ReplyByte(wchar_t character) { return static_cast<std::uint8_t>(character); }

/// Numbers in a reply, most significant byte first.
inline std::uint16_t ReplyNumber16(const wchar_t* reply) {
  return static_cast<std::uint16_t>(ReplyByte(reply[0]) << 8 | ReplyByte(reply[1]));
}

inline std::uint32_t ReplyNumber32(const wchar_t* reply) {
  return static_cast<std::uint32_t>(ReplyNumber16(reply)) << 16 | ReplyNumber16(reply + 2);
}

/// Stores a result for a host that wants it.
template <class Output, class Value>
void Store(Output* output, Value value) {
  if (output != nullptr) *output = static_cast<Output>(value);
}

/// A text of UTF-8 bytes, one to a character, that fills its buffer was cut there: ends it behind
/// its last whole character. Any other text stays as it is.
void EndBehindWholeCharacter(wchar_t* text, std::size_t capacity);

/// Shows a text in the host's buffer, which has room for it, or nowhere when the host gave none.
/// @param shown in ASCII: the library's own texts take a quarter of the room so
void ShowText(wchar_t* text, const char* shown);

/// The host's buffer of `Characters`, or one that takes its place when the host gave none.
template <std::size_t Characters>
class HostText {
 public:
  explicit HostText(wchar_t* text) : text_(text != nullptr ? text : none_) {}
  HostText(const HostText&) = delete;
  HostText& operator=(const HostText&) = delete;
  wchar_t* get() { return text_; }

 private:
  wchar_t none_[Characters] = {};
  wchar_t* text_;
};

}  // namespace ipodcomm
