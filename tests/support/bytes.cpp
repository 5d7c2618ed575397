// SPDX-License-Identifier: MIT
#include "support/bytes.h"

#include <algorithm>
#include <stdexcept>

namespace test {

namespace {

int Digit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  throw std::invalid_argument("not a hexadecimal digit");
}

bool IsSpace(char character) { return character == ' ' || character == '\n'; }

// Bytes of the frame at `position`: 1 for a lone sync byte.
std::size_t FrameLength(const Bytes& sent, std::size_t position) {
  const std::size_t left = sent.size() - position;
  if (left < 3 || sent[position + 1] != 0x55) return 1;
  return std::min<std::size_t>(left, sent[position + 2] + 4U);
}

}  // namespace

Bytes Hex(std::string_view text) {
  Bytes bytes;
  for (std::size_t i = 0; i < text.size();) {
    if (IsSpace(text[i])) {
      ++i;
      continue;
    }
    if (i + 1 == text.size()) throw std::invalid_argument("half a byte");
    bytes.push_back(static_cast<std::uint8_t>(Digit(text[i]) * 16 + Digit(text[i + 1])));
    i += 2;
  }
  return bytes;
}

std::string ToHex(const std::uint8_t* bytes, std::size_t count) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    if (i != 0) text += ' ';
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0x0F];
  }
  return text;
}

std::vector<std::string> Frames(const Bytes& sent) {
  std::vector<std::string> frames;
  for (std::size_t position = 0; position < sent.size();) {
    const std::size_t length = FrameLength(sent, position);
    frames.push_back(ToHex(sent.data() + position, length));
    position += length;
  }
  return frames;
}

}  // namespace test
