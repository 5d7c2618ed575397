// SPDX-License-Identifier: MIT
// The session's two queues: how packets are taken and looked at, in what order of seam calls, and
// how long an empty queue is waited for.
#include <algorithm>
#include <iterator>

#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::Packet;
using test::SessionTest;
using test::Text;
using ::testing::ElementsAre;

// The response queue of an open session, which nobody but the host takes from. The notification
// queue has a thread of its own that takes everything at once.
class ResponseQueue : public SessionTest {
 protected:
  void Append(std::string_view text) { CIpodCommPeer::Responses(session_).Append(Packet(text)); }
};

TEST_F(ResponseQueue, PacketsAreTakenFromTheFront) {
  Append("FF 55 03 00 08 41 B4");
  Append("FF 55 05 00 0A 01 02 03 EB");
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_EQ(Text(packet), "FF 55 03 00 08 41 B4");
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_EQ(Text(packet), "FF 55 05 00 0A 01 02 03 EB");
}

TEST_F(ResponseQueue, OnlyThePacketsOwnBytesAreCopied) {
  Append("FF 55 03 00 08 41 B4");
  tagSERIAL_PACKET packet = {};
  std::fill(std::begin(packet.data), std::end(packet.data), static_cast<unsigned char>(0xA5));
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_EQ(packet.length, 7U);
  EXPECT_EQ(packet.data[6], 0xB4);
  EXPECT_EQ(packet.data[7], 0xA5);
}

TEST_F(ResponseQueue, EmptyQueueIsWaitedForExactlyOneSecond) {
  tagSERIAL_PACKET packet = {};
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(session_.GetNextReadPacket(&packet)); }), kSecond);
}

TEST_F(ResponseQueue, PacketThatArrivesDuringTheWaitEndsIt) {
  // 7 bytes: the last is read at least 6 pauses of 2 ms after the first.
  ipod_.SendAt(world_.now_us() + 300 * kMillisecond, test::Hex("FF 55 03 00 08 41 B4"));
  tagSERIAL_PACKET packet = {};
  const auto elapsed_us = Elapsed([&] { EXPECT_TRUE(session_.GetNextReadPacket(&packet)); });
  EXPECT_GE(elapsed_us, 312 * kMillisecond);
  EXPECT_LE(elapsed_us, 320 * kMillisecond);
  EXPECT_EQ(Text(packet), "FF 55 03 00 08 41 B4");
}

TEST_F(ResponseQueue, TakingAtOnceResetsTheEventUnderTheLock) {
  Append("FF 55 03 00 08 41 B4");
  world_.Record();
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section4)", "EventModify(event2, EVENT_RESET)",
                          "LeaveCriticalSection(section4)"));
}

TEST_F(ResponseQueue, TakingAfterAWaitLeavesTheEventAlone) {
  ipod_.SendAt(world_.now_us() + 10 * kMillisecond, test::Hex("FF 55 03 00 08 41 B4"));
  world_.Record();
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section4)", "LeaveCriticalSection(section4)",
                          "WaitForSingleObject(event2, 1000)", "EnterCriticalSection(section4)",
                          "LeaveCriticalSection(section4)"));
}

TEST_F(ResponseQueue, SignalOfAPacketTakenAtOnceDoesNotEndTheNextWait) {
  Append("FF 55 03 00 08 41 B4");
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(session_.GetNextReadPacket(&packet)); }), kSecond);
}

TEST_F(ResponseQueue, SignalWithoutAPacketEndsTheWaitEmptyHanded) {
  CIpodCommPeer::Responses(session_).Wake();
  tagSERIAL_PACKET packet = {};
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(session_.GetNextReadPacket(&packet)); }), 0);
}

TEST_F(ResponseQueue, SecondOfTwoPacketsIsThereWithoutTheSignal) {
  Append("FF 55 03 00 08 41 B4");
  Append("FF 55 03 00 08 42 B3");
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_EQ(Elapsed([&] { EXPECT_TRUE(session_.GetNextReadPacket(&packet)); }), 0);
  EXPECT_EQ(Text(packet), "FF 55 03 00 08 42 B3");
}

TEST_F(ResponseQueue, LongestPacketIsTakenWhole) {
  tagSERIAL_PACKET longest = {};
  longest.length = 1024;
  for (unsigned i = 0; i < 1024; ++i) longest.data[i] = static_cast<unsigned char>(i * 7);
  CIpodCommPeer::Responses(session_).Append(longest);
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_EQ(Text(packet), Text(longest));
}

