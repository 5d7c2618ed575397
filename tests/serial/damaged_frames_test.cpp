// SPDX-License-Identifier: MIT
// Frames behind a damaged one: lost by default, found again under the robust conduct.
#include "serial_test.h"

namespace {

using test::kMillisecond;
using test::SerialTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kName[] = "FF 55 06 00 08 5A 6F 65 00 C4";
constexpr char kAck[] = "FF 55 04 00 02 00 37 C3";

class DamagedFrames : public SerialTest {
 protected:
  void BeRobust() { CIpodSerialPeer::ChoosePace(serial_, IPOD_CONDUCT_ROBUST); }
  // The packets that the read thread makes of these bytes, with enough time for a frame that has
  // stopped in its middle to be given up.
  std::vector<std::string> PacketsOf(const std::string& bytes) {
    OpenForPackets();
    const test::Bytes sent = test::Hex(bytes);
    ipod_.Send(sent);
    world_.Advance(static_cast<std::int64_t>(sent.size()) * 3 * kMillisecond + 800 * kMillisecond);
    return DrainPackets();
  }
};

// The length byte says 55, so that the frame takes in all that follows.
const std::string kDoubledStart = std::string("FF 55 55 04 00 02 00 37 C3 ") + kName;

TEST_F(DamagedFrames, FrameBehindADoubledStartByteIsFoundOnceTheLineIsQuiet) {
  BeRobust();
  EXPECT_THAT(PacketsOf(kDoubledStart), ElementsAre(kName));
}

TEST_F(DamagedFrames, FrameBehindADoubledStartByteIsLostByDefault) {
  EXPECT_THAT(PacketsOf(kDoubledStart), IsEmpty());
}

// The name lacks a byte; the acknowledgement's sync byte takes the place of its checksum.
const std::string kLostByte = std::string("FF 55 06 00 08 5A 6F 00 C4 ") + kAck;

TEST_F(DamagedFrames, FrameBehindALostByteIsFound) {
  BeRobust();
  EXPECT_THAT(PacketsOf(kLostByte), ElementsAre(kAck));
}

TEST_F(DamagedFrames, FrameBehindALostByteIsLostByDefault) {
  EXPECT_THAT(PacketsOf(kLostByte), IsEmpty());
}

// The acknowledgement's start byte is damaged, so that the name's sync byte is taken for noise.
const std::string kNoStart = std::string("FF 45 04 00 02 00 37 C3 ") + kName;

TEST_F(DamagedFrames, FrameBehindALoneSyncByteIsWhole) {
  BeRobust();
  EXPECT_THAT(PacketsOf(kNoStart), ElementsAre(kName));
}

TEST_F(DamagedFrames, FrameBehindALoneSyncByteLacksItsOwnByDefault) {
  EXPECT_THAT(PacketsOf(kNoStart), ElementsAre(std::string(kName).substr(3)));
}

TEST_F(DamagedFrames, FramesInsideFramesThatAreNoneAreFoundInTheirOrder) {
  BeRobust();
  EXPECT_THAT(PacketsOf(std::string("FF 55 30 FF 55 20 ") + kAck + " FF 55 03 " + kName),
              ElementsAre(kAck, kName));
}

// A large frame is none; in it a lone sync byte and a start byte make a frame of FF bytes that is
// none either. The acknowledgement begins where that one has its length.
TEST_F(DamagedFrames, FrameThatBeginsWithTheLengthOfOneThatIsNoneIsFound) {
  BeRobust();
  std::string bytes = std::string("FF 55 00 01 20 FF 00 55 ") + kAck;
  for (int i = 0; i < 278; ++i) bytes += " 00";
  EXPECT_THAT(PacketsOf(bytes), ElementsAre(kAck));
}

TEST_F(DamagedFrames, FrameThatPausesForATenthOfASecondIsWhole) {
  BeRobust();
  OpenForPackets();
  ipod_.Send(test::Hex("FF 55 06 00 08 5A"));
  world_.Advance(100 * kMillisecond);
  ipod_.Send(test::Hex("6F 65 00 C4"));
  world_.Advance(100 * kMillisecond);
  EXPECT_THAT(DrainPackets(), ElementsAre(kName));
}

TEST_F(DamagedFrames, FrameAsLongAsTheyGetThatIsNoneIsLookedThrough) {
  BeRobust();
  std::string bytes = "FF 55 00 00 00";  // it goes on up to the size limit
  for (int i = 0; i < 100; ++i) bytes += std::string(" ") + kAck;
  for (int i = 0; i < 300; ++i) bytes += " 00";
  EXPECT_EQ(PacketsOf(bytes).size(), 100U);
}

}  // namespace
