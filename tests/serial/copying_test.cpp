// SPDX-License-Identifier: MIT
// Copies of a port: they share its handles and nothing else, start no thread, and may be used and
// destroyed in any order.
#include <memory>

#include "serial_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::SerialTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Copying : public SerialTest {
 protected:
  static long WriteTo(CIpodSerial& serial) {
    unsigned char byte = 0xFF;
    return serial.WritePacket(&byte, 1);
  }
};

// Makes a copy of `source`, by construction or by assignment.
std::unique_ptr<CIpodSerial> Copy(const CIpodSerial& source, bool by_assignment) {
  if (!by_assignment) return std::make_unique<CIpodSerial>(source);
  auto copy = std::make_unique<CIpodSerial>();
  *copy = source;
  return copy;
}

class CopyingBothWays : public Copying, public ::testing::WithParamInterface<bool> {
 protected:
  std::unique_ptr<CIpodSerial> CopyOfIt() { return Copy(serial_, GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(By, CopyingBothWays, ::testing::Bool(), [](const auto& tested) {
  return std::string(tested.param ? "Assignment" : "Construction");
});

TEST_P(CopyingBothWays, TakesEveryMemberAsItStands) {
  OpenForPackets();
  Arrive("FF 55 02 00 13 EB FF 55 02 00 14");
  serial_.SetWindowHand(reinterpret_cast<HWND>(0x1234));
  CIpodSerialPeer::Status(serial_) = 7;
  CIpodSerialPeer::Driver(serial_) = reinterpret_cast<HANDLE>(0x5678);
  const auto copy = CopyOfIt();
  EXPECT_EQ(CIpodSerialPeer::Port(*copy), Port());
  EXPECT_EQ(CIpodSerialPeer::ReadThread(*copy), CIpodSerialPeer::ReadThread(serial_));
  EXPECT_EQ(CIpodSerialPeer::PacketEvent(*copy), CIpodSerialPeer::PacketEvent(serial_));
  EXPECT_EQ(CIpodSerialPeer::Running(*copy), 1);
  EXPECT_EQ(CIpodSerialPeer::ThreadRunning(*copy), 1);
  EXPECT_EQ(CIpodSerialPeer::Driver(*copy), reinterpret_cast<HANDLE>(0x5678));
  EXPECT_EQ(CIpodSerialPeer::Status(*copy), 7U);
  EXPECT_EQ(CIpodSerialPeer::Window(*copy), reinterpret_cast<HWND>(0x1234));
  EXPECT_EQ(CIpodSerialPeer::PacketType(*copy), IPOD_PACKET_TYPE_SMALL);
  const auto& assembler = CIpodSerialPeer::Assembler(*copy);
  EXPECT_EQ(test::ToHex(assembler.data(), assembler.length()), "FF 55 02 00 14");
  CIpodSerialPeer::Driver(serial_) = INVALID_HANDLE_VALUE;
}

TEST_P(CopyingBothWays, OpensNothingAndStartsNoThread) {
  OpenForPackets();
  world_.Record({"CreateFileW", "CreateThread", "CloseHandle"});
  const auto copy = CopyOfIt();
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  EXPECT_THAT(world_.live_threads(), ElementsAre("read"));
}

// An object that is made to be assigned to has made its packet event.
TEST_P(CopyingBothWays, MakesAnEventForItsPauseWhereTheSourceHasOne) {
  const std::vector<std::string> packet_event(
      GetParam() ? 1 : 0, "CreateEventW(auto, not set, \"IPOD_PORT_EVENT_NAME\")");
  world_.Record({"CreateEventW"});
  CopyOfIt();
  EXPECT_EQ(world_.DrainRecord(), packet_event);
  CIpodSerialPeer::ChoosePace(serial_, IPOD_CONDUCT_FAST);
  world_.DrainRecord();
  CopyOfIt();
  std::vector<std::string> events = packet_event;
  events.push_back("CreateEventW(auto, not set, null)");
  EXPECT_EQ(world_.DrainRecord(), events);
}

TEST_P(CopyingBothWays, CopiesTheQueuePacketByPacket) {
  OpenForPackets();
  Arrive("FF 55 02 00 13 EB FF 55 02 00 14 EA");
  const auto copy = CopyOfIt();
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(copy->GetNextPacket(&packet, 0));
  EXPECT_EQ(test::Text(packet), "FF 55 02 00 13 EB");
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB", "FF 55 02 00 14 EA"));
  EXPECT_TRUE(copy->GetNextPacket(&packet, 0));
  EXPECT_EQ(test::Text(packet), "FF 55 02 00 14 EA");
}

TEST_P(CopyingBothWays, LaterPacketsGoToTheSourceAlone) {
  OpenForPackets();
  const auto copy = CopyOfIt();
  Arrive("FF 55 02 00 13 EB");
  EXPECT_THAT(CIpodSerialPeer::Received(*copy), IsEmpty());
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB"));
}

TEST_P(CopyingBothWays, WritesThroughTheSharedPort) {
  OpenForPackets();
  const auto copy = CopyOfIt();
  EXPECT_EQ(WriteTo(*copy), 0);
  EXPECT_EQ(WriteTo(serial_), 0);
  EXPECT_THAT(DrainSent(), ElementsAre("FF", "FF"));
}

TEST_P(CopyingBothWays, CopyThatIsClosedLeavesAStaleHandle) {
  OpenForPackets();
  const auto copy = CopyOfIt();
  copy->Close();
  EXPECT_EQ(WriteTo(*copy), 6);
  EXPECT_EQ(WriteTo(serial_), 6);
  EXPECT_NE(Port(), INVALID_HANDLE_VALUE);
  serial_.Close();
  EXPECT_EQ(serial_.Open(true), 0);
  EXPECT_EQ(WriteTo(serial_), 0);
}

TEST_P(CopyingBothWays, SourceThatIsClosedLeavesAStaleHandle) {
  OpenForPackets();
  const auto copy = CopyOfIt();
  serial_.Close();
  EXPECT_EQ(WriteTo(*copy), 6);
  EXPECT_EQ(copy->CheckReceiveData(), 0);
  unsigned char buffer[8] = {};
  unsigned long length = 0;
  EXPECT_FALSE(copy->ReadRawPacket(buffer, 1, 0));
  EXPECT_EQ(copy->ReadPacket(buffer, 8, &length, nullptr), 0x80004005);
  copy->Close();
  EXPECT_EQ(copy->ReadPacket(buffer, 8, &length, nullptr), 6);
}

TEST_P(CopyingBothWays, SourceSurvivesTheDestructionOfItsCopy) {
  OpenForPackets();
  CopyOfIt().reset();
  // Port and event are closed: uses fail, and nothing waits or spins for ever.
  EXPECT_EQ(WriteTo(serial_), 6);
  tagSERIAL_PACKET packet = {};
  EXPECT_FALSE(serial_.GetNextPacket(&packet, 100));
  world_.Advance(kSecond);
  EXPECT_EQ(serial_.Open(true), 0);
  EXPECT_EQ(WriteTo(serial_), 0);
  // Without the event, packets are still queued and found by looking.
  Arrive("FF 55 02 00 13 EB");
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB"));
}

TEST_P(CopyingBothWays, CopySurvivesTheDestructionOfItsSource) {
  auto source = std::make_unique<CIpodSerial>();
  EXPECT_EQ(source->Open(true), 0);
  world_.Advance(kMillisecond);
  const auto copy = Copy(*source, GetParam());
  source.reset();
  EXPECT_EQ(WriteTo(*copy), 6);
  world_.Advance(100 * kMillisecond);
  EXPECT_EQ(copy->Open(true), 0);
  EXPECT_EQ(WriteTo(*copy), 0);
  Arrive("FF 55 02 00 13 EB");
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(copy->GetNextPacket(&packet, 0));
}

TEST_P(CopyingBothWays, CopyThatOpensTakesThePortFromTheSourcesThread) {
  OpenForPackets();
  const auto copy = CopyOfIt();
  world_.Record({"TerminateThread"});
  EXPECT_EQ(copy->Open(true), 0);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("TerminateThread(read, 4294967295)"));
  Arrive("FF 55 02 00 13 EB");
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(copy->GetNextPacket(&packet, 0));
  EXPECT_THAT(CIpodSerialPeer::Received(serial_), IsEmpty());
  EXPECT_THAT(world_.live_threads(), ElementsAre("read 2"));
}

// The copy remembers the thread as running. By now it restarts the driver and would be ended there.
TEST_P(CopyingBothWays, CopyThatOpensLeavesASourcesThreadAloneThatHasLeftItsLoop) {
  OpenForPackets();
  const auto copy = CopyOfIt();
  serial_.Close();
  world_.Advance(100 * kMillisecond);
  world_.Record({"TerminateThread"});
  EXPECT_EQ(copy->Open(false), 0);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  EXPECT_THAT(world_.live_threads(), ElementsAre("read"));
  world_.Advance(kSecond);
  EXPECT_THAT(world_.live_threads(), IsEmpty());
  EXPECT_EQ(world_.drivers().size(), 1U);
}

// The copy has locks of its own: a read of the source's thread does not keep its writes waiting.
TEST_P(CopyingBothWays, SharesNoLock) {
  OpenForPackets();  // the thread reads, under the port lock
  const auto copy = CopyOfIt();
  EXPECT_EQ(Elapsed([&] { WriteTo(*copy); }), 20 * kMillisecond);
}

TEST_F(Copying, OverAnOpenPortLeavesItsHandlesOpen) {
  CIpodSerial closed;
  OpenForRawAccess();
  world_.Record({"CloseHandle", "TerminateThread"});
  serial_ = closed;
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  EXPECT_EQ(WriteTo(serial_), 6);
}

TEST_F(Copying, OntoItselfChangesNothing) {
  OpenForPackets();
  Arrive("FF 55 02 00 13 EB");
  CIpodSerial& same = serial_;
  EXPECT_EQ(Elapsed([&] { serial_ = same; }), 0);
  EXPECT_THAT(DrainPackets(), ElementsAre("FF 55 02 00 13 EB"));
  EXPECT_EQ(WriteTo(serial_), 0);
}

// While the source's thread is in the middle of things.
TEST(CopyingUnderLoad, IsWholeUnderAnySchedule) {
  for (std::uint64_t seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    test::ScriptedDevice ipod;
    test::World world({seed});
    world.line().Plug(ipod);
    CIpodSerial serial;
    serial.Open(true);
    for (int i = 0; i < 20; ++i) ipod.Send(test::Hex("FF 55 02 00 13 EB"));
    for (int i = 0; i < 20; ++i) {
      world.Advance(static_cast<std::int64_t>(seed) * 100 + i * 370);
      CIpodSerial copy = serial;
      copy = serial;
      for (const auto& packet : CIpodSerialPeer::Received(copy)) {
        ASSERT_EQ(test::Text(packet), "FF 55 02 00 13 EB");
      }
      // Whoever dies last must not close what the source still uses.
      CIpodSerialPeer::Port(copy) = INVALID_HANDLE_VALUE;
      CIpodSerialPeer::PacketEvent(copy) = INVALID_HANDLE_VALUE;
    }
    world.Advance(kSecond);
    tagSERIAL_PACKET packet = {};
    int packets = 0;
    while (serial.GetNextPacket(&packet, 0)) ++packets;
    EXPECT_EQ(packets, 20);
    world.line().Unplug();
  }
}

}  // namespace
