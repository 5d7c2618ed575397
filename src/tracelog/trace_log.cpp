// SPDX-License-Identifier: MIT
// Writes logged software errors to standard error, one line each: "source: message".
#include <cstdarg>
#include <cstdio>
#include <string>

#include "ipodcomm/TraceLog.h"

#if defined(_WIN32)

#include <cwchar>

namespace {

// The C runtime's own wide printf is the rule here.
void WriteLine(const wchar_t* source, const wchar_t* format, std::va_list arguments) {
  wchar_t message[1024];
  const int length = _vsnwprintf(message, 1023, format, arguments);
  message[length < 0 || length > 1023 ? 1023 : length] = 0;
  std::fwprintf(stderr, L"%ls: %ls\n", source, message);
}

}  // namespace

#else

#include "platform/common/utf8.h"
#include "platform/common/wide_format.h"

namespace {

void WriteLine(const wchar_t* source, const wchar_t* format, std::va_list arguments) {
  using ipodcomm::platform::FormatWide;
  using ipodcomm::platform::WideToUtf8;
  const std::string line =
      WideToUtf8(source) + ": " + WideToUtf8(FormatWide(format, arguments)) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);  // whole, so that threads' lines do not mix
}

}  // namespace

#endif

void CKORVATrace::LogSoftwareError(const wchar_t* source, const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  WriteLine(source != nullptr ? source : L"", format, arguments);
  va_end(arguments);
}
