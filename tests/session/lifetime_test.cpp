// SPDX-License-Identifier: MIT
// Destroying a session at any moment: it is quick, both worker threads stay alive and sleep for
// good, and nothing of the session is touched any more. Every moment has a schedule of its own.
#include <memory>

#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::ScriptedDevice;
using test::World;
using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

// A world with a session, whose scripted iPod is silent at first.
class Life {
 public:
  explicit Life(std::uint64_t seed) : world({seed}) {
    world.NameRoutine(CIpodSerial::PortReadThread, "read");
    world.NameRoutine(CIpodComm::ReadPacketThread, "routing");
    world.NameRoutine(CIpodComm::NotificationThread, "notification");
    world.line().Plug(ipod);
    session = test::NewSession();
  }
  ~Life() { world.line().Unplug(); }

  void Open() {
    world.Advance(2 * kSecond);
    EXPECT_EQ(session->Open(), 0);
  }

  void ExpectQuickAndFinalEnd() {
    const std::int64_t start_us = world.now_us();
    session.reset();
    EXPECT_LT(world.now_us() - start_us, 100 * kMillisecond);
    world.Advance(3 * kSecond);
    EXPECT_THAT(world.live_threads(), UnorderedElementsAre("routing", "notification"));
    world.Record();
    world.Advance(3600 * kSecond);
    EXPECT_THAT(world.DrainRecord(), IsEmpty());
    const std::string threads = world.DescribeThreads();
    EXPECT_THAT(threads, ::testing::HasSubstr("routing: Sleep for ever"));
    EXPECT_THAT(threads, ::testing::HasSubstr("notification: Sleep for ever"));
  }

  ScriptedDevice ipod;
  World world;
  std::unique_ptr<CIpodComm> session;
};

TEST(Destruction, IsQuickAtAnyMomentAfterConstruction) {
  for (int moment_ms = 0; moment_ms < 1300; moment_ms += moment_ms < 100 ? 1 : 17) {
    SCOPED_TRACE(moment_ms);
    Life life(static_cast<std::uint64_t>(moment_ms + 1));
    life.world.Advance(moment_ms * kMillisecond);
    life.ExpectQuickAndFinalEnd();
  }
}

TEST(Destruction, IsQuickAtAnyMomentAfterOpening) {
  for (int moment_ms = 0; moment_ms < 100; ++moment_ms) {
    SCOPED_TRACE(moment_ms);
    Life life(static_cast<std::uint64_t>(moment_ms + 1));
    life.Open();
    life.world.Advance(moment_ms * kMillisecond);
    life.ExpectQuickAndFinalEnd();
  }
}

TEST(Destruction, IsQuickAtAnyMomentAfterClosing) {
  for (int moment_ms = 0; moment_ms < 1300; moment_ms += 13) {
    SCOPED_TRACE(moment_ms);
    Life life(static_cast<std::uint64_t>(moment_ms + 1));
    life.Open();
    life.world.Advance(100 * kMillisecond);
    life.session->Close();
    life.world.Advance(moment_ms * kMillisecond);
    life.ExpectQuickAndFinalEnd();
  }
}

TEST(Destruction, IsQuickRightAfterOpeningDuringTheDriversRestart) {
  for (int moment_ms = 0; moment_ms < 1300; moment_ms += 13) {
    SCOPED_TRACE(moment_ms);
    Life life(static_cast<std::uint64_t>(moment_ms + 1));
    life.world.Advance(moment_ms * kMillisecond);
    EXPECT_EQ(life.session->Open(), 0);
    life.ExpectQuickAndFinalEnd();
  }
}

// Answering one request takes 20 ms on the notification thread; the requests come faster.
TEST(Destruction, IsQuickWhileRequestsAreAnswered) {
  for (int moment_ms = 0; moment_ms < 160; ++moment_ms) {
    SCOPED_TRACE(moment_ms);
    Life life(static_cast<std::uint64_t>(moment_ms + 1));
    life.Open();
    for (int i = 0; i < 12; ++i) {
      life.ipod.Send(
          test::Hex("FF 55 02 09 03 F2 FF 55 03 00 27 00 D6 FF 55 08 04 00 27 04 00 01 00 00 C8"));
    }
    life.world.Advance(moment_ms * kMillisecond);
    life.ExpectQuickAndFinalEnd();
  }
}

