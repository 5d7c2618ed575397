// SPDX-License-Identifier: MIT
// printf for wide text after the Windows rules, independent of the C library's locale.
#pragma once

#include <cstdarg>
#include <string>

namespace ipodcomm::platform {

/// Formats like Windows' wide printf:
///
///   %s %ls %ws %c %lc   wide text, a wide character (a null text is "(null)")
///   %S %hs %C %hc       narrow text, taken as UTF-8
///   %d %i %u %x %X %o   int; with h hh l ll j z t, I32 I64 I the integer of that size
///   %f %F %e %E %g %G   double, with a point whatever the locale
///   %p                  an address in 16 upper-case digits
///   %%                  a percent sign
///
/// with the flags `-`, `+`, space, `#`, `0`, a width and a precision, either of them `*`. A
/// conversion that is not in the list stands for its own letter. `arguments` stay as they are.
std::wstring FormatWide(const wchar_t* format, std::va_list arguments);

}  // namespace ipodcomm::platform
