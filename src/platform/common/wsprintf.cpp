// SPDX-License-Identifier: MIT
// The bounded printf that needs no capacity.
#include <algorithm>
#include <cwchar>

#include "platform/common/out_of_memory.h"
#include "platform/common/wide_format.h"
#include "platform/services.h"

int wsprintfW(wchar_t* destination, const wchar_t* format, ...) {
  constexpr std::size_t kMaxCharacters = 1024;  // terminator included
  std::va_list arguments;
  va_start(arguments, format);
  const std::wstring text = ipodcomm::platform::FailWithoutMemory(
      std::wstring(), [&] { return ipodcomm::platform::FormatWide(format, arguments); });
  va_end(arguments);
  const std::size_t length = std::min(text.size(), kMaxCharacters - 1);
  std::wmemcpy(destination, text.data(), length);
  destination[length] = 0;
  return static_cast<int>(length);
}
