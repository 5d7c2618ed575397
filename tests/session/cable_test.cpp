// SPDX-License-Identifier: MIT
// The cable is pulled, the port vanishes, nothing is docked: commands fail within their time, no
// thread spins, and a later Open works. And an idle open session costs next to nothing.
#include <chrono>
#include <cstdio>

#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::SessionTest;
using ::testing::IsEmpty;

class Cable : public SessionTest {
 protected:
  Cable() { Answer("FF 55 02 00 07 F7", "FF 55 04 00 08 41 00 B3"); }
  int AskName() {
    wchar_t name[8] = {};
    return session_.Command_RequestIpodName(name, 8);
  }
  // Calls of every thread but the host in ten seconds.
  std::size_t CallsInTenSeconds() {
    world_.Record();
    world_.Advance(10 * kSecond);
    const auto calls = world_.DrainRecord().size();
    world_.StopRecording();
    return calls;
  }
};

TEST_F(Cable, UnpluggedIpodCostsThreeAttempts) {
  EXPECT_EQ(AskName(), 1);
  world_.line().Unplug();
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(AskName(), 0); });
  EXPECT_GE(elapsed_us, 3060 * kMillisecond);
  EXPECT_LE(elapsed_us, 3066 * kMillisecond);
}

TEST_F(Cable, PluggedInAgainTheSameSessionWorks) {
  world_.line().Unplug();
  EXPECT_EQ(AskName(), 0);
  world_.line().Plug(ipod_);
  EXPECT_EQ(AskName(), 1);
}

TEST_F(Cable, PulledDuringAnExchangeFailsItInTime) {
  Answer("FF 55 02 00 0D F1", "FF 55 04 00 0E 41 00 AD", 500 * kMillisecond);
  tagIPOD_WRITE_PARAMS write = {0x0D, 0x00, nullptr, 0};
  tagIPOD_READ_PARAMS read = {};
  read.expected_command = 0x0E;
  EXPECT_EQ(session_.WriteCommand(&write), IPOD_COMM_OK);
  world_.Advance(100 * kMillisecond);
  world_.line().Unplug();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.ReadCommand(&read), IPOD_COMM_NO_ANSWER); }), kSecond);
}

TEST_F(Cable, VanishedPortFailsCommandsAtOnce) {
  world_.line().Vanish();
  EXPECT_LE(Elapsed([&] { EXPECT_EQ(AskName(), 0); }), 10 * kMillisecond);
  EXPECT_EQ(session_.IsOpen(), 1);
}

TEST_F(Cable, VanishedPortIsReadTwentyTimesASecondAtMost) {
  world_.line().Vanish();
  const unsigned before = world_.call_count("ReadFile");
  world_.Advance(10 * kSecond);
  EXPECT_LE(world_.call_count("ReadFile") - before, 201U);
  EXPECT_LT(CallsInTenSeconds(), 2500U);
}

TEST_F(Cable, VanishedPortCannotBeOpenedUntilItIsBack) {
  world_.line().Vanish();
  world_.Advance(kSecond);
  EXPECT_EQ(session_.Open(), 2);
  session_.Close();
  EXPECT_EQ(session_.IsOpen(), 0);
  world_.line().Restore();
  EXPECT_EQ(session_.Open(), 0);
  EXPECT_EQ(AskName(), 1);
  test::DrainTraceLog();
}

TEST_F(Cable, RestoredPortWorksWithoutOpening) {
  world_.line().Vanish();
  EXPECT_EQ(AskName(), 0);
  world_.line().Restore();
  world_.Advance(100 * kMillisecond);
  EXPECT_EQ(AskName(), 1);
}

TEST_F(Cable, ReadsThatFailForEverEndNothing) {
  world_.FailFrom("ReadFile", 1, 31);
  EXPECT_EQ(AskName(), 0);
  world_.ClearFaults();
  world_.Advance(kSecond);
  EXPECT_EQ(AskName(), 1);
}

