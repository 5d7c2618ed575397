// SPDX-License-Identifier: MIT
// Copies of sessions and transports share handles with their source. Whichever is used or
// destroyed first, nothing crashes, nobody hangs and no thread spins afterwards.
#include <memory>

#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::ScriptedDevice;
using test::World;
using ::testing::Each;

enum class Kind { kConstructed, kAssigned };

struct Row {
  const char* name;
  Kind kind;
  bool copy_goes_first;
};

class Copies : public ::testing::TestWithParam<Row> {
 protected:
  std::unique_ptr<CIpodComm> CopyOf(const CIpodComm& source) {
    if (GetParam().kind == Kind::kConstructed) return std::make_unique<CIpodComm>(source);
    auto copy = test::NewSession();
    *copy = source;
    return copy;
  }
  static void Use(CIpodComm& session) {
    wchar_t name[8] = {};
    tagIPOD_PLAY_STATUS status = {};
    session.Command_RequestIpodName(name, 8);
    session.GetPlayStatus(&status);
    session.PeekNextReadPacket();
    session.SetModel("X");
    session.IsOpen();
  }
  // Calls that all threads but the host make in a minute.
  static std::size_t CallsPerMinute(World& world) {
    world.Record();
    world.Advance(60 * kSecond);
    const auto calls = world.DrainRecord().size();
    world.StopRecording();
    return calls;
  }
};

TEST_P(Copies, OfASessionMayGoInEitherOrder) {
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE(seed);
    ScriptedDevice ipod;
    World world({seed});
    world.line().Plug(ipod);
    ipod.Answer(test::Hex("FF 55 02 00 07 F7"), test::Hex("FF 55 04 00 08 41 00 B3"));
    auto source = test::NewSession();
    world.Advance(2 * kSecond);
    EXPECT_EQ(source->Open(), 0);
    auto copy = CopyOf(*source);
    EXPECT_EQ(copy->IsOpen(), 1);
    Use(*source);
    Use(*copy);
    world.Advance(static_cast<std::int64_t>(seed) * 7 * kMillisecond);

    auto& first = GetParam().copy_goes_first ? copy : source;
    auto& second = GetParam().copy_goes_first ? source : copy;
    std::int64_t start_us = world.now_us();
    first.reset();
    EXPECT_LT(world.now_us() - start_us, 100 * kMillisecond);
    if (seed % 2 == 0) Use(*second);
    // The first has closed the events that the second's workers wait on, so nothing wakes them
    // before their time.
    start_us = world.now_us();
    second.reset();
    EXPECT_LT(world.now_us() - start_us, 1010 * kMillisecond);
    world.Advance(5 * kSecond);
    EXPECT_EQ(CallsPerMinute(world), 0U);
    world.line().Unplug();
  }
  test::DrainTraceLog();
}

TEST_P(Copies, SurvivorDoesNotSpinOnStaleHandles) {
  ScriptedDevice ipod;
  World world;
  world.line().Plug(ipod);
  auto source = test::NewSession();
  world.Advance(2 * kSecond);
  EXPECT_EQ(source->Open(), 0);
  auto copy = CopyOf(*source);
  (GetParam().copy_goes_first ? copy : source).reset();
  world.Advance(5 * kSecond);
  // Two workers looking every 50 ms, and a read thread every 4 ms, with a handful of calls each.
  EXPECT_LT(CallsPerMinute(world), 60U * (2 * 20 * 4 + 250 * 8));
  copy.reset();
  source.reset();
  world.line().Unplug();
}

TEST_P(Copies, SurvivorCanBeOpenedAgain) {
  ScriptedDevice ipod;
  World world;
  world.line().Plug(ipod);
  ipod.Answer(test::Hex("FF 55 02 00 07 F7"), test::Hex("FF 55 04 00 08 41 00 B3"));
  auto source = test::NewSession();
  world.Advance(2 * kSecond);
  EXPECT_EQ(source->Open(), 0);
  auto copy = CopyOf(*source);
  (GetParam().copy_goes_first ? copy : source).reset();
  CIpodComm& survivor = GetParam().copy_goes_first ? *source : *copy;
  EXPECT_EQ(survivor.Open(), 0);
  // Its events are gone, so commands need not succeed; they must end.
  const std::int64_t start_us = world.now_us();
  wchar_t name[8] = {};
  survivor.Command_RequestIpodName(name, 8);
  EXPECT_LE(world.now_us() - start_us, 3100 * kMillisecond);
  copy.reset();
  source.reset();
  world.line().Unplug();
}

