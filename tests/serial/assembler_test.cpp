// SPDX-License-Identifier: MIT
// The frame assembler, byte by byte: what literal streams of bytes yield, every prefix of a frame,
// every single-byte change of one, and the size limit to the byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

#include "ipodcomm/detail/FrameAssembler.h"
#include "support/bytes.h"
#include "support/packets.h"

namespace {

using ipodcomm::FrameAssembler;
using test::Bytes;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

// The frames that come out, as text.
std::vector<std::string> Feed(FrameAssembler& assembler, const Bytes& received) {
  std::vector<std::string> frames;
  for (const std::uint8_t byte : received) {
    if (assembler.Feed(byte)) frames.push_back(test::ToHex(assembler.data(), assembler.length()));
  }
  return frames;
}

// The same by runs that end at the given places and at the end.
std::vector<std::string> FramesInRuns(const Bytes& received, std::vector<std::size_t> ends) {
  FrameAssembler assembler;
  assembler.Reset();
  ends.push_back(received.size());
  std::vector<std::string> frames;
  const std::uint8_t* next = received.data();
  for (const std::size_t end : ends) {
    while (next != received.data() + end) {
      if (!assembler.FeedRun(&next, received.data() + end)) continue;
      frames.push_back(test::ToHex(assembler.data(), assembler.length()));
    }
  }
  return frames;
}

// Whatever is received byte by byte comes out the same when it is received at once.
std::vector<std::string> FramesIn(const Bytes& received) {
  FrameAssembler assembler;
  assembler.Reset();
  std::vector<std::string> frames = Feed(assembler, received);
  EXPECT_EQ(FramesInRuns(received, {}), frames);
  return frames;
}

std::vector<std::string> FramesIn(const char* text) { return FramesIn(test::Hex(text)); }

TEST(AssemblerOfRuns, TellsHowMuchOfAWholeFrameItGaveUp) {
  FrameAssembler assembler;
  const Bytes received = test::Hex("FF 55 02 00 13 EB FF 55 02 00 13 EC");
  const std::uint8_t* next = received.data();
  const std::uint8_t* const end = next + received.size();
  EXPECT_TRUE(assembler.FeedRun(&next, end));
  EXPECT_EQ(assembler.given_up(), 0U);
  EXPECT_FALSE(assembler.FeedRun(&next, end));
  EXPECT_EQ(assembler.given_up(), 6U);
}

TEST(AssemblerOfRuns, TakesNoiseAndTheBeginningOfAFrameAtOnce) {
  FrameAssembler assembler;
  const Bytes received = test::Hex("00 01 02 FF 55 02 00");
  const std::uint8_t* next = received.data();
  EXPECT_FALSE(assembler.FeedRun(&next, received.data() + received.size()));
  EXPECT_EQ(next, received.data() + received.size());
  EXPECT_TRUE(assembler.begun());
}

TEST(AssemblerOfRuns, ForgetsAtResetWhatItGaveUp) {
  FrameAssembler assembler;
  Feed(assembler, test::Hex("FF 55 02 00 13 EC"));
  EXPECT_EQ(assembler.given_up(), 6U);
  assembler.Reset();
  EXPECT_EQ(assembler.given_up(), 0U);
}

struct Row {
  const char* name;
  const char* received;
  std::vector<std::string> frames;
};

class Assembler : public ::testing::TestWithParam<Row> {};

TEST_P(Assembler, FindsTheFrames) {
  EXPECT_THAT(FramesIn(GetParam().received), ElementsAreArray(GetParam().frames));
}

TEST_P(Assembler, FindsTheFramesInTwoRunsWhereverTheFirstEnds) {
  const Bytes received = test::Hex(GetParam().received);
  for (std::size_t end = 0; end <= received.size(); ++end) {
    SCOPED_TRACE(end);
    EXPECT_THAT(FramesInRuns(received, {end}), ElementsAreArray(GetParam().frames));
  }
}

TEST_P(Assembler, FindsTheFramesInThreeRunsWhereverTheyEnd) {
  const Bytes received = test::Hex(GetParam().received);
  for (std::size_t second = 0; second <= received.size(); ++second) {
    for (std::size_t first = 0; first <= second; ++first) {
      SCOPED_TRACE(std::to_string(first) + ", " + std::to_string(second));
      EXPECT_THAT(FramesInRuns(received, {first, second}), ElementsAreArray(GetParam().frames));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    In, Assembler,
    ::testing::Values(
        Row{"AFrame", "FF 55 02 00 13 EB", {"FF 55 02 00 13 EB"}},
        Row{"AFrameWithABadChecksum", "FF 55 02 00 13 EA", {}},
        Row{"AFrameAfterABadOne", "FF 55 02 00 13 EA FF 55 02 00 13 EB", {"FF 55 02 00 13 EB"}},
        Row{"JunkInFront", "01 55 02 00 FE FF 55 02 00 13 EB", {"FF 55 02 00 13 EB"}},
        Row{"TwoFramesBackToBack",
            "FF 55 02 00 13 EB FF 55 02 00 14 EA",
            {"FF 55 02 00 13 EB", "FF 55 02 00 14 EA"}},
        Row{"JunkBetween",
            "FF 55 02 00 13 EB 00 01 02 FF 55 02 00 14 EA",
            {"FF 55 02 00 13 EB", "FF 55 02 00 14 EA"}},
        // After a sync byte without start byte the frame loses its own sync byte.
        Row{"ByteBetweenSyncAndSync", "FF 00 FF 55 02 00 13 EB", {"55 02 00 13 EB"}},
        Row{"TwoSyncBytes", "FF FF 55 02 00 13 EB", {"55 02 00 13 EB"}},
        Row{"ManySyncBytes", "FF FF FF FF 55 02 00 13 EB", {"55 02 00 13 EB"}},
        Row{"StartByteLongAfterASyncByte", "FF 01 02 03 55 02 00 13 EB", {"55 02 00 13 EB"}},
        Row{"FrameAfterOneThatLostItsSyncByte",
            "FF 00 55 02 00 13 EB FF 55 02 00 14 EA",
            {"55 02 00 13 EB", "FF 55 02 00 14 EA"}},
        Row{"SyncAndStartInsideTheData", "FF 55 04 00 08 FF 55 A0", {"FF 55 04 00 08 FF 55 A0"}},
        Row{"ALargeFrame", "FF 55 00 00 03 00 13 00 EA", {"FF 55 00 00 03 00 13 00 EA"}},
        Row{"ALargeFrameWithABadChecksum", "FF 55 00 00 03 00 13 00 EB", {}},
        Row{"ALargeFrameOfOneByte", "FF 55 00 00 01 07 F8", {"FF 55 00 00 01 07 F8"}},
        Row{"AShortFrameOfOneByte", "FF 55 01 07 F8", {"FF 55 01 07 F8"}},
        Row{"FrameThatLostItsStart", "02 00 13 EB FF 55 02 00 14 EA", {"FF 55 02 00 14 EA"}},
        Row{"NoSyncByteAtAll", "55 02 00 13 EB", {}}),
    test::RowName());

// ---- Prefixes and changes

// No prefix yields anything, and whatever follows is taken for the frame's rest.
TEST(AssemblerPrefixes, OfAFrameYieldNothingAndTheRestCompletesIt) {
  for (const char* text : {"FF 55 06 04 00 01 00 00 29 CC", "FF 55 00 00 03 00 13 00 EA"}) {
    const Bytes frame = test::Hex(text);
    for (std::size_t length = 0; length < frame.size(); ++length) {
      const auto middle = frame.begin() + static_cast<std::ptrdiff_t>(length);
      FrameAssembler assembler;
      assembler.Reset();
      EXPECT_THAT(Feed(assembler, Bytes(frame.begin(), middle)), IsEmpty()) << length;
      EXPECT_THAT(Feed(assembler, Bytes(middle, frame.end())), ElementsAre(text)) << length;
    }
  }
}

// A frame cut off anywhere, then Reset, as for a new read thread: the next frame is found.
TEST(AssemblerPrefixes, AreForgottenByReset) {
  const Bytes frame = test::Hex("FF 55 02 00 13 EB");
  for (std::size_t length = 0; length <= frame.size(); ++length) {
    FrameAssembler assembler;
    assembler.Reset();
    Feed(assembler, Bytes(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(length)));
    assembler.Reset();
    EXPECT_EQ(assembler.length(), 0U);
    for (std::size_t i = 0; i < 1024; ++i) ASSERT_EQ(assembler.data()[i], 0);
    EXPECT_THAT(Feed(assembler, frame), ElementsAre("FF 55 02 00 13 EB"));
  }
}

// Every byte of a frame replaced by each of the 255 other values: none yields a frame that is as
// long as this one, so nothing damaged is ever taken for it. The few that do yield something are
// other frames: after a damaged sync or start byte nothing, after a damaged length something else.
TEST(AssemblerChanges, OfOneByteNeverYieldTheWholeFrame) {
  const Bytes frame = test::Hex("FF 55 06 04 00 01 00 00 29 CC");
  for (std::size_t position = 0; position < frame.size(); ++position) {
    for (int value = 0; value <= 0xFF; ++value) {
      if (value == frame[position]) continue;
      Bytes changed = frame;
      changed[position] = static_cast<std::uint8_t>(value);
      for (const std::string& found : FramesIn(changed)) {
        EXPECT_LT(found.size(), frame.size() * 3 - 1) << position << " " << value;
        EXPECT_EQ(position, 2U) << value;
      }
    }
  }
}

// A damaged frame costs at most what it declares: two good ones later, the second is found.
TEST(AssemblerChanges, OfOneByteAreOvercome) {
  const Bytes frame = test::Hex("FF 55 02 00 13 EB");
  const Bytes filler(1100, 0x00);
  for (std::size_t position = 0; position < frame.size(); ++position) {
    for (int value = 0; value <= 0xFF; ++value) {
      Bytes received = frame;
      received[position] = static_cast<std::uint8_t>(value);
      received.insert(received.end(), filler.begin(), filler.end());
      received.insert(received.end(), frame.begin(), frame.end());
      received.insert(received.end(), frame.begin(), frame.end());
      const auto frames = FramesIn(received);
      ASSERT_FALSE(frames.empty());
      EXPECT_EQ(frames.back(), "FF 55 02 00 13 EB") << position << " " << value;
    }
  }
}

TEST(AssemblerChecksum, OnlyTheRightOneIsTaken) {
  for (int checksum = 0; checksum <= 0xFF; ++checksum) {
    const Bytes received = {0xFF, 0x55, 0x02, 0x00, 0x13, static_cast<std::uint8_t>(checksum)};
    EXPECT_EQ(FramesIn(received).size(), checksum == 0xEB ? 1U : 0U) << checksum;
  }
}

// ---- Type

TEST(AssemblerType, IsSetByTheLengthByte) {
  FrameAssembler assembler;
  assembler.Reset();
  EXPECT_EQ(assembler.type(), 0);
  Feed(assembler, test::Hex("FF 55"));
  EXPECT_EQ(assembler.type(), 0);
  Feed(assembler, test::Hex("02"));
  EXPECT_EQ(assembler.type(), 1);
  Feed(assembler, test::Hex("00 13 EB FF 55"));
  EXPECT_EQ(assembler.type(), 1);
  Feed(assembler, test::Hex("00"));
  EXPECT_EQ(assembler.type(), 0);
}

// ---- Size

// A large frame of `length` bytes from the lingo on, with its checksum.
Bytes LargeFrame(std::uint32_t length) {
  Bytes frame = {0xFF, 0x55, 0x00, static_cast<std::uint8_t>(length >> 8),
                 static_cast<std::uint8_t>(length)};
  for (std::uint32_t i = 0; i < length; ++i) frame.push_back(static_cast<std::uint8_t>(i * 7));
  const unsigned sum = std::accumulate(frame.begin() + 2, frame.end(), 0U);
  frame.push_back(static_cast<std::uint8_t>(0x100 - sum % 256));
  return frame;
}

TEST(AssemblerSize, EveryLengthUpToTheLimitIsFound) {
  for (std::uint32_t length = 1; length <= 1017; ++length) {
    const Bytes frame = LargeFrame(length);
    ASSERT_THAT(FramesIn(frame), ElementsAre(test::ToHex(frame))) << length;
  }
}

// 1017 bytes make 1023 with header and checksum; one byte more and the frame is dropped just before
// its checksum, which is then the first byte of whatever comes next.
TEST(AssemblerSize, LongestFrameHas1023Bytes) {
  EXPECT_EQ(LargeFrame(1017).size(), 1023U);
  EXPECT_EQ(FramesIn(LargeFrame(1017)).size(), 1U);
  EXPECT_THAT(FramesIn(LargeFrame(1018)), IsEmpty());
}

TEST(AssemblerSize, TooLongAFrameIsDroppedAndTheNextOneFound) {
  for (const std::uint32_t length : {1018U, 1019U, 1024U, 4096U, 0xFFFFU}) {
    Bytes received = LargeFrame(length);
    received.resize(1023);  // so much is stored before it is dropped
    const Bytes next = test::Hex("FF 55 02 00 13 EB");
    received.insert(received.end(), next.begin(), next.end());
    EXPECT_THAT(FramesIn(received), ElementsAre("FF 55 02 00 13 EB")) << length;
  }
}

// One byte earlier it is not yet dropped: the next frame's sync byte still belongs to it.
TEST(AssemblerSize, TooLongAFrameIsDroppedAtByte1023AndNotBefore) {
  Bytes received = LargeFrame(2000);
  received.resize(1022);
  const Bytes next = test::Hex("FF 55 02 00 13 EB");
  received.insert(received.end(), next.begin(), next.end());
  EXPECT_THAT(FramesIn(received), IsEmpty());
}

// Its count wraps, so it never ends by itself.
TEST(AssemblerSize, LargeLengthOfZeroEndsOnlyAtTheLimit) {
  Bytes received = test::Hex("FF 55 00 00 00");
  received.resize(1023);
  EXPECT_THAT(FramesIn(received), IsEmpty());
  const Bytes next = test::Hex("FF 55 02 00 13 EB");
  Bytes early = received;
  early.resize(1022);
  early.insert(early.end(), next.begin(), next.end());
  EXPECT_THAT(FramesIn(early), IsEmpty());
  received.insert(received.end(), next.begin(), next.end());
  EXPECT_THAT(FramesIn(received), ElementsAre("FF 55 02 00 13 EB"));
}

// A frame that lost its sync byte is one byte shorter, so one byte more fits.
TEST(AssemblerSize, FrameWithoutSyncByteHasRoomForOneMore) {
  Bytes received = LargeFrame(1018);
  received.insert(received.begin() + 1, 0x00);
  ASSERT_EQ(FramesIn(received).size(), 1U);
  EXPECT_EQ(FramesIn(received)[0].size(), 1023U * 3 - 1);
  Bytes longer = LargeFrame(1019);
  longer.insert(longer.begin() + 1, 0x00);
  EXPECT_THAT(FramesIn(longer), IsEmpty());
}

}  // namespace
