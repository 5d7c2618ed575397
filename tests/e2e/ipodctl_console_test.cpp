// SPDX-License-Identifier: MIT
// The screen in a terminal: what stands on it after given keys, whatever the iPod does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

#include "docked_ipod.h"
#include "support/pcapng_reader.h"
#include "support/temporary_folder.h"
#include "support/tmux.h"

using e2e::DockedIpod;
using e2e::SettingsOf;
using ipodsim::PlayerState;
using ipodsim::Profile;
using test::Await;
using test::Ended;
using test::Process;
using test::TemporaryFolder;
using test::TmuxTerminal;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

constexpr const char* kHeader = "ipodctl console";

// Events of a recording.
constexpr unsigned kSent = 1;
constexpr unsigned kReceived = 2;
constexpr unsigned kStatus = 6;

// As a recording tells the time: since 1970.
std::uint64_t Now() {
  const auto since_1970 = std::chrono::system_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(std::chrono::nanoseconds(since_1970).count());
}

std::string Console(const std::string& device, const std::string& options = "") {
  return "'" IPODCTL_PROGRAM "' --port '" + device + "' console " + options;
}

// The line of the screen on which `text` stands.
std::string LineWith(TmuxTerminal* terminal, const std::string& text) {
  for (const std::string& line : terminal->Lines()) {
    if (line.find(text) != std::string::npos) return line;
  }
  return "(no line has '" + text + "')";
}

// How many intervals a running workout says are saved. Each number stands there for a moment only,
// which a busy machine may miss.
int SavedIntervals(TmuxTerminal* terminal) {
  const std::string text = terminal->Text();
  const std::string label = "saved: ";
  const std::size_t at = text.find(label);
  return at == std::string::npos ? 0 : std::atoi(text.c_str() + at + label.size());
}

// Characters, as which every one of these lines' cells counts.
std::size_t CharactersOf(const std::string& line) {
  std::size_t characters = 0;
  for (const char byte : line) {
    if ((static_cast<unsigned char>(byte) & 0xC0) != 0x80) ++characters;
  }
  return characters;
}

// A simulated iPod in a process of its own, which can be stopped, pulled out and docked again.
class SeparateIpod {
 public:
  explicit SeparateIpod(std::vector<std::string> options = {}) : options_(std::move(options)) {
    Dock();
  }

  void Dock() {
    std::vector<std::string> arguments = {"--link", device(), "--library", library_};
    arguments.insert(arguments.end(), options_.begin(), options_.end());
    process_ = std::make_unique<Process>(IPODSIM_PROGRAM, arguments);
    EXPECT_TRUE(process_->WaitForOutput(device()));
  }
  void PullOut() {
    process_->Signal(SIGTERM);
    process_->Wait();
  }
  /// It stays in the dock and says nothing more.
  void FallSilent() { process_->Halt(); }
  void Wake() { process_->Signal(SIGCONT); }

  std::string device() const { return folder_.path("ipod"); }
  std::string path(const std::string& name) const { return folder_.path(name); }

 private:
  TemporaryFolder folder_;
  std::string library_ = folder_.Write("library.json", e2e::kLibrary);
  std::vector<std::string> options_;
  std::unique_ptr<Process> process_;
};

