// SPDX-License-Identifier: MIT
// Received packets from the wire to their consumer: what is queued, in which order, who is woken
// and when, and that no stream of bytes breaks anything.
#include <gtest/gtest.h>

#include "serial_test.h"
#include "support/properties.h"

namespace {

using test::Bytes;
using test::kMillisecond;
using test::kSecond;
using test::SerialTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ReceivedPackets : public SerialTest {
 protected:
  ReceivedPackets() { OpenForPackets(); }
};

struct Row {
  const char* name;
  const char* received;
  std::vector<std::string> packets;
};

class Received : public ReceivedPackets, public ::testing::WithParamInterface<Row> {};

TEST_P(Received, YieldsThePackets) {
  Arrive(GetParam().received);
  EXPECT_EQ(DrainPackets(), GetParam().packets);
}

INSTANTIATE_TEST_SUITE_P(
    Bytes, Received,
    ::testing::Values(
        Row{"OfAFrame", "FF 55 02 00 13 EB", {"FF 55 02 00 13 EB"}},
        Row{"OfABadFrame", "FF 55 02 00 13 EA", {}},
        Row{"WithJunkInFront", "00 12 FF 55 02 00 13 EB", {"FF 55 02 00 13 EB"}},
        Row{"WithAByteBetweenSyncs", "FF 00 FF 55 02 00 13 EB", {"55 02 00 13 EB"}},
        Row{"OfALargeFrame", "FF 55 00 00 03 00 13 00 EA", {"FF 55 00 00 03 00 13 00 EA"}},
        Row{"OfThreeFrames",
            "FF 55 02 00 13 EB FF 55 02 00 14 EA FF 55 02 00 15 E9",
            {"FF 55 02 00 13 EB", "FF 55 02 00 14 EA", "FF 55 02 00 15 E9"}}),
    test::RowName());

TEST_F(ReceivedPackets, AreDroppedSilentlyWhenTheyAreBad) {
  Arrive("FF 55 02 00 13 EA");
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  EXPECT_THAT(DrainDebugOutput(), IsEmpty());
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_F(ReceivedPackets, HaveNoLimitInNumber) {
  for (int i = 0; i < 100; ++i) Arrive("FF 55 02 00 13 EB");
  EXPECT_EQ(DrainPackets().size(), 100U);
}

// ---- The consumer

TEST_F(ReceivedPackets, PacketInTheQueueIsTakenUnderTheLockAndItsSignalWithIt) {
  Arrive("FF 55 02 00 13 EB");
  world_.Record();
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(serial_.GetNextPacket(&packet, 5000));
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section1)",
                          "EventModify(event1 \"IPOD_PORT_EVENT_NAME\", EVENT_RESET)",
                          "LeaveCriticalSection(section1)"));
  EXPECT_EQ(packet.length, 6U);
  EXPECT_EQ(test::Text(packet), "FF 55 02 00 13 EB");
}

TEST_F(ReceivedPackets, ConsumerWaitsOnTheEventAndDoesNotResetItAgain) {
  ipod_.SendAt(world_.now_us() + 100 * kMillisecond, test::Hex("FF 55 02 00 13 EB"));
  world_.Record();
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(serial_.GetNextPacket(&packet, 5000));
  EXPECT_THAT(world_.DrainCalls().Of("host").text_with_results(),
              ElementsAre("EnterCriticalSection(section1)", "LeaveCriticalSection(section1)",
                          "WaitForSingleObject(event1 \"IPOD_PORT_EVENT_NAME\", 5000) = signalled",
                          "EnterCriticalSection(section1)", "LeaveCriticalSection(section1)"));
}

TEST_F(ReceivedPackets, ConsumerIsWokenAsSoonAsTheFrameIsWhole) {
  ipod_.SendAt(world_.now_us(), test::Hex("FF 55 02 00 13 EB"));
  tagSERIAL_PACKET packet = {};
  // The first byte after 174 us, then five more at the thread's 2 ms each.
  EXPECT_EQ(Elapsed([&] { EXPECT_TRUE(serial_.GetNextPacket(&packet, 5000)); }),
            5 * 2 * kMillisecond + 174);
}

TEST_F(ReceivedPackets, ConsumerGivesUpAfterItsTime) {
  tagSERIAL_PACKET packet = {};
  packet.length = 77;
  for (const unsigned long timeout_ms : {0UL, 1UL, 100UL, 1000UL, 5000UL}) {
    EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(serial_.GetNextPacket(&packet, timeout_ms)); }),
              static_cast<std::int64_t>(timeout_ms) * kMillisecond);
  }
  EXPECT_EQ(packet.length, 77U);
}

TEST_F(ReceivedPackets, WakeUpWithoutAPacketIsNone) {
  EventModify(CIpodSerialPeer::PacketEvent(serial_), EVENT_SET);
  tagSERIAL_PACKET packet = {};
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(serial_.GetNextPacket(&packet, 5000)); }), 0);
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(serial_.GetNextPacket(&packet, 500)); }),
            500 * kMillisecond);
}

TEST_F(ReceivedPackets, SignalOfAPacketTakenWithoutWaitingWakesNobody) {
  Arrive("FF 55 02 00 13 EB");
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(serial_.GetNextPacket(&packet, 0));
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(serial_.GetNextPacket(&packet, 300)); }),
            300 * kMillisecond);
}

