// SPDX-License-Identifier: MIT
// ipodctl through the legacy interface: what it looks up, plays, sets and refuses.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <nlohmann/json.hpp>
#include <thread>

#include "docked_ipod.h"
#include "simulator/pty/terminal.h"
#include "support/json_lines.h"
#include "support/temporary_folder.h"
#include "support/tmux.h"

using e2e::DockedIpod;
using e2e::SettingsOf;
using ipodsim::PlayerState;
using ipodsim::Profile;
using nlohmann::json;
using test::Await;
using test::Ended;
using test::Ipodctl;
using test::Object;
using test::Objects;
using test::Process;
using test::TemporaryFolder;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

// Runs a command through the legacy interface, and runs it well.
std::string Legacy(const DockedIpod& dock, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "--legacy");
  const Ended ended = dock.Ipodctl(arguments);
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.err, "");
  return ended.out;
}

// One sentence, and nothing else anywhere.
void ExpectRefused(const Ended& ended, int status, const std::string& part) {
  EXPECT_EQ(ended.status, status) << ended.err;
  EXPECT_EQ(ended.out, "");
  EXPECT_THAT(ended.err, AllOf(StartsWith("ipodctl: "), HasSubstr(part), EndsWith(".\n")));
  EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1) << ended.err;
}

TEST(IpodctlLegacy, TellsWhatIsInTheDockInItsOwnWords) {
  const DockedIpod dock;
  EXPECT_EQ(Legacy(dock, {"info"}), "Zoë's iPod on " + dock.device() +
                                        "\n"
                                        "  Model               MB598LL\n"
                                        "  Model number        0014|0000\n"
                                        "  Serial number       5U8250SIM01\n"
                                        "  Software version    1.0.4\n"
                                        "  Lingo version       0 - 1.9\n"
                                        "  Workouts            supported\n");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlLegacy, TellsMachinesWhatIsInTheDockAsTheOtherInterfaceDoes) {
  const DockedIpod dock;
  const json info = Object(Legacy(dock, {"info", "--json"}));
  EXPECT_EQ(info, (json{{"device", dock.device()},
                        {"name", "Zoë's iPod"},
                        {"model", "MB598LL"},
                        {"model_id", 0x00140000},
                        {"color", 2},
                        {"serial_number", "5U8250SIM01"},
                        {"software_version", "1.0.4"},
                        {"sports", true},
                        {"lingoes", {{"General", "1.09"}}}}));
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlLegacy, AsksAboutWorkoutsOnlyModelsThatTakeThem) {
  for (const auto& [id, supported] : {std::pair<std::uint32_t, bool>{0x00170001, true},
                                      {0x00100001, false},
                                      {0x00130001, false}}) {
    ipodsim::Settings settings = SettingsOf(Profile::kNano);
    settings.model_id = id;
    const DockedIpod dock(settings);
    const json info = json::parse(Legacy(dock, {"info", "--json"}));
    EXPECT_EQ(info.at("sports"), supported) << id;
    EXPECT_EQ(dock.mistakes(), "") << id;
  }
}

