// SPDX-License-Identifier: MIT
// The host's commands and the notification thread's answers at the same time: under every schedule
// each frame goes out whole and with an identifier that is nobody else's.
#include <algorithm>
#include <functional>
#include <map>
#include <set>

#include "support/packets.h"
#include "support/session_test.h"
#include "world/tests/support.h"

namespace {

using ipodcomm::virtual_platform::StartThread;
using test::Bytes;
using test::kMillisecond;
using test::kSecond;
using test::ScriptedDevice;
using test::World;

// An open session, and the iPod at the other end of its line.
struct Docked {
  explicit Docked(std::uint64_t seed) : world({seed}) {
    world.line().Plug(ipod);
    world.Advance(2 * kSecond);
    EXPECT_EQ(session.Open(), 0);
    world.Advance(50 * kMillisecond);
    ipod.ClearReceived();
  }
  Docked(const Docked&) = delete;
  Docked& operator=(const Docked&) = delete;
  ~Docked() { world.line().Unplug(); }

  // Ahead of the requests' identifiers, so they do not step it.
  void NumberFrom0x4000() {
    CIpodCommPeer::TransactionIdMode(session) = 1;
    CIpodCommPeer::OwnTransactionId(session) = 0x4000;
  }

  ScriptedDevice ipod;
  World world;
  test::ChosenSession session;
};

// Sends 15 commands while 15 requests come in; the frames that went out, as text.
std::vector<std::string> TalkAtTheSameTime(std::uint64_t seed, bool with_identifiers) {
  Docked docked(seed);
  if (with_identifiers) docked.NumberFrom0x4000();
  for (unsigned char i = 1; i <= 15; ++i) {
    Bytes request = {0xFF, 0x55, 0x04, 0x09, 0x03, 0x20, i, 0};
    request.back() = static_cast<std::uint8_t>(0x100 - (0x04 + 0x09 + 0x03 + 0x20 + i));
    docked.ipod.Send(request);
  }
  for (unsigned char i = 1; i <= 15; ++i) {
    const unsigned char data[] = {i, 0x11, 0x22, 0x33};
    tagIPOD_WRITE_PARAMS write = {0x0029, 0x04, data, sizeof data};
    EXPECT_EQ(docked.session.WriteCommand(&write), IPOD_COMM_OK);
    docked.world.Advance(static_cast<std::int64_t>(seed % 7) * kMillisecond);
  }
  docked.world.Advance(2 * kSecond);
  return test::Frames(docked.ipod.received());
}

TEST(Interleaving, WithoutIdentifiersEveryFrameIsWhole) {
  for (std::uint64_t seed = 1; seed <= 100; ++seed) {
    std::map<std::string, int> times;
    for (const std::string& frame : TalkAtTheSameTime(seed, false)) ++times[frame];
    EXPECT_EQ(times["FF 55 05 09 04 02 00 00 EC"], 15) << seed;
    EXPECT_EQ(times["FF 55 07 04 00 29 01 11 22 33 65"], 1) << seed;
    EXPECT_EQ(times["FF 55 07 04 00 29 0F 11 22 33 57"], 1) << seed;
    EXPECT_EQ(times.size(), 16U) << seed;  // 15 different commands and the answer
  }
}

int ByteOf(const std::string& frame, std::size_t position) {
  return std::stoi(frame.substr(position * 3, 2), nullptr, 16);
}

int SumFromTheLength(const std::string& frame) {
  int sum = 0;
  for (std::size_t i = 2; i * 3 < frame.size(); ++i) sum += ByteOf(frame, i);
  return sum % 256;
}

TEST(Interleaving, CommandsTakeOwnIdentifiersAndAnswersEchoTheirs) {
  for (std::uint64_t seed = 1; seed <= 100; ++seed) {
    const auto frames = TalkAtTheSameTime(seed, true);
    EXPECT_EQ(frames.size(), 30U) << seed;
    std::vector<int> commands;
    std::vector<int> answers;
    for (const std::string& frame : frames) {
      ASSERT_EQ(SumFromTheLength(frame), 0) << frame;
      if (frame.substr(0, 14) == "FF 55 07 09 04") {
        ASSERT_EQ(frame.substr(21, 8), "02 00 00") << frame;
        answers.push_back(ByteOf(frame, 5) * 256 + ByteOf(frame, 6));
      } else {
        ASSERT_EQ(frame.substr(0, 17), "FF 55 09 04 00 29") << frame;
        ASSERT_EQ(frame.substr(27, 8), "11 22 33") << frame;
        commands.push_back(ByteOf(frame, 6) * 256 + ByteOf(frame, 7));
      }
    }
    EXPECT_EQ(commands.size(), 15U) << seed;
    // Commands go out in their order, each with an identifier of its own; answers take steps, too.
    EXPECT_TRUE(std::is_sorted(commands.begin(), commands.end())) << seed;
    EXPECT_EQ(std::set<int>(commands.begin(), commands.end()).size(), 15U) << seed;
    for (const int id : commands) EXPECT_TRUE(id >= 0x4000 && id < 0x4000 + 30) << id;
    // An answer echoes the last request of its lingo, so none is older than the one before.
    EXPECT_TRUE(std::is_sorted(answers.begin(), answers.end())) << seed;
    for (const int id : answers) EXPECT_TRUE(id > 0x2000 && id <= 0x200F) << id;
  }
}

// Two threads of the host send 15 commands each; the identifiers in the order in which they left.
std::vector<int> SendFromTwoThreads(std::uint64_t seed, const tagIPOD_CONDUCT& conduct) {
  Docked docked(seed);
  EXPECT_EQ(docked.session.SetConduct(&conduct), 1);
  docked.NumberFrom0x4000();
  const std::function<void()> send = [&session = docked.session] {
    for (int i = 0; i < 15; ++i) {
      tagIPOD_WRITE_PARAMS write = {0x0029, 0x04, nullptr, 0};
      EXPECT_EQ(session.WriteCommand(&write), IPOD_COMM_OK);
    }
  };
  const HANDLE second = StartThread(send);
  send();
  WaitForSingleObject(second, INFINITE);
  CloseHandle(second);
  docked.world.Advance(kSecond);
  std::vector<int> identifiers;
  for (const std::string& frame : test::Frames(docked.ipod.received())) {
    identifiers.push_back(ByteOf(frame, 6) * 256 + ByteOf(frame, 7));
  }
  EXPECT_EQ(identifiers.size(), 30U) << seed;
  return identifiers;
}

int SchedulesOutOfOrder(const tagIPOD_CONDUCT& conduct) {
  int found = 0;
  for (std::uint64_t seed = 1; seed <= 100; ++seed) {
    const auto identifiers = SendFromTwoThreads(seed, conduct);
    if (!std::is_sorted(identifiers.begin(), identifiers.end())) ++found;
  }
  return found;
}

TEST(Interleaving, ByDefaultTheFrameOfALaterIdentifierMayLeaveFirst) {
  EXPECT_GT(SchedulesOutOfOrder(IPOD_CONDUCT_FIELD), 0);
}

TEST(Interleaving, RobustFramesLeaveInTheOrderOfTheirIdentifiers) {
  EXPECT_EQ(SchedulesOutOfOrder(IPOD_CONDUCT_ROBUST), 0);
  EXPECT_EQ(SchedulesOutOfOrder(IPOD_CONDUCT_FAST), 0);
}

// Requests that the notification thread answers step the own identifier, also between the moment
// when the host calls and the moment when its frame is built.
TEST(Interleaving, RecordRequestsReturnTheIdentifierOfTheirOwnFrame) {
  for (std::uint64_t seed = 1; seed <= 100; ++seed) {
    Docked docked(seed);
    docked.NumberFrom0x4000();
    std::vector<unsigned long> returned;
    for (int i = 0; i < 15; ++i) {
      CIpodCommPeer::Notifications(docked.session).Append(test::Packet("FF 55 04 09 03 00 01 EF"));
      returned.push_back(docked.session.Command_RetrieveCategorizedDatabaseRecords(0, 1, 5));
      docked.world.Advance(static_cast<std::int64_t>(seed % 7) * kMillisecond);
    }
    docked.world.Advance(kSecond);
    std::vector<unsigned long> sent;
    for (const std::string& frame : test::Frames(docked.ipod.received())) {
      if (frame.substr(0, 17) != "FF 55 0E 04 00 1A") continue;
      sent.push_back(static_cast<unsigned long>(ByteOf(frame, 6) * 256 + ByteOf(frame, 7)));
    }
    EXPECT_EQ(returned, sent) << seed;
  }
}

TEST(Interleaving, OwnIdentifierStepsOncePerFrame) {
  for (std::uint64_t seed = 1; seed <= 50; ++seed) {
    Docked docked(seed);
    CIpodCommPeer::TransactionIdMode(docked.session) = 1;
    for (int i = 0; i < 10; ++i) docked.ipod.Send(test::Hex("FF 55 04 0C 81 FF FF 71"));
    tagIPOD_WRITE_PARAMS write = {0x07, 0x00, nullptr, 0};
    for (int i = 0; i < 10; ++i) docked.session.WriteCommand(&write);
    docked.world.Advance(3 * kSecond);
    // Ten commands, ten answers, and ten requests that were not behind.
    EXPECT_EQ(CIpodCommPeer::OwnTransactionId(docked.session), 30) << seed;
  }
}

// A request in the middle of every exchange: the answer is found and the request served.
TEST(Interleaving, UnaskedRequestsDoNotDisturbExchanges) {
  for (std::uint64_t seed = 1; seed <= 100; ++seed) {
    Docked docked(seed);
    docked.ipod.Answer(
        test::Hex("FF 55 02 00 07 F7"),
        test::Hex("FF 55 02 09 03 F2 FF 55 08 04 00 27 07 00 00 00 2A 9C FF 55 05 00 08 41 "
                  "42 00 70 FF 55 03 00 27 00 D6"),
        static_cast<std::int64_t>(seed % 20) * kMillisecond);
    wchar_t name[8] = {};
    EXPECT_EQ(docked.session.Command_RequestIpodName(name, 8), 1) << seed;
    EXPECT_STREQ(name, L"AB");
    docked.world.Advance(200 * kMillisecond);
    EXPECT_THAT(test::Frames(docked.ipod.received()),
                ::testing::ElementsAre("FF 55 02 00 07 F7", "FF 55 05 09 04 02 00 00 EC",
                                       "FF 55 07 00 28 00 00 00 00 F3 DE"))
        << seed;
    tagIPOD_PLAY_STATUS status = {};
    docked.session.GetPlayStatus(&status);
    EXPECT_EQ(status.position, 42U);
  }
}

}  // namespace
