// SPDX-License-Identifier: MIT
// Reads recordings that are written here byte by byte: whole ones, those of other programs, and
// damaged ones.
#include "wire/recording_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "wire/transcript.h"
#include "wire_test_support.h"

namespace {

using ipodwire::Packet;
using ipodwire::RecordingReader;
using testing::ElementsAre;
using testing::IsEmpty;
using wire_test::Ascii;
using wire_test::Bytes;
using wire_test::operator+;
using End = RecordingReader::End;

const Bytes kSection = {0x0A, 0x0D, 0x0D, 0x0A, 28, 0, 0,    0,    0x4D, 0x3C,
                        0x2B, 0x1A, 1,    0,    0,  0, 0xFF, 0xFF, 0xFF, 0xFF,
                        0xFF, 0xFF, 0xFF, 0xFF, 28, 0, 0,    0};
// Link type 250, named "dock", times in nanoseconds.
const Bytes kInterface = {1,   0,   0,   0,   40, 0, 0, 0, 250, 0, 0, 0, 0, 0, 0, 0, 2,  0, 4, 0,
                          'd', 'o', 'c', 'k', 9,  0, 1, 0, 9,   0, 0, 0, 0, 0, 0, 0, 40, 0, 0, 0};
// At 0x1_00000000 ns: FF 55 02 00 38 C6 to the iPod.
const Bytes kStartIdps = {6, 0, 0,  0, 52,   0,    0,    0,    0,    0,    0, 0, 1,  0, 0, 0, 0, 0,
                          0, 0, 18, 0, 0,    0,    18,   0,    0,    0,    0, 0, 0,  4, 0, 0, 0, 0,
                          1, 0, 0,  0, 0xFF, 0x55, 0x02, 0x00, 0x38, 0xC6, 0, 0, 52, 0, 0, 0};
// 1 ns later, from the iPod: bytes that are no frame, with the comment that says so.
const Bytes kNoise = {6,   0,   0,   0,   64,  0,   0,   0,   0,    0,    0,    0, 1,  0, 0, 0,
                      1,   0,   0,   0,   15,  0,   0,   0,   15,   0,    0,    0, 0,  0, 0, 4,
                      0,   0,   0,   0,   2,   0,   0,   0,   0xFE, 0x66, 0x66, 0, 1,  0, 8, 0,
                      'n', 'o', ' ', 'f', 'r', 'a', 'm', 'e', 0,    0,    0,    0, 64, 0, 0, 0};
const Bytes kClose = {6, 0, 0,  0, 44, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0,  0, 12, 0,
                      0, 0, 12, 0, 0,  0, 0, 0, 0, 4, 0, 0, 0, 0, 6, 0, 0, 0, 44, 0, 0,  0};
const Bytes kUnknownBlock = {0xAD, 0x0B, 0, 0, 16, 0, 0, 0, 1, 2, 3, 4, 16, 0, 0, 0};

struct Reading {
  std::vector<Packet> packets;
  End end;
  std::string problem;
};

Reading Read(const Bytes& file) {
  std::size_t at = 0;
  RecordingReader reader([&](std::uint8_t* into, std::size_t count) {
    // Few at a time, as a pipe may.
    const std::size_t taken = std::min({count, file.size() - at, std::size_t{7}});
    std::copy_n(file.begin() + static_cast<std::ptrdiff_t>(at), taken, into);
    at += taken;
    return taken;
  });
  Reading reading;
  Packet packet;
  while (reader.Next(&packet)) reading.packets.push_back(packet);
  reading.end = reader.end();
  reading.problem = reader.problem();
  return reading;
}

// The same block in the other byte order, whose first `numbers` words are numbers of four bytes.
Bytes Swapped(Bytes block, std::size_t numbers) {
  for (std::size_t i = 0; i < numbers; ++i) {
    std::reverse(block.begin() + static_cast<std::ptrdiff_t>(4 * i),
                 block.begin() + static_cast<std::ptrdiff_t>(4 * i + 4));
  }
  std::reverse(block.end() - 4, block.end());
  return block;
}

TEST(ARecording, IsReadPacketByPacket) {
  const Reading reading = Read(kSection + kInterface + kStartIdps + kNoise + kClose);
  EXPECT_EQ(reading.end, End::kClosed);
  EXPECT_EQ(reading.problem, "");
  ASSERT_EQ(reading.packets.size(), 3U);
  const Packet& first = reading.packets[0];
  EXPECT_EQ(first.number, 1U);
  EXPECT_EQ(first.time, 0x100000000);
  EXPECT_EQ(first.line, "dock");
  EXPECT_EQ(first.event, Packet::Event::kSent);
  EXPECT_THAT(first.bytes, ElementsAre(0xFF, 0x55, 0x02, 0x00, 0x38, 0xC6));
  EXPECT_THAT(first.comments, IsEmpty());
  const Packet& second = reading.packets[1];
  EXPECT_EQ(second.number, 2U);
  EXPECT_EQ(second.time, 0x100000001);
  EXPECT_EQ(second.event, Packet::Event::kReceived);
  EXPECT_THAT(second.bytes, ElementsAre(0xFE, 0x66, 0x66));
  EXPECT_THAT(second.comments, ElementsAre("no frame"));
  EXPECT_EQ(reading.packets[2].event, Packet::Event::kComplete);
}

TEST(ARecording, MayHoldBlocksOfOtherKinds) {
  const Reading reading =
      Read(kSection + kUnknownBlock + kInterface + kUnknownBlock + kStartIdps + kClose);
  EXPECT_EQ(reading.packets.size(), 2U);
  EXPECT_EQ(reading.end, End::kClosed);
}

TEST(ARecording, MayBeginAgainWithANewSection) {
  const Bytes one = kSection + kInterface + kStartIdps + kClose;
  const Reading reading = Read(one + one);
  ASSERT_EQ(reading.packets.size(), 4U);
  EXPECT_EQ(reading.packets[3].number, 4U);
  EXPECT_EQ(reading.end, End::kClosed);
}

TEST(ARecording, IsReadInTheOtherByteOrder) {
  Bytes section = Swapped(kSection, 3);
  std::reverse(section.begin(), section.begin() + 4);  // which reads the same both ways
  Bytes interface = Swapped(kInterface, 2);
  std::swap(interface[8], interface[9]);
  std::swap(interface[16], interface[17]);
  std::swap(interface[18], interface[19]);
  std::swap(interface[24], interface[25]);
  std::swap(interface[26], interface[27]);
  const Reading reading = Read(section + interface + Swapped(kStartIdps, 7) + Swapped(kClose, 7));
  ASSERT_EQ(reading.packets.size(), 2U) << reading.problem;
  EXPECT_EQ(reading.packets[0].time, 0x100000000);
  EXPECT_EQ(reading.packets[0].line, "dock");
  EXPECT_THAT(reading.packets[0].bytes, ElementsAre(0xFF, 0x55, 0x02, 0x00, 0x38, 0xC6));
  EXPECT_EQ(reading.end, End::kClosed);
}

TEST(ARecording, CountsInMicrosecondsWhereItDoesNotSay) {
  const Bytes interface = {1, 0, 0, 0, 20, 0, 0, 0, 250, 0, 0, 0, 0, 0, 0, 0, 20, 0, 0, 0};
  const Reading reading = Read(kSection + interface + kStartIdps + kClose);
  ASSERT_EQ(reading.packets.size(), 2U);
  EXPECT_EQ(reading.packets[0].time, 0x100000000 * 1000);
}

TEST(ARecording, TellsNoTimeBehind2096) {
  Bytes late = kStartIdps;
  std::fill_n(late.begin() + 12, 8, std::uint8_t{0xFF});
  const Reading reading = Read(kSection + kInterface + late + kStartIdps + kClose);
  ASSERT_EQ(reading.packets.size(), 3U);
  EXPECT_EQ(reading.packets[0].time, 4'000'000'000'000'000'000);
  EXPECT_EQ(reading.packets[1].time, 0x100000000);
}

TEST(ARecording, WithoutAClosingPacketWasCutOff) {
  const Reading reading = Read(kSection + kInterface + kStartIdps);
  EXPECT_EQ(reading.packets.size(), 1U);
  EXPECT_EQ(reading.end, End::kCut);
  EXPECT_EQ(reading.problem,
            "ends at byte 120, and nothing closes it: the recording was cut off, or is another "
            "program's");
}

TEST(ARecording, CutAfterAnyByteIsReadUpToThere) {
  const Bytes whole = kSection + kInterface + kStartIdps + kNoise + kClose;
  const std::size_t ends[] = {kSection.size(), kSection.size() + kInterface.size(),
                              kSection.size() + kInterface.size() + kStartIdps.size(),
                              whole.size() - kClose.size()};
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Reading reading =
        Read({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)});
    const std::size_t packets = size < ends[2] ? 0 : size < ends[3] ? 1 : 2;
    EXPECT_EQ(reading.packets.size(), packets) << size;
    const bool between_blocks = std::find(std::begin(ends), std::end(ends), size) != std::end(ends);
    const End end = size < 12 ? End::kNoRecording : between_blocks ? End::kCut : End::kDamaged;
    EXPECT_EQ(reading.end, end) << size;
    EXPECT_NE(reading.problem, "") << size;
  }
}

