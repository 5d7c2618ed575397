// SPDX-License-Identifier: MIT
// Decimal fractions as iPods read them, whatever the host's language.
#include "protocol/decimal.h"

#include <algorithm>
#include <charconv>

namespace ipodcomm {

Decimal::Decimal(double value, int decimals) {
  char digits[kMaxChars];
  const std::to_chars_result end =
      std::to_chars(digits, digits + kMaxChars, value, std::chars_format::fixed, decimals);
  std::copy(digits, end.ptr, text_);  // digits, point and letters are ASCII
}

}  // namespace ipodcomm
