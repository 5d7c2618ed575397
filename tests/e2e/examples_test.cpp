// SPDX-License-Identifier: MIT
// The examples as they stand in examples/, each on a docked iPod: what they print, and what the
// iPod says has happened.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>

#include "docked_ipod.h"
#include "support/temporary_folder.h"

using e2e::DockedIpod;
using e2e::SettingsOf;
using ipodsim::AckStatus;
using ipodsim::PlayerState;
using ipodsim::Profile;
using test::Ended;
using test::Process;
using test::TemporaryFolder;
using ::testing::ContainsRegex;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

std::unique_ptr<Process> Start(const std::string& example, const std::string& device,
                               const std::vector<std::string>& arguments = {}) {
  std::vector<std::string> words = {"IPODCOMM_COM2=" + device, "LC_ALL=C.UTF-8",
                                    EXAMPLES_FOLDER "/" + example};
  words.insert(words.end(), arguments.begin(), arguments.end());
  return std::make_unique<Process>("/usr/bin/env", words);
}

Ended RunToEnd(const std::string& example, const DockedIpod& dock,
               const std::vector<std::string>& arguments = {}) {
  return Start(example, dock.device(), arguments)->Wait();
}

void ExpectSentence(const Ended& ended, const std::string& sentence) {
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.err, EndsWith(sentence + "\n"));
}

std::string FirstWorkout(const DockedIpod& dock) {
  std::string content;
  dock.server().Inspect([&](const ipodsim::SimulatedIpod& ipod) {
    content = ipod.feature_files().Read("gym-0001.xml");
  });
  return content;
}

// An iPod that fails one write of a workout, counted from 1.
ipodsim::Settings FailingWrite(std::uint32_t number) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.storage.failing_writes[number] = AckStatus::kFailed;
  return settings;
}

