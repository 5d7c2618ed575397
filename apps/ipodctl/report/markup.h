// SPDX-License-Identifier: MIT
// Text and numbers as a page shows them.
#pragma once

#include <string>

namespace ipodctl {

/// `text` safe between and inside the tags of a page, whatever bytes it holds: markup is escaped,
/// and what is no UTF-8 or a control character is replaced by U+FFFD.
std::string Escaped(const std::string& text);
/// "12.50". A number too long for a page is shortened to "1.2e+10".
std::string Fixed(double number, int decimals);
/// The same without trailing zeros: "12.5".
std::string Short(double number, int decimals);
/// "1:02:03", to the nearest second. @param seconds not negative
std::string ClockText(double seconds);

}  // namespace ipodctl
