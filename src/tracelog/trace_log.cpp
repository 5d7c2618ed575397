// SPDX-License-Identifier: MIT
// Writes logged software errors to standard error, one line each: "source: message". With
// IPODCOMM_TRACE=off in the environment it writes none, for a host that tells of errors itself.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "ipodcomm/TraceLog.h"

#if defined(_WIN32)

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <cwchar>

#else

#include "platform/common/utf8.h"
#include "platform/common/wide_format.h"

#endif

namespace {

#if defined(_WIN32)

// The system's own wide formatting, not the C++ library's: there `%s` takes wide text.
std::wstring Format(const wchar_t* format, std::va_list arguments) {
  std::va_list measured;
  va_copy(measured, arguments);
  const int length = _vscwprintf(format, measured);
  va_end(measured);
  std::wstring text(length > 0 ? static_cast<std::size_t>(length) : 0, L'\0');
  if (!text.empty()) _vsnwprintf(text.data(), text.size(), format, arguments);
  return text;
}

std::string ToUtf8(const std::wstring& text) {
  const int length = static_cast<int>(text.size());
  const int bytes =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, utf8.data(), bytes, nullptr, nullptr);
  return utf8;
}

#else

std::wstring Format(const wchar_t* format, std::va_list arguments) {
  return ipodcomm::platform::FormatWide(format, arguments);
}

std::string ToUtf8(const std::wstring& text) { return ipodcomm::platform::WideToUtf8(text); }

#endif

bool IsOff() {
  const char* const setting = std::getenv("IPODCOMM_TRACE");
  return setting != nullptr && std::strcmp(setting, "off") == 0;
}

}  // namespace

void CKORVATrace::LogSoftwareError(const wchar_t* source, const wchar_t* format, ...) {
  if (IsOff()) return;
  std::va_list arguments;
  va_start(arguments, format);
  try {
    const std::string line = ToUtf8(std::wstring(source != nullptr ? source : L"") + L": " +
                                    Format(format, arguments) + L"\n");
    std::fwrite(line.data(), 1, line.size(), stderr);  // whole, so that threads' lines do not mix
  } catch (const std::bad_alloc&) {
    std::fputs("a software error could not be written: no memory left\n", stderr);
  }
  va_end(arguments);
}
