// SPDX-License-Identifier: MIT
// Proves the program ipodsim from the outside: what it says, what it serves, and its exit statuses.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <thread>

#include "simulator/settings/habits.h"
#include "tests/simulator/ipod_under_test.h"
#include "tests/simulator/workouts.h"

namespace ipodsim {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;

struct Outcome {
  int status;
  std::string output;  // both streams
};

std::string Command(const std::string& arguments) {
  return std::string("'") + IPODSIM_PROGRAM + "' " + arguments + " 2>&1";
}

std::string ReadAll(FILE* stream) {
  std::string text;
  std::array<char, 256> chunk{};
  while (const std::size_t count = std::fread(chunk.data(), 1, chunk.size(), stream)) {
    text.append(chunk.data(), count);
  }
  return text;
}

// Only for arguments that make the program end by itself.
Outcome Perform(const std::string& arguments) {
  FILE* stream = popen(Command(arguments).c_str(), "r");
  const std::string output = ReadAll(stream);
  return {WEXITSTATUS(pclose(stream)), output};
}

class ProgramTest : public testing::Test {
 protected:
  ProgramTest() {
    char path[] = "/tmp/ipodsim_program_XXXXXX";
    folder = mkdtemp(path);
    link = folder + "/ipod";
  }
  ~ProgramTest() override {
    unlink(link.c_str());
    unlink((folder + "/library.json").c_str());
    rmdir(folder.c_str());
  }

  std::string WriteLibrary(const std::string& json) const {
    std::ofstream(folder + "/library.json") << json;
    return folder + "/library.json";
  }

