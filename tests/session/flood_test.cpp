// SPDX-License-Identifier: MIT
// An iPod that sends and sends to a host that does nothing: under the robust conduct the session
// keeps the newest 1024 packets, counts what it drops and logs each flood once.
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::Packet;
using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kLogged[] = "CIpodComm::ReadPacketThread: Packets dropped: nobody takes them";

class Flood : public SessionTest {
 protected:
  Flood() { EXPECT_EQ(session_.SetConduct(&IPOD_CONDUCT_FAST), 1); }

  // Answers that nobody asked for, numbered from `first` on, into the response queue.
  void Queue(std::uint32_t first, std::uint32_t count) {
    for (std::uint32_t i = first; i < first + count; ++i) {
      tagSERIAL_PACKET packet = Packet("FF 55 07 04 00 19 00 00 00 00 00");
      packet.data[8] = static_cast<unsigned char>(i >> 8);
      packet.data[9] = static_cast<unsigned char>(i & 0xFF);
      ASSERT_TRUE(CIpodCommPeer::Responses(session_).Append(packet));
    }
  }
  // The number of the next packet; -1 when there is none.
  int Next() {
    tagSERIAL_PACKET packet = {};
    if (!CIpodCommPeer::Responses(session_).Pop(&packet, 0)) return -1;
    return packet.data[8] * 256 + packet.data[9];
  }
  // That a queue has room for `most` packets, and for no more.
  static void ExpectLimit(ipodcomm::PacketLimit* limit, std::size_t most) {
    std::list<tagSERIAL_PACKET> queue(most - 1);
    EXPECT_FALSE(limit->MakeRoom(&queue));
    EXPECT_EQ(queue.size(), most - 1);
    queue.emplace_back();
    EXPECT_TRUE(limit->MakeRoom(&queue));
    EXPECT_EQ(queue.size(), most - 1);
  }
  void TakeAll() {
    while (Next() >= 0) {
    }
  }
};

TEST_F(Flood, LosesTheOldest) {
  Queue(0, 1030);
  EXPECT_EQ(session_.GetDroppedPackets(), 6U);
  for (int i = 6; i < 1030; ++i) ASSERT_EQ(Next(), i);
  EXPECT_EQ(Next(), -1);
}

TEST_F(Flood, BeginsWithOneMoreThanTheQueueHolds) {
  Queue(0, 1024);
  EXPECT_EQ(session_.GetDroppedPackets(), 0U);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  EXPECT_EQ(Next(), 0);
}

TEST_F(Flood, IsLoggedOnce) {
  Queue(0, 3000);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kLogged));
}

TEST_F(Flood, IsAnotherOnceTheQueueWasTaken) {
  Queue(0, 1100);
  TakeAll();
  Queue(0, 1100);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kLogged, kLogged));
  EXPECT_EQ(session_.GetDroppedPackets(), 152U);
}

TEST_F(Flood, IsTheSameWhileTheQueueIsNearlyFull) {
  Queue(0, 1100);
  for (int i = 0; i < 100; ++i) Next();
  Queue(0, 200);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kLogged));
}

TEST_F(Flood, IsAnotherOnceHalfTheQueueWasTaken) {
  Queue(0, 1100);
  for (int i = 0; i < 511; ++i) Next();
  Queue(0, 600);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kLogged));
  for (int i = 0; i < 512; ++i) Next();
  Queue(0, 600);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kLogged));
}

TEST_F(Flood, LosesNothingUnderTheDefaultConduct) {
  session_.SetConduct(&IPOD_CONDUCT_FIELD);
  Queue(0, 3000);
  EXPECT_EQ(session_.GetDroppedPackets(), 0U);
  EXPECT_EQ(Next(), 0);
}

TEST_F(Flood, LosesNoRecordsThatWereAskedFor) {
  session_.Command_RetrieveCategorizedDatabaseRecords(0, 2000, 5);
  Queue(0, 3024);
  EXPECT_EQ(session_.GetDroppedPackets(), 0U);
  Queue(3024, 1);
  EXPECT_EQ(session_.GetDroppedPackets(), 1U);
}

