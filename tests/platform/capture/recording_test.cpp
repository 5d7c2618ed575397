// SPDX-License-Identifier: MIT
// A recording's file: full, missing, or read by somebody slow.
#include "platform/capture/recording.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <future>
#include <memory>
#include <string>

#include "platform/capture/line_tap.h"
#include "support/pcapng_reader.h"
#include "support/temporary_folder.h"

namespace test {
namespace {

using ipodcomm::capture::Direction;
using ipodcomm::capture::LineTap;
using ipodcomm::capture::Packet;
using ipodcomm::capture::Recording;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

Packet PacketOf(std::size_t bytes) {
  Packet packet;
  packet.bytes.assign(bytes, 0x55);
  return packet;
}

TEST(RecordingTest, NamesTheLibrary) {
  const TemporaryFolder folder;
  std::string error;
  Recording::Start(folder.path("empty.pcapng"), &error).reset();
  EXPECT_EQ(ReadPcapngFile(folder.path("empty.pcapng")).application, "ipodcomm 1.0.0");
}

TEST(RecordingTest, AFileThatCannotBeMadeHasAReason) {
  std::string error;
  EXPECT_EQ(Recording::Start("/nowhere/line.pcapng", &error), nullptr);
  EXPECT_EQ(error, "No such file or directory");
}

// A session does not wait for a reader of its recording.
TEST(RecordingTest, APipeThatNobodyReadsIsRefusedAtOnce) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  std::string error;
  EXPECT_EQ(Recording::Start(folder.path("pipe"), &error), nullptr);
  EXPECT_EQ(error, "No such device or address");
}

TEST(RecordingTest, WhatWaitsIsWrittenBeforeTheRecordingIsGone) {
  const TemporaryFolder folder;
  std::string error;
  auto recording = Recording::Start(folder.path("all.pcapng"), &error);
  for (int i = 0; i < 1000; ++i) EXPECT_TRUE(recording->Add(PacketOf(1000)));
  recording.reset();
  EXPECT_EQ(ReadPcapngFile(folder.path("all.pcapng")).packets.size(), 1000U);
}

TEST(RecordingTest, AFullDiskEndsItWithOneSentence) {
  testing::internal::CaptureStderr();
  std::string error;
  auto recording = Recording::Start("/dev/full", &error);
  ASSERT_NE(recording, nullptr) << error;
  recording->Drain();
  EXPECT_FALSE(recording->Add(PacketOf(10)));
  EXPECT_FALSE(recording->Add(PacketOf(10)));
  recording.reset();
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "ipodcomm: the recording /dev/full ends here: No space left on device\n");
}

// A named pipe holds 64 kilobytes; its reader opens it and reads nothing at first.
class SlowReader : public ::testing::Test {
 protected:
  SlowReader() {
    mkfifo(folder_.path("pipe").c_str(), 0600);
    reader_ = open(folder_.path("pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    std::string error;
    recording_ = Recording::Start(folder_.path("pipe"), &error);
  }
  ~SlowReader() override { StopReading(); }

  void StopReading() {
    if (reader_ >= 0) close(reader_);
    reader_ = -1;
  }
  Bytes ReadToEnd() {
    fcntl(reader_, F_SETFL, 0);
    Bytes all;
    std::uint8_t part[4096];
    for (ssize_t count; (count = read(reader_, part, sizeof part)) > 0;) {
      all.insert(all.end(), part, part + count);
    }
    return all;
  }

  TemporaryFolder folder_;
  int reader_ = -1;
  std::shared_ptr<Recording> recording_;
};

TEST_F(SlowReader, HoldsUpNobodyAndIsToldWhatIsMissing) {
  auto tap = std::make_unique<LineTap>(recording_, "line");
  tap->Configure(57600, "57600 baud", 0);
  const Bytes frame = Hex("FF 55 02 00 13 EB");
  constexpr std::size_t kFrames = 100000;  // six megabytes of blocks; four wait at most
  for (std::size_t i = 0; i < kFrames; ++i) {
    tap->Record(Direction::kSent, frame.data(), frame.size(), 1);
  }
  auto reader = std::async(std::launch::async, [this] { return ReadToEnd(); });
  recording_->Drain();
  tap->Record(Direction::kSent, frame.data(), frame.size(), 2);
  tap.reset();
  recording_.reset();
  const ReadRecording recording = ReadPcapng(reader.get());

  const std::size_t count = recording.packets.size();
  ASSERT_GT(count, 3U);
  const std::size_t kept = count - 3;  // before the loss, the frame after it, and the end
  EXPECT_EQ(recording.packets[kept].event, 5U);
  EXPECT_THAT(recording.packets[kept].comments,
              ElementsAre("missing here: " + std::to_string(kFrames - kept) + " packets"));
  EXPECT_EQ(recording.packets[kept + 1].bytes, frame);
  EXPECT_EQ(recording.packets[kept + 2].event, 6U);
  ASSERT_EQ(recording.statistics.size(), 1U);
  EXPECT_EQ(recording.statistics[0].dropped, kFrames - kept);
}

TEST_F(SlowReader, MayLeaveWithoutEndingTheProgram) {
  testing::internal::CaptureStderr();
  recording_->Drain();
  StopReading();
  recording_->Add(PacketOf(10));
  recording_.reset();
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("ends here: Broken pipe\n"));
}

}  // namespace
}  // namespace test
