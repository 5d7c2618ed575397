// SPDX-License-Identifier: MIT
// The pauses on the line under the fast conduct: what the port is asked, and when. What the default
// conduct does stands in read_thread_test.cpp and writing_test.cpp.
#include "serial_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::SerialTest;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kAckFrame[] = "FF 55 04 00 02 00 37 C3";

class FastPace : public SerialTest {
 protected:
  FastPace() {
    CIpodSerialPeer::Pace(serial_).Choose(IPOD_CONDUCT_FAST);
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

TEST_F(FastPace, LooksLessOftenTheLongerTheLineIsQuiet) {
  world_.Advance(kSecond);
  EXPECT_THAT(CallsDuring(160 * kMillisecond, {"Sleep"}).text(), Each("Sleep(16)"));
  ReceiveAFrame();
  ipod_.Send({0x00});
  EXPECT_EQ(CallsDuring(20 * kMillisecond, {"Sleep"}).text().back(), "Sleep(1)");
}

TEST_F(FastPace, LooksOftenAgainOnceAFrameIsWritten) {
  ReceiveAFrame();
  world_.Advance(kSecond);
  CallsOfWriting(kAckFrame);
  world_.Advance(16 * kMillisecond);
  EXPECT_THAT(CallsDuring(8 * kMillisecond, {"Sleep"}).text(), Contains("Sleep(1)"));
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
  world_.Advance(100 * kMillisecond);
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

TEST_F(FastPace, LosesNothingOfAMinuteOfFramesBackToBack) {
  constexpr int kFrames = 41142;  // at 57600 baud, 10 bits a byte
  test::Bytes minute;
  for (int i = 0; i < kFrames; ++i) {
    const test::Bytes frame = test::Hex(kAckFrame);
    minute.insert(minute.end(), frame.begin(), frame.end());
  }
  ipod_.Send(minute);
  int frames = 0;
  for (int second = 0; second < 61; ++second) {
    world_.Advance(kSecond);
    tagSERIAL_PACKET packet = {};
    while (serial_.GetNextPacket(&packet, 0)) ++frames;
  }
  EXPECT_EQ(frames, kFrames);
}

}  // namespace
