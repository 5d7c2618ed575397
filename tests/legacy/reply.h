// SPDX-License-Identifier: MIT
// Replies with a one-byte command, as the legacy interface reads them from the port.
#pragma once

#include <array>

#include "support/legacy_test.h"
#include "support/packets.h"

namespace test {

inline constexpr wchar_t kUntouched = 0x7777;
inline constexpr const char* kName = "FF 55 04 00 08 41 42 71";  // "AB"

class LegacyReply : public LegacyTest {
 protected:
  LegacyReply() { text_.fill(kUntouched); }
  int Extract(unsigned char command, unsigned char capacity = 20, unsigned char offset = 0) {
    return legacy_.extractdatafrompacket(command, text_.data(), capacity, offset, 0);
  }
  std::string Text(std::size_t count) { return Units(text_.data(), count); }

  std::array<wchar_t, 260> text_ = {};
};

}  // namespace test
