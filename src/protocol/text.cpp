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

std::size_t BytesAnnounced(unsigned char lead) {
  if (lead < 0xC0) return 1;
  if (lead < 0xE0) return 2;
  return lead < 0xF0 ? 3 : 4;
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
  // Whatever the conversion leaves in the cleared buffer counts: into a short one it fails.
  WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(std::wcslen(text)), destination,
                      static_cast<int>(capacity - 1), nullptr, nullptr);
  const std::size_t length = WholeUtf8(destination, std::strlen(destination));
  destination[length] = '\0';
  return length;
}

std::size_t WholeUtf8(const char* text, std::size_t length) {
  constexpr std::size_t kLongest = 4;
  for (std::size_t back = 1; back <= std::min(length, kLongest); ++back) {
    const auto byte = static_cast<unsigned char>(text[length - back]);
    const bool continues = (byte & 0xC0) == 0x80;
    if (!continues) return back < BytesAnnounced(byte) ? length - back : length;
  }
  return length;
}

}  // namespace ipodcomm