TEST_P(Copies, HoldsWhatTheSourceHeld) {
  World world;
  auto source = test::NewSession();
  CIpodCommPeer::OwnTransactionId(*source) = 0x1234;
  CIpodCommPeer::TransactionIdMode(*source) = 1;
  CIpodCommPeer::IpodTransactionIds(*source)[12] = 0x4321;
  CIpodCommPeer::Identity(*source).sports_supported = 1;
  CIpodCommPeer::StorageWriteOffset(*source) = 99;
  CIpodCommPeer::OpenFileHandle(*source) = 42;
  CIpodCommPeer::FailedTextWrites(*source) = 3;
  source->SetLogLevel(5);
  source->SetIDPSEnable(1);
  CIpodCommPeer::Responses(*source).Append(test::Packet("FF 55 03 00 08 41 B4"));
  CIpodCommPeer::Notifications(*source).Append(
      test::Packet("FF 55 0A 04 00 27 00 00 07 00 00 00 09 BB"));
  world.Settle();
  auto copy = CopyOf(*source);
  EXPECT_EQ(CIpodCommPeer::OwnTransactionId(*copy), 0x1234);
  EXPECT_EQ(CIpodCommPeer::TransactionIdMode(*copy), 1);
  EXPECT_EQ(CIpodCommPeer::IpodTransactionIds(*copy)[12], 0x4321);
  EXPECT_EQ(copy->SupportsSports(), 1);
  EXPECT_EQ(CIpodCommPeer::StorageWriteOffset(*copy), 99U);
  EXPECT_EQ(CIpodCommPeer::OpenFileHandle(*copy), 42);
  EXPECT_EQ(CIpodCommPeer::FailedTextWrites(*copy), 3U);
  EXPECT_EQ(CIpodCommPeer::LogLevel(*copy), 5);
  EXPECT_EQ(copy->GetIDPSEnable(), 1);
  tagIPOD_PLAY_STATUS status = {};
  copy->GetPlayStatus(&status);
  EXPECT_EQ(status.position, 9U);
  tagSERIAL_PACKET packet = {};
  EXPECT_TRUE(copy->GetNextReadPacket(&packet));
  EXPECT_EQ(test::Text(packet), "FF 55 03 00 08 41 B4");
  EXPECT_TRUE(source->GetNextReadPacket(&packet));  // its own queue is untouched
}

// Behind them comes the event for the pauses on the line, where there is one: that is its own.
TEST_P(Copies, GivesBackTheHandlesThatTheSourceMade) {
  World world;
  world.NameThreads({"routing", "notification"});
  auto source = test::NewSession();
  world.Advance(2 * kSecond);
  auto copy = CopyOf(*source);
  world.Record({"CloseHandle"});
  copy.reset();
  std::vector<std::string> closed = world.DrainCalls().Of("host").text();
  ASSERT_GE(closed.size(), 8U);
  closed.resize(8);
  EXPECT_THAT(closed, ::testing::ElementsAre("CloseHandle(routing)", "CloseHandle(notification)",
                                             "CloseHandle(event2)", "CloseHandle(event3)",
                                             "CloseHandle(event4)", "CloseHandle(event5)",
                                             "CloseHandle(event6)",
                                             "CloseHandle(event1 \"IPOD_PORT_EVENT_NAME\")"));
}

TEST_P(Copies, OfATransportMayGoInEitherOrder) {
  for (std::uint64_t seed = 1; seed <= 12; ++seed) {
    ScriptedDevice ipod;
    World world({seed});
    world.line().Plug(ipod);
    auto source = std::make_unique<CIpodSerial>();
    EXPECT_EQ(source->Open(true), 0);
    auto copy = std::make_unique<CIpodSerial>();
    if (GetParam().kind == Kind::kAssigned) {
      *copy = *source;
    } else {
      copy = std::make_unique<CIpodSerial>(*source);
    }
    ipod.Send(test::Hex("FF 55 03 00 08 41 B4 FF 55 03 00 08 42 B3"));
    world.Advance(static_cast<std::int64_t>(seed) * 3 * kMillisecond);
    auto& first = GetParam().copy_goes_first ? copy : source;
    auto& second = GetParam().copy_goes_first ? source : copy;
    first.reset();
    unsigned char frame[] = {0xFF, 0x55, 0x02, 0x00, 0x07, 0xF7};
    EXPECT_EQ(second->WritePacket(frame, sizeof frame), 6);
    tagSERIAL_PACKET packet = {};
    second->GetNextPacket(&packet, 100);
    if (seed % 2 == 0) {
      EXPECT_EQ(second->Open(true), 0);
    }
    second.reset();
    world.Advance(5 * kSecond);
    EXPECT_EQ(CallsPerMinute(world), 0U);
    EXPECT_THAT(world.live_threads(), ::testing::IsEmpty());
    world.line().Unplug();
  }
}

TEST_P(Copies, AssigningASessionToItselfChangesNothing) {
  World world;
  CIpodComm session;
  world.Advance(2 * kSecond);
  EXPECT_EQ(session.Open(), 0);
  CIpodComm& same = session;
  session = same;
  EXPECT_EQ(session.IsOpen(), 1);
  tagIPOD_WRITE_PARAMS write = {0x07, 0x00, nullptr, 0};
  EXPECT_EQ(session.WriteCommand(&write), IPOD_COMM_OK);
}

INSTANTIATE_TEST_SUITE_P(Of, Copies,
                         ::testing::Values(Row{"ConstructedCopyFirst", Kind::kConstructed, true},
                                           Row{"ConstructedSourceFirst", Kind::kConstructed, false},
                                           Row{"AssignedCopyFirst", Kind::kAssigned, true},
                                           Row{"AssignedSourceFirst", Kind::kAssigned, false}),
                         test::RowName());

}  // namespace
