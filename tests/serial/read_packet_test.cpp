// SPDX-License-Identifier: MIT
// Reading the next packet into a flat buffer: results, waiting, the packet that a buffer too small
// costs, and the type that belongs to the frame assembled last.
#include "serial_test.h"

namespace {

using test::kSecond;
using test::SerialTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ReadPacket : public SerialTest {
 protected:
  ReadPacket() { OpenForPackets(); }
  // Reads into `size` bytes; the result is in result_.
  std::string Read(unsigned long size) {
    unsigned char buffer[1100] = {};
    length_ = 0;
    type_ = static_cast<tagIPOD_PACKET_TYPE>(-1);
    result_ = serial_.ReadPacket(buffer, size, &length_, &type_);
    return test::ToHex(buffer, length_);
  }

  long result_ = 0;
  unsigned long length_ = 0;
  tagIPOD_PACKET_TYPE type_ = IPOD_PACKET_TYPE_LARGE;
};

TEST_F(ReadPacket, TakesTheFrontPacket) {
  Arrive("FF 55 02 00 13 EB FF 55 02 00 14 EA");
  EXPECT_EQ(Read(1024), "FF 55 02 00 13 EB");
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(length_, 6U);
  EXPECT_EQ(Read(1024), "FF 55 02 00 14 EA");
  EXPECT_EQ(result_, 0);
}

TEST_F(ReadPacket, DoesNotWaitWhenThereIsOneAndTakesItsSignal) {
  Arrive("FF 55 02 00 13 EB");
  world_.Record();
  Read(1024);
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section1)",
                          "EventModify(event1 \"IPOD_PORT_EVENT_NAME\", EVENT_RESET)",
                          "LeaveCriticalSection(section1)", "EnterCriticalSection(section1)",
                          "LeaveCriticalSection(section1)"));
}

TEST_F(ReadPacket, WaitsForOne) {
  ipod_.SendAt(world_.now_us() + kSecond, test::Hex("FF 55 02 00 13 EB"));
  world_.Record();
  EXPECT_EQ(Read(1024), "FF 55 02 00 13 EB");
  EXPECT_EQ(result_, 0);
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section1)", "LeaveCriticalSection(section1)",
                          "WaitForSingleObject(event1 \"IPOD_PORT_EVENT_NAME\", 2000)",
                          "EnterCriticalSection(section1)", "LeaveCriticalSection(section1)"));
}

TEST_F(ReadPacket, FailsAfterTwoSecondsOfSilence) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(1024), ""); }), 2 * kSecond);
  EXPECT_EQ(result_, 0x80004005);
}

TEST_F(ReadPacket, WakeUpWithoutAPacketFailsAtOnce) {
  EventModify(CIpodSerialPeer::PacketEvent(serial_), EVENT_SET);
  EXPECT_EQ(Elapsed([&] { Read(1024); }), 0);
  EXPECT_EQ(result_, 0x80004005);
}

TEST_F(ReadPacket, ClosedPortIsAnInvalidHandleEvenWithAPacketQueued) {
  Arrive("FF 55 02 00 13 EB");
  serial_.Close();
  EXPECT_EQ(Elapsed([&] { Read(1024); }), 0);
  EXPECT_EQ(result_, 6);
  EXPECT_EQ(DrainPackets().size(), 1U);
}

TEST_F(ReadPacket, BufferMustExceedThePacketWhichIsLostOtherwise) {
  for (unsigned long size = 0; size <= 8; ++size) {
    Arrive("FF 55 02 00 13 EB");
    Read(size);
    EXPECT_EQ(result_, size > 6 ? 0 : 0x80004005) << size;
    EXPECT_EQ(length_, size > 6 ? 6U : 0U) << size;
    EXPECT_THAT(DrainPackets(), IsEmpty());
  }
}

TEST_F(ReadPacket, TooSmallABufferIsNotWritten) {
  Arrive("FF 55 02 00 13 EB");
  unsigned char buffer[6] = {1, 2, 3, 4, 5, 6};
  unsigned long length = 99;
  tagIPOD_PACKET_TYPE type = IPOD_PACKET_TYPE_LARGE;
  EXPECT_EQ(serial_.ReadPacket(buffer, 6, &length, &type), 0x80004005);
  EXPECT_EQ(test::ToHex(buffer, 6), "01 02 03 04 05 06");
  EXPECT_EQ(length, 99U);
  EXPECT_EQ(type, IPOD_PACKET_TYPE_LARGE);
}

TEST_F(ReadPacket, TellsTheTypeOfTheFrame) {
  Arrive("FF 55 02 00 13 EB");
  Read(1024);
  EXPECT_EQ(type_, 1);
  Arrive("FF 55 00 00 03 00 13 00 EA");
  Read(1024);
  EXPECT_EQ(type_, 0);
}

// Of the frame assembled last, not of the one returned; a frame that has only begun counts.
TEST_F(ReadPacket, TypeBelongsToTheFrameAssembledLast) {
  Arrive("FF 55 02 00 13 EB FF 55 00 00 03 00 13 00 EA");
  EXPECT_EQ(Read(1024), "FF 55 02 00 13 EB");
  EXPECT_EQ(type_, 0);
  Arrive("FF 55 02");
  EXPECT_EQ(Read(1024), "FF 55 00 00 03 00 13 00 EA");
  EXPECT_EQ(type_, 1);
}

TEST_F(ReadPacket, NeedsNoPlaceForTheType) {
  Arrive("FF 55 02 00 13 EB");
  unsigned char buffer[7] = {};
  unsigned long length = 0;
  EXPECT_EQ(serial_.ReadPacket(buffer, 7, &length, nullptr), 0);
  EXPECT_EQ(length, 6U);
}

}  // namespace
