// SPDX-License-Identifier: MIT
// What ipodctl does about wrong arguments, bad ports, and iPods that will not or cannot.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "docked_ipod.h"
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
using test::RunProgram;
using test::TemporaryFolder;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

namespace {

// One sentence, and nothing else anywhere.
void ExpectRefused(const Ended& ended, int status, const std::string& part) {
  EXPECT_EQ(ended.status, status) << ended.err;
  EXPECT_EQ(ended.out, "");
  EXPECT_THAT(ended.err, AllOf(StartsWith("ipodctl: "), HasSubstr(part), EndsWith(".\n")));
  EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1) << ended.err;
}

// The sentence, then the most important finding and the command that tells more.
void ExpectExplained(const Ended& ended, int status, const std::string& part,
                     const std::string& finding, const std::string& command) {
  const std::size_t explanation = ended.err.find("\n  E");
  ASSERT_NE(explanation, std::string::npos) << ended.err;
  ExpectRefused({ended.status, ended.out, ended.err.substr(0, explanation + 1)}, status, part);
  const std::string text = ended.err.substr(explanation + 1);
  EXPECT_THAT(text, StartsWith("  " + finding));
  EXPECT_THAT(text, EndsWith(".\n  What that means and what to do: " + command + "\n"));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2) << text;
}

void ExpectPortExplained(const Ended& ended, const std::string& port, const std::string& part,
                         const std::string& finding) {
  ExpectExplained(ended, 2, part, finding + " (proved)", "ipodctl --port " + port + " diagnose");
}

// To machines the sentence is an object, too, with one word for the exit status.
json FailureTold(const Ended& ended) {
  const std::vector<json> objects = Objects(ended.out);
  if (objects.empty()) return {};
  const json& failure = objects.back();
  EXPECT_THAT(ended.err, StartsWith("ipodctl: " + failure.value("message", "none") + ".\n"));
  EXPECT_EQ(failure.value("status", 0), ended.status);
  return failure.value("error", "none");
}

TEST(IpodctlFailure, IsAnObjectForMachines) {
  EXPECT_EQ(FailureTold(Ipodctl({"dance", "--json"})), "usage");
  EXPECT_EQ(FailureTold(Ipodctl({"--json", "--simulated=none", "info"})), "usage");
  EXPECT_EQ(FailureTold(Ipodctl({"--json", "--port", "/dev/none", "info"})), "port-unavailable");
  EXPECT_EQ(FailureTold(Ipodctl({"--json", "--simulated=old", "info"})), "ipod-too-old");
  EXPECT_EQ(FailureTold(Ipodctl({"--json", "--simulated=echo", "info"})), "nothing-docked");
  EXPECT_EQ(FailureTold(Ipodctl({"--json", "--simulated", "seek", "back"})), "failed");
  EXPECT_EQ(FailureTold(Ipodctl({"--json", "report", "/none.xml"})), "input-file");
  EXPECT_EQ(FailureTold(Ipodctl({"--json", "--simulated", "--capture", "/none/x", "info"})),
            "cannot-create");
}

TEST(IpodctlFailure, TellsMachinesTheCodeOfTheFinding) {
  EXPECT_EQ(Objects(Ipodctl({"--json", "--port", "/dev/none", "info"}).out).at(0).at("finding"),
            "E101");
  EXPECT_EQ(Objects(Ipodctl({"--json", "--simulated=old", "info"}).out).at(0).at("finding"),
            "E306");
}

// Before any port is opened, so that it takes no time.
TEST(IpodctlUsage, RefusesNonsenseAtOnce) {
  const auto refuse = [](const std::vector<std::string>& arguments, const std::string& sentence) {
    ExpectRefused(Ipodctl(arguments), 64, "ipodctl: " + sentence + "; see 'ipodctl ");
  };
  for (const char* step : {"@-1", "@", "@1x", ""}) {
    refuse(
        {"play", "tracks", step},
        "'" + std::string(step) + "' names no record (a name does, or @ and its number from 0 on)");
  }
  refuse({"browse", "tracks", "--count", "-1"}, "--count: '-1' is not a whole number, 0 or more");
  refuse({"--simulated", "--seed", "10000000000000000000000", "info"},
         "--seed: 10000000000000000000000 is too large; 18446744073709551615 is the largest");
  refuse({"seek", "forward", "nan"}, "SECONDS: 'nan' is not a number from 0.1 to 600");
  refuse({"infoo"}, "there is no command 'infoo' (did you mean 'info'?)");
  const Ended simulator = RunProgram(IPODSIM_PROGRAM, {"--seed", "-1"});
  EXPECT_EQ(simulator.status, 64);
  EXPECT_THAT(simulator.err, HasSubstr("--seed: '-1' is not a whole number, 0 or more"));
}

