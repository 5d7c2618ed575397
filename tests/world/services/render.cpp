// SPDX-License-Identifier: MIT
// Plain and unambiguous, for tests that compare it.
#include "world/services/render.h"

#include "platform/common/utf8.h"

namespace ipodcomm::virtual_platform {

std::string List(std::initializer_list<std::string> parts) {
  std::string list;
  for (const std::string& part : parts) {
    if (!list.empty()) list += ", ";
    list += part;
  }
  return list;
}

std::string Hex(const void* data, std::size_t size) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  const auto* bytes = static_cast<const unsigned char*>(data);
  std::string text;
  for (std::size_t i = 0; i < size; ++i) {
    if (i > 0) text += ' ';
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0x0F];
  }
  return text.empty() ? "nothing" : text;
}

std::string Quoted(const wchar_t* text) {
  return text == nullptr ? "null" : "\"" + platform::WideToUtf8(text) + "\"";
}

std::string Number(unsigned long number) { return std::to_string(number); }

std::string Duration(DWORD duration_ms) {
  return duration_ms == INFINITE ? "INFINITE" : std::to_string(duration_ms);
}

}  // namespace ipodcomm::virtual_platform