TEST(IpodctlLegacy, CountsAndListsRecords) {
  const DockedIpod dock;
  EXPECT_THAT(Legacy(dock, {"browse"}), AllOf(HasSubstr("  artists             3\n"),
                                              HasSubstr("  tracks              7\n")));
  EXPECT_EQ(Legacy(dock, {"browse", "artists", "the hum", "Spans"}),
            "the hum > Spans > tracks (3)\n"
            "  0  Bridges\n"
            "  1  Arches\n"
            "  2  Piers\n");
  const std::vector<json> tracks = Objects(
      Legacy(dock, {"browse", "artists", "山田", "--category", "tracks", "--from", "1", "--json"}));
  ASSERT_EQ(tracks.size(), 2U);
  EXPECT_EQ(tracks[0].at("total"), 2);
  EXPECT_EQ(tracks[1], json({{"index", 1}, {"name", "歩く 🎧"}}));
  EXPECT_EQ(Objects(Legacy(dock, {"browse", "tracks", "--hierarchy", "video", "--json"}))
                .at(1)
                .at("name"),
            "Moving Pictures");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlLegacy, NameTooLongForItIsSaidToBeUnreadable) {
  ipodsim::Settings settings;
  settings.library = e2e::NumberedTracks(3);
  settings.library.tracks[1].title = "Track 001" + std::string(300, 'x');
  const DockedIpod dock(settings);
  const Ended ended = dock.Ipodctl({"--legacy", "browse", "tracks", "--json"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_EQ(ended.err, "ipodctl: could not read the names of 1 of 3 tracks.\n");
  const std::vector<json> lines = Objects(ended.out);
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[1], json({{"index", 0}, {"name", "Track 000"}}));
  EXPECT_EQ(lines[2], json({{"index", 1}, {"name", nullptr}}));
  EXPECT_EQ(lines[3], json({{"index", 2}, {"name", "Track 002"}}));
  EXPECT_EQ(lines[4], json({{"error", "failed"},
                            {"message", "could not read the names of 1 of 3 tracks"},
                            {"status", 1}}));
}

TEST(IpodctlLegacy, PlaysPausesAndTellsWhatItPlays) {
  const DockedIpod dock;
  EXPECT_THAT(Legacy(dock, {"play", "albums", "Spans", "Arches"}),
              AllOf(HasSubstr("  State               Playing\n"
                              "  Title               Arches\n"
                              "  Chapter             Unknown\n"
                              "  Video               no\n"),
                    HasSubstr("  Time                0:0"), EndsWith(" of 3:20\n")));
  EXPECT_EQ(dock.title(), "Arches");
  EXPECT_EQ(dock.state(), PlayerState::kPlaying);
  // The port was closed in between; the iPod went on.
  const json now = json::parse(Legacy(dock, {"now", "--json"}));
  EXPECT_EQ(now.at("state"), "playing");
  EXPECT_EQ(now.at("index"), 1);
  EXPECT_EQ(now.at("title"), "Arches");
  EXPECT_EQ(now.at("video"), false);
  EXPECT_EQ(now.at("length_ms"), 200000);
  EXPECT_GT(now.at("position_ms"), 0);
  EXPECT_FALSE(now.contains("chapter"));
  // Both are the beginning of the last payload sent: the index of the track asked about.
  EXPECT_THAT(Legacy(dock, {"now"}), HasSubstr("  Track length        1\n"
                                               "  Track position      1\n"));
  EXPECT_THAT(Legacy(dock, {"pause"}), StartsWith("  State               Paused\n"));
  EXPECT_EQ(dock.state(), PlayerState::kPaused);
  // Pausing again leaves it paused.
  EXPECT_THAT(Legacy(dock, {"pause"}), StartsWith("  State               Paused\n"));
  EXPECT_THAT(Legacy(dock, {"play"}), StartsWith("  State               Playing\n"));
  EXPECT_EQ(dock.title(), "Arches");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlLegacy, TellsChaptersAndVideos) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  for (ipodsim::Track& track : settings.library.tracks) {
    if (track.kind == ipodsim::MediaKind::kAudiobook) track.chapters = {"Opening", "End"};
  }
  const DockedIpod dock(settings);
  const json book = json::parse(Legacy(dock, {"play", "audiobooks", "@0", "--json"}));
  EXPECT_EQ(book.at("title"), "Chapter 1");
  EXPECT_EQ(book.at("chapter"), "Opening");
  const json video =
      json::parse(Legacy(dock, {"play", "tracks", "@0", "--hierarchy", "video", "--json"}));
  EXPECT_EQ(video.at("title"), "Moving Pictures");
  EXPECT_EQ(video.at("video"), true);
}

TEST(IpodctlLegacy, NothingPlaysAtFirst) {
  const DockedIpod dock;
  EXPECT_EQ(Legacy(dock, {"now"}), "  State               Stopped\n");
  EXPECT_EQ(Object(Legacy(dock, {"pause", "--json"})), json({{"state", "stopped"}}));
}

TEST(IpodctlLegacy, SortsByNameOnModelsThatWantIt) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.model_id = 0x00100001;
  // Only sorted selections are taken, so one that is not sorted would fail.
  settings.refuses_select_record = true;
  const DockedIpod dock(settings);
  EXPECT_THAT(Legacy(dock, {"browse", "albums", "Spans"}), HasSubstr("  0  Arches\n"
                                                                     "  1  Bridges\n"
                                                                     "  2  Piers\n"));
}

