// SPDX-License-Identifier: MIT
// Debug output: to standard error when IPODCOMM_DEBUG=1, else dropped.
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "platform/common/out_of_memory.h"
#include "platform/common/utf8.h"
#include "platform/common/wide_format.h"
#include "platform/services.h"

void NKDbgPrintfW(const wchar_t* format, ...) {
  const char* const enabled = std::getenv("IPODCOMM_DEBUG");
  if (enabled == nullptr || std::string_view(enabled) != "1") return;
  std::va_list arguments;
  va_start(arguments, format);
  // Without memory the line is lost.
  const std::string text = ipodcomm::platform::FailWithoutMemory(std::string(), [&] {
    return ipodcomm::platform::WideToUtf8(ipodcomm::platform::FormatWide(format, arguments));
  });
  va_end(arguments);
  std::fwrite(text.data(), 1, text.size(), stderr);
}
