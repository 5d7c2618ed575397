// SPDX-License-Identifier: MIT
// ipodctl selftest: every step shown, and an exit status for the whole.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <nlohmann/json.hpp>

#include "docked_ipod.h"
#include "live_lines.h"
#include "support/json_lines.h"
#include "support/temporary_folder.h"

using e2e::DockedIpod;
using e2e::SettingsOf;
using ipodsim::Profile;
using nlohmann::json;
using test::Ended;
using test::Ipodctl;
using test::Objects;
using test::Process;
using test::TemporaryFolder;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

TEST(IpodctlSelftest, GoodIpodPassesEveryStep) {
  const DockedIpod dock;
  const Ended ended = dock.Ipodctl({"selftest"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(ended.out,
            "Regression Test Started, port opened\n"
            "pass  Set Up Connection Test\n"
            "      Enter Remote UI mode\n"
            "pass  Ipod Information Zoë's iPod MB598LL 0014|0000 5U8250SIM01 1.0.4\n"
            "      Getting Software Version\n"
            "pass  Select Tracks from Album 0 Test\n"
            "      Compare Playing Track 1 Name to Selected Track Name\n"
            "pass  Play Pause Stop Test\n"
            "      Setting to Stop\n"
            "pass  End of Regression Test\n"
            "All 5 steps passed\n");
  EXPECT_EQ(dock.state(), ipodsim::PlayerState::kStopped);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlSelftest, SaysAsInfoDoesThatAnIpodIsTooOld) {
  const DockedIpod dock(SettingsOf(Profile::kOld));
  const DockedIpod info_dock(SettingsOf(Profile::kOld));
  const auto info = info_dock.Start({"info"});
  const Ended ended = dock.Ipodctl({"selftest"});
  EXPECT_EQ(ended.status, 4);
  EXPECT_THAT(ended.out, HasSubstr("\nAll 5 steps passed\n"));
  EXPECT_THAT(ended.err, HasSubstr("too old to be controlled (General 1.01, needs 1.02"));
  EXPECT_EQ(dock.mistakes(), "");
  EXPECT_EQ(info->Wait().status, 4);
}

TEST(IpodctlSelftest, NarrowTerminalShowsTheBeginningOfEachAction) {
  const DockedIpod dock;
  Process on_terminal(IPODCTL_PROGRAM, {"--port", dock.device(), "selftest"},
                      Process::Setting::kErrorsOnTerminal);
  on_terminal.Resize(20);
  const Ended ended = on_terminal.Wait();
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.err, HasSubstr("\rStep 2: Select Tra…\x1b[K"));
  const std::vector<std::size_t> columns = e2e::ColumnsOfLiveLines(ended.err);
  EXPECT_EQ(*std::max_element(columns.begin(), columns.end()), 19U);
}

// The library writes the text while its call lasts; the tracks' stand for two seconds each.
TEST(IpodctlSelftest, TerminalShowsEachActionWhileItLasts) {
  const DockedIpod dock;
  Process on_terminal(IPODCTL_PROGRAM, {"--port", dock.device(), "selftest"},
                      Process::Setting::kErrorsOnTerminal);
  const Ended ended = on_terminal.Wait();
  EXPECT_EQ(ended.status, 0);
  const std::size_t first = ended.err.find("\rStep 2: Select Track 0 ...");
  const std::size_t second = ended.err.find("\rStep 2: Select Track 1 ...");
  EXPECT_NE(first, std::string::npos);
  EXPECT_NE(second, std::string::npos);
  EXPECT_LT(first, second);
  EXPECT_THAT(ended.out, Not(HasSubstr("Select Track 0")));
}

TEST(IpodctlSelftest, JsonHasAnObjectForEachStepAndOneForAll) {
  const DockedIpod dock(SettingsOf(Profile::kClassic));
  // The flag adds nothing: the self-test is the legacy interface's own.
  const Ended ended = dock.Ipodctl({"--legacy", "selftest", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::vector<json> objects = Objects(ended.out);
  ASSERT_EQ(objects.size(), 6u);
  EXPECT_EQ(objects[0], (json{{"step", "Set Up Connection Test"},
                              {"number", 0},
                              {"detail", "Enter Remote UI mode"},
                              {"passed", true}}));
  EXPECT_EQ(
      objects[4],
      (json{{"step", "End of Regression Test"}, {"number", 4}, {"detail", ""}, {"passed", true}}));
  EXPECT_EQ(objects[5], (json{{"steps", 5}, {"failures", 0}}));
}

TEST(IpodctlSelftest, AlbumWithOneTrackIsEnough) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.library.tracks.resize(1);
  settings.library.playlists.clear();
  const DockedIpod dock(settings);
  const Ended ended = dock.Ipodctl({"selftest"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, HasSubstr("pass  Select Tracks from Album 0 Test\n"
                                   "      Compare Playing Track 0 Name to Selected Track Name\n"));
}

TEST(IpodctlSelftest, FailedStepNamesItsActionAndTheOthersGoOn) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.library.tracks.clear();
  settings.library.playlists.clear();
  const DockedIpod dock(settings);
  const Ended ended = dock.Ipodctl({"selftest"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.out, HasSubstr("FAIL  Select Tracks from Album 0 Test\n"
                                   "      Select Top Album Both\n"
                                   "FAIL  Play Pause Stop Test\n"
                                   "      Setting to Play\n"
                                   "pass  End of Regression Test\n"));
  EXPECT_EQ(ended.err,
            "ipodctl: the self-test failed in 2 of 5 steps, first at 'Select Top Album Both'.\n");
}

TEST(IpodctlSelftest, SilentIpodIsToldAfterTheFirstStep) {
  Process silent(IPODCTL_PROGRAM, {"--simulated=silent", "selftest"});
  const Ended ended = silent.Wait();
  EXPECT_EQ(ended.status, 3);
  EXPECT_EQ(ended.out,
            "Regression Test Started, port opened\n"
            "FAIL  Set Up Connection Test\n"
            "      Enter Remote UI mode\n");
  EXPECT_THAT(ended.err, HasSubstr("ipodctl: no iPod answers on /dev/pts/"));
}

TEST(IpodctlSelftest, MissingPortIsOneSentence) {
  const Ended ended = Ipodctl({"--port", "/dev/no-such-dock", "selftest"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_EQ(ended.out, "");
  EXPECT_THAT(ended.err, HasSubstr("cannot open /dev/no-such-dock: there is no such device"));
}

TEST(IpodctlSelftest, PulledCableEndsIt) {
  const TemporaryFolder folder;
  const std::string link = folder.path("dock");
  Process simulator(IPODSIM_PROGRAM, {"--link", link});
  ASSERT_TRUE(simulator.WaitForOutput(link));
  Process test(IPODCTL_PROGRAM, {"--port", link, "selftest"});
  ASSERT_TRUE(test.WaitForOutput("pass  Ipod Information"));
  simulator.Signal(SIGKILL);
  const Ended cut = test.Wait();
  EXPECT_EQ(cut.status, 1);
  EXPECT_THAT(cut.out, HasSubstr("FAIL  Select Tracks from Album 0 Test\n"));
  EXPECT_EQ(cut.err, "ipodctl: the iPod on " + link +
                         " no longer answers; check that it is docked and the cable is plugged "
                         "in.\n");
}

}  // namespace