TEST_F(Flood, HasTheOldLimitOnceTheRecordsWereTaken) {
  Answer("FF 55 0C 04 00 1A 05 00 00 00 00 00 00 00 01 D0",
         "FF 55 09 04 00 1B 00 00 00 00 41 00 97");
  session_.Command_RetrieveCategorizedDatabaseRecords(0, 1, 5);
  wchar_t name[8];
  EXPECT_EQ(session_.GetNextCategorizedRecord(name, 8), 1);
  Queue(0, 1025);
  EXPECT_EQ(session_.GetDroppedPackets(), 1U);
}

TEST_F(Flood, HasTheOldLimitOnceTheRecordsWereRefused) {
  Answer("FF 55 0C 04 00 1A 05 00 00 00 00 00 00 00 01 D0", "FF 55 06 04 00 01 04 00 1A D7");
  session_.Command_RetrieveCategorizedDatabaseRecords(0, 1, 5);
  wchar_t name[8];
  EXPECT_EQ(session_.GetNextCategorizedRecord(name, 8), 0);
  Queue(0, 1025);
  EXPECT_EQ(session_.GetDroppedPackets(), 1U);
}

TEST_F(Flood, OverTheLineLeavesTheSessionAsItWas) {
  const test::Bytes unasked = test::Hex("FF 55 04 04 00 2D 01 CA");
  for (int i = 0; i < 1500; ++i) ipod_.Send(unasked);
  world_.Advance(5 * test::kSecond);
  EXPECT_EQ(session_.GetDroppedPackets(), 476U);
  EXPECT_THAT(test::DrainTraceLog(), ElementsAre(kLogged));
  Answer("FF 55 03 04 00 2C CD", "FF 55 04 04 00 2D 02 C9");
  unsigned long mode = 0;
  EXPECT_EQ(session_.Command_GetShuffle(&mode), 1);
  EXPECT_EQ(mode, 2U);
}

TEST_F(Flood, IsTheSameInEachOfTheThreeQueues) {
  for (ipodcomm::PacketLimit* limit : {&CIpodSerialPeer::Limit(CIpodCommPeer::Serial(session_)),
                                       &CIpodCommPeer::Responses(session_).limit(),
                                       &CIpodCommPeer::Notifications(session_).limit()}) {
    ExpectLimit(limit, 1024);
  }
}

TEST_F(Flood, LosesRecordsOfAListThatIsTooLong) {
  session_.Command_RetrieveCategorizedDatabaseRecords(0, 65537, 5);
  ExpectLimit(&CIpodCommPeer::Responses(session_).limit(), 1024 + 65536);
}

TEST_F(Flood, IsCountedInAllThreeQueuesTogether) {
  const auto drop = [](ipodcomm::PacketLimit& limit, std::size_t packets) {
    std::list<tagSERIAL_PACKET> queue(packets, Packet("FF 55 02 00 13 EB"));
    limit.Choose(3);
    EXPECT_TRUE(limit.MakeRoom(&queue));
    EXPECT_EQ(queue.size(), 2U);
  };
  drop(CIpodSerialPeer::Limit(CIpodCommPeer::Serial(session_)), 3);
  drop(CIpodCommPeer::Responses(session_).limit(), 12);
  drop(CIpodCommPeer::Notifications(session_).limit(), 102);
  EXPECT_EQ(session_.GetDroppedPackets(), 111U);
}

TEST_F(Flood, OfATransportIsBoundedToo) {
  CIpodSerial& serial = CIpodCommPeer::Serial(session_);
  CIpodSerialPeer::Limit(serial).Choose(3);
  CIpodSerialPeer::Received(serial).assign(5, Packet("FF 55 02 00 13 EB"));
  EXPECT_TRUE(CIpodSerialPeer::Limit(serial).MakeRoom(&CIpodSerialPeer::Received(serial)));
  EXPECT_EQ(CIpodSerialPeer::Received(serial).size(), 2U);
  EXPECT_EQ(session_.GetDroppedPackets(), 3U);
}

}  // namespace
