// SPDX-License-Identifier: MIT
// Taking received frames apart: both header forms, one-byte and two-byte commands, and frames that
// end before their header says so. Literal frames in, literal fields out.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "protocol/frame.h"
#include "protocol/transaction_ids.h"
#include "support/bytes.h"
#include "support/packets.h"
#include "support/properties.h"

namespace {

using ipodcomm::FrameBytes;
using ipodcomm::ReceivedFrame;
using test::Bytes;

struct Row {
  const char* name;
  const char* frame;
  int lingo;
  int command;
  const char* data;               // as the decoders see it
  const char* notification_data;  // as the notification thread sees it
};

class FrameLayout : public ::testing::TestWithParam<Row> {};

std::string DataOf(const ReceivedFrame& frame) {
  return test::ToHex(frame.data, frame.data_length);
}

TEST_P(FrameLayout, ReadsForTheDecoders) {
  const Bytes bytes = test::Hex(GetParam().frame);
  const ReceivedFrame frame =
      ipodcomm::ParseFrame(FrameBytes(bytes.data(), static_cast<std::uint32_t>(bytes.size())));
  EXPECT_EQ(frame.lingo, GetParam().lingo);
  EXPECT_EQ(frame.command, GetParam().command);
  EXPECT_EQ(DataOf(frame), GetParam().data);
  EXPECT_EQ(frame.data, bytes.data() + frame.data_position);
}

TEST_P(FrameLayout, ReadsForTheNotificationThread) {
  const Bytes bytes = test::Hex(GetParam().frame);
  const ReceivedFrame frame = ipodcomm::ParseNotification(
      FrameBytes(bytes.data(), static_cast<std::uint32_t>(bytes.size())));
  EXPECT_EQ(frame.lingo, GetParam().lingo);
  EXPECT_EQ(frame.command, GetParam().command);
  EXPECT_EQ(DataOf(frame), GetParam().notification_data);
}

INSTANTIATE_TEST_SUITE_P(
    Of, FrameLayout,
    ::testing::Values(
        Row{"ShortWithoutData", "FF 55 02 00 13 EB", 0x00, 0x13, "", ""},
        Row{"ShortWithData", "FF 55 04 00 02 00 13 E7", 0x00, 0x02, "00 13", "00 13"},
        Row{"ShortExtended", "FF 55 06 04 00 01 00 00 29 CC", 0x04, 0x0001, "00 00 29", "00 00 29"},
        Row{"ShortExtendedHighCommandByte", "FF 55 04 04 12 34 56 5C", 0x04, 0x1234, "56", "56"},
        Row{"ShortStorage", "FF 55 03 0C 04 07 E6", 0x0C, 0x04, "07", "07"},
        // The notification thread starts one byte further in a large frame of a one-byte lingo.
        Row{"LargeWithoutData", "FF 55 00 00 02 00 13 EB", 0x00, 0x13, "", ""},
        Row{"LargeWithData", "FF 55 00 00 04 00 27 A1 A2 92", 0x00, 0x27, "A1 A2", "A2"},
        Row{"LargeExtended", "FF 55 00 00 05 04 00 27 01 02 CD", 0x04, 0x0027, "01 02", "01 02"},
        Row{"ShortLengthOfOneHasOnlyALingo", "FF 55 01 00 FF", 0x00, 0xFF, "", ""},
        Row{"ShortLengthOfTwoInTheExtendedLingo", "FF 55 02 04 00 FA", 0x04, 0x00FA, "", ""},
        Row{"DeclaredLongerThanReceived", "FF 55 09 00 08 41 42 6C", 0x00, 0x08, "41 42", "41 42"},
        Row{"DeclaredShorterThanReceived", "FF 55 03 00 08 41 42 72", 0x00, 0x08, "41", "41"},
        Row{"DeclaredShorterThanItsHeader", "FF 55 01 00 08 41 42 74", 0x00, 0x08, "", ""},
        Row{"Empty", "", 0x00, 0x00, "", ""}, Row{"LoneSyncByte", "FF", 0x00, 0x00, "", ""}),
    test::RowName());

// A large frame of 300 data bytes: the 16-bit length counts, not its low byte alone.
TEST(LargeFrame, HasA16BitLength) {
  Bytes bytes = test::Hex("FF 55 00 01 2E 00 0E");
  for (int i = 0; i < 300; ++i) bytes.push_back(static_cast<std::uint8_t>(i));
  bytes.push_back(0x00);
  const ReceivedFrame frame =
      ipodcomm::ParseFrame(FrameBytes(bytes.data(), static_cast<std::uint32_t>(bytes.size())));
  EXPECT_EQ(frame.data_position, 7U);
  ASSERT_EQ(frame.data_length, 300U);
  EXPECT_EQ(frame.data[299], 0x2B);
}

TEST(FrameBytesPastTheEnd, ReadAsZero) {
  const Bytes bytes = test::Hex("12 34 56");
  const FrameBytes frame(bytes.data(), 3);
  EXPECT_EQ(frame[2], 0x56);
  EXPECT_EQ(frame[3], 0x00);
  EXPECT_EQ(frame[0xFFFFFFFF], 0x00);
  EXPECT_EQ(frame.Number16(0), 0x1234);
  EXPECT_EQ(frame.Number16(2), 0x5600);
  EXPECT_EQ(frame.Number32(0), 0x12345600U);
  EXPECT_EQ(frame.Number32(3), 0U);
}

TEST(SkippingATransactionIdentifier, TakesTwoBytesOrWhatThereIs) {
  const Bytes bytes = test::Hex("FF 55 05 00 08 12 34 41 6C");
  ReceivedFrame frame = ipodcomm::ParseFrame(FrameBytes(bytes.data(), 9));
  ipodcomm::SkipTransactionId(&frame);
  EXPECT_EQ(frame.data_position, 7U);
  EXPECT_EQ(DataOf(frame), "41");
  ipodcomm::SkipTransactionId(&frame);
  EXPECT_EQ(frame.data_position, 8U);
  EXPECT_EQ(frame.data_length, 0U);
  ipodcomm::SkipTransactionId(&frame);
  EXPECT_EQ(frame.data_position, 8U);
}

// Checks that the data lie between the header and the checksum of a frame of `length` bytes.
void ExpectDataInside(const ReceivedFrame& frame, const unsigned char* bytes,
                      std::uint32_t length) {
  ASSERT_LE(frame.data_position, length);
  ASSERT_LE(frame.data_length, length - frame.data_position);
  ASSERT_EQ(frame.data, bytes + frame.data_position);
}

// Every prefix of a short and of a large frame stays inside what was received; each prefix lies in
// a block of its own size, so that reading past it would be noticed.
TEST(EveryPrefixOfAFrame, IsReadInsideItsBytes) {
  for (const char* text : {"FF 55 06 04 00 01 00 00 29 CC", "FF 55 00 00 06 00 27 A1 A2 A3 A4 49",
                           "FF 55 00 00 07 04 00 27 01 02 03 04 C4"}) {
    const Bytes whole = test::Hex(text);
    for (std::size_t length = 0; length <= whole.size(); ++length) {
      const auto prefix = std::make_unique<unsigned char[]>(length);
      std::copy_n(whole.begin(), length, prefix.get());
      const FrameBytes bytes(prefix.get(), static_cast<std::uint32_t>(length));
      ExpectDataInside(ipodcomm::ParseFrame(bytes), prefix.get(), bytes.length());
      ExpectDataInside(ipodcomm::ParseNotification(bytes), prefix.get(), bytes.length());
    }
  }
}

#if IPODCOMM_HAS_RAPIDCHECK

RC_GTEST_PROP(AnyBytes, AreReadInsideThemselves, (const Bytes& received)) {
  const auto length = static_cast<std::uint32_t>(std::min<std::size_t>(received.size(), 1024));
  const FrameBytes bytes(received.data(), length);
  for (const ReceivedFrame& frame :
       {ipodcomm::ParseFrame(bytes), ipodcomm::ParseNotification(bytes)}) {
    RC_ASSERT(frame.data_position <= length);
    RC_ASSERT(frame.data_length <= length - frame.data_position);
  }
}

#else

TEST(AnyBytes, AreReadInsideThemselves) { GTEST_SKIP() << test::kNoRapidcheck; }

#endif

}  // namespace
