// SPDX-License-Identifier: MIT
// Whether a frame carries a transaction identifier, as far as the frame itself tells.
#include <gtest/gtest.h>

#include "wire/decode.h"
#include "wire_test_support.h"

namespace {

using ipodwire::Identifier;
using ipodwire::Sender;
using wire_test::Ascii;
using wire_test::Bytes;
using wire_test::operator+;

std::optional<Identifier> Proven(const Bytes& content, Sender sender) {
  ipodwire::Frame frame;
  EXPECT_TRUE(ipodwire::ParseFrame(wire_test::Small(content), &frame));
  return ipodwire::ProvenIdentifier(frame, sender);
}

TEST(AnIdentifier, IsProvenWhereTheDataHaveASize) {
  EXPECT_EQ(Proven({0x04, 0x00, 0x1C}, Sender::kAccessory), Identifier::kAbsent);
  EXPECT_EQ(Proven({0x04, 0x00, 0x1C, 0x00, 0x05}, Sender::kAccessory), Identifier::kPresent);
  EXPECT_EQ(Proven({0x00, 0x12, 0x01, 0xFA}, Sender::kIpod), Identifier::kAbsent);
  EXPECT_EQ(Proven({0x00, 0x12, 0x00, 0x01, 0x01, 0xFA}, Sender::kIpod), Identifier::kPresent);
}

TEST(AnIdentifier, IsProvenByAnAck) {
  EXPECT_EQ(Proven({0x04, 0x00, 0x01, 0x00, 0x00, 0x29}, Sender::kIpod), Identifier::kAbsent);
  EXPECT_EQ(Proven({0x04, 0x00, 0x01, 0x00, 0x07, 0x00, 0x00, 0x29}, Sender::kIpod),
            Identifier::kPresent);
  EXPECT_EQ(Proven({0x00, 0x02, 0x00, 0x07, 0x00, 0x29}, Sender::kIpod), Identifier::kPresent);
}

TEST(AnIdentifier, IsProvenByATextThatWouldEndBeforeItBegins) {
  EXPECT_EQ(Proven(Bytes{0x00, 0x08, 0x00, 0x05} + Ascii("Anna") + Bytes{0x00}, Sender::kIpod),
            Identifier::kPresent);
}

TEST(AnIdentifier, IsNotProvenByATextThatCouldBeginWithIt) {
  EXPECT_EQ(Proven(Bytes{0x00, 0x08} + Ascii("Anna") + Bytes{0x00}, Sender::kIpod), std::nullopt);
}

TEST(AnIdentifier, IsNotProvenByCommandsThatNeverCarryOne) {
  EXPECT_EQ(Proven({0x00, 0x03}, Sender::kAccessory), std::nullopt);
  EXPECT_EQ(Proven({0x00, 0x28, 0x09, 0x00, 0xE0}, Sender::kAccessory), std::nullopt);
  EXPECT_EQ(Proven({0x00, 0x02, 0x00, 0x38}, Sender::kIpod), std::nullopt);
}

TEST(AnIdentifier, IsNotProvenByUnknownOrDamagedCommands) {
  EXPECT_EQ(Proven({0x00, 0x7E, 0x00, 0x01}, Sender::kIpod), std::nullopt);
  EXPECT_EQ(Proven({0x00, 0x12, 0x01}, Sender::kIpod), std::nullopt);
}

}  // namespace
