// SPDX-License-Identifier: MIT
// Reading a reply with a two-byte command from the port as it came.
#include "extended_reply.h"

namespace {

using test::kAcceptingAck;
using test::kStatus;
using test::LegacyExtendedReply;
using ::testing::Each;
using ::testing::IsEmpty;

class LegacyRawReply : public LegacyExtendedReply {
 protected:
  LegacyRawReply() { bytes_.fill(0xA5); }
  int ExtractRaw(unsigned long count) {
    return legacy_.ExtractDataFromPacketExtendedRaw(0x1D, bytes_.data(), count);
  }
  std::string Bytes(std::size_t count) { return test::ToHex(bytes_.data(), count); }

  std::array<unsigned char, 2048> bytes_ = {};
};

TEST_F(LegacyRawReply, IsCopiedFromItsPayloadOn) {
  Send("FF 55 0C 04 00 1D 01 02 03 04 05 06 07 08 09 A6");
  EXPECT_EQ(ExtractRaw(9), 1);
  EXPECT_EQ(Bytes(10), "01 02 03 04 05 06 07 08 09 A5");
}

TEST_F(LegacyRawReply, IsCopiedAsFarAsAskedFor) {
  Send("FF 55 0C 04 00 1D 01 02 03 04 05 06 07 08 09 A6");
  EXPECT_EQ(ExtractRaw(2), 1);
  EXPECT_EQ(Bytes(3), "01 02 A5");
  Send(kStatus);
  EXPECT_EQ(ExtractRaw(0), 1);
  EXPECT_EQ(Bytes(3), "01 02 A5");
}

TEST_F(LegacyRawReply, IsFollowedByItsChecksumAndZeros) {
  Send(kStatus);
  EXPECT_EQ(ExtractRaw(8), 1);
  EXPECT_EQ(Bytes(9), "41 42 43 44 CE 00 00 00 A5");
}

TEST_F(LegacyRawReply, AskedForBeyondTheFrameBufferIsZeros) {
  Send(kStatus);
  EXPECT_EQ(ExtractRaw(2000), 1);
  EXPECT_EQ(Bytes(5), "41 42 43 44 CE");
  EXPECT_EQ(bytes_[249], 0);
  EXPECT_EQ(bytes_[250], 0);
  EXPECT_EQ(bytes_[1999], 0);
  EXPECT_EQ(bytes_[2000], 0xA5);
}

TEST_F(LegacyRawReply, HasAtMost256BytesWithAllAroundIt) {
  test::Bytes longest = test::Hex("FF 55 FC 04 00 1D");
  longest.resize(255);
  longest.push_back(0xE3);
  Send(test::ToHex(longest.data(), longest.size()));
  EXPECT_EQ(ExtractRaw(250), 1);
  EXPECT_EQ(bytes_[248], 0x00);
  EXPECT_EQ(bytes_[249], 0xE3);
  test::Bytes longer = test::Hex("FF 55 FD 04 00 1D");
  longer.resize(256);
  longer.push_back(0xE2);
  Send(test::ToHex(longer.data(), longer.size()));
  EXPECT_EQ(ExtractRaw(250), 0);
}

TEST_F(LegacyRawReply, IsTakenWhateverItsLingoAndCommand) {
  Send("FF 55 05 09 00 1D 41 42 52");
  EXPECT_EQ(ExtractRaw(2), 1);
  EXPECT_EQ(Bytes(2), "41 42");
  Send(kAcceptingAck);
  EXPECT_EQ(legacy_.ExtractDataFromPacketExtendedRaw(0xFFFF, bytes_.data(), 3), 1);
  EXPECT_EQ(Bytes(3), "00 00 1C");
}

TEST_F(LegacyRawReply, WithoutABufferIsTakenAndCopiedNowhere) {
  Send(kStatus);
  EXPECT_EQ(legacy_.ExtractDataFromPacketExtendedRaw(0x1D, nullptr, 9), 1);
}

TEST_F(LegacyRawReply, WithABadChecksumFailsSilentlyAndCopiesNothing) {
  world_.Record({"PurgeComm"});
  Send("FF 55 07 04 00 1D 41 42 43 44 00");
  EXPECT_EQ(ExtractRaw(4), 0);
  EXPECT_THAT(bytes_, Each(0xA5));
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

TEST_F(LegacyRawReply, OfFewerThanSevenBytesIsToldAndPurged) {
  world_.Record({"PurgeComm"});
  Send("FF 55 02 00 02 FC");
  EXPECT_EQ(ExtractRaw(4), 0);
  ExpectReadErrorAndPurge();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(ExtractRaw(4), 0); }), test::kEmptyReadsUs);
  ExpectReadErrorAndPurge();
  EXPECT_THAT(bytes_, Each(0xA5));
}

}  // namespace