TEST(ARecording, ThatIsNoneIsRefused) {
  EXPECT_EQ(Read({}).end, End::kNoRecording);
  EXPECT_EQ(Read({}).problem, "is empty");
  EXPECT_EQ(Read(Ascii("<?xml version=\"1.0\"?><gymData/>")).end, End::kNoRecording);
  EXPECT_EQ(Read(Bytes(100, 0)).problem, "is no recording");
  // The older format of the same programs.
  EXPECT_EQ(Read({0xD4, 0xC3, 0xB2, 0xA1, 2, 0, 4, 0, 0, 0, 0, 0}).end, End::kNoRecording);
}

TEST(ARecording, OfSomethingElseIsRefused) {
  Bytes ethernet = kInterface;
  ethernet[8] = 1;
  const Reading reading = Read(kSection + ethernet + kStartIdps);
  EXPECT_EQ(reading.end, End::kOtherLinkType);
  EXPECT_EQ(reading.problem, "is a recording of something else than a serial line");
  EXPECT_THAT(reading.packets, IsEmpty());
}

TEST(ARecording, OfSomethingElseTooIsReadForItsSerialLine) {
  Bytes ethernet = kInterface;
  ethernet[8] = 1;
  Bytes frame = kStartIdps;
  frame[8] = 1;  // of the second interface
  Bytes close = kClose;
  close[8] = 1;
  const Reading reading = Read(kSection + ethernet + kInterface + kStartIdps + frame + close);
  ASSERT_EQ(reading.packets.size(), 2U);
  EXPECT_EQ(reading.packets[0].number, 2U);
  EXPECT_EQ(reading.end, End::kClosed);
}