TEST(IpodctlLegacy, ShowsAndSetsPreferences) {
  const DockedIpod dock;
  EXPECT_EQ(Legacy(dock, {"prefs"}),
            "  video-out           Off\n"
            "  screen              Fill Entire Screen\n"
            "  signal              NTSC\n"
            "  line-out            Disabled\n"
            "  connection          No Connection\n"
            "  captions            Off\n"
            "  aspect              4 by 3\n"
            "  subtitles           Off\n"
            "  alternate-audio     Off\n"
            "  pause-on-removal    off\n");
  EXPECT_EQ(Legacy(dock, {"prefs", "set", "video-out", "ask"}), "video-out: Ask User\n");
  EXPECT_EQ(Legacy(dock, {"prefs", "set", "connection", "s-video"}), "connection: S-Video\n");
  for (const auto& [name, setting, shown] :
       {std::array<const char*, 3>{"screen", "fit", "Fit Edge To Screen"},
        {"signal", "pal", "PAL"},
        {"line-out", "on", "Enabled"},
        {"aspect", "16:9", "16 by 9"}}) {
    EXPECT_EQ(Legacy(dock, {"prefs", "set", name, setting}),
              std::string(name) + ": " + shown + "\n");
  }
  EXPECT_EQ(Object(Legacy(dock, {"prefs", "get", "connection", "--json"})),
            json({{"connection", "s-video"}}));
  EXPECT_EQ(Object(Legacy(dock, {"prefs", "--json"})), json({{"video-out", "ask"},
                                                             {"screen", "fit"},
                                                             {"signal", "pal"},
                                                             {"line-out", "on"},
                                                             {"connection", "s-video"},
                                                             {"captions", "off"},
                                                             {"aspect", "16:9"},
                                                             {"subtitles", "off"},
                                                             {"alternate-audio", "off"},
                                                             {"pause-on-removal", "off"}}));
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlLegacy, PreferenceThatIsRefusedIsOneSentence) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.refused[{0x00, 0x2B}] = ipodsim::AckStatus::kFailed;
  const DockedIpod dock(settings);
  ExpectRefused(dock.Ipodctl({"--legacy", "prefs", "set", "video-out", "on"}), 1,
                "the iPod refused to set video-out to on");
  ExpectRefused(dock.Ipodctl({"--legacy", "prefs", "set", "aspect", "16:9"}), 1,
                "the iPod refused to set aspect to 16:9");
}

TEST(IpodctlLegacy, IpodThatDoesNotKnowItsNameIsThere) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.refused[{0x00, 0x07}] = ipodsim::AckStatus::kUnknown;
  const DockedIpod dock(settings);
  const json info = json::parse(Legacy(dock, {"info", "--json"}));
  EXPECT_FALSE(info.contains("name"));
  EXPECT_EQ(info.at("model"), "MB598LL");
}

TEST(IpodctlLegacy, PendingAcknowledgementDoesNotMoveTheAnswersAfterIt) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.remote_ui_is_pending_first = true;
  settings.asks_oldest_accessories = true;
  const DockedIpod dock(settings);
  EXPECT_THAT(Legacy(dock, {"browse", "albums", "Spans"}), HasSubstr("  0  Bridges\n"
                                                                     "  1  Arches\n"));
  EXPECT_THAT(Legacy(dock, {"play", "albums", "Spans", "Piers"}),
              HasSubstr("  Title               Piers\n"));
}

TEST(IpodctlLegacy, WorkoutIsWrittenInTheOlderForm) {
  const DockedIpod dock;
  const std::string out = Legacy(dock, {"workout", "--equipment", "bike", "--duration", "10",
                                        "--interval", "5", "--speed", "1000"});
  EXPECT_THAT(out, AllOf(StartsWith("Workout on bike, 0:10, written to the iPod in 3 intervals\n"
                                    "Start Workout Good\n"
                                    "Internval Write Good\n"),
                         HasSubstr("3 intervals and a summary")));
  std::string document;
  dock.server().Inspect([&](const ipodsim::SimulatedIpod& ipod) {
    document = ipod.feature_files().Read("gym-0001.xml");
  });
  EXPECT_THAT(document, StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                   "\t<gymData>\n"
                                   "\t<vers>1</vers>\n"
                                   "\t<equipmentInfo>\n"
                                   "\t\t<manufacturerID>ipodcomm</manufacturerID>\n"
                                   "\t\t<type>Bike</type>\n"
                                   "\t\t<model>ipodctl</model>\n"
                                   "\t\t<serialNumber>1</serialNumber>\n"
                                   "\t\t<gymName></gymName>\n"
                                   "\t\t<gymLocation></gymLocation>\n"
                                   "\t</equipmentInfo>\n"
                                   "\t<userInfo>\n"
                                   "\t\t<kg>75.000000</kg>\n"
                                   "\t</userInfo>\n"
                                   "\t<interval>\n"
                                   "\t\t<event>start</event>\n"
                                   "\t\t<sec>0</sec>\n"));
  EXPECT_THAT(document, AllOf(HasSubstr("\t\t<event>end</event>\n\t\t<sec>10</sec>\n"),
                              EndsWith("</gymData>")));
  // All that the program claims to have written, and nothing else, stands before the iPod's own.
  const std::size_t bytes = document.find("\t<iPodInfo>");
  ASSERT_LT(bytes, 1000u);
  EXPECT_THAT(out, HasSubstr(", " + std::to_string(bytes) + " bytes\n"));
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlLegacy, NamesOfAWorkoutKeepTheirAccents) {
  const DockedIpod dock;
  Legacy(dock, {"workout", "--duration", "1", "--speed", "1000", "--model", "Größe 9",
                "--serial-number", "7"});
  dock.server().Inspect([&](const ipodsim::SimulatedIpod& ipod) {
    EXPECT_THAT(ipod.feature_files().Read("gym-0001.xml"),
                HasSubstr("\t\t<model>Größe 9</model>\n\t\t<serialNumber>7</serialNumber>\n"));
  });
}

