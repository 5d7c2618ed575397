// SPDX-License-Identifier: MIT
// Decimal fractions as iPods read them, whatever the host's language.
#pragma once

#include <cstddef>

namespace ipodcomm {

/// A number with a fixed count of decimals: `80.5`. Always a point, never a grouping of digits: the
/// platforms' formatting follows the host's locale on Windows. Rounded to the nearest by the
/// number's exact value; of two that are equally near the one with the even last digit is written
/// (`0.125` with two decimals is `0.12`, `0.375` is `0.38`). What is no number is `nan`, `inf` or
/// `-inf`.
class Decimal {
 public:
  /// @param decimals at most 6
  Decimal(double value, int decimals);

  const wchar_t* text() const { return text_; }

 private:
  // A sign, 309 digits before the point, the point and the decimals.
  static constexpr std::size_t kMaxChars = 1 + 309 + 1 + 6;

  wchar_t text_[kMaxChars + 1] = {};
};

}  // namespace ipodcomm
