// SPDX-License-Identifier: MIT
// Text on the wire is UTF-8; hosts get wide text.
#include "protocol/text.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "platform/services.h"

namespace ipodcomm {

namespace {

constexpr std::size_t kMaxSourceBytes = 1024;

// Characters of `text` that fit into `room` without parting a surrogate pair.
std::size_t WholeCharacters(const wchar_t* text, std::size_t count, std::size_t room) {
  if (count <= room) return count;
  const bool parts_pair = room > 0 && (text[room - 1] & ~0x3FF) == 0xD800;
  return parts_pair ? room - 1 : room;
}

// Bytes of the character that begins with `lead`, 1 for a byte that begins none.
std::size_t Utf8Length(unsigned char lead) {
  if (lead < 0xC2 || lead > 0xF4) return 1;
  if (lead < 0xE0) return 2;
  return lead < 0xF0 ? 3 : 4;
}

// Whether `second` may follow `lead`: some leads exclude what has a shorter form, or is no
// character.
bool MayFollow(unsigned char lead, unsigned char second) {
  const unsigned char lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned char highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  return second >= lowest && second <= highest;
}

// Bytes of UTF-8 that the character at the front of `text` becomes; a surrogate without its other
// half becomes a replacement.
std::size_t EncodedLength(const wchar_t* text, std::size_t units) {
  const auto unit = static_cast<char32_t>(text[0]);
  if (unit < 0x80) return 1;
  if (unit < 0x800) return 2;
  return units == 2 || (unit > 0xFFFF && unit <= 0x10FFFF) ? 4 : 3;
}

// Units of the character at the front of `text`: 2 for a pair of surrogates where units have 16
// bits.
std::size_t UnitsOfCharacter(const wchar_t* text) {
  const bool pair =
      sizeof(wchar_t) == 2 && (text[0] & ~0x3FF) == 0xD800 && (text[1] & ~0x3FF) == 0xDC00;
  return pair ? 2 : 1;
}

// Units of `text` whose UTF-8 fits into `room` bytes, whole characters only.
std::size_t UnitsThatFit(const wchar_t* text, std::size_t room) {
  const wchar_t* next = text;
  while (*next != L'\0') {
    const std::size_t units = UnitsOfCharacter(next);
    const std::size_t bytes = EncodedLength(next, units);
    if (bytes > room) break;
    room -= bytes;
    next += units;
  }
  return static_cast<std::size_t>(next - text);
}

}  // namespace

void TextFromUtf8(const unsigned char* source, std::size_t source_bytes, wchar_t* destination,
                  std::size_t capacity) {
  if (destination == nullptr || capacity == 0) return;
  // Converted whole and then cut here: platforms differ in what they leave in a short buffer. No
  // UTF-8 byte makes more than one character.
  wchar_t converted[kMaxSourceBytes];
  const int count = MultiByteToWideChar(CP_UTF8, 0, reinterpret_cast<const char*>(source),
                                        static_cast<int>(source_bytes), converted,
                                        static_cast<int>(kMaxSourceBytes));
  const auto available = static_cast<std::size_t>(std::max(count, 0));
  const std::size_t copied = WholeCharacters(converted, available, capacity - 1);
  std::copy_n(converted, copied, destination);
  destination[copied] = L'\0';
}

std::size_t Utf8FromText(const wchar_t* text, char* destination, std::size_t capacity) {
  std::memset(destination, 0, capacity);
  // Only what fits is converted: platforms differ in what they leave in a short buffer.
  const std::size_t units = UnitsThatFit(text, capacity - 1);
  WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(units), destination,
                      static_cast<int>(capacity - 1), nullptr, nullptr);
  return std::strlen(destination);
}

std::size_t WholeUtf8(const char* text, std::size_t length) {
  constexpr std::size_t kLongestCut = 3;
  for (std::size_t back = 1; back <= std::min(length, kLongestCut); ++back) {
    const auto lead = static_cast<unsigned char>(text[length - back]);
    if ((lead & 0xC0) == 0x80) continue;
    const bool cut =
        back < Utf8Length(lead) &&
        (back == 1 || MayFollow(lead, static_cast<unsigned char>(text[length - back + 1])));
    return cut ? length - back : length;
  }
  return length;
}

void ClearCutCharacter(unsigned char* text, std::size_t size) {
  if (size == 0) return;  // an empty text may have no address, and memset wants one
  const std::size_t whole = WholeUtf8(reinterpret_cast<const char*>(text), size);
  std::memset(text + whole, 0, size - whole);
}

}  // namespace ipodcomm
