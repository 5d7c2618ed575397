// SPDX-License-Identifier: MIT
// The maker's trace library, of which one function is called. A stand-in that writes to standard
// error is linked by default; a host that defines CKORVATrace::LogSoftwareError itself replaces it.
#pragma once

#if defined(_WIN32) && defined(TRACELOG_BUILDING)
#define TRACELOG_API __declspec(dllexport)
#elif defined(_WIN32)
// Not dllimport: it is called through the import library, or found in the host or a static library.
#define TRACELOG_API
#else
#define TRACELOG_API __attribute__((visibility("default")))
#endif

/// Where the library reports failures that matter to the product.
class TRACELOG_API CKORVATrace {
 public:
  /// Reports a failure that matters to the product.
  /// @param source full name of the reporting function, such as L"CIpodSerial::Open"
  /// @param format printf-style text after the Windows rules (`%s` takes wide text), with its
  /// arguments. May be called from any thread, the library's own included.
  static void LogSoftwareError(const wchar_t* source, const wchar_t* format, ...);
};
