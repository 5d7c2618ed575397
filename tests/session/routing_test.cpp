// SPDX-License-Identifier: MIT
// How received packets are parted into answers and notifications, and what the session keeps of
// the iPod's transaction identifiers.
#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::Packet;
using test::SessionTest;
using test::Text;
using test::World;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Routing : public SessionTest {
 protected:
  // Events that routing this packet sets: event2 wakes readers of answers, event6 those of
  // notifications.
  std::vector<std::string> Route(const tagSERIAL_PACKET& packet) {
    world_.Record({"EventModify"});
    (session_.*CIpodCommPeer::kRoutePacket)(packet);
    const auto set = world_.DrainCalls().Of("host").text();
    world_.StopRecording();
    return set;
  }
  static constexpr const char* kAnswered = "EventModify(event2, EVENT_SET)";
  static constexpr const char* kNotified = "EventModify(event6, EVENT_SET)";
};

TEST_F(Routing, EveryOneByteCommandGoesWhereItsRowSays) {
  const std::set<std::pair<int, int>> notifications = {
      {0x00, 0x23}, {0x00, 0x27}, {0x00, 0x4A}, {0x0C, 0x81}, {0x09, 0x03}};
  for (int lingo = 0; lingo < 256; ++lingo) {
    if (lingo == 0x04) continue;
    for (int command = 0; command < 256; ++command) {
      tagSERIAL_PACKET packet = Packet("FF 55 04 00 00 00 01 00");
      packet.data[3] = static_cast<unsigned char>(lingo);
      packet.data[4] = static_cast<unsigned char>(command);
      const bool notified = notifications.count({lingo, command}) != 0;
      ASSERT_THAT(Route(packet), ElementsAre(notified ? kNotified : kAnswered)) << Text(packet);
    }
  }
}

TEST_F(Routing, OnlyPlayStatusChangeIsAnExtendedNotification) {
  for (int command = 0; command < 0x10000; command = command < 0x200 ? command + 1 : command + 7) {
    tagSERIAL_PACKET packet = Packet("FF 55 05 04 00 00 00 00 00");
    packet.data[4] = static_cast<unsigned char>(command >> 8);
    packet.data[5] = static_cast<unsigned char>(command & 0xFF);
    ASSERT_THAT(Route(packet), ElementsAre(command == 0x0027 ? kNotified : kAnswered))
        << Text(packet);
  }
  EXPECT_THAT(Route(Packet("FF 55 05 04 27 00 00 00 00")), ElementsAre(kAnswered));
}

TEST_F(Routing, LargeFormIsRoutedByItsOwnPositions) {
  EXPECT_THAT(Route(Packet("FF 55 00 00 04 04 00 27 00 D1")), ElementsAre(kNotified));
  EXPECT_THAT(Route(Packet("FF 55 00 00 03 00 23 00 DA")), ElementsAre(kNotified));
  EXPECT_THAT(Route(Packet("FF 55 00 00 03 00 27 00 D6")), ElementsAre(kNotified));
  EXPECT_THAT(Route(Packet("FF 55 00 00 02 0C 81 71")), ElementsAre(kNotified));
  EXPECT_THAT(Route(Packet("FF 55 00 00 03 00 4A 00 B3")), ElementsAre(kNotified));
  EXPECT_THAT(Route(Packet("FF 55 00 00 02 09 03 F2")), ElementsAre(kNotified));
  EXPECT_THAT(Route(Packet("FF 55 00 00 02 09 01 F4")), ElementsAre(kAnswered));
  EXPECT_THAT(Route(Packet("FF 55 00 00 04 04 00 28 00 D0")), ElementsAre(kAnswered));
}

TEST_F(Routing, EveryPrefixOfAFrameIsRoutedSomewhere) {
  for (const char* frame :
       {"FF 55 08 04 00 27 04 00 01 00 00 C8", "FF 55 00 00 04 09 03 00 01 EF"}) {
    const tagSERIAL_PACKET whole = Packet(frame);
    for (std::uint32_t length = 0; length <= whole.length; ++length) {
      tagSERIAL_PACKET packet = {};
      packet.length = length;
      std::copy(whole.data, whole.data + length, packet.data);
      ASSERT_EQ(Route(packet).size(), 1U) << Text(packet);
    }
  }
}

TEST_F(Routing, AnswersStayInTheOrderOfTheirArrival) {
  Arrive("FF 55 03 00 08 41 B4 FF 55 07 04 00 19 00 00 00 05 D7 FF 55 02 0C 11 E1");
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_EQ(Text(packet), "FF 55 03 00 08 41 B4");
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_EQ(Text(packet), "FF 55 07 04 00 19 00 00 00 05 D7");
  EXPECT_TRUE(session_.GetNextReadPacket(&packet));
  EXPECT_EQ(Text(packet), "FF 55 02 0C 11 E1");
}

TEST_F(Routing, PacketIsAppendedAndSignalledUnderTheQueuesLock) {
  world_.Record();
  (session_.*CIpodCommPeer::kRoutePacket)(Packet("FF 55 03 00 08 41 B4"));
  EXPECT_THAT(world_.DrainCalls().Of("host").text(),
              ElementsAre("EnterCriticalSection(section4)", "EventModify(event2, EVENT_SET)",
                          "LeaveCriticalSection(section4)"));
}

TEST_F(Routing, ThreadWaitsForPacketsOneSecondAtATime) {
  world_.Advance(kSecond);
  world_.Record({"WaitForSingleObject"});
  world_.Advance(5 * kSecond);
  const auto waits = world_.DrainCalls();
  EXPECT_THAT(waits.Of("routing").text(),
              ::testing::AllOf(::testing::SizeIs(5),
                               Each("WaitForSingleObject(event1 \"IPOD_PORT_EVENT_NAME\", 1000)")));
  EXPECT_THAT(waits.Of("notification").text(),
              ::testing::AllOf(::testing::SizeIs(5), Each("WaitForSingleObject(event6, 1000)")));
}

