// SPDX-License-Identifier: MIT
// The pauses on the line under the fast conduct: what the port is asked, and when. What the default
// conduct does stands in read_thread_test.cpp and writing_test.cpp.
#include <algorithm>
#include <memory>

#include "serial_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::SerialTest;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

// ---- The pause after nothing, by itself

// The next pauses while nothing comes.
std::vector<std::uint32_t> PausesOf(ipodcomm::LinePace& pace, std::size_t count) {
  std::vector<std::uint32_t> pauses(count);
  std::generate(pauses.begin(), pauses.end(), [&pace] { return pace.PauseAfterNothing(); });
  return pauses;
}

// An eighth of the pauses before it, together: 7 ms up to 70 ms, then 70 / 8, 78 / 8, and so on.
TEST(QuietLine, IsLookedAtAfterAnEighthOfItsQuietFromWhateverEndedItLast) {
  const std::vector<std::uint32_t> expected = {7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 8, 9, 10, 12, 13, 15};
  ipodcomm::LinePace pace;
  pace.Choose({20, 2, 7, 50, 1000, 512, 1, 1});
  EXPECT_EQ(PausesOf(pace, expected.size()), expected);
  EXPECT_EQ(pace.PauseAfterBytes(), 2U);
  EXPECT_EQ(PausesOf(pace, expected.size()), expected);
  pace.FrameWritten();
  EXPECT_EQ(PausesOf(pace, expected.size()), expected);
  pace.PortOpened();
  EXPECT_EQ(PausesOf(pace, expected.size()), expected);
}

TEST(QuietLine, IsLookedAtNoLaterThanAfterTheLongestPause) {
  ipodcomm::LinePace pace;
  pace.Choose({20, 2, 7, 50, 9, 512, 1, 1});
  EXPECT_THAT(PausesOf(pace, 16), ElementsAre(7, 7, 7, 7, 7, 7, 7, 7, 7, 7, 8, 9, 9, 9, 9, 9));
}

// The quiet is counted in milliseconds, of which 32 bits hold seven weeks; the longest pause is
// three days here.
TEST(QuietLine, IsLookedAtAfterTheLongestPauseHoweverLongItIsQuiet) {
  constexpr std::uint32_t kLongestMs = 0x10000000;
  ipodcomm::LinePace pace;
  pace.Choose({20, 2, 7, 50, kLongestMs, 512, 1, 1});
  const std::vector<std::uint32_t> pauses = PausesOf(pace, 400);
  const auto longest = std::find(pauses.begin(), pauses.end(), kLongestMs);
  EXPECT_THAT(std::vector<std::uint32_t>(longest, pauses.end()),
              AllOf(SizeIs(Ge(100U)), Each(kLongestMs)));
}

constexpr char kAckFrame[] = "FF 55 04 00 02 00 37 C3";

class FastPace : public SerialTest {
 protected:
  FastPace() {
    CIpodSerialPeer::ChoosePace(serial_, IPOD_CONDUCT_FAST);
    OpenForPackets();
    test::DrainTraceLog();
  }

  ipodcomm::virtual_platform::Calls CallsDuring(std::int64_t duration_us,
                                                const std::vector<std::string>& services) {
    world_.DrainCalls();
    world_.Record(services);
    world_.Advance(duration_us);
    world_.StopRecording();
    return world_.DrainCalls().Of("read");
  }
  std::vector<std::string> CallsOfWriting(const char* frame) {
    test::Bytes bytes = test::Hex(frame);
    world_.DrainCalls();
    world_.Record({"WriteFile", "Sleep"});
    EXPECT_EQ(serial_.WritePacket(bytes.data(), bytes.size()), 0);
    world_.StopRecording();
    return world_.DrainCalls().Of("host").text();
  }
  void ReceiveAFrame() {
    ipod_.Send(test::Hex(kAckFrame));
    world_.Advance(100 * kMillisecond);
  }
};

TEST_F(FastPace, ReadsWhatTheDriverHoldsAndNothingElse) {
  ipod_.Send(test::Hex(kAckFrame));
  const auto calls = CallsDuring(4 * kMillisecond, {"ReadFile"});
  std::size_t bytes = 0;
  for (const std::string& call : calls.text()) {
    EXPECT_NE(call, "ReadFile(port1, 0)");
    bytes += std::stoul(call.substr(call.find(' ') + 1));
  }
  EXPECT_EQ(bytes, 8U);
  EXPECT_LE(calls.text().size(), 4U);
  EXPECT_THAT(DrainPackets(), ElementsAre(kAckFrame));
}

