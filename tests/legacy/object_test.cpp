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
  EXPECT_THAT(world_.DrainCalls().To({"CreateFileW", "CreateThread"}).text(), IsEmpty());
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
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("CreateFileW(\"COM3:\")",
                          "SetCommState(port1, 9600 baud, 8 bits, parity 0, stop bits code 1)"));
  EXPECT_EQ(legacy.closeport(), 1);
  EXPECT_EQ(legacy.openport(), 1);
  EXPECT_THAT(world_.DrainRecord(),
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
  EXPECT_EQ(legacy_.closeport(), 1);
  EXPECT_EQ(legacy_.closeport(), 1);
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
  ipodPeer::Lingo(legacy_) = 1;
  ipodPeer::Command(legacy_) = 2;
  ipodPeer::PayloadLength(legacy_) = 3;
  ipodPeer::ExtendedCommand(legacy_) = 4;
  ipodPeer::Category(legacy_) = 5;
  ipodPeer::LastCategory(legacy_) = 6;
  ipodPeer::SelfTestStep(legacy_) = 7;
  ipodPeer::TopSelectionResult(legacy_) = 8;
  ipodPeer::StorageFileHandle(legacy_) = 9;
  ipodPeer::StorageWriteOffset(legacy_) = 10;
  ipodPeer::ExtendedModel(legacy_) = 11;
  ipodPeer::NameSort(legacy_) = 12;
  wsprintfW(ipodPeer::TrackLengthText(legacy_), L"a");
  wsprintfW(ipodPeer::TrackPositionText(legacy_), L"b");
  wsprintfW(ipodPeer::StatusText(legacy_), L"c");
  for (ipod copy : {ipod(legacy_), Assigned(legacy_)}) {
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
              ipodserialPeer::Port(ipodPeer::Serial(legacy_)));
  }
}

TEST_F(LegacyObject, CopySharesThePort) {
  ipod copy = legacy_;
  EXPECT_EQ(copy.command_requestipodname(), 1);
  EXPECT_EQ(legacy_.command_requestipodmodelnum(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 07 F7", "FF 55 02 00 0D F1"));
}

TEST_F(LegacyObject, CopyOfAClosedSourceFailsWithoutHarm) {
  ipod copy = legacy_;
  legacy_.closeport();
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
