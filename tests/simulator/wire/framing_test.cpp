// SPDX-License-Identifier: MIT
// Proves that frames are found in any stream of bytes, and that every flaw in one is named.

#include <gtest/gtest.h>

#include "simulator/wire/frame.h"
#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

const char kRequestName[] = "FF 55 02 00 07 F7";
const char kName[] = "FF 55 06 00 08 50 6F 64 00 CF";

TEST(Framing, ShortFrameIsAnswered) {
  IpodUnderTest dock;
  dock.Identify();
  EXPECT_EQ(dock.Exchange(kRequestName), kName);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Framing, LargeFrameIsAnsweredToo) {
  IpodUnderTest dock;
  dock.Identify();
  EXPECT_EQ(dock.Exchange("FF 55 00 00 02 00 07 F7"), kName);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Framing, ExtendedCommandsHaveTwoBytes) {
  IpodUnderTest dock;
  dock.Identify();
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 16 E3"), "FF 55 06 04 00 01 00 00 16 DF");
}

TEST(Framing, WakeUpBytesAreNormal) {
  IpodUnderTest dock;
  dock.Identify();
  dock.Write("FF");
  dock.now += 400 * kMillisecond;
  dock.Write("FF");
  EXPECT_EQ(dock.Exchange("FF FF FF 55 02 00 07 F7"), kName);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Framing, SyncByteMayComeLongBeforeTheRest) {
  IpodUnderTest dock;
  dock.Identify();
  dock.Write("FF");
  dock.now += 2 * kSecond;
  EXPECT_EQ(dock.Exchange("55 02 00 07 F7"), kName);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Framing, EverySplitOfAFrameIsFound) {
  const Bytes frame = Hex(kRequestName);
  for (std::size_t cut = 1; cut < frame.size(); ++cut) {
    IpodUnderTest dock;
    dock.Identify();
    dock.ipod.Receive(frame.data(), cut, dock.now);
    dock.now += 20 * kMillisecond;
    dock.ipod.Receive(frame.data() + cut, frame.size() - cut, dock.now);
    EXPECT_EQ(dock.Read(), kName) << "cut at " << cut;
    EXPECT_EQ(dock.Mistakes(), "") << "cut at " << cut;
  }
}

TEST(Framing, EveryChangedByteIsNoticedAndTheNextFrameUnderstood) {
  const Bytes frame = Hex(kRequestName);
  for (std::size_t place = 0; place < frame.size(); ++place) {
    for (int change = 1; change < 256; ++change) {
      Bytes changed = frame;
      changed[place] = static_cast<std::uint8_t>(changed[place] ^ change);
      IpodUnderTest dock;
      dock.Identify();
      dock.ipod.Receive(changed.data(), changed.size(), dock.now);
      EXPECT_EQ(dock.Read(), "") << place << " " << change;
      // A changed length makes the reader wait for more; it gives up after half a second.
      dock.now += kSecond;
      EXPECT_EQ(dock.Exchange(kRequestName), kName) << place << " " << change;
      EXPECT_NE(dock.Mistakes(), "") << place << " " << change;
    }
  }
}

TEST(Framing, BadChecksumIsNamedAndNotAnswered) {
  IpodUnderTest dock;
  dock.Identify();
  EXPECT_EQ(dock.Exchange("FF 55 02 00 07 F8"), "");
  EXPECT_EQ(dock.Mistakes(), "bad checksum");
}

TEST(Framing, FrameThatStopsIsNamedTruncated) {
  IpodUnderTest dock;
  dock.Identify();
  dock.Write("FF 55 02 00");
  dock.now += 501 * kMillisecond;
  EXPECT_EQ(dock.Exchange(kRequestName), kName);
  EXPECT_EQ(dock.Mistakes(), "truncated frame");
}

TEST(Framing, FrameThatPausesForHalfASecondIsWhole) {
  IpodUnderTest dock;
  dock.Identify();
  dock.Write("FF 55 02 00");
  dock.now += 500 * kMillisecond;
  EXPECT_EQ(dock.Exchange("07 F7"), kName);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Framing, UnfinishedFrameIsNamedAtTheEnd) {
  IpodUnderTest dock;
  dock.Write("FF 55 02");
  dock.ipod.Finish(dock.now);
  EXPECT_EQ(dock.Mistakes(), "truncated frame");
}

