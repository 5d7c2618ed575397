// SPDX-License-Identifier: MIT
#include "support/legacy_test.h"

#include <sstream>

namespace test {

LegacyTest::LegacyTest() {
  EXPECT_EQ(legacy_.openport(), 1);
  DrainDebugOutput();
}

LegacyTest::~LegacyTest() { legacy_.closeport(); }

std::string LegacyTest::DrainSentBytes() {
  // What was written last may still be on the line.
  world_.Advance(50 * kMillisecond);
  const std::string sent = ToHex(ipod_.received());
  ipod_.ClearReceived();
  return sent;
}

std::string LegacyTest::Payload(std::size_t count) {
  return ToHex(ipodPeer::Payload(legacy_), count);
}

void LegacyTest::NumberPayload() {
  for (int i = 0; i < 256; ++i) ipodPeer::Payload(legacy_)[i] = static_cast<std::uint8_t>(i);
}

std::string Units(const wchar_t* text, std::size_t count) {
  std::ostringstream units;
  units << std::hex << std::uppercase;
  for (std::size_t i = 0; i < count; ++i) {
    units << (i == 0 ? "" : " ") << static_cast<unsigned long>(text[i]);
  }
  return units.str();
}

}  // namespace test