std::string ContentOf(const std::string& path) {
  std::ifstream file(path);
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

TEST(IpodctlConsole, WalksThroughTheLibraryAndPlaysATrack) {
  const DockedIpod dock;
  TmuxTerminal terminal(Console(dock.device()), 80, 24);
  ASSERT_TRUE(terminal.WaitFor("Zoë's iPod")) << terminal.Text();
  ASSERT_TRUE(terminal.WaitFor("Artists                                3")) << terminal.Text();
  terminal.Press({"Down", "Down", "Enter"});
  ASSERT_TRUE(terminal.WaitFor("╭─ Artists ")) << terminal.Text();
  ASSERT_TRUE(terminal.WaitFor("The Hum")) << terminal.Text();
  terminal.Press({"End"});
  ASSERT_TRUE(terminal.WaitFor("3 of 3")) << terminal.Text();
  terminal.Press({"Left"});
  ASSERT_TRUE(terminal.WaitFor("╭─ Library ")) << terminal.Text();
  terminal.Press({"End", "Enter"});
  ASSERT_TRUE(terminal.WaitFor("Arches")) << terminal.Text();
  terminal.Press({"Enter"});
  ASSERT_TRUE(terminal.WaitFor("╭─ Playing ")) << terminal.Text();
  EXPECT_EQ(dock.state(), PlayerState::kPlaying);
  EXPECT_EQ(dock.title(), "Arches");
  EXPECT_THAT(terminal.Text(), AllOf(HasSubstr("▶ Arches"), HasSubstr("The Hum"),
                                     HasSubstr("Spans"), HasSubstr("3:20 │")));
  terminal.Press({"Space"});
  ASSERT_TRUE(terminal.WaitFor("╭─ Paused ")) << terminal.Text();
  EXPECT_EQ(dock.state(), PlayerState::kPaused);
  terminal.Press({"n"});
  ASSERT_TRUE(terminal.WaitFor("track 2 of 7")) << terminal.Text();
  EXPECT_EQ(dock.title(), "Bridges");
  terminal.Press({"q"});
  ASSERT_TRUE(terminal.WaitUntilGone(kHeader)) << terminal.Text();
  EXPECT_EQ(dock.mistakes(), "");
}

TEST(IpodctlConsole, ReadsOfALongListWhatIsLookedAt) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.library = e2e::NumberedTracks(900);
  const DockedIpod dock(settings);
  TmuxTerminal terminal(Console(dock.device()), 80, 24);
  ASSERT_TRUE(terminal.WaitFor("Tracks                               900")) << terminal.Text();
  terminal.Press({"End", "Enter"});
  ASSERT_TRUE(terminal.WaitFor("Track 000")) << terminal.Text();
  EXPECT_THAT(terminal.Text(), HasSubstr("1 of 900"));
  terminal.Press({"End"});
  ASSERT_TRUE(terminal.WaitFor("Track 899")) << terminal.Text();
  EXPECT_THAT(terminal.Text(), AllOf(HasSubstr("900 of 900"), Not(HasSubstr("Track 000"))));
  terminal.Press({"PageUp"});
  ASSERT_TRUE(terminal.WaitFor("891 of 900")) << terminal.Text();
}

TEST(IpodctlConsole, AnswersKeysWhileTheIpodIsSilentAndSaysThatItIs) {
  SeparateIpod ipod;
  TmuxTerminal terminal(Console(ipod.device()), 80, 24);
  ASSERT_TRUE(terminal.WaitFor("Tracks                                 7")) << terminal.Text();
  ipod.FallSilent();
  ASSERT_TRUE(terminal.WaitFor("Waiting for the iPod for ")) << terminal.Text();
  // All of it while nothing at all comes from the iPod.
  EXPECT_THAT(LineWith(&terminal, "╭─ Library"), HasSubstr(" 1 of 9 "));
  terminal.Press({"Down"});
  ASSERT_TRUE(terminal.WaitFor(" 2 of 9 ")) << terminal.Text();
  terminal.Press({"?"});
  ASSERT_TRUE(terminal.WaitFor("one line down")) << terminal.Text();
  terminal.Press({"?"});
  ASSERT_TRUE(terminal.WaitUntilGone("one line down")) << terminal.Text();
  terminal.Press({"Enter"});
  ASSERT_TRUE(terminal.WaitFor("╭─ Nested-playlists ")) << terminal.Text();
  ipod.Wake();
  ASSERT_TRUE(terminal.WaitFor("Morning Run")) << terminal.Text();
  EXPECT_THAT(terminal.Text(), Not(HasSubstr("Waiting for the iPod")));
}

