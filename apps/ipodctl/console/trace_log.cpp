// SPDX-License-Identifier: MIT
// The program's own trace log: what the library logs is shown with --verbose. Without it the
// sentence with which a command fails says the same, and what to do about it.
#include <cstdarg>
#include <cwchar>
#include <string>

#include "console/text.h"
#include "console/verbose_log.h"
#include "ipodcomm/TraceLog.h"

namespace {

// The library's formats follow the Windows rules, where %s takes wide text. Here that is %ls.
std::wstring HostFormat(const wchar_t* format) {
  std::wstring host;
  bool in_conversion = false;
  for (; *format != L'\0'; ++format) {
    if (in_conversion && (*format == L's' || *format == L'c')) host += L'l';
    if (*format == L'%') {
      in_conversion = !in_conversion;
    } else if (std::wcschr(L"0123456789+-. #*", *format) == nullptr) {
      in_conversion = false;
    }
    host += *format;
  }
  return host;
}

}  // namespace

void CKORVATrace::LogSoftwareError(const wchar_t* source, const wchar_t* format, ...) {
  if (!ipodctl::Verbose()) return;
  wchar_t message[512] = {};
  std::va_list arguments;
  va_start(arguments, format);
  std::vswprintf(message, std::size(message) - 1, HostFormat(format).c_str(), arguments);
  va_end(arguments);
  ipodctl::Note(ipodctl::Utf8(source) + ": " + ipodctl::Utf8(message));
}