struct IdentifierRow {
  const char* name;
  const char* frame;
  int slot;  // none: -1
  int identifier;
};

class Identifier : public ::testing::TestWithParam<IdentifierRow> {};

// The same whether or not identifiers are on.
TEST_P(Identifier, IsKeptForRequestsOnly) {
  for (const int mode : {0, 1}) {
    // The host always goes first: the notification thread answers no request before the look.
    World world({1, ipodcomm::virtual_platform::PrioritySchedule({1})});
    test::ChosenSession session;
    CIpodCommPeer::TransactionIdMode(session) = mode;
    auto& slots = CIpodCommPeer::IpodTransactionIds(session);
    std::fill(std::begin(slots), std::end(slots), std::uint16_t{0x5A5A});
    (session.*CIpodCommPeer::kRoutePacket)(Packet(GetParam().frame));
    for (int slot = 0; slot < 13; ++slot) {
      EXPECT_EQ(slots[slot], slot == GetParam().slot ? GetParam().identifier : 0x5A5A) << slot;
    }
    EXPECT_EQ(CIpodCommPeer::OwnTransactionId(session), GetParam().slot >= 0 ? 1 : 0);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Identifier,
    ::testing::Values(
        IdentifierRow{"PlayStatusChange", "FF 55 06 04 00 27 12 34 07 82", -1, 0},
        IdentifierRow{"StateChange", "FF 55 05 00 23 12 34 01 91", -1, 0},
        IdentifierRow{"GetAccessoryInfo", "FF 55 05 00 27 12 34 01 8D", 0, 0x1234},
        IdentifierRow{"GetAccessoryInfoWithoutIdentifier", "FF 55 03 00 27 01 D5", 0, 0x01D5},
        IdentifierRow{"GetAccessoryCaps", "FF 55 04 0C 81 AB CD F7", 12, 0xABCD},
        IdentifierRow{"Notification", "FF 55 05 00 4A 00 07 02 A8", 0, 0x0007},
        IdentifierRow{"GetDeviceCaps", "FF 55 04 09 03 FF FE F3", 9, 0xFFFE},
        IdentifierRow{"GetDeviceVersion", "FF 55 04 09 01 12 34 AC", -1, 0},
        IdentifierRow{"Answer", "FF 55 05 00 08 12 34 41 6C", -1, 0},
        // Bytes 5 and 6 of the large form are lingo and command.
        IdentifierRow{"LargeGetAccessoryInfo", "FF 55 00 00 05 00 27 12 34 01 8D", 0, 0x0027},
        IdentifierRow{"LargeGetAccessoryCaps", "FF 55 00 00 04 0C 81 AB CD F7", 12, 0x0C81},
        IdentifierRow{"LargeGetDeviceCaps", "FF 55 00 00 04 09 03 FF FE F3", 9, 0x0903}),
    test::RowName());

struct StepRow {
  const char* name;
  int own;
  const char* request;
  int own_afterwards;
};

class OwnIdentifier : public SessionTest, public ::testing::WithParamInterface<StepRow> {};

TEST_P(OwnIdentifier, StepsByOneWhenItIsNotAhead) {
  CIpodCommPeer::OwnTransactionId(session_) = static_cast<std::uint16_t>(GetParam().own);
  (session_.*CIpodCommPeer::kRoutePacket)(Packet(GetParam().request));
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(session_), GetParam().own_afterwards);
}

INSTANTIATE_TEST_SUITE_P(
    Against, OwnIdentifier,
    ::testing::Values(StepRow{"AnEqualOne", 5, "FF 55 04 09 03 00 05 EB", 6},
                      StepRow{"ALargerOneNotResynchronised", 5, "FF 55 04 09 03 12 34 AA", 6},
                      StepRow{"ASmallerOne", 5, "FF 55 04 09 03 00 04 EC", 5},
                      StepRow{"TheLargestWraps", 0xFFFF, "FF 55 04 09 03 FF FF F2", 0},
                      StepRow{"TheLargestAgainstASmallerOne", 0xFFFF, "FF 55 04 09 03 FF FE F3",
                              0xFFFF},
                      StepRow{"ZeroAgainstZero", 0, "FF 55 04 00 4A 00 00 B2", 1}),
    test::RowName());

TEST_F(Routing, RequestDuringACommandGoesToTheNotificationThread) {
  // The iPod asks for the accessory's capabilities first and answers the command then.
  Answer("FF 55 02 00 07 F7", "FF 55 03 00 27 00 D6 FF 55 04 00 08 41 00 B3");
  unsigned char name[8] = {};
  tagIPOD_WRITE_PARAMS write = {0x07, 0x00, nullptr, 0};
  tagIPOD_READ_PARAMS read = {};
  read.expected_command = 0x08;
  read.buffer = name;
  read.size = sizeof name;
  read.retries = 3;
  EXPECT_EQ(session_.WriteReadCommand(&write, &read), IPOD_COMM_OK);
  EXPECT_EQ(read.received_command, 0x08);
  EXPECT_EQ(read.stored, 2U);
  EXPECT_EQ(name[0], 0x41);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 07 F7", "FF 55 07 00 28 00 00 00 00 F3 DE"));
}

TEST_F(Routing, NothingIsRoutedFromABrokenFrame) {
  world_.Record({"EventModify"});
  Arrive("FF 55 03 00 08 41 B5");  // the checksum is B4
  EXPECT_THAT(world_.DrainCalls().Of("routing").text(), IsEmpty());
}

}  // namespace
