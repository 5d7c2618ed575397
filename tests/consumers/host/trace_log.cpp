// SPDX-License-Identifier: MIT
// The host's own log, which takes the place of the library's stand-in.
#include <ipodcomm/TraceLog.h>

#include <cstdio>

void CKORVATrace::LogSoftwareError(const wchar_t* source, const wchar_t* /*format*/, ...) {
  std::fprintf(stderr, "host log: %ls\n", source);
}
