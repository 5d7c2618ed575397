// SPDX-License-Identifier: MIT
// Terminals that are closed, and readers that leave, while ipodctl is at work.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "docked_ipod.h"
#include "support/temporary_folder.h"

using e2e::DockedIpod;
using test::Ended;
using test::Process;
using test::TemporaryFolder;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

// A workout of an hour that has begun.
std::unique_ptr<Process> BeginWorkout(const DockedIpod& dock,
                                      Process::Setting setting = Process::Setting::kPlain) {
  auto workout = std::make_unique<Process>(
      IPODCTL_PROGRAM,
      std::vector<std::string>{"--port", dock.device(), "workout", "--interval", "1", "--speed",
                               "10", "--json", "--duration", "1:00:00"},
      setting);
  EXPECT_TRUE(workout->WaitForOutput("\"start\""));
  return workout;
}

void ExpectFinished(const DockedIpod& dock) {
  dock.server().Inspect([](const ipodsim::SimulatedIpod& ipod) {
    EXPECT_THAT(ipod.feature_files().Read("gym-0001.xml"),
                AllOf(HasSubstr("<event>end</event>"), HasSubstr("</workoutSummary>"),
                      EndsWith("</gymData>")));
    EXPECT_TRUE(ipod.open_feature_files().empty());
  });
  EXPECT_EQ(dock.mistakes(), "");
}

constexpr const char* kInterrupted = "ipodctl: interrupted at 0:";
constexpr const char* kComplete =
    "; the workout until then is complete in workout file 1 on the iPod.\n";

TEST(IpodctlLeaving, AHangUpFinishesAWorkoutAndItsSummary) {
  const DockedIpod dock;
  const auto workout = BeginWorkout(dock);
  workout->Signal(SIGHUP);
  const Ended ended = workout->Wait();
  EXPECT_EQ(ended.status, 130);
  EXPECT_THAT(ended.out, HasSubstr("\"saved\""));
  EXPECT_THAT(ended.err, AllOf(StartsWith(kInterrupted), EndsWith(kComplete)));
  ExpectFinished(dock);
}

// A shell hands on what it gets itself.
TEST(IpodctlLeaving, AHangUpIsPassedOverWhereTheCallerIgnoresIt) {
  const DockedIpod dock;
  Process workout("/usr/bin/env",
                  {"--ignore-signal=HUP", IPODCTL_PROGRAM, "--port", dock.device(), "workout",
                   "--interval", "1", "--speed", "10", "--duration", "0:20"});
  EXPECT_TRUE(workout.WaitForOutput("start"));
  workout.Signal(SIGHUP);
  const Ended ended = workout.Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  ExpectFinished(dock);
}

TEST(IpodctlLeaving, AHangUpThatComesTwiceEndsNothingSooner) {
  const DockedIpod dock;
  const auto workout = BeginWorkout(dock);
  workout->Signal(SIGHUP);
  workout->Signal(SIGHUP);
  usleep(50000);
  workout->Signal(SIGHUP);
  EXPECT_EQ(workout->Wait().status, 130);
  ExpectFinished(dock);
}

TEST(IpodctlLeaving, AClosedTerminalFinishesAWorkout) {
  const DockedIpod dock;
  const auto workout = BeginWorkout(dock, Process::Setting::kInTerminal);
  workout->StopReading();
  EXPECT_EQ(workout->Wait().status, 130);
  ExpectFinished(dock);
}

TEST(IpodctlLeaving, AReaderThatLeavesFinishesAWorkout) {
  const DockedIpod dock;
  const auto workout = BeginWorkout(dock);
  workout->StopReading();
  const Ended ended = workout->Wait();
  EXPECT_EQ(ended.status, 130);
  EXPECT_THAT(ended.err, AllOf(StartsWith(kInterrupted), EndsWith(kComplete)));
  ExpectFinished(dock);
}

TEST(IpodctlLeaving, AReaderThatLeavesEndsAListInGoodOrder) {
  ipodsim::Settings settings;
  settings.library = e2e::NumberedTracks(900);
  const DockedIpod dock(settings);
  const auto list = dock.Start({"browse", "tracks"});
  ASSERT_TRUE(list->WaitForOutput("Track 003"));
  list->StopReading();
  const Ended ended = list->Wait();
  EXPECT_EQ(ended.status, 130);
  EXPECT_THAT(ended.err, StartsWith("ipodctl: interrupted before it was done; it had read "));
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlLeaving, AReaderThatLeavesEndsFollowing) {
  const DockedIpod dock;
  const auto play = dock.Ipodctl({"play", "tracks"});
  const auto now = dock.Start({"now", "--follow", "--json"});
  ASSERT_TRUE(now->WaitForOutput("\"start\""));
  now->StopReading();
  const Ended ended = now->Wait();
  EXPECT_EQ(ended.status, 130);
  EXPECT_EQ(ended.err, "ipodctl: nobody reads the output any more.\n");
}

// An ipodsim that stands for a dock: killed, the cable is pulled; started again, the iPod is back.
std::unique_ptr<Process> Dock(const TemporaryFolder& folder) {
  auto dock = std::make_unique<Process>(IPODSIM_PROGRAM,
                                        std::vector<std::string>{"--link", folder.path("ipod")});
  EXPECT_TRUE(dock->WaitForOutput(folder.path("ipod")));
  return dock;
}

TEST(IpodctlLeaving, FollowingGoesOnWhenTheIpodIsDockedAgain) {
  const TemporaryFolder folder;
  auto dock = Dock(folder);
  Process now(IPODCTL_PROGRAM, {"--port", folder.path("ipod"), "now", "--follow", "--json"});
  ASSERT_TRUE(now.WaitForOutput("\"start\""));
  dock.reset();
  std::filesystem::remove(folder.path("ipod"));
  sleep(8);
  dock = Dock(folder);
  ASSERT_TRUE(now.WaitForOutput("\"start\"", 2));
  now.Signal(SIGINT);
  const Ended ended = now.Wait();
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.err, EndsWith("; waiting until it is docked again.\n"));
}

TEST(IpodctlLeaving, FollowingOnceEndsWhenTheIpodIsTakenOut) {
  const TemporaryFolder folder;
  auto dock = Dock(folder);
  Process now(IPODCTL_PROGRAM, {"--port", folder.path("ipod"), "now", "--once"});
  ASSERT_TRUE(now.WaitForOutput("Stopped"));
  dock.reset();
  const Ended ended = now.Wait();
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.err, HasSubstr(" no longer answers"));
}

TEST(IpodctlLeaving, ACommandWhoseReaderIsGoneFromTheStartSaysSo) {
  const DockedIpod dock;
  const auto info = dock.Start({"info"});
  info->StopReading();
  const Ended ended = info->Wait();
  EXPECT_EQ(ended.status, 130);
  EXPECT_EQ(ended.err, "ipodctl: nobody reads the output any more.\n");
}

}  // namespace
