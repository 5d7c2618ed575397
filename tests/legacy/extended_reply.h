// SPDX-License-Identifier: MIT
// Replies with a two-byte command, as the legacy interface reads them from the port.
#pragma once

#include <array>

#include "support/legacy_test.h"
#include "support/packets.h"

namespace test {

inline constexpr wchar_t kUntouched = 0x7777;
inline constexpr const char* kStatus = "FF 55 07 04 00 1D 41 42 43 44 CE";
inline constexpr const char* kAcceptingAck = "FF 55 06 04 00 01 00 00 1C D9";
inline constexpr const char* kRefusingAck = "FF 55 06 04 00 01 04 00 1C D5";
inline constexpr const char* kReadError = "Error reading port, purging rx...\r\n";

class LegacyExtendedReply : public LegacyTest {
 protected:
  LegacyExtendedReply() { text_.fill(kUntouched); }
  int Extract(unsigned short command, unsigned char capacity = 20, unsigned char offset = 0) {
    return legacy_.ExtractDataFromPacketExtended(command, text_.data(), capacity, offset, 0);
  }
  std::string Text(std::size_t count) { return Units(text_.data(), count); }
  void ExpectReadErrorAndPurge() {
    EXPECT_THAT(DrainDebugOutput(), ::testing::ElementsAre(kReadError));
    EXPECT_THAT(world_.DrainCalls().To({"PurgeComm"}).text(),
                ::testing::ElementsAre("PurgeComm(port1, 8)"));
  }

  std::array<wchar_t, 260> text_ = {};
};

}  // namespace test
