// SPDX-License-Identifier: MIT
// Which bytes of a line belong together.
#include "platform/capture/frame_splitter.h"

#include <gmock/gmock.h>

#include <random>
#include <string>

#include "support/bytes.h"

namespace test {
namespace {

using ipodcomm::capture::ByteRun;
using ipodcomm::capture::FrameSplitter;
using ::testing::ElementsAre;

// "frame FF 55 ...", "bad FF 55 ..." for one whose checksum does not hold, "noise ..." for no
// frame.
std::string Describe(const ByteRun& run) {
  const char* const kind = !run.is_frame ? "noise " : run.bad_checksum ? "bad " : "frame ";
  return kind + ToHex(run.bytes);
}

class FrameSplitterTest : public ::testing::Test {
 protected:
  // A byte each microsecond, the first at 1000 ns.
  std::vector<std::string> Push(std::string_view hex) {
    for (const std::uint8_t byte : Hex(hex)) splitter_.Push(byte, now_ += 1000, &runs_);
    return Fetch();
  }
  std::vector<std::string> Flush() {
    splitter_.Flush(&runs_);
    return Fetch();
  }
  std::vector<std::string> Fetch() {
    std::vector<std::string> texts;
    times_.clear();
    for (const ByteRun& run : runs_) {
      texts.push_back(Describe(run));
      times_.push_back(run.time);
    }
    runs_.clear();
    return texts;
  }

  FrameSplitter splitter_;
  ipodcomm::capture::Nanoseconds now_ = 0;
  std::vector<ByteRun> runs_;
  std::vector<ipodcomm::capture::Nanoseconds> times_;
};

TEST_F(FrameSplitterTest, ASmallFrameEndsWithItsChecksum) {
  EXPECT_THAT(Push("FF 55 02 00 13"), ElementsAre());
  EXPECT_THAT(Push("EB"), ElementsAre("frame FF 55 02 00 13 EB"));
  EXPECT_THAT(times_, ElementsAre(1000));
}

TEST_F(FrameSplitterTest, ALargeFrameEndsWithItsChecksum) {
  EXPECT_THAT(Push("FF 55 00 00 02 00 13"), ElementsAre());
  EXPECT_THAT(Push("EB"), ElementsAre("frame FF 55 00 00 02 00 13 EB"));
}

TEST_F(FrameSplitterTest, ALargeFrameMayBeLongerThanASmallOneCanBe) {
  std::string hex = "FF 55 00 01 00";
  for (int i = 0; i < 256; ++i) hex += " 01";
  EXPECT_THAT(Push(hex), ElementsAre());
  EXPECT_EQ(Push("FF").size(), 1U);  // 01 + 256 * 01 + FF = 0x200
}

TEST_F(FrameSplitterTest, FramesInARowAreParted) {
  EXPECT_THAT(Push("FF 55 02 00 13 EB FF 55 02 00 27 D7"),
              ElementsAre("frame FF 55 02 00 13 EB", "frame FF 55 02 00 27 D7"));
  EXPECT_THAT(times_, ElementsAre(1000, 7000));
}

TEST_F(FrameSplitterTest, AFrameWhoseChecksumDoesNotHoldIsAFrameStill) {
  EXPECT_THAT(Push("FF 55 02 00 13 EC"), ElementsAre("bad FF 55 02 00 13 EC"));
}

TEST_F(FrameSplitterTest, BytesInFrontOfAFrameAreOnTheirOwn) {
  EXPECT_THAT(Push("00 FE FF 55 02 00 13 EB"),
              ElementsAre("noise 00 FE", "frame FF 55 02 00 13 EB"));
  EXPECT_THAT(times_, ElementsAre(1000, 3000));
}

TEST_F(FrameSplitterTest, ALoneSyncByteInFrontOfAFrameIsOnItsOwn) {
  EXPECT_THAT(Push("FF FF 55 02 00 13 EB"), ElementsAre("noise FF", "frame FF 55 02 00 13 EB"));
}

TEST_F(FrameSplitterTest, AStartByteAloneBeginsNoFrame) {
  EXPECT_THAT(Push("55 02 00 13 EB"), ElementsAre());
  EXPECT_THAT(Flush(), ElementsAre("noise 55 02 00 13 EB"));
}

TEST_F(FrameSplitterTest, ASyncPatternInAFrameBelongsToIt) {
  EXPECT_THAT(Push("FF 55 03 FF 55 02 A7"), ElementsAre("frame FF 55 03 FF 55 02 A7"));
}

TEST_F(FrameSplitterTest, AFrameThatDoesNotGoOnIsNone) {
  EXPECT_THAT(Push("FF 55 09 00"), ElementsAre());
  EXPECT_THAT(Flush(), ElementsAre("noise FF 55 09 00"));
  EXPECT_THAT(Push("FF 55 02 00 13 EB"), ElementsAre("frame FF 55 02 00 13 EB"));
  EXPECT_THAT(Flush(), ElementsAre());
}

TEST_F(FrameSplitterTest, EndlessNoiseIsHandedOverInParts) {
  for (int i = 0; i < 4096; ++i) EXPECT_THAT(Push("00"), ElementsAre());
  EXPECT_EQ(Push("01").size(), 1U);
  EXPECT_THAT(Flush(), ElementsAre("noise 01"));
}

TEST_F(FrameSplitterTest, WhateverCameItsRunsPutTogetherAreTheBytes) {
  std::mt19937 random(1);
  // Few values, so that frames begin and end often.
  const Bytes values = {0xFF, 0x55, 0x00, 0x01, 0x02, 0xFE};
  Bytes sent;
  for (int i = 0; i < 1000000; ++i) {
    sent.push_back(values[random() % values.size()]);
    splitter_.Push(sent.back(), now_++, &runs_);
  }
  splitter_.Flush(&runs_);
  Bytes received;
  std::size_t frames = 0;
  for (const ByteRun& run : runs_) {
    EXPECT_FALSE(run.bytes.empty());
    received.insert(received.end(), run.bytes.begin(), run.bytes.end());
    frames += run.is_frame ? 1 : 0;
  }
  EXPECT_EQ(received, sent);
  EXPECT_GT(frames, 100U);
}

}  // namespace
}  // namespace test
