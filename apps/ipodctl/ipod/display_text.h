// SPDX-License-Identifier: MIT
// A text as the legacy interface writes it for a console's display.
#pragma once

#include <array>
#include <string>

#include "console/text.h"

namespace ipodctl {

/// Room for the longest text of any operation, empty at first.
class DisplayText {
 public:
  static constexpr int kCapacity = 256;

  wchar_t* buffer() { return buffer_.data(); }
  /// The text as it stands, in UTF-8.
  std::string text() const { return Utf8(buffer_.data()); }

 private:
  std::array<wchar_t, kCapacity + 1> buffer_{};
};

}  // namespace ipodctl