TEST_F(Cable, OpeningAndClosingAtAnyPaceWorks) {
  for (int pause_ms : {0, 1, 2, 5, 20, 55, 100, 500, 999, 1000, 1001, 1100}) {
    session_.Close();
    world_.Advance(pause_ms * kMillisecond);
    ASSERT_EQ(session_.Open(), 0) << pause_ms;
    EXPECT_EQ(AskName(), 1) << pause_ms;
  }
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

TEST_F(Cable, ClosedSessionFallsSilent) {
  session_.Close();
  world_.Advance(3 * kSecond);
  world_.Record();
  world_.Advance(10 * kSecond);
  // Ten waits of one second for each worker, and each looks into its queue before.
  EXPECT_EQ(world_.DrainCalls().To({"WaitForSingleObject"}).text().size(), 20U);
  EXPECT_LE(CallsInTenSeconds(), 2U * 10U * 3U + 6U);
}

TEST_F(Cable, ClosingDuringAnExchangeFailsIt) {
  // The iPod's answer comes, but the port is closed by then.
  tagIPOD_WRITE_PARAMS write = {0x07, 0x00, nullptr, 0};
  session_.WriteCommand(&write);
  session_.Close();
  tagIPOD_READ_PARAMS read = {};
  read.expected_command = 0x08;
  EXPECT_EQ(session_.ReadCommand(&read), IPOD_COMM_NO_ANSWER);
}

// The figure is printed for the eye; the promise is about virtual time alone.
TEST_F(Cable, IdleHourPassesWithoutAnyWrite) {
  const unsigned writes = world_.call_count("WriteFile");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Elapsed([&] { world_.Advance(3600 * kSecond); }), 3600 * kSecond);
  const std::chrono::duration<double> real = std::chrono::steady_clock::now() - start;
  std::printf("an idle open session runs %.0f times faster than real time\n",
              3600.0 / real.count());
  EXPECT_EQ(world_.call_count("WriteFile"), writes);
  EXPECT_EQ(AskName(), 1);
}

// A short story under many schedules: open, ask, follow a notification, answer a request, close.
TEST(Schedules, AllTellTheSameStory) {
  for (std::uint64_t seed = 1; seed <= 200; ++seed) {
    test::ScriptedDevice ipod;
    test::World world({seed});
    world.line().Plug(ipod);
    ipod.Answer(test::Hex("FF 55 02 00 07 F7"), test::Hex("FF 55 04 00 08 41 00 B3"),
                8 * kMillisecond);
    ipod.Answer(test::Hex("FF 55 04 04 00 18 05 DB"),
                test::Hex("FF 55 07 04 00 19 00 00 01 02 D9 FF 55 02 09 03 F2"));
    {
      test::ChosenSession session;
      world.Advance(static_cast<std::int64_t>(seed) * 10 * kMillisecond);
      ASSERT_EQ(session.Open(), 0) << seed;
      wchar_t name[8] = {};
      EXPECT_EQ(session.Command_RequestIpodName(name, 8), 1) << seed;
      EXPECT_STREQ(name, L"A");
      unsigned long count = 0;
      EXPECT_EQ(session.Command_GetNumberCategorizedDBRecords(5, &count), 1) << seed;
      EXPECT_EQ(count, 0x0102U);
      ipod.Send(test::Hex("FF 55 08 04 00 27 04 00 01 00 00 C8"));
      world.Advance(300 * kMillisecond);
      tagIPOD_PLAY_STATUS status = {};
      session.GetPlayStatus(&status);
      EXPECT_EQ(status.position, 65U) << seed;
      EXPECT_THAT(test::Frames(ipod.received()),
                  ::testing::ElementsAre("FF", "FF 55 02 00 07 F7", "FF 55 04 04 00 18 05 DB",
                                         "FF 55 05 09 04 02 00 00 EC"))
          << seed;
      session.Close();
    }
    world.Advance(2 * kSecond);
    world.line().Unplug();
  }
}

}  // namespace
