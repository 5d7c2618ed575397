// SPDX-License-Identifier: MIT
// What the legacy getters share: replies come as text, one byte to a character.
#include "legacy/reply_text.h"

#include <algorithm>

#include "protocol/text.h"

namespace ipodcomm {

void ShowText(wchar_t* text, const char* shown) {
  if (text == nullptr) return;
  do {
    *text++ = static_cast<unsigned char>(*shown);
  } while (*shown++ != '\0');
}

void EndBehindWholeCharacter(wchar_t* text, std::size_t capacity) {
  const auto length = static_cast<std::size_t>(std::find(text, text + capacity, L'\0') - text);
  if (length + 1 < capacity) return;
  constexpr std::size_t kLongestCharacter = 4;
  const std::size_t tail_length = std::min(length, kLongestCharacter);
  wchar_t* const tail = text + length - tail_length;
  char bytes[kLongestCharacter] = {};
  std::transform(tail, tail + tail_length, bytes,
                 [](wchar_t unit) { return static_cast<char>(unit); });
  tail[WholeUtf8(bytes, tail_length)] = L'\0';
}

}  // namespace ipodcomm
