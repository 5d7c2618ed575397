// SPDX-License-Identifier: MIT
// UTF-8 decoded and encoded one character at a time.
#include "platform/common/utf8.h"

namespace ipodcomm::platform {
namespace {

static_assert(sizeof(wchar_t) == 4, "a wide character holds any Unicode character");

// What a first byte announces: the bytes that follow, its own bits of the character, and the range
// of the second byte. The range is what excludes overlong forms, surrogates and too large values.
struct Lead {
  int following;
  char32_t bits;
  unsigned char second_min;
  unsigned char second_max;
};

Lead ClassifyLead(unsigned char byte) {
  if (byte < 0x80) return {0, byte, 0, 0};
  if (byte < 0xC2) return {-1, 0, 0, 0};
  if (byte < 0xE0) return {1, byte & 0x1FU, 0x80, 0xBF};
  if (byte == 0xE0) return {2, 0, 0xA0, 0xBF};
  if (byte == 0xED) return {2, 0x0D, 0x80, 0x9F};
  if (byte < 0xF0) return {2, byte & 0x0FU, 0x80, 0xBF};
  if (byte == 0xF0) return {3, 0, 0x90, 0xBF};
  if (byte < 0xF4) return {3, byte & 0x07U, 0x80, 0xBF};
  if (byte == 0xF4) return {3, 4, 0x80, 0x8F};
  return {-1, 0, 0, 0};
}

bool IsUnicode(char32_t character) {
  return character < 0xD800 || (character > 0xDFFF && character <= 0x10FFFF);
}

}  // namespace

char32_t PopUtf8Character(std::string_view& source) {
  const Lead lead = ClassifyLead(static_cast<unsigned char>(source.front()));
  source.remove_prefix(1);
  if (lead.following < 0) return kReplacementCharacter;
  char32_t character = lead.bits;
  unsigned char min = lead.second_min;
  unsigned char max = lead.second_max;
  for (int i = 0; i < lead.following; ++i) {
    if (source.empty()) return kReplacementCharacter;
    const auto byte = static_cast<unsigned char>(source.front());
    if (byte < min || byte > max) return kReplacementCharacter;
    source.remove_prefix(1);
    character = (character << 6) | (byte & 0x3FU);
    min = 0x80;
    max = 0xBF;
  }
  return character;
}

std::size_t EncodeUtf8(char32_t character, char (&encoded)[kMaxUtf8Bytes]) {
  const char32_t c = IsUnicode(character) ? character : kReplacementCharacter;
  const auto tail = [c](unsigned shift) { return static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
  if (c < 0x80) {
    encoded[0] = static_cast<char>(c);
    return 1;
  }
  if (c < 0x800) {
    encoded[0] = static_cast<char>(0xC0 | (c >> 6));
    encoded[1] = tail(0);
    return 2;
  }
  if (c < 0x10000) {
    encoded[0] = static_cast<char>(0xE0 | (c >> 12));
    encoded[1] = tail(6);
    encoded[2] = tail(0);
    return 3;
  }
  encoded[0] = static_cast<char>(0xF0 | (c >> 18));
  encoded[1] = tail(12);
  encoded[2] = tail(6);
  encoded[3] = tail(0);
  return 4;
}

std::wstring Utf8ToWide(std::string_view source) {
  std::wstring wide;
  wide.reserve(source.size());
  while (!source.empty()) wide.push_back(static_cast<wchar_t>(PopUtf8Character(source)));
  return wide;
}

std::string WideToUtf8(std::wstring_view source) {
  std::string narrow;
  narrow.reserve(source.size());
  for (const wchar_t character : source) {
    char encoded[kMaxUtf8Bytes];
    narrow.append(encoded, EncodeUtf8(static_cast<char32_t>(character), encoded));
  }
  return narrow;
}

}  // namespace ipodcomm::platform