TEST(NowPlayingExample, ShowsWhatPlaysAndHowFarItIs) {
  const DockedIpod dock;
  ASSERT_EQ(dock.Ipodctl({"play", "tracks", "Bridges"}).status, 0);
  const Ended ended = RunToEnd("now_playing", dock, {"4"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const auto position_in = [](const std::string& line) {
    int minutes = 0;
    int seconds = 0;
    EXPECT_EQ(std::sscanf(line.c_str(), "Playing  Bridges - The Hum - Spans  %d:%d of 5:00",
                          &minutes, &seconds),
              2)
        << line;
    return minutes * 60 + seconds;
  };
  const std::size_t last = ended.out.rfind('\n', ended.out.size() - 2) + 1;
  EXPECT_GT(position_in(ended.out.substr(last)), position_in(ended.out));
  EXPECT_EQ(dock.state(), PlayerState::kPlaying);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(NowPlayingExample, ShowsThatNothingPlaysAndEndsInTime) {
  const DockedIpod dock;
  const Ended ended = RunToEnd("now_playing", dock, {"1"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "Stopped   -  -   0:00 of 0:00\n");
}

TEST(NowPlayingExample, SaysWhenTheIpodIsTakenOut) {
  auto dock = std::make_unique<DockedIpod>();
  const std::unique_ptr<Process> screen = Start("now_playing", dock->device());
  ASSERT_TRUE(screen->WaitForOutput("Stopped"));
  dock.reset();
  ExpectSentence(screen->Wait(),
                 "The iPod did not answer when asked to tell what it plays. Is it still docked?");
}

TEST(BrowseAndPlayExample, ListsEachLevel) {
  const DockedIpod dock;
  EXPECT_EQ(RunToEnd("browse_and_play", dock).out, "  1  Jürgen Größe\n  2  The Hum\n  3  山田\n");
  EXPECT_EQ(RunToEnd("browse_and_play", dock, {"2"}).out, "  1  Spans\n  2  Water\n");
  EXPECT_EQ(RunToEnd("browse_and_play", dock, {"2", "1"}).out,
            "  1  Bridges\n  2  Arches\n  3  Piers\n");
  EXPECT_EQ(dock.state(), PlayerState::kStopped);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(BrowseAndPlayExample, PlaysATrackAndPrintsNothingElse) {
  const DockedIpod dock;
  const Ended ended = RunToEnd("browse_and_play", dock, {"2", "1", "3"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "Playing  Piers\n");
  EXPECT_EQ(dock.title(), "Piers");
  EXPECT_EQ(dock.state(), PlayerState::kPlaying);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(BrowseAndPlayExample, SaysWhatIsNotThere) {
  const DockedIpod dock;
  ExpectSentence(RunToEnd("browse_and_play", dock, {"4"}), "There is no entry 4.");
}

TEST(BrowseAndPlayExample, SaysWhenTheIpodAcceptsAndDoesNotPlay) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.stays_paused = true;
  const DockedIpod dock(settings);
  ExpectSentence(RunToEnd("browse_and_play", dock, {"2", "1", "3"}),
                 "The iPod accepted the track but does not play it.");
}

TEST(WorkoutExample, LogsAWholeWorkout) {
  const DockedIpod dock;
  const Ended ended = RunToEnd("workout", dock, {"3", "2"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::string document = FirstWorkout(dock);
  EXPECT_THAT(ended.out,
              StartsWith("   0 s  0.00 km\n   2 s  0.01 km\n   3 s  0.01 km\nSaved: 3 s, "));
  EXPECT_THAT(document, HasSubstr("<manufacturerName>Ross &amp; Söhne</manufacturerName>"));
  EXPECT_THAT(document, HasSubstr("<event>start</event>\n\t\t<sec>0</sec>\n\t\t<kCal>0.00</kCal>"));
  EXPECT_THAT(document,
              HasSubstr("<event>continue</event>\n\t\t<sec>2</sec>\n\t\t<kCal>0.30</kCal>"));
  EXPECT_THAT(document, HasSubstr("<event>end</event>\n\t\t<sec>3</sec>\n\t\t<kCal>0.45</kCal>"));
  EXPECT_THAT(document, HasSubstr("<workoutSummary>\n\t\t<sec>3</sec>\n\t\t<kCal>0.45</kCal>"));
  EXPECT_THAT(document, EndsWith("</gymData>"));
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(WorkoutExample, SavesWhatWasDoneUntilCtrlC) {
  const DockedIpod dock;
  const std::unique_ptr<Process> workout = Start("workout", dock.device(), {"3600", "1"});
  ASSERT_TRUE(workout->WaitForOutput("   1 s"));
  workout->Signal(SIGINT);
  const Ended ended = workout->Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, ContainsRegex("\nSaved: [0-9]+ s, "));
  EXPECT_THAT(FirstWorkout(dock), HasSubstr("<event>end</event>"));
  EXPECT_THAT(FirstWorkout(dock), EndsWith("</gymData>"));
}

TEST(WorkoutExample, WritesNothingBehindAGap) {
  const DockedIpod dock(FailingWrite(15));  // the first interval after the start
  ExpectSentence(RunToEnd("workout", dock, {"3", "1"}),
                 "The iPod refused to take all of the workout (status 1).");
  EXPECT_THAT(FirstWorkout(dock), Not(HasSubstr("<sec>1</sec>")));
  EXPECT_THAT(FirstWorkout(dock), Not(HasSubstr("<sec>2</sec>")));
}

TEST(WorkoutExample, NoticesALineThatIsMissingFromTheHeader) {
  const DockedIpod dock(FailingWrite(5));
  ExpectSentence(RunToEnd("workout", dock, {"1"}), "The iPod did not take all of the workout.");
}

TEST(WorkoutExample, SaysWhenTheIpodKeepsNoWorkouts) {
  const DockedIpod dock(SettingsOf(Profile::kNoSports));
  ExpectSentence(RunToEnd("workout", dock, {"1"}), "This iPod keeps no workouts.");
}

TEST(LegacyWorkoutExample, LogsAWholeWorkout) {
  const DockedIpod dock;
  const Ended ended = RunToEnd("legacy_workout", dock, {"3", "2"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::string document = FirstWorkout(dock);
  EXPECT_THAT(ended.out,
              StartsWith("   0 s  0.00 km\n   2 s  0.01 km\n   3 s  0.01 km\nSaved: 3 s, "));
  EXPECT_THAT(document, HasSubstr("<manufacturerID>Ross &amp; Söhne</manufacturerID>"));
  EXPECT_THAT(document, HasSubstr("<event>continue</event>\n\t\t<sec>2</sec>"));
  EXPECT_THAT(document, HasSubstr("<event>end</event>\n\t\t<sec>3</sec>"));
  EXPECT_THAT(document, HasSubstr("<workoutSummary>\n\t\t<sec>3</sec>"));
  EXPECT_THAT(document, EndsWith("</gymData>"));
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(LegacyWorkoutExample, TellsWhatWasRefused) {
  const DockedIpod dock(FailingWrite(16));
  ExpectSentence(RunToEnd("legacy_workout", dock, {"1"}),
                 "Not saved whole: Error in Ack from Storage Write, value is 1, should be 0");
}

TEST(LegacyWorkoutExample, SaysThatNoIpodAnswers) {
  const DockedIpod dock(SettingsOf(Profile::kSilent));
  ExpectSentence(RunToEnd("legacy_workout", dock, {"1"}),
                 "No iPod answers. Is one docked and switched on?");
}

// What the page on traps says of them, on an iPod that does not tell the album.
TEST(TrapsExample, GetsAroundThem) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.refused[{0x04, 0x0024}] = AckStatus::kFailed;
  const DockedIpod dock(settings);
  const Ended ended = RunToEnd("traps", dock);
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "Arches, from an unknown album\n");
  EXPECT_EQ(ended.err, "Select iPod track category 5, index 0\n");
  EXPECT_EQ(dock.title(), "Arches");
  EXPECT_EQ(dock.state(), PlayerState::kPlaying);
  dock.server().Inspect([](const ipodsim::SimulatedIpod& ipod) {
    EXPECT_EQ(ipod.player().shuffle(), ipodsim::Shuffle::kTracks);
    EXPECT_EQ(ipod.player().repeat(), ipodsim::Repeat::kAll);
  });
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(Examples, SayWhenThereIsNoPort) {
  for (const char* const example : {"now_playing", "browse_and_play", "workout"}) {
    ExpectSentence(Start(example, "/dev/no-such-dock")->Wait(),
                   "The port cannot be opened (code 2).");
  }
  ExpectSentence(Start("legacy_workout", "/dev/no-such-dock")->Wait(),
                 "The port cannot be opened.");
}

TEST(Examples, SayWhenNoIpodAnswersOrTheOneDockedIsTooOld) {
  const DockedIpod silent(SettingsOf(Profile::kSilent));
  const DockedIpod old(SettingsOf(Profile::kOld));
  const auto on_silent = Start("workout", silent.device());
  const auto on_old = Start("workout", old.device());
  ExpectSentence(on_silent->Wait(), "No iPod answers. Is one docked and switched on?");
  ExpectSentence(on_old->Wait(), "This iPod's software is too old; update it.");
}

// The host with a user interface, its keys from a pipe, on whatever is docked at a place.
class UiThreadExample : public testing::Test {
 protected:
  void SetUp() override {
    const std::string pipe = folder_.path("keys");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    keys_ = ::open(pipe.c_str(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(keys_, 0);
  }
  ~UiThreadExample() override { ::close(keys_); }

  void Dock(const DockedIpod& dock) {
    std::filesystem::remove(place_);
    std::filesystem::create_symlink(dock.device(), place_);
  }
  std::unique_ptr<Process> StartHost() {
    return std::make_unique<Process>(
        "/usr/bin/env",
        std::vector<std::string>{
            "IPODCOMM_COM2=" + place_, "LC_ALL=C.UTF-8", "/bin/sh", "-c",
            "exec '" EXAMPLES_FOLDER "/ui_thread' <'" + folder_.path("keys") + "'"});
  }
  void Press(char key) { ASSERT_EQ(::write(keys_, &key, 1), 1); }

  TemporaryFolder folder_;
  std::string place_ = folder_.path("ipod");
  int keys_ = -1;
};

TEST_F(UiThreadExample, DoesWhatItsKeysWish) {
  const DockedIpod dock;
  Dock(dock);
  const auto host = StartHost();
  ASSERT_TRUE(host->WaitForOutput("Stopped  \n"));
  Press('s');
  ASSERT_TRUE(host->WaitForOutput("Playing  Arches\n"));
  EXPECT_EQ(dock.state(), PlayerState::kPlaying);
  Press('p');
  ASSERT_TRUE(host->WaitForOutput("Paused  Arches\n"));
  EXPECT_EQ(dock.state(), PlayerState::kPaused);
  Press('n');
  ASSERT_TRUE(host->WaitForOutput("  Bridges\n"));
  EXPECT_EQ(dock.title(), "Bridges");
  Press('q');
  EXPECT_EQ(host->Wait().status, 0);
  EXPECT_EQ(dock.mistakes(), "");
}

TEST_F(UiThreadExample, DocksAnIpodAgainThatComesBack) {
  auto dock = std::make_unique<DockedIpod>();
  Dock(*dock);
  const auto host = StartHost();
  ASSERT_TRUE(host->WaitForOutput("Stopped  \n"));
  dock.reset();
  ASSERT_TRUE(host->WaitForOutput("Is it still docked?\n"));
  dock = std::make_unique<DockedIpod>();
  Dock(*dock);
  ASSERT_TRUE(host->WaitForOutput("Is it still docked?\nStopped  \n"));
  Press('q');
  EXPECT_EQ(host->Wait().status, 0);
}

TEST_F(UiThreadExample, MayBeLeftWhileAnIpodIsLookedFor) {
  const DockedIpod silent(SettingsOf(Profile::kSilent));
  Dock(silent);
  const auto host = StartHost();
  ASSERT_TRUE(host->WaitForOutput("Looking for an iPod ...\n"));
  Press('q');
  const Ended ended = host->Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, "Looking for an iPod ...\n");
}

}  // namespace