TEST(Framing, WakeUpByteAtTheEndIsNoMistake) {
  IpodUnderTest dock;
  dock.Write("FF");
  dock.ipod.Finish(dock.now);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Framing, StrayBytesAreNamedOncePerRun) {
  IpodUnderTest dock;
  dock.Identify();
  dock.Write("01 02 03 55");
  EXPECT_EQ(dock.Exchange(kRequestName), kName);
  dock.Write("04");
  EXPECT_EQ(dock.Mistakes(), "stray bytes, stray bytes");
}

TEST(Framing, FrameWithoutACommandIsNamed) {
  IpodUnderTest dock;
  dock.Write("FF 55 01 00 FF");
  EXPECT_EQ(dock.Mistakes(), "frame without command");
  // An Extended Interface command needs its second byte.
  dock.Write("FF 55 02 04 00 FA");
  EXPECT_EQ(dock.Mistakes(), "frame without command, frame without command");
}

TEST(Framing, LargeFrameOfLengthZeroIsNamed) {
  IpodUnderTest dock;
  dock.Write("FF 55 00 00 00 00");
  EXPECT_EQ(dock.Mistakes(), "frame without command");
}

TEST(Framing, ContentOf255BytesIsTheLongestShortFrame) {
  Frame frame{0x00, 0x08, Bytes(253, 0x41)};
  Bytes wire = BuildFrame(frame);
  ASSERT_EQ(wire.size(), 259u);
  EXPECT_EQ(wire[2], 0xFF);
  frame.data.push_back(0x41);
  wire = BuildFrame(frame);
  ASSERT_EQ(wire.size(), 262u);
  EXPECT_EQ(ToHex(Bytes(wire.begin(), wire.begin() + 8)), "FF 55 00 01 00 00 08 41");
}

TEST(Framing, LargeFramesOnlyUsesTheLargeFormThroughout) {
  Settings settings = QuietSettings();
  settings.large_frames_only = true;
  IpodUnderTest dock(settings);
  EXPECT_EQ(dock.Exchange("FF 55 0E 00 13 00 00 00 01 00 00 00 00 00 00 00 00 DE"),
            "FF 55 00 00 04 00 02 00 13 E7");
}

TEST(Framing, AnyBytesAreSurvived) {
  Random random(7);
  IpodUnderTest dock;
  for (int round = 0; round < 2000; ++round) {
    Bytes bytes;
    for (std::uint32_t left = random.Below(40); left > 0; --left) {
      bytes.push_back(static_cast<std::uint8_t>(random.Below(256)));
    }
    dock.ipod.Receive(bytes.data(), bytes.size(), dock.now);
    dock.Read();
  }
  dock.now += kSecond;
  dock.Identify();
  EXPECT_EQ(dock.Exchange(kRequestName), kName);
}

// Every command of every lingo with every short payload: nothing may reach outside a buffer.
TEST(Framing, AnyPayloadOfAnyCommandIsSurvived) {
  IpodUnderTest dock;
  Random random(8);
  for (const int lingo : {0, 2, 3, 4, 9, 12, 1, 255}) {
    for (int command = 0; command < 256; ++command) {
      for (std::size_t size = 0; size < 26; ++size) {
        Frame frame{static_cast<std::uint8_t>(lingo), static_cast<std::uint16_t>(command), {}};
        for (std::size_t i = 0; i < size; ++i) {
          frame.data.push_back(static_cast<std::uint8_t>(random.Below(256)));
        }
        const Bytes wire = BuildFrame(frame);
        dock.ipod.Receive(wire.data(), wire.size(), dock.now);
        dock.Read();
      }
    }
  }
  dock.now += kSecond;
  dock.Identify();
  EXPECT_EQ(dock.Exchange(kRequestName), kName);
}

}  // namespace
}  // namespace ipodsim