TEST(IpodctlLegacy, RefusedLineEndsAWorkoutAndTellsWhatIsSaved) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  // The header has 14 lines; the second line of the first interval fails.
  settings.storage.failing_writes[16] = ipodsim::AckStatus::kOutOfResources;
  const DockedIpod dock(settings);
  const Ended ended = dock.Ipodctl({"--legacy", "workout", "--duration", "1", "--speed", "1000"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.err,
              HasSubstr("the iPod refused the interval at 0:00 ('Error in Ack from Storage Write, "
                        "value is 2, should be 0'); a new workout file on the iPod holds the "
                        "header ("));
}

TEST(IpodctlLegacy, IpodWithoutWorkoutsIsOneSentence) {
  const DockedIpod dock(SettingsOf(Profile::kClassic));
  ExpectRefused(dock.Ipodctl({"--legacy", "workout"}), 1,
                "this iPod does not take workouts from the legacy interface");
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlLegacy, CommandsItDoesNotHaveAreWrongUsage) {
  for (const char* command :
       {"stop", "next", "previous", "shuffle", "repeat", "tour", "userdata"}) {
    ExpectRefused(Ipodctl({"--legacy", command}), 64,
                  std::string("the legacy interface has no '") + command +
                      "', only info, browse, play, pause, now, prefs, workout and selftest; see "
                      "'ipodctl ");
  }
  ExpectRefused(Ipodctl({"--legacy", "seek", "forward"}), 64, "has no 'seek'");
  ExpectRefused(Ipodctl({"--legacy", "now", "--follow"}), 64,
                "--follow does not go with the legacy interface");
  ExpectRefused(Ipodctl({"--legacy", "now", "--for", "3"}), 64, "--follow does not go");
  ExpectRefused(Ipodctl({"--legacy", "info", "--no-idps"}), 64, "--no-idps does not go");
  ExpectRefused(Ipodctl({"selftest", "--conduct", "fast"}), 64, "--conduct does not go");
  ExpectRefused(Ipodctl({"--legacy", "info", "--model", "X"}), 64, "--model does not go");
  ExpectRefused(Ipodctl({"--legacy", "workout", "--equipment", "stepper"}), 64,
                "the legacy interface writes kilometres, and a stepper counts floors");
}

TEST(IpodctlLegacy, PortsThatDoNotOpenAreOneSentenceAndWhatIsKnownOfTheCause) {
  const Ended missing = Ipodctl({"--port", "/dev/no-such-dock", "--legacy", "info"});
  EXPECT_EQ(missing.status, 2);
  EXPECT_THAT(missing.err,
              AllOf(StartsWith("ipodctl: cannot open /dev/no-such-dock: there is no such device"),
                    HasSubstr("\n  E101  The port does not exist (proved).\n")));
  const Ended no_line = Ipodctl({"--port", "/dev/null", "--legacy", "info"});
  EXPECT_EQ(no_line.status, 2);
  EXPECT_THAT(no_line.err,
              AllOf(StartsWith("ipodctl: cannot open /dev/null: it does not work as a serial line"),
                    HasSubstr("\n  E104  The device is no serial line (proved).\n")));
  const DockedIpod dock;
  const auto owner = dock.Start({"now", "--follow"});
  ASSERT_TRUE(owner->WaitForOutput("Stopped\n"));
  const Ended busy = dock.Ipodctl({"--legacy", "info"});
  EXPECT_EQ(busy.status, 2);
  EXPECT_THAT(busy.err,
              AllOf(StartsWith("ipodctl: cannot open " + dock.device() + ": it is in use; close"),
                    HasSubstr("\n  E102  The port is in use (proved).\n")));
  owner->Signal(SIGINT);
  EXPECT_EQ(owner->Wait().status, 0);
}

