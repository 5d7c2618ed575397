// SPDX-License-Identifier: MIT
// The image commands of the legacy interface, whose frames carry what the payload area held.
#include "support/legacy_test.h"

namespace {

using test::kMillisecond;
using test::LegacyTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LegacyDisplayCommands : public LegacyTest {
 protected:
  LegacyDisplayCommands() { NumberPayload(); }
  int First(unsigned long count) {
    return legacy_.command_setdisplayimagefirst(1, 128, 64, count, image_);
  }
  int Rest(unsigned short index, unsigned long count) {
    return legacy_.command_setdisplayimagerest(index, count, image_);
  }

  unsigned char image_[256] = {0x99, 0x99, 0x99, 0x99};
};

// 11 bytes of header and 3 of image; the last of them and the checksum are not transmitted.
TEST_F(LegacyDisplayCommands, FirstFrameCarriesTheOldPayloadAtTheImagesLength) {
  world_.Record({"WriteFile", "Sleep"});
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(First(3), 1); }), 5 * kMillisecond);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("WriteFile(port1, FF)", "Sleep(5)",
                          "WriteFile(port1, 55 00 00 11 04 00 32 00 01 02 03 04 05 06 07 08 09 0A "
                          "0B 0C)"));
}

TEST_F(LegacyDisplayCommands, FirstFrameLeavesThePayloadAsItIs) {
  EXPECT_EQ(First(3), 1);
  EXPECT_EQ(Payload(16), "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F");
}

TEST_F(LegacyDisplayCommands, RestCarriesItsIndexAndTheOldPayload) {
  EXPECT_EQ(Rest(0xABCD, 4), 1);
  EXPECT_EQ(DrainSentBytes(), "FF 55 00 00 09 04 00 32 AB CD 02 03 04");
  EXPECT_EQ(Payload(8), "AB CD 02 03 04 05 06 07");
}

TEST_F(LegacyDisplayCommands, ImagesOfNoBytesAreTheirHeaders) {
  EXPECT_EQ(First(0), 1);
  EXPECT_EQ(DrainSentBytes(), "FF 55 00 00 0E 04 00 32 00 01 02 03 04 05 06 07 08 09");
  EXPECT_EQ(Rest(1, 0), 1);
  EXPECT_EQ(DrainSentBytes(), "FF 55 00 00 05 04 00 32 00");
}

TEST_F(LegacyDisplayCommands, CarryWhatTheCommandBeforeSent) {
  EXPECT_EQ(legacy_.command_setipodpreference(8, 2), 1);
  DrainSentBytes();
  EXPECT_EQ(First(1), 1);
  EXPECT_EQ(DrainSentBytes(), "FF 55 00 00 0F 04 00 32 08 02 01 03 04 05 06 07 08 09 0A");
}

TEST_F(LegacyDisplayCommands, DoNotNeedTheImage) {
  EXPECT_EQ(legacy_.command_setdisplayimagefirst(1, 128, 64, 3, nullptr), 1);
  EXPECT_EQ(legacy_.command_setdisplayimagerest(1, 3, nullptr), 1);
}

TEST_F(LegacyDisplayCommands, LargestImagesFillTheFrame) {
  EXPECT_EQ(First(236), 1);
  EXPECT_EQ(DrainSentBytes().substr(0, 24), "FF 55 00 00 FA 04 00 32 ");
  EXPECT_EQ(Rest(1, 245), 1);
  EXPECT_EQ(DrainSentBytes().size(), 254U * 3 - 1);
}

TEST_F(LegacyDisplayCommands, ImageThatDoesNotFitIsRefusedAndChangesNothing) {
  ipodPeer::Lingo(legacy_) = 0x63;
  world_.Record({"WriteFile"});
  // The last ones would wrap a length of 16 or 32 bits.
  for (const unsigned long count : {237UL, 246UL, 65525UL, 65534UL, 65536UL, 0xFFFFFFFFUL}) {
    EXPECT_EQ(First(count), 0) << count;
  }
  for (const unsigned long count : {246UL, 65525UL, 65534UL, 65536UL, 0xFFFFFFFFUL}) {
    EXPECT_EQ(Rest(0xABCD, count), 0) << count;
  }
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  EXPECT_EQ(ipodPeer::Lingo(legacy_), 0x63);
  EXPECT_EQ(Payload(4), "00 01 02 03");
}

TEST_F(LegacyDisplayCommands, FailWhenTheFrameIsNotWritten) {
  world_.FailOnce("WriteFile", 2, 31);
  EXPECT_EQ(First(3), 0);
  world_.FailOnce("WriteFile", 1, 31);
  EXPECT_EQ(Rest(1, 3), 0);
}

}  // namespace