// A read of a silent line would wait, and a writer with it.
TEST_F(FastPace, DoesNotReadASilentLine) {
  EXPECT_THAT(CallsDuring(100 * kMillisecond, {"ReadFile"}).text(), IsEmpty());
}

// Each pause is an eighth of the quiet before it: 1 ms for 15 ms, then 2 ms up to 24 ms, and so on.
TEST_F(FastPace, LooksLessOftenTheLongerTheLineIsQuiet) {
  ReceiveAFrame();
  ipod_.Send({0x00});
  const auto pauses = CallsDuring(300 * kMillisecond, {"WaitForSingleObject"}).text();
  std::vector<int> lengths;
  for (const std::string& call : pauses) {
    lengths.push_back(std::stoi(call.substr(call.find(' ') + 1)));
  }
  ASSERT_GT(lengths.size(), 30U);
  EXPECT_TRUE(std::is_sorted(lengths.begin() + 1, lengths.end()));
  EXPECT_EQ(lengths[1], 1);
  EXPECT_EQ(lengths.back(), 16);
}

// The pause that is being taken ends, whenever the frame is written.
TEST_F(FastPace, LooksOftenAgainOnceAFrameIsWritten) {
  ReceiveAFrame();
  for (int phase_ms = 0; phase_ms < 20; ++phase_ms) {
    SCOPED_TRACE(phase_ms);
    world_.Advance(kSecond + phase_ms * kMillisecond);
    CallsOfWriting(kAckFrame);
    EXPECT_THAT(CallsDuring(8 * kMillisecond, {"WaitForSingleObject"}).text(),
                AllOf(SizeIs(Ge(8)), Each("WaitForSingleObject(event2, 1)")));
  }
}

// Whatever the read thread is doing: it never holds the line while it waits.
TEST_F(FastPace, AWriteNeverWaitsForARead) {
  ReceiveAFrame();
  test::Bytes frame = test::Hex(kAckFrame);
  for (int phase = 0; phase < 200; ++phase) {
    SCOPED_TRACE(phase);
    if (phase % 4 == 0) ipod_.Send(test::Hex(kAckFrame));
    world_.Advance(phase % 40 * std::int64_t{137});
    EXPECT_EQ(Elapsed([&] { EXPECT_EQ(serial_.WritePacket(frame.data(), frame.size()), 0); }), 0);
  }
}

// From the last byte's arrival: a pause of 1 ms may be in progress.
TEST_F(FastPace, AnAnswerOnAQuietLineIsThereAMillisecondLater) {
  constexpr std::int64_t kRequestUs = 8 * 10'000'000LL / 57600 + 1;
  constexpr std::int64_t kIpodUs = 8 * kMillisecond;
  ReceiveAFrame();
  Answer(kAckFrame, kAckFrame, kIpodUs);
  test::Bytes frame = test::Hex(kAckFrame);
  for (int phase = 0; phase < 100; ++phase) {
    SCOPED_TRACE(phase);
    world_.Advance(kSecond + phase * std::int64_t{173});
    DrainPackets();
    const std::int64_t taken = Elapsed([&] {
      EXPECT_EQ(serial_.WritePacket(frame.data(), frame.size()), 0);
      tagSERIAL_PACKET packet = {};
      EXPECT_TRUE(serial_.GetNextPacket(&packet, 1000));
    });
    EXPECT_GE(taken, kRequestUs + kIpodUs + kRequestUs);
    EXPECT_LE(taken, kRequestUs + kIpodUs + kRequestUs + kMillisecond);
  }
}

// What the driver holds is read in pieces that the thread has room for.
TEST_F(FastPace, OneReadAsksForNoMoreThan1024Bytes) {
  CIpodSerialPeer::ChoosePace(serial_, {20, 1000, 1, 50, 16, 4096, 1, 1});
  ipod_.Send(test::Bytes(2000, 0x00));
  const auto reads = CallsDuring(5 * kSecond, {"ReadFile"}).text();
  ASSERT_EQ(reads.size(), 3U);
  EXPECT_EQ(reads[1], "ReadFile(port1, 1024)");
}

// The thread may go first once its pause is ended, and begin another if it were let.
TEST(FastPaceUnderManySchedules, DestructionDoesNotWaitForThePause) {
  for (std::uint64_t seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    test::World world({seed});
    auto serial = std::make_unique<CIpodSerial>();
    CIpodSerialPeer::ChoosePace(*serial, IPOD_CONDUCT_FAST);
    EXPECT_EQ(serial->Open(true), 0);
    world.Advance(kSecond);
    const std::int64_t start_us = world.now_us();
    serial.reset();
    EXPECT_LE(world.now_us() - start_us, kMillisecond);
    world.Advance(2 * kSecond);
  }
}