TEST(IpodctlLegacy, SilentIpodIsExplained) {
  const Ended ended = Ipodctl({"--simulated=silent", "--legacy", "browse"});
  EXPECT_EQ(ended.status, 3);
  EXPECT_THAT(ended.err, AllOf(StartsWith("ipodctl: no iPod answers on /dev/pts/"),
                               HasSubstr(".\n  E201  Nothing came from the iPod (proved): "),
                               EndsWith(": ipodctl --simulated=silent diagnose\n")));
}

TEST(IpodctlLegacy, RecordsThatAreNotThereAreOneSentence) {
  const DockedIpod dock;
  ExpectRefused(dock.Ipodctl({"--legacy", "play", "artists", "Nobody"}), 1,
                "there is no artist 'Nobody' here");
  ExpectRefused(dock.Ipodctl({"--legacy", "browse", "albums", "@9"}), 1,
                "there is no album @9 here, only 4 records");
}

TEST(IpodctlLegacy, PulledCableIsOneSentence) {
  const TemporaryFolder folder;
  const std::string link = folder.path("dock");
  Process simulator(IPODSIM_PROGRAM, {"--link", link});
  ASSERT_TRUE(simulator.WaitForOutput(link));
  Process browser(IPODCTL_PROGRAM, {"--port", link, "--legacy", "browse", "tracks"});
  ASSERT_TRUE(browser.WaitForOutput("\n     9  "));
  simulator.Signal(SIGKILL);
  const Ended cut = browser.Wait();
  EXPECT_EQ(cut.status, 1);
  EXPECT_THAT(cut.err, AllOf(StartsWith("ipodctl: the iPod on " + link +
                                        " no longer answers; check that it is docked and the cable "
                                        "is plugged in; it had read "),
                             EndsWith(" of 1727 tracks.\n")));
}

TEST(IpodctlLegacy, InterruptIsToldFromSuccess) {
  ipodsim::Settings settings;
  settings.library = e2e::NumberedTracks(900);
  const DockedIpod dock(settings);
  const auto browser = dock.Start({"--legacy", "browse", "tracks"});
  ASSERT_TRUE(browser->WaitForOutput("    0  Track 000\n"));
  browser->Signal(SIGINT);
  const Ended ended = browser->Wait();
  EXPECT_EQ(ended.status, 130);
  EXPECT_THAT(ended.err, AllOf(StartsWith("ipodctl: interrupted before it was done; it had read "),
                               EndsWith(" of 900 tracks.\n")));
}

// A byte of noise every 5 ms keeps each of the interface's reads waiting for a frame.
class NoisyLine {
 public:
  NoisyLine() {
    EXPECT_EQ(terminal_.Open(), "");
    noise_ = std::thread([this] {
      while (!ended_) {
        ipodsim::Bytes byte = {0x00};
        terminal_.Write(&byte);
        if (!terminal_.Read().empty()) asked_ = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
      }
    });
  }
  ~NoisyLine() {
    ended_ = true;
    noise_.join();
  }
  NoisyLine(const NoisyLine&) = delete;
  NoisyLine& operator=(const NoisyLine&) = delete;

  const std::string& device() const { return terminal_.path(); }
  bool asked() const { return asked_; }

 private:
  ipodsim::Terminal terminal_;
  std::atomic<bool> asked_ = false;
  std::atomic<bool> ended_ = false;
  std::thread noise_;
};

TEST(IpodctlLegacy, AnInterruptEndsAWaitThatNoiseKeepsUp) {
  for (const char* command : {"info", "selftest"}) {
    const NoisyLine line;
    Process waiting(IPODCTL_PROGRAM, {"--port", line.device(), "--legacy", command});
    ASSERT_TRUE(Await([&] { return line.asked(); }));
    waiting.Signal(SIGINT);
    const Ended ended = waiting.Wait();
    EXPECT_EQ(ended.status, 130) << command;
    EXPECT_EQ(ended.err, "ipodctl: interrupted before it was done.\n") << command;
  }
}

}  // namespace
