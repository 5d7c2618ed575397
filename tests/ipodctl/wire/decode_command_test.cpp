// SPDX-License-Identifier: MIT
// ipodctl decode and ipodctl monitor, run as programs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "support/process.h"
#include "support/temporary_folder.h"

using nlohmann::json;
using test::Ended;
using test::Ipodctl;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

std::string Literal(std::initializer_list<int> bytes) {
  std::string text;
  for (const int byte : bytes) text += static_cast<char>(byte);
  return text;
}

// A recording of two frames: a request for the iPod's name at 4.294967296 s, and 0.5 s later the
// name "A", ESC, "B" with a checksum that holds.
std::string TwoFrames() {
  return Literal({0x0A, 0x0D, 0x0D, 0x0A, 28,   0,    0,    0,    0x4D, 0x3C, 0x2B, 0x1A, 1, 0,
                  0,    0,    0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 28,   0,    0, 0}) +
         Literal({1, 0, 0, 0, 32, 0, 0, 0, 250, 0, 0, 0, 0,  0, 0, 0,
                  9, 0, 1, 0, 9,  0, 0, 0, 0,   0, 0, 0, 32, 0, 0, 0}) +
         Literal({6, 0, 0,  0, 52,   0,    0,    0,    0,    0,    0, 0, 1,  0, 0, 0, 0,    0,
                  0, 0, 18, 0, 0,    0,    18,   0,    0,    0,    0, 0, 0,  4, 0, 4, 0x7F, 0x17,
                  1, 0, 0,  0, 0xFF, 0x55, 0x02, 0x00, 0x07, 0xF7, 0, 0, 52, 0, 0, 0}) +
         Literal({6,    0,    0,    0,    56,   0,    0,    0,    0, 0, 0,  0, 1,    0,
                  0,    0,    0x00, 0x65, 0xCD, 0x1D, 22,   0,    0, 0, 22, 0, 0,    0,
                  0,    0,    0,    4,    0,    0x0B, 0xA0, 0x37, 2, 0, 0,  0, 0xFF, 0x55,
                  0x06, 0x00, 0x08, 0x41, 0x1B, 0x42, 0x00, 0x54, 0, 0, 56, 0, 0,    0});
}

const std::string kClose =
    Literal({6, 0, 0,  0, 44, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0x01, 0x65, 0xCD, 0x1D, 12, 0,
             0, 0, 12, 0, 0,  0, 0, 0, 0, 4, 0, 0, 0, 0, 6, 0, 0,    0,    44,   0,    0,  0});

class DecodeCommand : public ::testing::Test {
 protected:
  test::TemporaryFolder folder_;
};

const std::string kTwoLines =
    "     1    +0.000 > General RequestiPodName\n"
    "     2    +0.500 < General ReturniPodName: name \"A\\x1BB\"\n";

TEST_F(DecodeCommand, PrintsALineForEachFrame) {
  const Ended ended = Ipodctl({"decode", folder_.Write("line.pcapng", TwoFrames() + kClose)});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(ended.out, kTwoLines);
}

TEST_F(DecodeCommand, PrintsAnObjectForEachFrame) {
  const Ended ended =
      Ipodctl({"--json", "decode", folder_.Write("line.pcapng", TwoFrames() + kClose)});
  EXPECT_EQ(ended.status, 0);
  const std::size_t end = ended.out.find('\n');
  EXPECT_EQ(
      json::parse(ended.out.substr(0, end)),
      json::parse(
          R"({"time": "1970-01-01T00:00:04.294Z", "packet": 1, "time_ns": 4294967296, "since_previous_ms": 0.0,
                "from": "accessory", "bytes": "FF 55 02 00 07 F7",
                "lingo": {"number": 0, "name": "General"},
                "command": {"number": 7, "name": "RequestiPodName", "known": true},
                "large": false, "transaction_id": null, "fields": [], "notes": []})"));
  EXPECT_EQ(
      json::parse(ended.out.substr(end)),
      json::parse(
          R"({"time": "1970-01-01T00:00:04.794Z", "packet": 2, "time_ns": 4794967296, "since_previous_ms": 500.0,
                "from": "ipod", "bytes": "FF 55 06 00 08 41 1B 42 00 54",
                "lingo": {"number": 0, "name": "General"},
                "command": {"number": 8, "name": "ReturniPodName", "known": true},
                "large": false, "transaction_id": null,
                "fields": [{"name": "name", "value": "A\u001bB"}],
                "answers": 1, "response_ms": 500.0, "notes": []})"));
}