TEST(ARecording, ThatIsDamagedIsReadUpToTheDamage) {
  const Bytes good = kSection + kInterface + kStartIdps;
  const auto problem = [&](Bytes block, std::size_t at, std::uint8_t value) {
    block[at] = value;
    const Reading reading = Read(good + block + kClose);
    EXPECT_EQ(reading.packets.size(), 1U);
    EXPECT_EQ(reading.end, End::kDamaged);
    return reading.problem;
  };
  EXPECT_EQ(problem(kNoise, 4, 63), "is damaged: a block of 63 bytes, at byte 120");
  EXPECT_EQ(problem(kNoise, 4, 8), "is damaged: a block of 8 bytes, at byte 120");
  EXPECT_EQ(problem(kNoise, 7, 0x40), "is damaged: a block of 1073741888 bytes, at byte 120");
  EXPECT_EQ(problem(kNoise, 60, 68), "is damaged: a block's two lengths differ, at byte 120");
  EXPECT_EQ(problem(kNoise, 8, 1),
            "is damaged: a packet of an interface that is not described, at byte 120");
  EXPECT_EQ(problem(kNoise, 20, 11), "is damaged: a packet of 11 bytes, at byte 120");
  EXPECT_EQ(problem(kNoise, 20, 200), "is damaged: a packet of 200 bytes, at byte 120");
}

TEST(ARecording, WithAnyByteChangedNeitherCrashesNorHangs) {
  const Bytes whole = kSection + kInterface + kStartIdps + kNoise + kClose;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int change : {0x01, 0x80, 0xFF}) {
      Bytes damaged = whole;
      damaged[at] = static_cast<std::uint8_t>(damaged[at] ^ change);
      const Reading reading = Read(damaged);
      EXPECT_NE(reading.end, End::kNone);
      EXPECT_LE(reading.packets.size(), 3U);
    }
  }
}

TEST(ARecording, WithManyBytesChangedNeitherCrashesNorHangs) {
  const Bytes whole = kSection + kInterface + kStartIdps + kNoise + kStartIdps + kNoise + kClose;
  for (unsigned seed = 0; seed < 2000; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    Bytes damaged = whole;
    for (int i = 0; i < 4; ++i) {
      damaged[random() % damaged.size()] = static_cast<std::uint8_t>(random());
    }
    ipodwire::Transcript transcript([](const ipodwire::Told&) {});
    const Reading reading = Read(damaged);
    for (const Packet& packet : reading.packets) transcript.Add(packet);
    transcript.End();
    EXPECT_NE(reading.end, End::kNone);
  }
}

}  // namespace