// Of the three attempts of the question that it is at. What is sent before the iPod falls silent
// may still be answered; what is sent after that is not.
TEST(IpodctlConsole, LeavesASilentIpodWithoutAskingOn) {
  SeparateIpod ipod;
  const std::string path = ipod.path("line.pcapng");
  TmuxTerminal terminal(Console(ipod.device(), "--capture '" + path + "'"), 80, 24);
  ASSERT_TRUE(terminal.WaitFor("Tracks                                 7")) << terminal.Text();
  ipod.FallSilent();
  const std::uint64_t silent_since = Now();
  test::ReadRecording recording;
  const auto ends_with = [&](unsigned event) {
    recording = test::ReadPcapngFile(path);
    return !recording.packets.empty() && recording.packets.back().event == event &&
           recording.packets.back().time_ns > silent_since;
  };
  ASSERT_TRUE(Await([&] { return ends_with(kSent); }));
  terminal.Press({"q"});
  ASSERT_TRUE(Await([&] { return ends_with(kStatus); }));
  std::size_t unanswered = 0;
  for (const test::RecordedPacket& packet : recording.packets) {
    if (packet.event == kSent) ++unanswered;
    if (packet.event == kReceived) unanswered = 0;
  }
  EXPECT_GE(unanswered, 1U);
  EXPECT_LT(unanswered, 3U);
}

TEST(IpodctlConsole, AnswersKeysWhileTheIpodIsSlow) {
  const SeparateIpod ipod({"--fault", "late-answers"});
  TmuxTerminal terminal(Console(ipod.device()), 80, 24);
  ASSERT_TRUE(terminal.WaitFor("Zoë's iPod")) << terminal.Text();
  terminal.Press({"Down", "Down", "Enter"});
  ASSERT_TRUE(terminal.WaitFor("╭─ Artists ")) << terminal.Text();
  terminal.Press({"?"});
  ASSERT_TRUE(terminal.WaitFor("one line down")) << terminal.Text();
  terminal.Press({"?"});
  ASSERT_TRUE(terminal.WaitFor("The Hum")) << terminal.Text();
  EXPECT_THAT(terminal.Text(), HasSubstr(" 1 of 3 "));
}

TEST(IpodctlConsole, SaysThatTheIpodIsPulledOutAndGoesOnWhenItIsDockedAgain) {
  SeparateIpod ipod;
  TmuxTerminal terminal(Console(ipod.device()), 80, 24);
  ASSERT_TRUE(terminal.WaitFor("Tracks                                 7")) << terminal.Text();
  terminal.Press({"Down", "Down", "Enter"});
  ASSERT_TRUE(terminal.WaitFor("The Hum")) << terminal.Text();
  ipod.PullOut();
  ASSERT_TRUE(terminal.WaitFor("no longer answers")) << terminal.Text();
  ASSERT_TRUE(terminal.WaitFor("there is no such device")) << terminal.Text();
  EXPECT_THAT(terminal.Text(), HasSubstr("no iPod"));
  terminal.Press({"?"});
  ASSERT_TRUE(terminal.WaitFor("one line down")) << terminal.Text();
  terminal.Press({"?"});
  ipod.Dock();
  ASSERT_TRUE(terminal.WaitFor("Zoë's iPod")) << terminal.Text();
  // Where the user was.
  ASSERT_TRUE(terminal.WaitFor("The Hum")) << terminal.Text();
  EXPECT_THAT(terminal.Text(), Not(HasSubstr("no such device")));
}

TEST(IpodctlConsole, ShowsAWorkoutAndEndsItWhenItIsLeft) {
  const TemporaryFolder folder;
  const SeparateIpod ipod({"--storage", folder.path("")});
  TmuxTerminal terminal(Console(ipod.device(), "--equipment bike --duration 10:00 --speed 20"), 80,
                        24);
  ASSERT_TRUE(terminal.WaitFor("Zoë's iPod")) << terminal.Text();
  terminal.Press({"w"});
  ASSERT_TRUE(terminal.WaitFor("Workout on bike")) << terminal.Text();
  ASSERT_TRUE(Await([&] { return SavedIntervals(&terminal) >= 8; })) << terminal.Text();
  EXPECT_THAT(terminal.Text(), AllOf(HasSubstr(" kcal  "), HasSubstr(" bpm  "), HasSubstr(" rpm"),
                                     HasSubstr(" of 10:00"), HasSubstr("160 ┤")));
  terminal.Press({"q"});
  ASSERT_TRUE(terminal.WaitFor("Saved as workout file 1 on the iPod")) << terminal.Text();
  const std::string document = ContentOf(folder.path("gym-0001.xml"));
  EXPECT_THAT(document, AllOf(HasSubstr("<event>start</event>"), HasSubstr("<event>end</event>"),
                              EndsWith("</gymData>")));
}

