// SPDX-License-Identifier: MIT
// The three senders of the legacy interface: how the packet area becomes a frame on the wire.
#include <functional>
#include <ostream>

#include "support/legacy_test.h"
#include "support/packets.h"

namespace {

using test::kMillisecond;
using test::LegacyTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LegacySenders : public LegacyTest {
 protected:
  void Fill(std::uint8_t lingo, std::uint8_t command, const char* payload) {
    ipodPeer::Lingo(legacy_) = lingo;
    ipodPeer::Command(legacy_) = command;
    ipodPeer::ExtendedCommand(legacy_) = 0x1234;
    const test::Bytes bytes = test::Hex(payload);
    std::copy(bytes.begin(), bytes.end(), ipodPeer::Payload(legacy_));
    ipodPeer::PayloadLength(legacy_) = static_cast<std::uint16_t>(bytes.size());
    world_.Record({"WriteFile", "Sleep"});
  }
  // Fills the payload with so many bytes 00, 01, 02 and so on.
  void FillNumbered(std::uint16_t length) {
    Fill(0x04, 0x33, "");
    NumberPayload();
    ipodPeer::PayloadLength(legacy_) = length;
  }
};

// "00 01 02 ...", so many.
std::string Numbered(int count) {
  test::Bytes bytes;
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(i));
  return test::ToHex(bytes);
}

std::string Write(const std::string& bytes) { return "WriteFile(port1, " + bytes + ")"; }

// ---- Small frames

TEST_F(LegacySenders, SmallFrameGoesOutSyncByteFirst) {
  Fill(0x00, 0x03, "");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(legacy_.sendpacket(), 1); }), 5 * kMillisecond);
  EXPECT_THAT(
      world_.DrainCalls().text_with_results(),
      ElementsAre("WriteFile(port1, FF) = 1", "Sleep(5)", "WriteFile(port1, 55 02 00 03 FB) = 5"));
}

TEST_F(LegacySenders, SmallFrameCarriesLingoCommandAndPayload) {
  Fill(0x07, 0x33, "41 42 43");
  EXPECT_EQ(legacy_.sendpacket(), 1);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("WriteFile(port1, FF)", "Sleep(5)",
                                                "WriteFile(port1, 55 05 07 33 41 42 43 FB)"));
}

TEST_F(LegacySenders, SmallFrameHasAOneByteCommandForEveryLingo) {
  Fill(0x04, 0x33, "41");
  EXPECT_EQ(legacy_.sendpacket(), 1);
  EXPECT_EQ(DrainSentBytes(), "FF 55 03 04 33 41 85");
}

TEST_F(LegacySenders, SmallFrameHolds250PayloadBytes) {
  FillNumbered(250);
  EXPECT_EQ(legacy_.sendpacket(), 1);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("WriteFile(port1, FF)", "Sleep(5)",
                                                Write("55 FC 04 33 " + Numbered(250) + " 38")));
}

// ---- Extended frames

TEST_F(LegacySenders, ExtendedFrameGoesOutSyncByteFirst) {
  Fill(0x04, 0x33, "");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(legacy_.sendpacketextended(), 1); }), 5 * kMillisecond);
  EXPECT_THAT(world_.DrainCalls().text_with_results(),
              ElementsAre("WriteFile(port1, FF) = 1", "Sleep(5)",
                          "WriteFile(port1, 55 03 04 12 34 B3) = 6"));
}

TEST_F(LegacySenders, ExtendedFrameCarriesATwoByteCommandForEveryLingo) {
  Fill(0x04, 0x33, "41 42");
  EXPECT_EQ(legacy_.sendpacketextended(), 1);
  EXPECT_EQ(DrainSentBytes(), "FF 55 05 04 12 34 41 42 2E");
  Fill(0x09, 0x33, "41 42");
  EXPECT_EQ(legacy_.sendpacketextended(), 1);
  EXPECT_EQ(DrainSentBytes(), "FF 55 05 09 12 34 41 42 29");
}

TEST_F(LegacySenders, ExtendedFrameHolds249PayloadBytes) {
  FillNumbered(249);
  EXPECT_EQ(legacy_.sendpacketextended(), 1);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("WriteFile(port1, FF)", "Sleep(5)",
                                                Write("55 FC 04 12 34 " + Numbered(249) + " 1E")));
}

// ---- Large frames

// Of n payload bytes n - 1 go out, and the checksum does not: n + 7 bytes in all.
TEST_F(LegacySenders, LargeFrameLosesItsLastTwoBytesAndSucceeds) {
  Fill(0x04, 0x33, "41 42 43");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(legacy_.sendpacketextendedlarge(nullptr), 1); }),
            5 * kMillisecond);
  EXPECT_THAT(world_.DrainCalls().text_with_results(),
              ElementsAre("WriteFile(port1, FF) = 1", "Sleep(5)",
                          "WriteFile(port1, 55 00 00 06 04 12 34 41 42) = 9"));
}