TEST(IpodctlUsage, RefusesWrongArguments) {
  ExpectRefused(Ipodctl({}), 64, "no command given; see 'ipodctl --help'");
  ExpectRefused(Ipodctl({"dance"}), 64, "dance");
  ExpectRefused(Ipodctl({"info", "extra"}), 64, "extra; see 'ipodctl info --help'");
  ExpectRefused(Ipodctl({"--wrong", "info"}), 64, "--wrong");
  ExpectRefused(Ipodctl({"browse", "shoes"}), 64, "'shoes' is not a category (playlists,");
  ExpectRefused(Ipodctl({"browse", "artists", "--from", "x"}), 64, "--from");
  ExpectRefused(Ipodctl({"browse", "artists", "--count", "-1"}), 64, "--count");
  ExpectRefused(Ipodctl({"browse", "artists", "--category", "x"}), 64, "'x' is not a category");
  ExpectRefused(Ipodctl({"browse", "--category", "tracks"}), 64, "--category");
  ExpectRefused(Ipodctl({"seek"}), 64, "DIRECTION");
  ExpectRefused(Ipodctl({"seek", "sideways"}), 64, "sideways");
  ExpectRefused(Ipodctl({"seek", "forward", "-5"}), 64, "-5");
  ExpectRefused(Ipodctl({"shuffle", "cards"}), 64, "cards");
  ExpectRefused(Ipodctl({"repeat", "twice"}), 64, "twice");
  ExpectRefused(Ipodctl({"prefs", "set", "aspect"}), 64, "VALUE");
  ExpectRefused(Ipodctl({"prefs", "set", "aspect", "1:1"}), 64, "(4:3 or 16:9)");
  ExpectRefused(Ipodctl({"prefs", "get", "colour"}), 64,
                "'colour' is not a preference (video-out,");
  ExpectRefused(Ipodctl({"--port", "/dev/x", "--simulated", "info"}), 64, "--port");
  ExpectRefused(Ipodctl({"--seed", "4", "info"}), 64, "needs --simulated");
  ExpectRefused(Ipodctl({"--library", "x.json", "info"}), 64, "needs --simulated");
  ExpectRefused(Ipodctl({"--simulated=shuffle", "info"}), 64, "only nano, classic, old, nosports");
  ExpectRefused(Ipodctl({"--simulated", "--habit", "manners", "info"}), 64,
                "a simulated iPod has no habit 'manners'");
  ExpectRefused(Ipodctl({"--simulated", "--fault", "gremlins", "info"}), 64,
                "a simulated iPod has no fault 'gremlins'");
  ExpectRefused(Ipodctl({"--baud", "57600", "info"}), 64, "needs --simulated");
  ExpectRefused(Ipodctl({"--simulated", "--baud", "1", "info"}), 64, "--baud");
  ExpectRefused(Ipodctl({"--port", "", "info"}), 64, "--port");
}

