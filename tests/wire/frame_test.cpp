// SPDX-License-Identifier: MIT
// The outside of frames, from whole frames as they lie on the line.
#include "wire/frame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ipodwire::Frame;
using ipodwire::ParseFrame;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(AFrame, InTheSmallFormHasItsLengthInOneByte) {
  Frame frame;
  ASSERT_TRUE(ParseFrame({0xFF, 0x55, 0x03, 0x00, 0x29, 0x00, 0xD4}, &frame));
  EXPECT_FALSE(frame.large);
  EXPECT_EQ(frame.lingo, 0x00);
  EXPECT_EQ(frame.command, 0x29);
  EXPECT_THAT(frame.data, ElementsAre(0x00));
  EXPECT_TRUE(frame.checksum_holds);
}

TEST(AFrame, OfTheExtendedInterfaceHasACommandOfTwoBytes) {
  Frame frame;
  ASSERT_TRUE(ParseFrame({0xFF, 0x55, 0x03, 0x04, 0x00, 0x16, 0xE3}, &frame));
  EXPECT_EQ(frame.lingo, 0x04);
  EXPECT_EQ(frame.command, 0x0016);
  EXPECT_THAT(frame.data, IsEmpty());
  EXPECT_TRUE(frame.checksum_holds);
}

TEST(AFrame, InTheLargeFormHasItsLengthInTwoBytesBehindAZero) {
  Frame frame;
  ASSERT_TRUE(
      ParseFrame({0xFF, 0x55, 0x00, 0x00, 0x05, 0x04, 0x00, 0x2D, 0x12, 0x34, 0x84}, &frame));
  EXPECT_TRUE(frame.large);
  EXPECT_EQ(frame.lingo, 0x04);
  EXPECT_EQ(frame.command, 0x002D);
  EXPECT_THAT(frame.data, ElementsAre(0x12, 0x34));
  EXPECT_TRUE(frame.checksum_holds);
}

TEST(AFrame, InTheLargeFormOfAnotherLingoHasACommandOfOneByte) {
  Frame frame;
  ASSERT_TRUE(ParseFrame({0xFF, 0x55, 0x00, 0x00, 0x03, 0x00, 0x3C, 0x05, 0xBC}, &frame));
  EXPECT_EQ(frame.command, 0x3C);
  EXPECT_THAT(frame.data, ElementsAre(0x05));
  EXPECT_TRUE(frame.checksum_holds);
}

TEST(AFrame, IsReadWhateverItsChecksumSays) {
  Frame frame;
  ASSERT_TRUE(ParseFrame({0xFF, 0x55, 0x03, 0x00, 0x29, 0x00, 0xD5}, &frame));
  EXPECT_EQ(frame.command, 0x29);
  EXPECT_FALSE(frame.checksum_holds);
}

TEST(AFrame, IsNoneWhenAnyOfItsLastBytesIsMissing) {
  const std::vector<std::uint8_t> whole = {0xFF, 0x55, 0x04, 0x04, 0x00, 0x29, 0x01, 0xCE};
  Frame frame;
  ASSERT_TRUE(ParseFrame(whole, &frame));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_FALSE(
        ParseFrame({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}, &frame))
        << size << " bytes";
  }
}

TEST(AFrame, IsNoneWithMoreBytesThanItsLengthSays) {
  Frame frame;
  EXPECT_FALSE(ParseFrame({0xFF, 0x55, 0x03, 0x00, 0x29, 0x00, 0xD4, 0x00}, &frame));
}

TEST(AFrame, IsNoneWithoutACommand) {
  Frame frame;
  EXPECT_FALSE(ParseFrame({0xFF, 0x55, 0x01, 0x00, 0xFF}, &frame));
  EXPECT_FALSE(ParseFrame({0xFF, 0x55, 0x02, 0x04, 0x00, 0xFA}, &frame));
  EXPECT_FALSE(ParseFrame({0xFF, 0x55, 0x00, 0x00, 0x00, 0x00}, &frame));
}

TEST(AFrame, IsNoneWithoutItsSyncAndStartBytes) {
  Frame frame;
  EXPECT_FALSE(ParseFrame({0xFE, 0x55, 0x02, 0x00, 0x38, 0xC6}, &frame));
  EXPECT_FALSE(ParseFrame({0xFF, 0x54, 0x02, 0x00, 0x38, 0xC6}, &frame));
  EXPECT_FALSE(ParseFrame({}, &frame));
  EXPECT_FALSE(ParseFrame({0xFF}, &frame));
}

}  // namespace