// Runs a console in a terminal whose settings are looked at before and afterwards.
class ConsoleRun {
 public:
  ConsoleRun(const std::string& device, const std::string& options)
      : terminal_(
            "sh '" +
                folder_.Write("run", "cd '" + folder_.path("") +
                                         "'\nstty -g >before\n"
                                         "sh -c 'echo $$ >pid; exec " IPODCTL_PROGRAM " --port " +
                                         device + " console " + options +
                                         "'\necho \"status $?\"\n"
                                         "stty -g >part; mv part after\n") +
                "'",
            80, 24) {}

  TmuxTerminal& terminal() { return terminal_; }
  void Signal(int signal) const { ::kill(std::stoi(ContentOf(folder_.path("pid"))), signal); }
  void ExpectTerminalAsBefore() {
    const std::string before = ContentOf(folder_.path("before"));
    EXPECT_NE(before, "");
    EXPECT_TRUE(Await([&] { return ContentOf(folder_.path("after")) == before; }));
    EXPECT_FALSE(terminal_.IsFullScreen());
  }

 private:
  TemporaryFolder folder_;
  TmuxTerminal terminal_;
};

// Goes on with a workout until some of it is on the iPod.
void WorkOut(TmuxTerminal* terminal) {
  ASSERT_TRUE(terminal->WaitFor("Zoë's iPod")) << terminal->Text();
  terminal->Press({"w"});
  ASSERT_TRUE(terminal->WaitFor("saved: ")) << terminal->Text();
}

bool IsComplete(const std::string& document) {
  return document.find("<event>end</event>") != std::string::npos &&
         document.find("</gymData>") != std::string::npos;
}

TEST(IpodctlConsole, LeavesTheTerminalAsItWasFound) {
  const DockedIpod dock;
  ConsoleRun run(dock.device(), "");
  ASSERT_TRUE(run.terminal().WaitFor("Zoë's iPod")) << run.terminal().Text();
  EXPECT_TRUE(run.terminal().IsFullScreen());
  run.terminal().Press({"q"});
  ASSERT_TRUE(run.terminal().WaitFor("status 0")) << run.terminal().Text();
  run.ExpectTerminalAsBefore();
}

TEST(IpodctlConsole, SavesTheWorkoutAndLeavesTheTerminalAsItWasFoundWhenItIsTerminated) {
  const TemporaryFolder files;
  const SeparateIpod ipod({"--storage", files.path("")});
  ConsoleRun run(ipod.device(), "--speed 20");
  WorkOut(&run.terminal());
  run.Signal(SIGTERM);
  ASSERT_TRUE(run.terminal().WaitFor("status 130")) << run.terminal().Text();
  EXPECT_THAT(run.terminal().Text(), HasSubstr("Saved as workout file 1 on the iPod"));
  run.ExpectTerminalAsBefore();
  EXPECT_TRUE(IsComplete(ContentOf(files.path("gym-0001.xml"))));
}

TEST(IpodctlConsole, SavesTheWorkoutWhenTheTerminalsWindowIsClosed) {
  const TemporaryFolder files;
  const SeparateIpod ipod({"--storage", files.path("")});
  ConsoleRun run(ipod.device(), "--speed 20");
  WorkOut(&run.terminal());
  run.terminal().Close();
  EXPECT_TRUE(Await([&] { return IsComplete(ContentOf(files.path("gym-0001.xml"))); }));
}

TEST(IpodctlConsole, SaysWhatIsSavedOfAWorkoutWhenTheIpodIsPulledOut) {
  SeparateIpod ipod;
  ConsoleRun run(ipod.device(), "--speed 20");
  WorkOut(&run.terminal());
  ipod.PullOut();
  ASSERT_TRUE(run.terminal().WaitFor("holds the header and")) << run.terminal().Text();
  run.terminal().Press({"q"});
  ASSERT_TRUE(run.terminal().WaitFor("status 1")) << run.terminal().Text();
  EXPECT_THAT(run.terminal().Text(), HasSubstr("ipodctl: the iPod on"));
  run.ExpectTerminalAsBefore();
}

