// SPDX-License-Identifier: MIT
// A port while memory is out: nothing is thrown, results and the log tell, and it works again
// afterwards.
#include <new>

#include "serial_test.h"
#include "world/memory_shortage.h"

namespace {

using ipodcomm::virtual_platform::MemoryShortage;
using test::kMillisecond;
using test::kSecond;
using test::SerialTest;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr long kNotEnoughMemory = 8;

class NoMemory : public SerialTest {
 protected:
  void ExpectUsable(CIpodSerial& serial) {
    ASSERT_EQ(serial.Open(true), 0);
    Arrive("FF 55 02 00 14 EA");
    tagSERIAL_PACKET packet = {};
    EXPECT_TRUE(serial.GetNextPacket(&packet, 0));
    EXPECT_EQ(test::Text(packet), "FF 55 02 00 14 EA");
    EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  }
};

TEST_F(NoMemory, PacketThatCannotBeStoredIsDroppedAndLoggedAndReadingGoesOn) {
  OpenForPackets();
  ipod_.Send(test::Hex("FF 55 02 00 13 EB"));
  {
    const MemoryShortage shortage;
    world_.Advance(100 * kMillisecond);
    EXPECT_TRUE(shortage.felt());
  }
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("CIpodSerial::PortReadThread: Error storing received packet: no memory "
                          "left"));
  Arrive("FF 55 02 00 14 EA");
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 14 EA"));
}

// A drop signals nothing: a consumer that waits goes on waiting.
TEST_F(NoMemory, DroppedPacketWakesNobody) {
  OpenForPackets();
  ipod_.Send(test::Hex("FF 55 02 00 13 EB"));
  const MemoryShortage shortage;
  tagSERIAL_PACKET packet = {};
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(serial_.GetNextPacket(&packet, 200)); }),
            200 * kMillisecond);
  EXPECT_TRUE(shortage.felt());
  test::DrainTraceLog();
}

TEST_F(NoMemory, OpeningWithAThreadFailsWithCode8AndWorksLater) {
  for (unsigned nth = 1;; ++nth) {
    SCOPED_TRACE(nth);
    long result = 0;
    bool felt = false;
    {
      const MemoryShortage shortage(nth);
      ASSERT_NO_THROW(result = serial_.Open(true));
      felt = shortage.felt();
    }
    if (!felt) break;
    EXPECT_EQ(result, kNotEnoughMemory);
    EXPECT_THAT(test::DrainTraceLog(),
                ElementsAre("CIpodSerial::Open: Error creating port read thread"));
    ExpectUsable(serial_);
    ASSERT_LT(nth, 10U);
  }
}

TEST_F(NoMemory, ObjectMadeThenStartsNoThreadAndServesRawAccess) {
  alignas(CIpodSerial) static unsigned char place[sizeof(CIpodSerial)];
  {
    const MemoryShortage shortage;
    ASSERT_NO_THROW(new (place) CIpodSerial);
    EXPECT_TRUE(shortage.felt());
  }
  auto* made = reinterpret_cast<CIpodSerial*>(place);
  EXPECT_EQ(made->Open(true), kNotEnoughMemory);
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("CIpodSerial::Open: Error creating port read thread"));
  EXPECT_EQ(made->Open(false), 0);
  unsigned char frame[] = {0xFF, 0x55, 0x02, 0x00, 0x13, 0xEB};
  EXPECT_EQ(made->WritePacket(frame, sizeof frame), 0);
  {
    CIpodSerial copy = *made;
    made->Close();
    ExpectUsable(copy);
    copy.Close();
  }
  world_.Advance(2 * kSecond);
  made->~CIpodSerial();
}

TEST_F(NoMemory, CopyHasNoneOfThePacketsAndTheSourceKeepsThem) {
  OpenForPackets();
  Arrive("FF 55 02 00 13 EB FF 55 02 00 14 EA");
  CIpodSerial assigned;
  for (unsigned nth = 1; nth <= 3; ++nth) {
    SCOPED_TRACE(nth);
    const MemoryShortage shortage(nth);
    ASSERT_NO_THROW(assigned = serial_);
    ASSERT_NO_THROW(const CIpodSerial copy(serial_));
  }
  const std::vector<std::string> log = test::DrainTraceLog();
  EXPECT_GE(log.size(), 3U);
  EXPECT_THAT(log,
              Each("CIpodSerial::CIpodSerial: Error copying received packets: no memory left"));
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB", "FF 55 02 00 14 EA"));
}

}  // namespace
