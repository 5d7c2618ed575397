// SPDX-License-Identifier: MIT
// Proves the iPod on a real pseudo-terminal: raw, patient with accessories that come and go, and
// gone when it is unplugged. Waits are for what must come, however long the machine takes.

#include "simulator/pty/pty_server.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <thread>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

constexpr char kIdentify[] = "FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 00 C2";
constexpr char kIdentified[] = "FF 55 04 00 02 00 13 E7";
constexpr char kEnter[] = "FF 55 02 00 05 F9";
constexpr char kEntered[] = "FF 55 04 00 02 00 05 F5";
constexpr char kRequest[] = "FF 55 02 00 07 F7";
constexpr char kName[] = "FF 55 06 00 08 50 6F 64 00 CF";

// The accessory's end of the terminal.
class Accessory {
 public:
  explicit Accessory(const std::string& path)
      : file_(open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    EXPECT_GE(file_, 0) << path;
  }
  ~Accessory() {
    if (file_ >= 0) close(file_);
  }

  void Write(const std::string& hex) const {
    const Bytes bytes = Hex(hex);
    EXPECT_EQ(write(file_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }

  // Reads as many bytes as the text has; fewer when the line ends or nothing comes for long.
  std::string Read(const std::string& expected) const {
    const std::size_t count = (expected.size() + 1) / 3;
    Bytes bytes;
    while (bytes.size() < count) {
      pollfd state{file_, POLLIN, 0};
      std::uint8_t byte = 0;
      if (poll(&state, 1, 20000) <= 0 || read(file_, &byte, 1) != 1) break;
      bytes.push_back(byte);
    }
    return ToHex(bytes);
  }

  // Waits for the other end to go away.
  bool SeesHangup() const {
    pollfd state{file_, 0, 0};
    return poll(&state, 1, 20000) > 0 && (state.revents & POLLHUP) != 0;
  }

  int file() const { return file_; }

 private:
  const int file_;
};

template <typename Condition>
bool Eventually(Condition condition) {
  for (int i = 0; i < 4000; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

class PtyServerTest : public testing::Test {
 protected:
  PtyServerTest() {
    char path[] = "/tmp/ipodsim_test_XXXXXX";
    folder = mkdtemp(path);
    link = folder + "/ipod";
  }
  ~PtyServerTest() override {
    unlink(link.c_str());
    rmdir(folder.c_str());
  }

  bool LinkExists() const {
    struct stat state {};
    return lstat(link.c_str(), &state) == 0;
  }

  std::string folder;
  std::string link;
};

TEST_F(PtyServerTest, ServesAnAccessory) {
  PtyServer server(QuietSettings());
  ASSERT_TRUE(server.Start()) << server.error();
  const Accessory accessory(server.device_path());
  accessory.Write(kIdentify);
  EXPECT_EQ(accessory.Read(kIdentified), kIdentified);
  accessory.Write(kRequest);
  EXPECT_EQ(accessory.Read(kName), kName);
  EXPECT_TRUE(server.Stop().empty());
}

TEST_F(PtyServerTest, TerminalIsRawFromTheStart) {
  PtyServer server(QuietSettings());
  ASSERT_TRUE(server.Start());
  const Accessory accessory(server.device_path());
  accessory.Write(kIdentify);
  EXPECT_EQ(accessory.Read(kIdentified), kIdentified);
  termios settings{};
  ASSERT_EQ(tcgetattr(accessory.file(), &settings), 0);
  EXPECT_EQ(settings.c_lflag & (ECHO | ICANON | ISIG), 0u);
  EXPECT_EQ(settings.c_iflag & (ICRNL | IXON), 0u);
  EXPECT_EQ(settings.c_oflag & OPOST, 0u);
}

TEST_F(PtyServerTest, SurvivesAnAccessoryThatClosesAndReopens) {
  PtyServer server(QuietSettings());
  ASSERT_TRUE(server.Start());
  for (int round = 0; round < 20; ++round) {
    const Accessory accessory(server.device_path());
    accessory.Write(kIdentify);
    ASSERT_EQ(accessory.Read(kIdentified), kIdentified) << round;
  }
  EXPECT_TRUE(server.Stop().empty());
}

// Some consoles close and reopen their port in the middle of everything.
TEST_F(PtyServerTest, IpodKeepsItsStateWhenTheAccessoryClosesAndReopens) {
  constexpr char kSelected[] = "FF 55 06 04 00 01 00 00 17 DE";
  constexpr char kPreferenceSet[] = "FF 55 04 00 02 00 2B CF";
  PtyServer server(QuietSettings());
  ASSERT_TRUE(server.Start());
  {
    const Accessory accessory(server.device_path());
    accessory.Write(kIdentify);
    ASSERT_EQ(accessory.Read(kIdentified), kIdentified);
  }
  {
    const Accessory accessory(server.device_path());
    accessory.Write("FF 55 05 00 2B 08 02 01 C5");
    ASSERT_EQ(accessory.Read(kPreferenceSet), kPreferenceSet);
  }
  {
    // The album Hills and its one track.
    const Accessory accessory(server.device_path());
    accessory.Write(kEnter);
    ASSERT_EQ(accessory.Read(kEntered), kEntered);
    accessory.Write("FF 55 08 04 00 17 03 00 00 00 00 DA");
    ASSERT_EQ(accessory.Read(kSelected), kSelected);
  }
  {
    const Accessory accessory(server.device_path());
    accessory.Write("FF 55 08 04 00 17 05 00 00 00 00 D8");
    ASSERT_EQ(accessory.Read(kSelected), kSelected);
  }
  const Accessory accessory(server.device_path());
  accessory.Write("FF 55 07 04 00 20 00 00 00 00 D5");
  const char* const title = "FF 55 08 04 00 21 50 65 61 6B 00 52";
  EXPECT_EQ(accessory.Read(title), title);
  server.Inspect([](const SimulatedIpod& ipod) {
    EXPECT_TRUE(ipod.identified());
    EXPECT_EQ(ipod.player().state(), PlayerState::kPlaying);
    EXPECT_EQ(ipod.preference(8), 2);
  });
  // A command before identification would be one.
  EXPECT_TRUE(server.Stop().empty());
}

TEST_F(PtyServerTest, LinkLeadsToTheTerminalAndIsRemoved) {
  PtyServer server(QuietSettings(), link);
  ASSERT_TRUE(server.Start());
  EXPECT_EQ(server.device_path(), link);
  {
    const Accessory accessory(link);
    accessory.Write(kIdentify);
    EXPECT_EQ(accessory.Read(kIdentified), kIdentified);
  }
  server.Stop();
  EXPECT_FALSE(LinkExists());
}

TEST_F(PtyServerTest, OldLinkIsReplaced) {
  ASSERT_EQ(symlink("/nowhere", link.c_str()), 0);
  PtyServer server(QuietSettings(), link);
  ASSERT_TRUE(server.Start());
  const Accessory accessory(link);
  accessory.Write(kIdentify);
  EXPECT_EQ(accessory.Read(kIdentified), kIdentified);
}

TEST_F(PtyServerTest, LinkThatAnotherServerUsesIsLeftAlone) {
  PtyServer server(QuietSettings(), link);
  ASSERT_TRUE(server.Start());
  {
    PtyServer other(QuietSettings(), link);
    EXPECT_FALSE(other.Start());
    EXPECT_THAT(other.error(), testing::MatchesRegex("the link '" + link +
                                                     "' leads to /dev/pts/[0-9]+, which is in use; "
                                                     "it is left alone"));
  }
  const Accessory accessory(link);
  accessory.Write(kIdentify);
  EXPECT_EQ(accessory.Read(kIdentified), kIdentified);
}

// As when a server was killed and its terminal's number was given to another program.
TEST_F(PtyServerTest, LinkToATerminalYoungerThanItIsReplaced) {
  PtyServer stranger(QuietSettings());
  ASSERT_TRUE(stranger.Start());
  ASSERT_EQ(symlink(stranger.device_path().c_str(), link.c_str()), 0);
  const timespec long_ago[2] = {{1, 0}, {1, 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, link.c_str(), long_ago, AT_SYMLINK_NOFOLLOW), 0);
  PtyServer server(QuietSettings(), link);
  ASSERT_TRUE(server.Start()) << server.error();
  const Accessory accessory(link);
  accessory.Write(kIdentify);
  EXPECT_EQ(accessory.Read(kIdentified), kIdentified);
}

TEST_F(PtyServerTest, QuestionToAnAccessoryThatHasClosedItsPortIsNotMissed) {
  Settings settings = QuietSettings();
  settings.asks_accessory = true;
  settings.answer_timeout = 20 * kMillisecond;
  const char* const asked = "FF 55 04 00 02 00 13 E7 FF 55 03 00 27 00 D6";
  PtyServer server(settings);
  ASSERT_TRUE(server.Start());
  {
    const Accessory accessory(server.device_path());
    accessory.Write(kIdentify);
    ASSERT_EQ(accessory.Read(asked), asked);
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  EXPECT_TRUE(server.Stop().empty());
}

TEST_F(PtyServerTest, FileAtTheLinksPlaceIsLeftAlone) {
  std::ofstream(link) << "precious";
  {
    PtyServer server(QuietSettings(), link);
    EXPECT_FALSE(server.Start());
    EXPECT_EQ(server.error(), "'" + link + "' exists and is not a link; it is left alone");
  }
  std::string content;
  std::ifstream(link) >> content;
  EXPECT_EQ(content, "precious");
}

TEST_F(PtyServerTest, LinkInAMissingFolderIsRefused) {
  PtyServer server(QuietSettings(), folder + "/missing/ipod");
  EXPECT_FALSE(server.Start());
  EXPECT_EQ(server.error(),
            "cannot make the link '" + folder + "/missing/ipod': No such file or directory");
}

TEST_F(PtyServerTest, UnpluggingTakesTheDeviceAwayAndReplugBringsItBack) {
  PtyServer server(QuietSettings(), link);
  ASSERT_TRUE(server.Start());
  {
    const Accessory accessory(link);
    accessory.Write(kIdentify);
    ASSERT_EQ(accessory.Read(kIdentified), kIdentified);
    server.Unplug();
    EXPECT_TRUE(accessory.SeesHangup());
  }
  EXPECT_TRUE(Eventually([&] { return !LinkExists(); }));
  server.Replug();
  ASSERT_TRUE(Eventually([&] { return LinkExists(); }));
  const Accessory accessory(link);
  accessory.Write(kIdentify);
  EXPECT_EQ(accessory.Read(kIdentified), kIdentified);
}

TEST_F(PtyServerTest, FaultUnplugsAndReplugsByItself) {
  Settings settings = QuietSettings();
  settings.faults.Enable(Fault::kUnplug);
  settings.faults.unplug_after = 1;
  settings.faults.unplugged_for = 50 * kMillisecond;
  PtyServer server(settings, link);
  ASSERT_TRUE(server.Start());
  {
    const Accessory accessory(link);
    accessory.Write(kIdentify);
    EXPECT_TRUE(accessory.SeesHangup());
  }
  EXPECT_TRUE(Eventually([&] { return LinkExists(); }));
}

TEST_F(PtyServerTest, WhatIsSaidWhileNobodyListensIsLost) {
  Settings settings = QuietSettings();
  settings.record_period = 20 * kMillisecond;
  PtyServer server(settings);
  ASSERT_TRUE(server.Start());
  {
    const Accessory accessory(server.device_path());
    accessory.Write(kIdentify);
    ASSERT_EQ(accessory.Read(kIdentified), kIdentified);
    accessory.Write(kEnter);
    ASSERT_EQ(accessory.Read(kEntered), kEntered);
    accessory.Write("FF 55 0C 04 00 1A 05 00 00 00 00 00 00 00 06 CB");
    ASSERT_EQ(accessory.Read("FF 55 0E 04 00 1B 00 00 00 00 41 6D 61 7A 6F 6E 00 6D"),
              "FF 55 0E 04 00 1B 00 00 00 00 41 6D 61 7A 6F 6E 00 6D");
  }
  ASSERT_TRUE(Eventually([&] {
    bool quiet = false;
    server.Inspect([&](const SimulatedIpod& ipod) { quiet = !ipod.NextEvent(); });
    return quiet;
  }));
  const Accessory accessory(server.device_path());
  accessory.Write(kIdentify);
  EXPECT_EQ(accessory.Read(kIdentified), kIdentified);
  // Had anything been echoed by the terminal, it would have come back as a mistake.
  EXPECT_TRUE(server.Stop().empty());
}

TEST_F(PtyServerTest, StopReportsWhatTheAccessoryDidWrong) {
  PtyServer server(QuietSettings());
  ASSERT_TRUE(server.Start());
  const Accessory accessory(server.device_path());
  accessory.Write("FF 55 02 00 07 00");
  ASSERT_TRUE(Eventually([&] { return !server.mistakes().empty(); }));
  accessory.Write("FF 55 02");
  const std::vector<Mistake> mistakes = server.Stop();
  ASSERT_EQ(mistakes.size(), 2u);
  EXPECT_EQ(mistakes[0].name, "bad checksum");
  EXPECT_EQ(mistakes[1].name, "truncated frame");
}

TEST_F(PtyServerTest, StopAndDestructionMayComeAtAnyTime) {
  PtyServer never_started(QuietSettings());
  EXPECT_TRUE(never_started.Stop().empty());
  PtyServer server(QuietSettings());
  ASSERT_TRUE(server.Start());
  EXPECT_TRUE(server.Start());
  server.Stop();
  EXPECT_TRUE(server.Stop().empty());
  EXPECT_EQ(server.device_path(), "");
}

// The first frame is over in the middle of the second one, and the server is then held up for
// longer than a frame may pause.
TEST_F(PtyServerTest, ServerThatIsHeldUpHearsNoGapInAFrame) {
  PtyServer server(QuietSettings(), {}, 57600);
  std::atomic<int> frames{0};
  server.set_trace([&](const TraceLine& line) {
    if (line.direction != TraceLine::Direction::kFromAccessory) return;
    if (++frames == 2) std::this_thread::sleep_for(std::chrono::milliseconds(700));
  });
  ASSERT_TRUE(server.Start()) << server.error();
  const Accessory accessory(server.device_path());
  accessory.Write(kIdentify);
  ASSERT_EQ(accessory.Read(kIdentified), kIdentified);
  accessory.Write(std::string(kRequest) + " " + kRequest);
  EXPECT_EQ(accessory.Read(kName), kName);
  EXPECT_EQ(accessory.Read(kName), kName);
  const std::vector<Mistake> mistakes = server.Stop();
  ASSERT_EQ(mistakes.size(), 1u);
  EXPECT_EQ(mistakes[0].detail,
            "General RequestiPodName before the end of General RequestiPodName");
}

TEST_F(PtyServerTest, TraceComesFromTheServer) {
  PtyServer server(QuietSettings());
  std::vector<std::string> lines;
  server.set_trace([&](const TraceLine& line) { lines.push_back(line.text); });
  ASSERT_TRUE(server.Start());
  const Accessory accessory(server.device_path());
  accessory.Write(kIdentify);
  ASSERT_EQ(accessory.Read(kIdentified), kIdentified);
  server.Stop();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1], "General ACK ok for IdentifyDeviceLingoes");
}

}  // namespace
}  // namespace ipodsim