TEST_F(DecodeCommand, TellsWhatIsReadableOfARecordingThatWasCutOff) {
  const std::string cut = folder_.Write("cut.pcapng", TwoFrames());
  const Ended ended = Ipodctl({"decode", cut});
  EXPECT_EQ(ended.status, 65);
  EXPECT_EQ(ended.out, kTwoLines);
  EXPECT_EQ(ended.err, "ipodctl: " + cut +
                           " ends at byte 168, and nothing closes it: the recording was cut off, "
                           "or is another program's.\n");

  const std::string torn = folder_.Write("torn.pcapng", TwoFrames().substr(0, 150));
  const Ended in_the_middle = Ipodctl({"decode", torn});
  EXPECT_EQ(in_the_middle.status, 65);
  EXPECT_THAT(in_the_middle.out, StartsWith("     1    +0.000 > General RequestiPodName\n"));
  EXPECT_EQ(in_the_middle.err,
            "ipodctl: " + torn + " ends in the middle of a block, at byte 112.\n");
}

TEST_F(DecodeCommand, ShowsHowFarALargeRecordingHasBeenRead) {
  const std::string beginning = TwoFrames().substr(0, 60);
  const std::string packets = TwoFrames().substr(60);
  std::string large = beginning;
  while (large.size() < (3 << 20)) large += packets;
  const std::string file = folder_.Write("large.pcapng", large + kClose);
  test::Process decode(IPODCTL_PROGRAM, {"decode", file},
                       test::Process::Setting::kErrorsOnTerminal);
  const Ended ended = decode.Wait();
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.err, AllOf(HasSubstr("Reading "), HasSubstr("2/3")));
  EXPECT_EQ(Ipodctl({"decode", file}).err, "");
}

TEST_F(DecodeCommand, RefusesWhatIsNoRecording) {
  const std::string text = folder_.Write("text", "A text is no recording of a line.");
  const Ended ended = Ipodctl({"decode", text});
  EXPECT_EQ(ended.status, 66);
  EXPECT_EQ(ended.out, "");
  EXPECT_EQ(ended.err, "ipodctl: " + text + " is no recording.\n");

  std::string ethernet = TwoFrames() + kClose;
  ethernet[36] = 1;
  const std::string other = folder_.Write("other.pcapng", ethernet);
  const Ended of_another = Ipodctl({"decode", other});
  EXPECT_EQ(of_another.status, 66);
  EXPECT_EQ(of_another.err,
            "ipodctl: " + other + " is a recording of something else than a serial line.\n");
}

TEST_F(DecodeCommand, RefusesFilesThatItCannotRead) {
  const std::string none = folder_.path("none");
  const Ended ended = Ipodctl({"decode", none});
  EXPECT_EQ(ended.status, 66);
  EXPECT_EQ(ended.err, "ipodctl: cannot read " + none + ": No such file or directory.\n");
  std::filesystem::create_directory(folder_.path("folder"));
  EXPECT_EQ(Ipodctl({"decode", folder_.path("folder")}).err,
            "ipodctl: cannot read " + folder_.path("folder") + ": it is a folder.\n");
}

TEST_F(DecodeCommand, RefusesWrongArguments) {
  EXPECT_EQ(Ipodctl({"decode"}).status, 64);
  EXPECT_EQ(Ipodctl({"decode", ""}).status, 64);
  EXPECT_EQ(Ipodctl({"monitor"}).status, 64);
}

TEST_F(DecodeCommand, ExplainsItself) {
  EXPECT_THAT(Ipodctl({"decode", "--help"}).out,
              AllOf(HasSubstr("Usage: ipodctl decode FILE"), HasSubstr("Examples:\n")));
  EXPECT_THAT(Ipodctl({"monitor", "--help"}).out,
              HasSubstr("Usage: ipodctl monitor --capture-from FILE"));
}

TEST_F(DecodeCommand, TellsThatStandardInputIsEmpty) {
  const Ended ended = Ipodctl({"monitor", "--capture-from", "-"});
  EXPECT_EQ(ended.status, 66);
  EXPECT_EQ(ended.err, "ipodctl: standard input is empty.\n");
}

TEST_F(DecodeCommand, FollowsARecordingThatIsStillBeingWritten) {
  const std::string file = folder_.Write("line.pcapng", TwoFrames());
  test::Process monitor(IPODCTL_PROGRAM, {"monitor", "--capture-from", file});
  ASSERT_TRUE(monitor.WaitForOutput("ReturniPodName"));
  folder_.Write("line.pcapng", TwoFrames() + kClose);
  const Ended ended = monitor.Wait();
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.out, kTwoLines);
}

}  // namespace