TEST_F(ResponseQueue, PeekOnAnEmptyQueueIsFfffAfterOneSecond) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.PeekNextReadPacket(), 0xFFFF); }), kSecond);
}

TEST_F(ResponseQueue, PeekWithASignalButNoPacketIsFfffAtOnce) {
  CIpodCommPeer::Responses(session_).Wake();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.PeekNextReadPacket(), 0xFFFF); }), 0);
}

TEST_F(ResponseQueue, PeekWaitsForAPacket) {
  ipod_.SendAt(world_.now_us() + 300 * kMillisecond, test::Hex("FF 55 03 00 08 41 B4"));
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(session_.PeekNextReadPacket(), 0x08); });
  EXPECT_GE(elapsed_us, 312 * kMillisecond);
  EXPECT_LE(elapsed_us, 320 * kMillisecond);
}

TEST_F(ResponseQueue, PeekLeavesThePacketAndTheEvent) {
  Append("FF 55 03 00 08 41 B4");
  world_.Record();
  EXPECT_EQ(session_.PeekNextReadPacket(), 0x08);
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section4)", "LeaveCriticalSection(section4)"));
  EXPECT_EQ(session_.PeekNextReadPacket(), 0x08);
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_EQ(Text(packet), "FF 55 03 00 08 41 B4");
}

struct PeekCase {
  const char* name;
  const char* frame;
  unsigned command;
};

class PeekedCommand : public ResponseQueue, public ::testing::WithParamInterface<PeekCase> {};

TEST_P(PeekedCommand, IsTheFrontPackets) {
  Append(GetParam().frame);
  Append("FF 55 02 00 77 87");
  EXPECT_EQ(session_.PeekNextReadPacket(), GetParam().command);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, PeekedCommand,
    ::testing::Values(PeekCase{"Short", "FF 55 03 00 08 41 B4", 0x08},
                      PeekCase{"ShortExtended", "FF 55 04 04 12 34 00 B2", 0x1234},
                      PeekCase{"ShortStorage", "FF 55 03 0C 81 04 6C", 0x81},
                      PeekCase{"Large", "FF 55 00 00 03 00 08 41 B4", 0x08},
                      PeekCase{"LargeExtended", "FF 55 00 00 04 04 12 34 00 B2", 0x1234},
                      PeekCase{"LargeWithFourAtByteThree", "FF 55 00 04 01 00 08 41", 0x08},
                      PeekCase{"ShortWithFourAtByteFive", "FF 55 04 00 08 04 09 E7", 0x08},
                      PeekCase{"NothingAfterTheLength", "FF 55 05", 0x00},
                      PeekCase{"HalfAnExtendedCommand", "FF 55 05 04 12", 0x1200}),
    test::RowName());

TEST_F(ResponseQueue, NotificationsAreTakenTheSameWay) {
  world_.Settle();
  world_.Record(
      {"EnterCriticalSection", "LeaveCriticalSection", "EventModify", "WaitForSingleObject"});
  tagSERIAL_PACKET packet = {};
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(session_.GetNextNotificationPacket(&packet)); }), kSecond);
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section6)", "LeaveCriticalSection(section6)",
                          "WaitForSingleObject(event6, 1000)"));
}

TEST_F(ResponseQueue, NotificationThreadTakesWithTheSameCalls) {
  world_.Settle();
  world_.Record(
      {"EnterCriticalSection", "LeaveCriticalSection", "EventModify", "WaitForSingleObject"});
  CIpodCommPeer::Notifications(session_).Append(Packet("FF 55 03 00 23 01 D9"));
  world_.Settle();
  EXPECT_THAT(world_.DrainCalls().Of("notification").text(),
              ElementsAre("EnterCriticalSection(section6)", "LeaveCriticalSection(section6)",
                          "EnterCriticalSection(section6)", "LeaveCriticalSection(section6)",
                          "WaitForSingleObject(event6, 1000)"));
}

TEST_F(ResponseQueue, AssignedToItselfKeepsItsPackets) {
  auto& queue = CIpodCommPeer::Responses(session_);
  queue.Append(test::Packet("FF 55 03 00 08 41 B4"));
  const auto& same = queue;
  queue = same;
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(queue.Pop(&packet, 0));
  EXPECT_EQ(test::Text(packet), "FF 55 03 00 08 41 B4");
}

}  // namespace