TEST(IpodctlUsage, HelpsWithEveryCommand) {
  const Ended help = Ipodctl({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, AllOf(HasSubstr("Usage: ipodctl"), HasSubstr("Exit status:")));
  EXPECT_EQ(help.err, "");
  for (const char* command :
       {"info", "tour", "selftest", "browse", "now", "play", "pause", "stop", "next", "previous",
        "seek", "shuffle", "repeat", "prefs", "workout", "userdata", "report"}) {
    EXPECT_THAT(help.out, HasSubstr(std::string("\n  ") + command + " "));
    const Ended ended = Ipodctl({command, "--help"});
    EXPECT_EQ(ended.status, 0) << command;
    EXPECT_THAT(ended.out, AllOf(HasSubstr(std::string("Usage: ipodctl ") + command),
                                 HasSubstr("Examples:\n"), HasSubstr("'ipodctl --help'")));
  }
}

TEST(IpodctlUsage, TellsItsVersionAndItsCommit) {
  const Ended ended = Ipodctl({"--version"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.out, StartsWith("ipodctl " IPODCOMM_VERSION));
  EXPECT_THAT(ended.out, MatchesRegex("ipodctl [0-9.]+( \\([0-9a-f]+(, changed)?\\))?\n"));
}

TEST(IpodctlUsage, SuggestsWhatMayHaveBeenMeant) {
  ExpectRefused(Ipodctl({"infoo"}), 64,
                "there is no command 'infoo' (did you mean 'info'?); see 'ipodctl --help'");
  ExpectRefused(Ipodctl({"browse", "--hierarchi", "audio"}), 64,
                "there is no option '--hierarchi' (did you mean '--hierarchy'?)");
  ExpectRefused(Ipodctl({"help", "bruse"}), 64, "(did you mean 'browse'?)");
  ExpectRefused(Ipodctl({"prefs", "ste", "aspect", "4:3"}), 64,
                "there is no command 'ste' (did you mean 'set'?); see 'ipodctl prefs --help'");
}

TEST(IpodctlUsage, ExplainsACommandByName) {
  EXPECT_EQ(Ipodctl({"help", "browse"}).out, Ipodctl({"browse", "--help"}).out);
  EXPECT_EQ(Ipodctl({"help", "prefs", "set"}).out, Ipodctl({"prefs", "set", "--help"}).out);
  EXPECT_EQ(Ipodctl({"help"}).out, Ipodctl({"--help"}).out);
  EXPECT_EQ(Ipodctl({"help"}).status, 0);
}

TEST(IpodctlUsage, CompletesCommandsInBash) {
  const auto complete = [](const std::string& words, const std::string& index) {
    return RunProgram("/bin/bash",
                      {"-c",
                       "source <(\"$0\" --completion); COMP_WORDS=(" + words +
                           "); COMP_CWORD=" + index + "; _ipodctl \"$0\"; echo \"${COMPREPLY[@]}\"",
                       IPODCTL_PROGRAM})
        .out;
  };
  EXPECT_EQ(complete("ipodctl br", "1"), "browse\n");
  EXPECT_EQ(complete("ipodctl --json p", "2"), "ports play pause previous prefs\n");
  EXPECT_EQ(complete("ipodctl browse a", "2"), "artists albums audiobooks\n");
  EXPECT_EQ(complete("ipodctl now --fo", "2"), "--follow --for\n");
  EXPECT_EQ(complete("ipodctl --conduct f", "2"), "field fast\n");
  EXPECT_EQ(complete("ipodctl --simulated = s", "3"), "silent strict\n");
  EXPECT_EQ(complete("ipodctl --simulated =", "2"),
            "nano classic old nosports silent strict echo\n");
  EXPECT_EQ(complete("ipodctl --simulated br", "2"), "browse\n");
  EXPECT_EQ(complete("ipodctl --simulated --habit no-s", "3"), "no-select\n");
  EXPECT_EQ(complete("ipodctl --simulated --fault late-", "3"), "late-bytes late-answers\n");
}

TEST(IpodctlPort, NamesAMissingDevice) {
  ExpectPortExplained(Ipodctl({"--port", "/dev/no-such-dock", "info"}), "/dev/no-such-dock",
                      "cannot open /dev/no-such-dock: there is no such device",
                      "E101  The port does not exist");
}

TEST(IpodctlPort, RefusesWhatIsNoSerialLine) {
  const TemporaryFolder folder;
  const std::string file = folder.Write("dock", "");
  const std::string finding = "E104  The device is no serial line";
  ExpectPortExplained(Ipodctl({"--port", file, "info"}), file,
                      "cannot open " + file + ": it is not a serial line", finding);
  ExpectPortExplained(Ipodctl({"--port", folder.path(""), "info"}), folder.path(""),
                      "it is not a serial line", finding);
  ExpectPortExplained(Ipodctl({"--port", "/dev/null", "info"}), "/dev/null",
                      "cannot open /dev/null: it does not work as a serial line", finding);
}

TEST(IpodctlPort, SaysWhatPermissionIsMissing) {
  const DockedIpod dock;
  std::filesystem::permissions(dock.device(), std::filesystem::perms::none);
  Process stranger(IPODCTL_PROGRAM, {"--port", dock.device(), "info"},
                   Process::Setting::kBoundByFileModes);
  ExpectPortExplained(stranger.Wait(), dock.device(),
                      "cannot open " + dock.device() + ": permission denied; join",
                      "E103  The port may not be opened");
}

TEST(IpodctlPort, RefusesADeviceInUseUntilCtrlCReleasesIt) {
  const DockedIpod dock;
  const auto owner = dock.Start({"now", "--follow"});
  ASSERT_TRUE(owner->WaitForOutput("Stopped\n"));
  ExpectPortExplained(dock.Ipodctl({"info"}), dock.device(),
                      "cannot open " + dock.device() + ": it is in use",
                      "E102  The port is in use");
  owner->Signal(SIGINT);
  const Ended ended = owner->Wait();
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.out, "Stopped\n");
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(dock.Ipodctl({"now"}).status, 0);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlLibrary, TakesAGoodFileAndRefusesAnyOther) {
  const TemporaryFolder folder;
  const std::string good = folder.Write("good.json", e2e::kLibrary);
  Process browser(IPODCTL_PROGRAM,
                  {"--simulated", "--library", good, "browse", "artists", "--json"});
  ExpectRefused(Ipodctl({"--simulated", "--library", folder.path("none.json"), "info"}), 66,
                "none.json");
  for (const char* content : {"", "{", "[]", "{\"tracks\": [{}]}", "{\"tracks\": 7}"}) {
    const std::string file = folder.Write("music.json", content);
    ExpectRefused(Ipodctl({"--simulated", "--library", file, "info"}), 66, file);
  }
  const Ended browsed = browser.Wait();
  EXPECT_EQ(browsed.status, 0) << browsed.err;
  EXPECT_EQ(Objects(browsed.out).front().at("total"), 3);
}

TEST(IpodctlProfiles, EachIpodIsTakenForWhatItIs) {
  const DockedIpod classic_dock(SettingsOf(Profile::kClassic));
  const auto classic = classic_dock.Start({"info", "--json"});
  Process without_sports(IPODCTL_PROGRAM, {"--simulated=nosports", "info"});
  Process old(IPODCTL_PROGRAM, {"--simulated=old", "info"});
  Process old_tour(IPODCTL_PROGRAM, {"tour", "--simulated=old"});
  Process silent(IPODCTL_PROGRAM, {"--simulated=silent", "info"});

  const Ended older_way = classic->Wait();
  EXPECT_EQ(older_way.status, 0) << older_way.err;
  EXPECT_EQ(json::parse(older_way.out).at("identified_by"), "lingoes");
  EXPECT_EQ(json::parse(older_way.out).at("model"), "MB029LL");
  EXPECT_EQ(classic_dock.mistakes(), "");

  const Ended no_sports = without_sports.Wait();
  EXPECT_EQ(no_sports.status, 0) << no_sports.err;
  EXPECT_THAT(no_sports.out, HasSubstr("  Workouts            not supported\n"));
  EXPECT_THAT(no_sports.out, HasSubstr("  Storage             not supported\n"));

  ExpectExplained(old.Wait(), 4,
                  "too old to be controlled (General 1.01, needs 1.02; Display Remote 1.00, needs "
                  "1.01; Extended Interface 1.07, needs 1.08); update",
                  "E306  The iPod is too old (proved): General has version 1.01 and needs 1.02",
                  "ipodctl --simulated=old diagnose");
  const Ended tour = old_tour.Wait();
  EXPECT_EQ(tour.status, 4);
  EXPECT_THAT(tour.out, HasSubstr("Protocol mistakes seen by the simulated iPod: 0\n"));
  EXPECT_THAT(tour.err, HasSubstr("too old"));
  const Ended nobody = silent.Wait();
  ExpectExplained(nobody, 3, "no iPod answers on /dev/pts/",
                  "E201  Nothing came from the iPod (proved): 9 frames went out and not one byte",
                  "ipodctl --simulated=silent diagnose");
  EXPECT_THAT(nobody.err, HasSubstr(" (no answer to any of "));
}

TEST(IpodctlProfiles, LineThatIsWiredToItselfIsNoIpod) {
  Process echo(IPODCTL_PROGRAM, {"--simulated=echo", "info"});
  Process legacy(IPODCTL_PROGRAM, {"--simulated=echo", "--legacy", "info"});
  for (Process* process : {&echo, &legacy}) {
    ExpectExplained(process->Wait(), 3, " comes back: the line is wired to itself",
                    "E202  Only what was sent came back (proved): all that came, ",
                    "ipodctl --simulated=echo diagnose");
  }
}

TEST(IpodctlFailure, SurvivesThePulledCableAndWorksAgainAfterwards) {
  const TemporaryFolder folder;
  const std::string link = folder.path("dock");
  const std::vector<std::string> simulator = {"--link", link};
  Process first(IPODSIM_PROGRAM, simulator);
  ASSERT_TRUE(first.WaitForOutput(link));
  Process browser(IPODCTL_PROGRAM, {"--port", link, "browse", "tracks"});
  ASSERT_TRUE(browser.WaitForOutput("\n     9  "));
  first.Signal(SIGKILL);
  const Ended cut = browser.Wait();
  EXPECT_EQ(cut.status, 1);
  EXPECT_THAT(cut.err, AllOf(StartsWith("ipodctl: the iPod on " + link +
                                        " no longer answers; check that it is docked and the cable "
                                        "is plugged in; it had read "),
                             HasSubstr(" of 1727 tracks.\n")));
  first.Wait();

  Process second(IPODSIM_PROGRAM, simulator);
  ASSERT_TRUE(second.WaitForOutput(link));
  EXPECT_EQ(Ipodctl({"--port", link, "info"}).status, 0);
  second.Signal(SIGINT);
  const Ended ended = second.Wait();
  EXPECT_EQ(ended.status, 0) << ended.out;
  EXPECT_THAT(ended.out, HasSubstr("0 protocol mistakes"));
}

TEST(IpodctlFailure, NamesTheRecordingThatTellsMore) {
  const TemporaryFolder folder;
  const std::string file = folder.path("the line.pcapng");
  const Ended ended = Ipodctl({"--simulated=old", "--capture", file, "info"});
  ExpectExplained(ended, 4, "too old", "E306  The iPod is too old (proved): General has version",
                  "ipodctl explain '" + file + "'");
}

// Nothing is recorded of a port that does not open.
TEST(IpodctlFailure, NamesNoRecordingThatTellsNothing) {
  const TemporaryFolder folder;
  ExpectPortExplained(
      Ipodctl({"--port", "/dev/no-such-dock", "--capture", folder.path("line.pcapng"), "info"}),
      "/dev/no-such-dock", "cannot open /dev/no-such-dock: there is no such device",
      "E101  The port does not exist");
}

TEST(IpodctlFailure, TellsAnInterruptFromSuccess) {
  ipodsim::Settings settings;
  settings.library = e2e::NumberedTracks(900);  // half a minute's reading
  const DockedIpod dock(settings);
  Process browser(IPODCTL_PROGRAM, {"--port", dock.device(), "browse", "tracks"});
  ASSERT_TRUE(browser.WaitForOutput("    0  Track 000\n"));
  browser.Signal(SIGINT);
  const Ended ended = browser.Wait();
  EXPECT_EQ(ended.status, 130);
  EXPECT_THAT(ended.err, AllOf(StartsWith("ipodctl: interrupted before it was done; it had read "),
                               EndsWith(" of 900 tracks.\n")));
  EXPECT_EQ(dock.Ipodctl({"now"}).status, 0);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlFailure, ReportsOutputThatCannotBeWritten) {
  const DockedIpod dock;
  const Ended ended = RunProgram("/bin/sh", {"-c", "exec \"$0\" --port \"$1\" info >/dev/full",
                                             IPODCTL_PROGRAM, dock.device()});
  ExpectRefused(ended, 1, "cannot write the output");
}

}  // namespace