TEST_F(ReceivedPackets, OnlyThePacketsBytesAreCopied) {
  Arrive("FF 55 02 00 13 EB");
  tagSERIAL_PACKET packet;
  std::fill(std::begin(packet.data), std::end(packet.data), std::uint8_t{0xAA});
  EXPECT_TRUE(serial_.GetNextPacket(&packet, 0));
  EXPECT_EQ(packet.data[5], 0xEB);
  for (int i = 6; i < 1024; ++i) ASSERT_EQ(packet.data[i], 0xAA);
}

TEST_F(ReceivedPackets, MayBeTakenAfterClosingUntilTheThreadHasNoticed) {
  Arrive("FF 55 02 00 13 EB");
  serial_.Close();
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB"));
}

TEST_F(ReceivedPackets, WaitThatFailsIsNoPacketAndTakesAMoment) {
  CloseHandle(CIpodSerialPeer::PacketEvent(serial_));
  tagSERIAL_PACKET packet = {};
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(serial_.GetNextPacket(&packet, 5000)); }),
            50 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(serial_.GetNextPacket(&packet, 20)); }), 20 * kMillisecond);
}

// ---- The line

// Each byte of a frame lost, doubled or with a bit flipped on the line: that frame is gone or is
// another one, and what follows is found again.
TEST_F(ReceivedPackets, DamagedLineCostsTheFrameAndNotTheOnesBehind) {
  const Bytes frame = test::Hex("FF 55 04 00 02 00 13 E7");
  for (unsigned nth = 1; nth <= frame.size(); ++nth) {
    for (int fault = 0; fault < 3; ++fault) {
      auto& faults = world_.line().to_host();
      if (fault == 0) faults.DropByte(nth);
      if (fault == 1) faults.DoubleByte(nth);
      if (fault == 2) faults.FlipByte(nth, 0x04);
      Arrive("FF 55 04 00 02 00 13 E7");
      // A damaged length reaches far; a sync byte left alone takes the next frame's.
      ipod_.Send(Bytes(1100, 0x00));
      world_.Advance(5 * kSecond);
      Arrive("FF 55 02 00 14 EA FF 55 02 00 14 EA");
      const auto packets = DrainPackets();
      ASSERT_FALSE(packets.empty());
      EXPECT_EQ(packets.back(), "FF 55 02 00 14 EA") << nth << " " << fault;
      // A doubled sync byte leaves a frame without one; a checksum sent twice leaves the frame.
      const bool whole = fault == 1 && nth == frame.size();
      EXPECT_EQ(packets.front() == "FF 55 04 00 02 00 13 E7", whole) << nth << " " << fault;
    }
  }
}

TEST_F(ReceivedPackets, PauseInsideAFrameDoesNotPartIt) {
  for (const auto gap_us : {kMillisecond, 10 * kMillisecond, kSecond, 100 * kSecond}) {
    ipod_.Send(test::Hex("FF 55 02"));
    world_.Advance(gap_us + 100 * kMillisecond);
    Arrive("00 13 EB");
    EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB")) << gap_us;
  }
}

// Two of four are dropped; what is left is the newest.
TEST_F(ReceivedPackets, AFloodLosesTheOldestAndIsLoggedOnce) {
  CIpodSerialPeer::Limit(serial_).Choose(2);
  Arrive("FF 55 02 00 10 EE FF 55 02 00 11 ED FF 55 02 00 12 EC FF 55 02 00 13 EB");
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 12 EC", "FF 55 02 00 13 EB"));
  EXPECT_THAT(
      test::DrainTraceLog(),
      ElementsAre("CIpodSerial::PortReadThread: Received packets dropped: nobody takes them"));
}

// However the bytes of two frames are parted on the line, both come out whole.
TEST_F(ReceivedPackets, FramesMayBeSplitAnywhere) {
  const Bytes both = test::Hex("FF 55 02 00 13 EB FF 55 00 00 03 00 13 00 EA");
  for (std::size_t split = 0; split <= both.size(); ++split) {
    const auto middle = both.begin() + static_cast<std::ptrdiff_t>(split);
    ipod_.Send(Bytes(both.begin(), middle));
    world_.Advance(200 * kMillisecond);
    ipod_.Send(Bytes(middle, both.end()));
    world_.Advance(200 * kMillisecond);
    EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB", "FF 55 00 00 03 00 13 00 EA"));
  }
}

#if IPODCOMM_HAS_RAPIDCHECK

RC_GTEST_FIXTURE_PROP(ReceivedPackets, RandomBytesNeverBreakThePort, (const Bytes& noise)) {
  ipod_.Send(noise);
  // Enough zeros to end whatever frame the noise began.
  ipod_.Send(Bytes(1100, 0x00));
  world_.Advance(6 * kSecond);
  for (int i = 0; i < 2; ++i) {
    ipod_.Send(test::Hex("FF 55 02 00 13 EB"));
    world_.Advance(100 * kMillisecond);
  }
  const auto packets = DrainPackets();
  RC_ASSERT(!packets.empty());
  RC_ASSERT(packets.back() == "FF 55 02 00 13 EB");
}

#else

TEST_F(ReceivedPackets, RandomBytesNeverBreakThePort) { GTEST_SKIP() << test::kNoRapidcheck; }

#endif

}  // namespace