  std::string folder;
  std::string link;
};

// The program while it serves.
class Served {
 public:
  Served(const std::string& arguments, const std::string& link) {
    int pipe_ends[2];
    EXPECT_EQ(pipe(pipe_ends), 0);
    child_ = fork();
    if (child_ == 0) {
      dup2(pipe_ends[1], 1);
      dup2(pipe_ends[1], 2);
      close(pipe_ends[0]);
      close(pipe_ends[1]);
      const std::string command = "exec '" IPODSIM_PROGRAM "' " + arguments;
      execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
      _exit(127);
    }
    close(pipe_ends[1]);
    stream_ = fdopen(pipe_ends[0], "r");
    struct stat state {};
    for (int i = 0; i < 4000 && lstat(link.c_str(), &state) != 0; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    file_ = open(link.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_GE(file_, 0);
  }
  ~Served() {
    if (!ended_) End(SIGKILL);
    close(file_);
  }

  // Writes the bytes and reads as many as the text has.
  std::string Exchange(const std::string& hex, const std::string& expected) const {
    const Bytes bytes = Hex(hex);
    EXPECT_EQ(write(file_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    Bytes answer;
    while (answer.size() < (expected.size() + 1) / 3) {
      pollfd state{file_, POLLIN, 0};
      std::uint8_t byte = 0;
      if (poll(&state, 1, 20000) <= 0 || read(file_, &byte, 1) != 1) break;
      answer.push_back(byte);
    }
    return ToHex(answer);
  }

  Outcome End(int signal) {
    ended_ = true;
    kill(child_, signal);
    const std::string output = ReadAll(stream_);
    std::fclose(stream_);
    int status = 0;
    waitpid(child_, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
  }

 private:
  pid_t child_ = 0;
  FILE* stream_ = nullptr;
  int file_ = -1;
  bool ended_ = false;
};

TEST_F(ProgramTest, HelpShowsProfilesFaultsExamplesAndStatuses) {
  const Outcome outcome = Perform("--help");
  EXPECT_EQ(outcome.status, 0);
  for (const char* piece :
       {"--link", "--profile", "--library", "--storage", "--fault", "--seed", "--trace",
        "--model-id", "nosports", "strict", "flipped-bits", "late-answers", "--habit",
        "stays-paused", "--baud", "Examples:", "Exit status:", "\"tracks\""}) {
    EXPECT_THAT(outcome.output, HasSubstr(piece));
  }
}

TEST_F(ProgramTest, FaultHelpListsEveryFault) {
  const Outcome outcome = Perform("--fault help");
  EXPECT_EQ(outcome.status, 0);
  for (const FaultInfo& info : Faults::All()) EXPECT_THAT(outcome.output, HasSubstr(info.name));
}

TEST_F(ProgramTest, HabitHelpListsEveryHabit) {
  const Outcome outcome = Perform("--habit help");
  EXPECT_EQ(outcome.status, 0);
  for (const Habit& habit : AllHabits()) EXPECT_THAT(outcome.output, HasSubstr(habit.name));
}

TEST_F(ProgramTest, VersionIsOneLine) {
  const Outcome outcome = Perform("--version");
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.output, MatchesRegex("ipodsim [0-9.]+( \\([0-9a-f]+(, changed)?\\))?\n"));
}

TEST_F(ProgramTest, WrongUsageIsOneSentenceAnd64) {
  const Outcome profile = Perform("--profile zune");
  EXPECT_EQ(profile.status, 64);
  EXPECT_EQ(profile.output,
            "ipodsim: there is no profile 'zune'; it is one of nano, classic, old, nosports, "
            "silent, strict and echo\n");
  const Outcome fault = Perform("--fault gremlins");
  EXPECT_EQ(fault.status, 64);
  EXPECT_EQ(fault.output, "ipodsim: there is no fault 'gremlins'; --fault help lists them\n");
  const Outcome habit = Perform("--habit manners");
  EXPECT_EQ(habit.status, 64);
  EXPECT_EQ(habit.output, "ipodsim: there is no habit 'manners'; --habit help lists them\n");
  for (const char* arguments :
       {"--bogus", "--seed many", "extra", "--baud 0", "--baud fast", "--baud 5000000"}) {
    const Outcome outcome = Perform(arguments);
    EXPECT_EQ(outcome.status, 64) << arguments;
    EXPECT_THAT(outcome.output, MatchesRegex("ipodsim: [^\n]+\n")) << arguments;
  }
}

TEST_F(ProgramTest, BadLibraryFileIsOneSentenceAnd66) {
  const Outcome missing = Perform("--library /does/not/exist");
  EXPECT_EQ(missing.status, 66);
  EXPECT_EQ(missing.output,
            "ipodsim: cannot read library file '/does/not/exist': No such file or directory\n");
  const std::string file = WriteLibrary("{\"tracks\": [{}]}");
  const Outcome malformed = Perform("--library " + file);
  EXPECT_EQ(malformed.status, 66);
  EXPECT_EQ(malformed.output, "ipodsim: library file '" + file + "': track 1 has no title\n");
}

TEST_F(ProgramTest, LinkThatIsAFileIsLeftAloneAnd73) {
  const std::string file = WriteLibrary("precious");
  const Outcome outcome = Perform("--link " + file);
  EXPECT_EQ(outcome.status, 73);
  EXPECT_EQ(outcome.output, "ipodsim: '" + file + "' exists and is not a link; it is left alone\n");
}

TEST_F(ProgramTest, UnusableStorageFolderIsOneSentenceAnd73) {
  const std::string file = WriteLibrary("precious");
  const Outcome outcome = Perform("--storage " + file);
  EXPECT_EQ(outcome.status, 73);
  EXPECT_EQ(outcome.output, "ipodsim: cannot store files in '" + file + "': Not a directory\n");
  const Outcome nameless = Perform("--storage ''");
  EXPECT_EQ(nameless.status, 73);
  EXPECT_EQ(nameless.output, "ipodsim: cannot store files in '': No such file or directory\n");
}

TEST_F(ProgramTest, KeepsWorkoutsInItsStorageFolder) {
  const std::string storage = folder + "/workouts";
  Served served("--link " + link + " --storage " + storage, link);
  const std::string question =
      "FF 55 04 00 02 00 13 E7"
      " "
      "FF 55 03 00 27 00 D6";
  EXPECT_EQ(served.Exchange("FF 55 0E 00 13 00 00 12 01 00 00 00 00 00 00 00 00 CC", question),
            question);
  EXPECT_EQ(served.Exchange("FF 55 07 00 28 00 00 00 00 01 D0", "FF 55 02 09 03 F2"),
            "FF 55 02 09 03 F2");
  EXPECT_EQ(served.Exchange("FF 55 05 09 04 02 00 00 EC", "FF 55 02 0C 81 71"),
            "FF 55 02 0C 81 71");
  const char* const sports = "FF 55 05 09 84 00 03 00 6B";
  EXPECT_EQ(
      served.Exchange(
          "FF 55 18 0C 82 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 FF 01 02 58"
          " "
          "FF 55 02 09 83 72",
          sports),
      sports);
  const char* const storage_capabilities =
      "FF 55 18 0C 02 00 00 00 01 DC D6 50 00 00 F4 24 00 01 F0 00 00 00 00 00 00 01 02 CB";
  EXPECT_EQ(served.Exchange("FF 55 02 0C 01 F1", storage_capabilities), storage_capabilities);
  const char* const space = "FF 55 0A 0C 11 00 00 00 00 B2 D0 5E 00 F9";
  EXPECT_EQ(served.Exchange("FF 55 02 0C 10 E2", space), space);
  EXPECT_EQ(served.Exchange("FF 55 11 0C 12 02 00 00 00 0B 3C 2F 67 79 6D 44 61 74 61 3E 54",
                            "FF 55 03 0C 04 01 EC"),
            "FF 55 03 0C 04 01 EC");
  for (const Bytes& write : WritesOf(kNewerWorkout)) {
    EXPECT_EQ(served.Exchange(ToHex(write), "FF 55 04 0C 00 00 07 E9"), "FF 55 04 0C 00 00 07 E9");
  }
  EXPECT_EQ(served.Exchange("FF 55 03 0C 08 01 E8", "FF 55 04 0C 00 00 08 E8"),
            "FF 55 04 0C 00 00 08 E8");
  EXPECT_EQ(served.End(SIGINT).status, 0);
  std::ifstream file(storage + "/gym-0001.xml");
  std::string content;
  std::getline(file, content, '\0');
  EXPECT_THAT(content, StartsWith(kNewerWorkout));
  EXPECT_THAT(content, EndsWith("</signature>\n</gymData>"));
  unlink((storage + "/gym-0001.xml").c_str());
  rmdir(storage.c_str());
}

TEST_F(ProgramTest, LinkInUseIsRefused) {
  const Served served("--link " + link, link);
  const Outcome second = Perform("--link " + link);
  EXPECT_EQ(second.status, 73);
  EXPECT_THAT(second.output, MatchesRegex("ipodsim: the link '" + link +
                                          "' leads to /dev/pts/[0-9]+, which is in use; it is left "
                                          "alone\n"));
}

// An accessory's request for the Sports capabilities is met with questions about its own version
// and capabilities before it is answered.
TEST_F(ProgramTest, AsksInTheMiddleOfASessionWhenTold) {
  const std::string file = WriteLibrary("{\"name\": \"Pod\", \"tracks\": []}");
  Served served("--link " + link + " --ask-during-session --library " + file, link);
  const char* const identified = "FF 55 04 00 02 00 13 E7 FF 55 03 00 27 00 D6";
  EXPECT_EQ(served.Exchange("FF 55 0E 00 13 00 00 02 01 00 00 00 00 00 00 00 00 DC", identified),
            identified);
  const char* const caps = "FF 55 02 09 03 F2";
  EXPECT_EQ(served.Exchange("FF 55 07 00 28 00 00 00 00 01 D0", caps), caps);
  const char* const questions =
      "FF 55 02 09 01 F4"
      " "
      "FF 55 02 09 03 F2"
      " "
      "FF 55 05 09 84 00 03 00 6B";
  EXPECT_EQ(served.Exchange("FF 55 05 09 04 02 00 00 EC FF 55 02 09 83 72", questions), questions);
  served.Exchange("FF 55 04 09 02 01 01 EF FF 55 05 09 04 02 00 00 EC FF 55 02 00 07 F7",
                  "FF 55 06 00 08 50 6F 64 00 CF");
  EXPECT_EQ(served.End(SIGINT).status, 0);
}

TEST_F(ProgramTest, CleanRunEndsWith0AndTakesItsLinkAway) {
  const std::string file = WriteLibrary("{\"name\": \"Pod\", \"tracks\": []}");
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    Served served("--link " + link + " --library " + file, link);
    EXPECT_EQ(served.Exchange("FF 55 0E 00 13 00 00 00 01 00 00 00 00 00 00 00 00 DE",
                              "FF 55 04 00 02 00 13 E7 FF 55 03 00 27 00 D6"),
              "FF 55 04 00 02 00 13 E7 FF 55 03 00 27 00 D6");
    EXPECT_EQ(served.Exchange("FF 55 07 00 28 00 00 00 00 01 D0 FF 55 02 00 07 F7",
                              "FF 55 06 00 08 50 6F 64 00 CF"),
              "FF 55 06 00 08 50 6F 64 00 CF");
    const Outcome outcome = served.End(signal);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "serving an iPod (nano) on " + link + "\n0 protocol mistakes\n");
    struct stat state {};
    EXPECT_NE(lstat(link.c_str(), &state), 0);
  }
}

TEST_F(ProgramTest, MistakesAreListedAndEndWith1) {
  Served served("--link " + link, link);
  const char* const version = "FF 55 05 00 10 00 01 09 E1";
  served.Exchange("FF 55 03 00 0F 00 EE", version);
  served.Exchange("FF 55 02 00 07 00 FF 55 03 00 0F 00 EE", version);
  const Outcome outcome = served.End(SIGINT);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.output, HasSubstr("\n1 protocol mistake\n  "));
  EXPECT_THAT(outcome.output,
              HasSubstr(" s  bad checksum: the sum of a frame of 6 bytes is not 0\n"));
}

TEST_F(ProgramTest, TraceTellsEveryFrame) {
  Served served("--link " + link + " --trace --profile old", link);
  served.Exchange("FF 55 02 00 38 C6", "FF 55 04 00 02 04 38 BE");
  const Outcome outcome = served.End(SIGINT);
  EXPECT_THAT(outcome.output, HasSubstr("> General StartIDPS\n"));
  EXPECT_THAT(outcome.output, HasSubstr("< General ACK unknown for StartIDPS\n"));
}

TEST_F(ProgramTest, ModelIdReplacesTheProfiles) {
  Served served("--link " + link + " --model-id 00100001", link);
  const char* const model = "FF 55 0E 00 0E 00 10 00 01 4D 42 35 39 38 4C 4C 00 06";
  EXPECT_EQ(served.Exchange("FF 55 03 00 01 04 F8 FF 55 02 00 0D F1", model), model);
  EXPECT_EQ(served.End(SIGINT).status, 0);
  for (const char* wrong : {"0010", "001000010", "0010000g", "0x100001", "-0100001"}) {
    const Outcome outcome = Perform(std::string("--model-id=") + wrong);
    EXPECT_EQ(outcome.status, 64) << wrong;
    EXPECT_EQ(outcome.output, std::string("ipodsim: '") + wrong + "' is not 8 hex digits\n");
  }
}

TEST_F(ProgramTest, HabitsChangeWhatIsAnswered) {
  Served served("--habit authentication --habit no-name --link " + link, link);
  EXPECT_EQ(served.Exchange("FF 55 03 00 01 04 F8 FF 55 02 00 07 F7", "FF 55 04 00 02 04 07 EF"),
            "FF 55 04 00 02 04 07 EF");
  EXPECT_EQ(served.Exchange("FF 55 03 00 29 08 CC", "FF 55 04 00 02 07 29 CA"),
            "FF 55 04 00 02 07 29 CA");
  EXPECT_EQ(served.End(SIGINT).status, 0);
}

// At 300 baud a byte takes 35 ms, and the last of these 8 goes there and back: 315 ms. How much
// longer it takes is the machine's affair.
TEST_F(ProgramTest, LineHasTheSpeedThatItWasGiven) {
  Served served("--profile echo --baud 300 --link " + link, link);
  const std::string bytes = "01 02 03 04 05 06 07 08";
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(served.Exchange(bytes, bytes), bytes);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(315));
  served.End(SIGINT);
}

TEST_F(ProgramTest, SeveralFaultsCanBeSwitchedOn) {
  Served served("--fault junk --fault pending-acks --link " + link, link);
  EXPECT_EQ(served.End(SIGINT).status, 0);
}

}  // namespace
}  // namespace ipodsim
