// SPDX-License-Identifier: MIT
// Size, header and checksum of the frames that go out, byte by byte.
#include <gtest/gtest.h>

#include <numeric>

#include "protocol/frame.h"
#include "support/bytes.h"
#include "support/packets.h"

namespace {

struct SizeRow {
  const char* name;
  int lingo;
  bool with_transaction_id;
  std::uint32_t without_data;  // bytes of the frame
  std::uint32_t most;          // data bytes that still fit
};

class FrameSize : public ::testing::TestWithParam<SizeRow> {};

TEST_P(FrameSize, GrowsWithTheDataUntilTheLengthByteIsFull) {
  const auto [name, lingo, with_transaction_id, without_data, most] = GetParam();
  const auto narrow = static_cast<std::uint8_t>(lingo);
  for (std::uint32_t data = 0; data <= most; ++data) {
    EXPECT_EQ(ipodcomm::FrameSize(narrow, with_transaction_id, data), without_data + data);
  }
  for (const std::uint32_t data : {most + 1, most + 256, 0xFFFFFFFFU}) {
    EXPECT_EQ(ipodcomm::FrameSize(narrow, with_transaction_id, data), 0U) << data;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, FrameSize,
                         ::testing::Values(SizeRow{"OneByteCommand", 0x00, false, 6, 253},
                                           SizeRow{"OneByteCommandWithId", 0x0C, true, 8, 251},
                                           SizeRow{"TwoByteCommand", 0x04, false, 7, 252},
                                           SizeRow{"TwoByteCommandWithId", 0x04, true, 9, 250}),
                         test::RowName());

TEST(Header, HasOneCommandByte) {
  unsigned char frame[8] = {};
  EXPECT_EQ(ipodcomm::WriteHeader(frame, 6, 0x00, 0x0107), 5U);
  EXPECT_EQ(test::ToHex(frame, 8), "FF 55 02 00 07 00 00 00");
}

TEST(Header, HasTwoCommandBytesInTheExtendedLingo) {
  unsigned char frame[8] = {};
  EXPECT_EQ(ipodcomm::WriteHeader(frame, 259, 0x04, 0x1234), 6U);
  EXPECT_EQ(test::ToHex(frame, 8), "FF 55 FF 04 12 34 00 00");
}

// Every sum that the other bytes can have, so every checksum.
TEST(Checksum, MakesTheSumFromTheLengthByteOnZero) {
  for (int value = 0; value <= 0xFF; ++value) {
    unsigned char frame[] = {0xFF, 0x55, 0x02, 0x00, static_cast<unsigned char>(value), 0xAA};
    ipodcomm::WriteChecksum(frame, sizeof frame);
    EXPECT_EQ(std::accumulate(frame + 2, frame + 6, 0) % 256, 0) << value;
    EXPECT_EQ(frame[5], (0x100 - (0x02 + value)) & 0xFF) << value;
    EXPECT_EQ(frame[4], value);
  }
}

// The sync and start bytes are not summed.
TEST(Checksum, LeavesSyncAndStartOut) {
  unsigned char frame[] = {0x12, 0x34, 0x02, 0x00, 0x13, 0x00};
  ipodcomm::WriteChecksum(frame, sizeof frame);
  EXPECT_EQ(test::ToHex(frame, 6), "12 34 02 00 13 EB");
}

}  // namespace