TEST(IpodctlConsole, FitsWindowsOfAnySizeWhileItRuns) {
  const SeparateIpod ipod;
  TmuxTerminal terminal(Console(ipod.device(), "--speed 20"), 80, 24);
  WorkOut(&terminal);
  for (const auto& [columns, rows] :
       {std::pair(40, 24), std::pair(120, 40), std::pair(40, 12), std::pair(64, 16)}) {
    terminal.Resize(columns, rows);
    const auto width = static_cast<std::size_t>(columns);
    const bool fits = Await([&] {
      const std::string edge = LineWith(&terminal, "╭─ Library");
      return CharactersOf(edge) == width && edge.find("╮") != std::string::npos;
    });
    EXPECT_TRUE(fits) << columns << " x " << rows << "\n" << terminal.Text();
    EXPECT_THAT(terminal.Lines().back(), AllOf(HasSubstr("? help"), HasSubstr("q quit")));
  }
  terminal.Resize(40, 24);
  ASSERT_TRUE(terminal.WaitFor("╭─ Stopped ")) << terminal.Text();
  EXPECT_THAT(terminal.Text(), HasSubstr("╭─ Workout on treadmill"));
  terminal.Resize(15, 4);
  ASSERT_TRUE(terminal.WaitFor("Too small. q: …")) << terminal.Text();
}

TEST(IpodctlConsole, ShowsHostileNamesAndLetsNoneOfThemSteerTheTerminal) {
  ipodsim::Settings settings = SettingsOf(Profile::kNano);
  settings.library = ipodsim::Library();
  settings.library.name = "Bad\x1b]0;title\x07";
  for (const char* title :
       {"\x1b[2JGone", "A\r\nB", "橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋"}) {
    ipodsim::Track track;
    track.title = title;
    track.length_ms = 1000;
    settings.library.tracks.push_back(track);
  }
  const DockedIpod dock(settings);
  TmuxTerminal terminal(Console(dock.device()), 80, 24);
  ASSERT_TRUE(terminal.WaitFor("Tracks                                 3")) << terminal.Text();
  EXPECT_THAT(terminal.Lines().front(), EndsWith("Bad\uFFFD]0;title\uFFFD"));
  terminal.Press({"End", "Enter"});
  ASSERT_TRUE(terminal.WaitFor("橋")) << terminal.Text();
  EXPECT_THAT(LineWith(&terminal, "橋"),
              StartsWith("│ 橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋橋…  ││"));
  EXPECT_THAT(terminal.Text(),
              AllOf(HasSubstr("│ A\uFFFD\uFFFDB "), HasSubstr("│ \uFFFD[2JGone ")));
}

TEST(IpodctlConsole, IsWorkedWithTheMouseToo) {
  const SeparateIpod ipod;
  TmuxTerminal terminal(Console(ipod.device()), 80, 24);
  ASSERT_TRUE(terminal.WaitFor("Tracks                                 7")) << terminal.Text();
  // The first button, pressed and released in column 5, row 5: on the third line of the list.
  const std::string click = "\x1b[M %%\x1b[M#%%";
  terminal.Send(click);
  ASSERT_TRUE(terminal.WaitFor(" 3 of 9 ")) << terminal.Text();
  terminal.Send(click);
  ASSERT_TRUE(terminal.WaitFor("╭─ Artists ")) << terminal.Text();
}

TEST(IpodctlConsole, NeedsATerminalThatCanShowAScreen) {
  const Ended piped = test::Ipodctl({"--simulated", "console"});
  EXPECT_EQ(piped.status, 64);
  EXPECT_EQ(piped.out, "");
  EXPECT_THAT(piped.err, StartsWith("ipodctl: the screen needs a terminal"));
  const Ended no_keys = test::Ipodctl({"--simulated", "console", "--from", "-"});
  EXPECT_EQ(no_keys.status, 64);
  EXPECT_THAT(no_keys.err, HasSubstr("from which the screen takes its keys; name a file"));
  TmuxTerminal dumb("TERM=dumb '" IPODCTL_PROGRAM "' --simulated console; echo \"status $?\"", 80,
                    24);
  ASSERT_TRUE(dumb.WaitFor("status 64")) << dumb.Text();
  EXPECT_THAT(dumb.Text(), StartsWith("ipodctl: the terminal 'dumb' (TERM) cannot show a screen"));
}

}  // namespace