TEST_F(FastPace, DestructionDoesNotWaitForThePause) {
  auto serial = std::make_unique<CIpodSerial>();
  serial_.Close();
  world_.Advance(2 * kSecond);
  CIpodSerialPeer::ChoosePace(*serial, IPOD_CONDUCT_FAST);
  EXPECT_EQ(serial->Open(true), 0);
  world_.Advance(kSecond);
  EXPECT_LE(Elapsed([&] { serial.reset(); }), kMillisecond);
}

TEST_F(FastPace, WithoutMemoryForItsEventAPauseLastsItsTime) {
  serial_.Close();
  world_.Advance(2 * kSecond);
  CIpodSerial serial;
  world_.FailOnce("CreateEventW", 1, 8);
  CIpodSerialPeer::ChoosePace(serial, IPOD_CONDUCT_FAST);
  EXPECT_EQ(serial.Open(true), 0);
  world_.Advance(kSecond);
  world_.Record({"Sleep"});
  world_.Advance(160 * kMillisecond);
  EXPECT_THAT(world_.DrainCalls().Of("read 2").text(), Each("Sleep(16)"));
}

TEST_F(FastPace, OnlyAPauseThatGrowsHasAnEvent) {
  CIpodSerial serial;
  world_.Record({"CreateEventW"});
  CIpodSerialPeer::ChoosePace(serial, IPOD_CONDUCT_FIELD);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  CIpodSerialPeer::ChoosePace(serial, IPOD_CONDUCT_FAST);
  EXPECT_THAT(world_.DrainRecord(), ElementsAre("CreateEventW(auto, not set, null)"));
}

TEST_F(FastPace, TheDefaultPauseIsASleepAgainOnceItIsChosen) {
  CIpodSerialPeer::ChoosePace(serial_, IPOD_CONDUCT_FIELD);
  world_.Advance(20 * kMillisecond);
  const auto calls = CallsDuring(100 * kMillisecond, {"Sleep", "WaitForSingleObject"}).text();
  EXPECT_THAT(calls, AllOf(Not(IsEmpty()), Each("Sleep(2)")));
}

TEST_F(FastPace, SendsTheSyncByteAloneUntilTheIpodHasAnswered) {
  EXPECT_THAT(CallsOfWriting(kAckFrame), ElementsAre("WriteFile(port1, FF)", "Sleep(20)",
                                                     "WriteFile(port1, 55 04 00 02 00 37 C3)"));
  ReceiveAFrame();
  EXPECT_THAT(CallsOfWriting(kAckFrame), ElementsAre("WriteFile(port1, FF 55 04 00 02 00 37 C3)"));
}

TEST_F(FastPace, SendsTheSyncByteAloneAgainAfterOpening) {
  ReceiveAFrame();
  serial_.Close();
  world_.Advance(2 * kSecond);
  OpenForPackets();
  EXPECT_THAT(CallsOfWriting(kAckFrame), Contains("WriteFile(port2, FF)"));
}

TEST_F(FastPace, ADriverThatDoesNotTellWhatItHoldsIsReadByteByByte) {
  world_.FailFrom("ClearCommError", 1, 50, "read");
  ipod_.Send(test::Hex(kAckFrame));
  EXPECT_THAT(CallsDuring(100 * kMillisecond, {"ReadFile"}).text(),
              AllOf(SizeIs(Ge(8)), Each("ReadFile(port1, 1)")));
  EXPECT_THAT(DrainPackets(), ElementsAre(kAckFrame));
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("CIpodSerial::PortReadThread: Driver does not tell what it holds, "
                          "reading byte by byte"));
  EXPECT_THAT(CallsDuring(100 * kMillisecond, {"ClearCommError"}).text(), IsEmpty());
}

TEST_F(FastPace, AVanishedAdapterIsTriedEveryFiftyMilliseconds) {
  world_.FailFrom("ClearCommError", 1, 31, "read");
  world_.FailFrom("ReadFile", 1, 31, "read");
  world_.Advance(20 * kMillisecond);
  EXPECT_THAT(CallsDuring(200 * kMillisecond, {"Sleep"}).text(), Each("Sleep(50)"));
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

}  // namespace
