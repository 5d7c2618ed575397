// SPDX-License-Identifier: MIT
// The legacy object: what it starts from, its port, its copies.
#include "support/legacy_test.h"

namespace {

using test::DockTest;
using test::kSecond;
using test::LegacyTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LegacyObject : public LegacyTest {};

TEST_F(DockTest, MakingALegacyObjectOpensNothing) {
  world_.Record();
  ipod legacy;
  EXPECT_THAT(world_.TakeCalls().To({"CreateFileW", "CreateThread"}).text(), IsEmpty());
  EXPECT_EQ(ipodserialPeer::Port(ipodPeer::Serial(legacy)), INVALID_HANDLE_VALUE);
  EXPECT_EQ(ipodserialPeer::BaudRate(ipodPeer::Serial(legacy)), 57600);
  EXPECT_STREQ(ipodserialPeer::PortName(ipodPeer::Serial(legacy)), L"COM2:");
}

TEST_F(DockTest, LegacyObjectStartsFromZero) {
  ipod legacy;
  EXPECT_EQ(test::Units(ipodPeer::StatusText(legacy), 1), "0");
  EXPECT_EQ(ipodPeer::ExtendedModel(legacy), 0);
  EXPECT_EQ(ipodPeer::NameSort(legacy), 0);
  EXPECT_EQ(ipodPeer::PayloadLength(legacy), 0);
  EXPECT_EQ(test::Bytes(ipodPeer::Payload(legacy), ipodPeer::Payload(legacy) + 256),
            test::Bytes(256, 0));
  EXPECT_EQ(ipodPeer::StorageWriteOffset(legacy), 0U);
  EXPECT_EQ(ipodPeer::StorageFileHandle(legacy), 0);
}

TEST_F(DockTest, LegacyPortOpensUnderTheNameAndTheBaudRateGiven) {
  world_.line("COM3:");
  ipod legacy;
  world_.Record({"CreateFileW", "SetCommState"});
  wchar_t name[] = L"COM3:";
  EXPECT_EQ(legacy.openport(name, 9600), 1);
  EXPECT_THAT(world_.TakeRecord(),
              ElementsAre("CreateFileW(\"COM3:\")",
                          "SetCommState(port1, 9600 baud, 8 bits, parity 0, stop bits code 1)"));
  EXPECT_EQ(legacy.closeport(), 1);
  EXPECT_EQ(legacy.openport(), 1);
  EXPECT_THAT(world_.TakeRecord(),
              ElementsAre("CreateFileW(\"COM2:\")",
                          "SetCommState(port2, 9600 baud, 8 bits, parity 0, stop bits code 1)"));
}

TEST_F(DockTest, LegacyPortThatDoesNotOpenTellsSo) {
  wchar_t name[] = L"COM9:";
  ipod legacy;
  EXPECT_EQ(legacy.openport(name, 57600), 0);
  EXPECT_EQ(legacy.openport(nullptr, 57600), 0);
  world_.FailOnce("CreateFileW", 1, 5);
  EXPECT_EQ(legacy.openport(), 0);
  EXPECT_EQ(legacy.closeport(), 1);
}

TEST_F(LegacyObject, ClosingTwiceSucceedsTwice) {
  EXPECT_EQ(ipod_.closeport(), 1);
  EXPECT_EQ(ipod_.closeport(), 1);
}

TEST_F(DockTest, DestroyedLegacyObjectLeavesItsPortOpen) {
  {
    ipod legacy;
    EXPECT_EQ(legacy.openport(), 1);
  }
  EXPECT_THAT(world_.leftovers(), ElementsAre("port1"));
}

ipod Assigned(const ipod& source) {
  ipod copy;
  copy = source;
  return copy;
}

TEST_F(LegacyObject, CopyTakesEveryMember) {
  NumberPayload();
  ipodPeer::Lingo(ipod_) = 1;
  ipodPeer::Command(ipod_) = 2;
  ipodPeer::PayloadLength(ipod_) = 3;
  ipodPeer::ExtendedCommand(ipod_) = 4;
  ipodPeer::Category(ipod_) = 5;
  ipodPeer::LastCategory(ipod_) = 6;
  ipodPeer::SelfTestStep(ipod_) = 7;
  ipodPeer::TopSelectionResult(ipod_) = 8;
  ipodPeer::StorageFileHandle(ipod_) = 9;
  ipodPeer::StorageWriteOffset(ipod_) = 10;
  ipodPeer::ExtendedModel(ipod_) = 11;
  ipodPeer::NameSort(ipod_) = 12;
  wsprintfW(ipodPeer::TrackLengthText(ipod_), L"a");
  wsprintfW(ipodPeer::TrackPositionText(ipod_), L"b");
  wsprintfW(ipodPeer::StatusText(ipod_), L"c");
  for (ipod copy : {ipod(ipod_), Assigned(ipod_)}) {
    EXPECT_EQ(test::ToHex(ipodPeer::Payload(copy), 256), Payload(256));
    EXPECT_EQ(ipodPeer::Lingo(copy), 1);
    EXPECT_EQ(ipodPeer::Command(copy), 2);
    EXPECT_EQ(ipodPeer::PayloadLength(copy), 3);
    EXPECT_EQ(ipodPeer::ExtendedCommand(copy), 4);
    EXPECT_EQ(ipodPeer::Category(copy), 5);
    EXPECT_EQ(ipodPeer::LastCategory(copy), 6);
    EXPECT_EQ(ipodPeer::SelfTestStep(copy), 7U);
    EXPECT_EQ(ipodPeer::TopSelectionResult(copy), 8);
    EXPECT_EQ(ipodPeer::StorageFileHandle(copy), 9);
    EXPECT_EQ(ipodPeer::StorageWriteOffset(copy), 10U);
    EXPECT_EQ(ipodPeer::ExtendedModel(copy), 11);
    EXPECT_EQ(ipodPeer::NameSort(copy), 12);
    EXPECT_STREQ(ipodPeer::TrackLengthText(copy), L"a");
    EXPECT_STREQ(ipodPeer::TrackPositionText(copy), L"b");
    EXPECT_STREQ(ipodPeer::StatusText(copy), L"c");
    EXPECT_EQ(ipodserialPeer::Port(ipodPeer::Serial(copy)),
              ipodserialPeer::Port(ipodPeer::Serial(ipod_)));
  }
}

TEST_F(LegacyObject, CopySharesThePort) {
  ipod copy = ipod_;
  EXPECT_EQ(copy.command_requestipodname(), 1);
  EXPECT_EQ(ipod_.command_requestipodmodelnum(), 1);
  EXPECT_THAT(TakeSent(), ElementsAre("FF 55 02 00 07 F7", "FF 55 02 00 0D F1"));
}

TEST_F(LegacyObject, CopyOfAClosedSourceFailsWithoutHarm) {
  ipod copy = ipod_;
  ipod_.closeport();
  wchar_t text[8] = {};
  EXPECT_EQ(copy.command_requestipodname(), 0);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(copy.extractdatafrompacket(0x08, text, 8, 0, 0), 0); }),
            kSecond);
  EXPECT_EQ(copy.ExtractDataFromPacketExtended(0x1D, text, 8, 0, 0), 0);
  unsigned char bytes[4] = {};
  EXPECT_EQ(copy.ExtractDataFromPacketExtendedRaw(0x1D, bytes, 4), 0);
  EXPECT_EQ(copy.closeport(), 1);
  EXPECT_EQ(copy.openport(), 1);
  EXPECT_EQ(copy.command_requestipodname(), 1);
  copy.closeport();
}

}  // namespace
