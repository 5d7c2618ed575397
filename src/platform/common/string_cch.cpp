// SPDX-License-Identifier: MIT
// Text copied and formatted into a buffer of known capacity.
#include <cwchar>
#include <string_view>

#include "platform/common/out_of_memory.h"
#include "platform/common/wide_format.h"
#include "platform/services.h"

namespace {

constexpr HRESULT kCut = 0x8007007A;
constexpr HRESULT kInvalidParameter = 0x80070057;
constexpr HRESULT kOutOfMemory = 0x8007000E;
constexpr std::size_t kMaxCapacity = 0x7FFFFFFF;

HRESULT CopyBounded(wchar_t* destination, std::size_t capacity, std::wstring_view text) {
  const bool cut = text.size() >= capacity;
  const std::size_t length = cut ? capacity - 1 : text.size();
  std::wmemcpy(destination, text.data(), length);
  destination[length] = 0;
  return cut ? kCut : 0;
}

}  // namespace

HRESULT StringCchCopyW(wchar_t* destination, std::size_t capacity, const wchar_t* source) {
  if (capacity == 0 || capacity > kMaxCapacity) return kInvalidParameter;
  return CopyBounded(destination, capacity, {source, wcsnlen(source, capacity)});
}

HRESULT StringCchPrintfW(wchar_t* destination, std::size_t capacity, const wchar_t* format, ...) {
  if (capacity == 0 || capacity > kMaxCapacity) return kInvalidParameter;
  std::va_list arguments;
  va_start(arguments, format);
  const HRESULT result = ipodcomm::platform::FailWithoutMemory(kOutOfMemory, [&] {
    return CopyBounded(destination, capacity, ipodcomm::platform::FormatWide(format, arguments));
  });
  va_end(arguments);
  if (result == kOutOfMemory) *destination = 0;
  return result;
}