// An answer is being sent, and the pause behind its sync byte lasts for 20 ms.
TEST(Destruction, LooksEachMillisecondWhetherTheWorkersHaveLetGo) {
  Life life(1);
  life.Open();
  CIpodCommPeer::Notifications(*life.session).Append(test::Packet("FF 55 02 09 03 F2"));
  life.world.Advance(10 * kMillisecond);
  life.world.Record({"Sleep"});
  life.session.reset();
  const std::vector<std::string> sleeps = life.world.DrainCalls().Of("host").text();
  EXPECT_THAT(sleeps, ::testing::Each("Sleep(1)"));
  EXPECT_GT(sleeps.size(), 5U);
}

TEST(Destruction, IsQuickWithFullQueues) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    Life life(seed);
    life.Open();
    for (int i = 0; i < 1000; ++i) {
      CIpodCommPeer::Responses(*life.session).Append(test::Packet("FF 55 03 00 08 41 B4"));
      CIpodCommPeer::Notifications(*life.session).Append(test::Packet("FF 55 02 09 03 F2"));
    }
    life.ExpectQuickAndFinalEnd();
  }
}

TEST(Destruction, IsQuickOnAVanishedLine) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    Life life(seed);
    life.Open();
    life.world.line().Vanish();
    life.world.Advance(static_cast<std::int64_t>(seed) * 11 * kMillisecond);
    life.ExpectQuickAndFinalEnd();
  }
}

// Both transports have the packet event of the same name, so a signal may wake the other's thread.
TEST(Destruction, IsQuickBesideAnotherSession) {
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    Life life(seed);
    life.Open();
    auto other = test::NewSession();
    life.world.Advance(static_cast<std::int64_t>(seed) * 37 * kMillisecond);
    auto& first = seed % 2 == 0 ? life.session : other;
    auto& second = seed % 2 == 0 ? other : life.session;
    std::int64_t start_us = life.world.now_us();
    first.reset();
    EXPECT_LT(life.world.now_us() - start_us, 100 * kMillisecond);
    start_us = life.world.now_us();
    second.reset();
    EXPECT_LT(life.world.now_us() - start_us, 100 * kMillisecond);
    life.world.Advance(3 * kSecond);
    life.world.Record();
    life.world.Advance(60 * kSecond);
    EXPECT_THAT(life.world.DrainRecord(), IsEmpty());
  }
  test::DrainTraceLog();
}

TEST(Destruction, LeavesNothingOpenButTheReadThreadsHandle) {
  Life life(1);
  life.Open();
  life.session.reset();
  life.world.Advance(3 * kSecond);
  EXPECT_THAT(life.world.leftovers(), ::testing::Each(::testing::HasSubstr("read")));
}

TEST(Destruction, ManySessionsInARowWork) {
  Life life(1);
  life.ipod.Answer(test::Hex("FF 55 02 00 07 F7"), test::Hex("FF 55 04 00 08 41 00 B3"));
  for (int i = 0; i < 20; ++i) {
    life.world.Advance(i * 71 * kMillisecond);
    ASSERT_EQ(life.session->Open(), 0);
    wchar_t name[8] = {};
    EXPECT_EQ(life.session->Command_RequestIpodName(name, 8), 1);
    EXPECT_STREQ(name, L"A");
    life.session = nullptr;
    life.session = test::NewSession();
  }
  life.session = nullptr;
  life.world.Advance(3 * kSecond);
  // Two workers of each session are left.
  EXPECT_EQ(life.world.live_threads().size(), 42U);
  life.world.Record();
  life.world.Advance(60 * kSecond);
  EXPECT_THAT(life.world.DrainRecord(), IsEmpty());
}

}  // namespace