TEST_F(LegacySenders, LargeFrameWithoutPayloadLosesTheLowCommandByte) {
  Fill(0x04, 0x33, "");
  EXPECT_EQ(legacy_.sendpacketextendedlarge(nullptr), 1);
  EXPECT_EQ(DrainSentBytes(), "FF 55 00 00 03 04 12");
}

TEST_F(LegacySenders, LargeFrameOfOnePayloadByteLosesIt) {
  Fill(0x09, 0x33, "41");
  EXPECT_EQ(legacy_.sendpacketextendedlarge(nullptr), 1);
  EXPECT_EQ(DrainSentBytes(), "FF 55 00 00 04 09 12 34");
}

TEST_F(LegacySenders, LargeFrameTakesItsPayloadFromThePacketAreaAndNotFromTheArgument) {
  Fill(0x04, 0x33, "41 42 43");
  unsigned char image[] = {0x99, 0x99, 0x99};
  EXPECT_EQ(legacy_.sendpacketextendedlarge(image), 1);
  EXPECT_EQ(DrainSentBytes(), "FF 55 00 00 06 04 12 34 41 42");
}

TEST_F(LegacySenders, LargeFrameHolds247PayloadBytes) {
  FillNumbered(247);
  EXPECT_EQ(legacy_.sendpacketextendedlarge(nullptr), 1);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("WriteFile(port1, FF)", "Sleep(5)",
                                                Write("55 00 00 FA 04 12 34 " + Numbered(246))));
}

// ---- What fails

struct SenderRow {
  const char* name;
  std::function<int(ipod&)> send;
  std::uint16_t too_long;
};

std::ostream& operator<<(std::ostream& out, const SenderRow& row) { return out << row.name; }

class EveryLegacySender : public LegacySenders, public ::testing::WithParamInterface<SenderRow> {
 protected:
  int Send() { return GetParam().send(legacy_); }
  std::size_t Writes() { return world_.DrainCalls().To({"WriteFile"}).all().size(); }
};

INSTANTIATE_TEST_SUITE_P(
    Of, EveryLegacySender,
    ::testing::Values(SenderRow{"SmallFrames", [](ipod& it) { return it.sendpacket(); }, 251},
                      SenderRow{"ExtendedFrames", [](ipod& it) { return it.sendpacketextended(); },
                                250},
                      SenderRow{"LargeFrames",
                                [](ipod& it) { return it.sendpacketextendedlarge(nullptr); }, 248}),
    test::RowName());

TEST_P(EveryLegacySender, RefusesAPayloadThatDoesNotFitItsFrame) {
  for (const unsigned length : {unsigned{GetParam().too_long}, 256U, 257U, 65535U}) {
    FillNumbered(static_cast<std::uint16_t>(length));
    EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Send(), 0); }), 0) << length;
    EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  }
}

TEST_P(EveryLegacySender, FailsWhenTheSyncByteIsNotAcceptedAndWritesTheRestAllTheSame) {
  Fill(0x04, 0x33, "41 42");
  world_.FailOnce("WriteFile", 1, 31);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Send(), 0); }), 5 * kMillisecond);
  EXPECT_EQ(Writes(), 2U);
}

TEST_P(EveryLegacySender, FailsWhenTheRestIsNotAcceptedAndDoesNotTryAgain) {
  Fill(0x04, 0x33, "41 42");
  world_.FailOnce("WriteFile", 2, 31);
  EXPECT_EQ(Send(), 0);
  EXPECT_EQ(Writes(), 2U);
}

TEST_P(EveryLegacySender, FailsOnAClosedPort) {
  Fill(0x04, 0x33, "41 42");
  legacy_.closeport();
  EXPECT_EQ(Send(), 0);
  EXPECT_EQ(Writes(), 0U);
}

TEST_P(EveryLegacySender, LeavesThePacketAreaAsItIs) {
  FillNumbered(20);
  EXPECT_EQ(Send(), 1);
  EXPECT_EQ(Payload(256), Numbered(256));
  EXPECT_EQ(ipodPeer::PayloadLength(legacy_), 20);
  EXPECT_EQ(ipodPeer::Lingo(legacy_), 0x04);
  EXPECT_EQ(ipodPeer::Command(legacy_), 0x33);
  EXPECT_EQ(ipodPeer::ExtendedCommand(legacy_), 0x1234);
}

TEST_P(EveryLegacySender, PrintsNothing) {
  Fill(0x04, 0x33, "41 42");
  world_.FailOnce("WriteFile", 2, 31);
  Send();
  Send();
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
}

}  // namespace
