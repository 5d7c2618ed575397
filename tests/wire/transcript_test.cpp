// SPDX-License-Identifier: MIT
// From packets, however they are cut, to frames.
#include "wire/transcript.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "wire/text.h"
#include "wire_test_support.h"

namespace {

using ipodwire::Packet;
using ipodwire::Transcript;
using testing::ElementsAre;
using wire_test::Bytes;

constexpr ipodwire::Nanoseconds kMillisecond = 1'000'000;

class ATranscript : public testing::Test {
 protected:
  void Add(Packet::Event event, const Bytes& bytes, const std::string& comment = "",
           int after_ms = 1) {
    Packet packet;
    packet.number = ++number_;
    packet.time = time_ += after_ms * kMillisecond;
    packet.event = event;
    packet.bytes = bytes;
    if (!comment.empty()) packet.comments = {comment};
    transcript_.Add(packet);
  }

  std::vector<std::string> told_;
  Transcript transcript_{[this](const ipodwire::Told& told) {
    std::string text = std::to_string(told.observed.number) + " ";
    text +=
        told.frame ? ipodwire::Describe(*told.frame) : ipodwire::HexBytes(told.observed.bytes, 100);
    for (const ipodwire::Note& note : told.notes) text += " ! " + note.text;
    told_.push_back(text);
  }};
  std::uint64_t number_ = 0;
  ipodwire::Nanoseconds time_ = 1'000'000 * kMillisecond;
};

TEST_F(ATranscript, TellsAFrameForEachPacket) {
  Add(Packet::Event::kSent, {0xFF, 0x55, 0x02, 0x00, 0x38, 0xC6});
  Add(Packet::Event::kReceived, {0xFF, 0x55, 0x04, 0x00, 0x02, 0x00, 0x38, 0xC2});
  EXPECT_THAT(told_,
              ElementsAre("1 General StartIDPS", "2 General ACK: status ok, command StartIDPS"));
}

TEST_F(ATranscript, PutsTogetherFramesThatAnotherProgramRecordedInPieces) {
  Add(Packet::Event::kSent, {0xFF});
  Add(Packet::Event::kSent, {0x55, 0x02, 0x00});
  Add(Packet::Event::kReceived, {0xFF, 0x55});
  Add(Packet::Event::kSent, {0x38, 0xC6});
  Add(Packet::Event::kReceived, {0x04, 0x00, 0x02, 0x00, 0x38, 0xC2});
  EXPECT_THAT(told_,
              ElementsAre("1 General StartIDPS", "3 General ACK: status ok, command StartIDPS"));
}

TEST_F(ATranscript, PartsFramesThatAnotherProgramRecordedTogether) {
  Add(Packet::Event::kSent,
      {0x00, 0xFF, 0xFF, 0x55, 0x02, 0x00, 0x38, 0xC6, 0xFF, 0x55, 0x02, 0x00, 0x07, 0xF7});
  EXPECT_THAT(
      told_, ElementsAre("1 00 FF ! no frame", "1 General StartIDPS", "1 General RequestiPodName"));
}

TEST_F(ATranscript, TellsACutFrameAsItIsMarked) {
  Add(Packet::Event::kReceived, {0xFF, 0x55, 0x04, 0x00}, "no frame");
  Add(Packet::Event::kReceived, {0xFF, 0x55, 0x02, 0x00, 0x00, 0xFE});
  EXPECT_THAT(told_, ElementsAre("1 FF 55 04 00 ! no frame", "2 General RequestIdentify"));
}

TEST_F(ATranscript, LetsAFrameNotGoOnAfterALongSilence) {
  Add(Packet::Event::kReceived, {0xFF, 0x55, 0x04, 0x00});
  Add(Packet::Event::kReceived, {0xFF, 0x55, 0x02, 0x00, 0x00, 0xFE}, "", 300);
  EXPECT_THAT(told_, ElementsAre("1 FF 55 04 00 ! no frame", "2 General RequestIdentify"));
}

TEST_F(ATranscript, TellsAtItsEndWhatHadBegun) {
  Add(Packet::Event::kReceived, {0xFF, 0x55, 0x04});
  transcript_.End();
  EXPECT_THAT(told_, ElementsAre("1 FF 55 04 ! no frame"));
}

TEST_F(ATranscript, TellsWhatHappenedToTheLine) {
  Add(Packet::Event::kFraming, {});
  Add(Packet::Event::kParity, {});
  Add(Packet::Event::kBreak, {});
  Add(Packet::Event::kOverflow, {});
  Add(Packet::Event::kStatus, {}, "the line is gone: hung up");
  Add(Packet::Event::kLost, {}, "missing here: 3 packets");
  Add(Packet::Event::kStatus, {});
  Add(Packet::Event::kComplete, {});
  EXPECT_THAT(told_, ElementsAre("1  ! framing error", "2  ! parity error", "3  ! break",
                                 "4  ! overflow: bytes were lost", "5  ! the line is gone: hung up",
                                 "6  ! missing here: 3 packets"));
}

}  // namespace
