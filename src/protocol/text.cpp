// SPDX-License-Identifier: MIT
// Text on the wire is UTF-8; hosts get wide text.
#include "protocol/text.h"

#include <algorithm>

#include "platform/services.h"

namespace ipodcomm {

namespace {

constexpr std::size_t kMaxSourceBytes = 1024;

/// Characters of `text` that fit into `room` without parting a surrogate pair.
std::size_t WholeCharacters(const wchar_t* text, std::size_t count, std::size_t room) {
  if (count <= room) return count;
  const bool parts_pair = room > 0 && (text[room - 1] & ~0x3FF) == 0xD800;
  return parts_pair ? room - 1 : room;
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

}  // namespace ipodcomm
