// SPDX-License-Identifier: MIT
#include "support/trace_log.h"

#include <cstdarg>
#include <cwchar>
#include <mutex>

#include "ipodcomm/TraceLog.h"
#include "world/memory_shortage.h"

namespace test {

namespace {

std::mutex mutex;
std::vector<std::string> lines;

std::string Narrow(const wchar_t* text) {
  std::string narrow;
  for (; *text != L'\0'; ++text) narrow += *text < 0x80 ? static_cast<char>(*text) : '?';
  return narrow;
}

}  // namespace

std::vector<std::string> DrainTraceLog() {
  const std::lock_guard<std::mutex> lock(mutex);
  return std::move(lines);
}

}  // namespace test

// The library logs numbers only, which every platform formats alike.
void CKORVATrace::LogSoftwareError(const wchar_t* source, const wchar_t* format, ...) {
  const ipodcomm::virtual_platform::EnoughMemory enough_memory;
  wchar_t message[256] = {};
  std::va_list arguments;
  va_start(arguments, format);
  std::vswprintf(message, 256, format, arguments);
  va_end(arguments);
  const std::lock_guard<std::mutex> lock(test::mutex);
  test::lines.push_back(test::Narrow(source) + ": " + test::Narrow(message));
}
