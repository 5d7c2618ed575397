// SPDX-License-Identifier: MIT
// Reading one frame from the legacy serial port, byte by byte.
#include <array>

#include "support/legacy_times.h"
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::DockTest;
using test::kMillisecond;
using test::kSecond;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::int64_t kEmptyRead = 600 * kMillisecond;  // the read's 400 ms and the pause

class ReadPort : public DockTest {
 protected:
  ReadPort() { EXPECT_EQ(serial_.openport(), 1); }

  // Has the device send these bytes, and waits until they are there to be read.
  void Arrived(const test::Bytes& bytes) {
    ipod_.Send(bytes);
    world_.Advance(static_cast<std::int64_t>(bytes.size() + 1) * 174);
  }
  void Arrived(const char* text) { Arrived(test::Hex(text)); }
  void SendAfter(std::int64_t delay_us, const char* text) {
    ipod_.SendAt(world_.now_us() + delay_us, test::Hex(text));
  }
  // One call with room for `size` bytes; what it stored, as text.
  std::string Read(int size = 256) {
    const unsigned long count = serial_.readport(buffer_.data(), size);
    EXPECT_LE(count, static_cast<unsigned long>(size));
    return test::ToHex(buffer_.data(), count);
  }

  ipodserial serial_;
  std::array<unsigned char, 4096> buffer_ = {};
};

// ---- Frames

TEST_F(ReadPort, ReturnsAWholeFrameAndLeavesWhatFollows) {
  Arrived("FF 55 02 00 02 FC 41 FF 55 02 00 13 EB");
  world_.Record();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(), "FF 55 02 00 02 FC"); }), 0);
  const auto calls = world_.DrainRecord();
  EXPECT_THAT(calls, SizeIs(6));
  EXPECT_THAT(calls, Each("ReadFile(port1, 1)"));
  EXPECT_EQ(Read(), "FF 55 02 00 13 EB");
}

TEST_F(ReadPort, TakesTheLengthOfALargeFrameFromTheTwoBytesBehindItsMarker) {
  Arrived("FF 55 00 00 03 04 00 1D DC FF 55");
  EXPECT_EQ(Read(), "FF 55 00 00 03 04 00 1D DC");
}

TEST_F(ReadPort, CountsTheHighLengthByteOfALargeFrameBy256) {
  test::Bytes frame = test::Hex("FF 55 00 01 02");
  frame.insert(frame.end(), 259, 0x41);
  Arrived(frame);
  Arrived("42");
  EXPECT_EQ(Read(1000), test::ToHex(frame));
}

TEST_F(ReadPort, StoresAFrameOfOneBodyByte) {
  Arrived("FF 55 01 33 44 55");
  EXPECT_EQ(Read(), "FF 55 01 33 44");
}

TEST_F(ReadPort, JudgesNeitherChecksumNorContent) {
  Arrived("FF 55 02 FF 55 00");
  EXPECT_EQ(Read(), "FF 55 02 FF 55 00");
}

TEST_F(ReadPort, DropsBytesBeforeTheSyncByte) {
  Arrived("55 00 41 FE FF 55 02 00 02 FC");
  EXPECT_EQ(Read(), "FF 55 02 00 02 FC");
}

TEST_F(ReadPort, WaitsForTheStartByteWithoutGoingBackToTheSyncByte) {
  Arrived("FF 41 FF FF 00 55 02 00 02 FC");
  EXPECT_EQ(Read(), "FF 55 02 00 02 FC");
}

TEST_F(ReadPort, FollowsALoneSyncByteIntoTheNextFrame) {
  Arrived("FF FF 55 02 00 02 FC");
  EXPECT_EQ(Read(), "FF 55 02 00 02 FC");
}

// Its remaining count wraps to 65535 with the first byte of the body.
TEST_F(ReadPort, ReadsALargeFrameOfLengthZeroUntilItsRoomIsFull) {
  test::Bytes frame = test::Hex("FF 55 00 00 00");
  frame.insert(frame.end(), 400, 0x41);
  Arrived(frame);
  frame.resize(256);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(256), test::ToHex(frame)); }), 0);
}

TEST_F(ReadPort, ReadsALargeFrameOfLengthZeroUntilFiveEmptyReads) {
  Arrived("FF 55 00 00 00 FB 41 42");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(), "FF 55 00 00 00 FB 41 42"); }), 5 * kEmptyRead);
}

// 65535 bytes more than the first one, and then the checksum.
TEST_F(ReadPort, EndsALargeFrameOfLengthZeroAfterTheWrappedCount) {
  test::Bytes frame = test::Hex("FF 55 00 00 00");
  frame.insert(frame.end(), 65536 + 1, 0x41);
  ipod_.Send(frame);
  ipod_.Send(test::Hex("42 42 42"));
  std::vector<unsigned char> buffer(70000);
  EXPECT_EQ(serial_.readport(buffer.data(), 70000), 5U + 65536U + 1U);
}

// ---- Empty reads

TEST_F(ReadPort, SilenceEndsAfterFiveEmptyReadsAndTheirPauses) {
  world_.Record();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(), ""); }), test::kEmptyReadsUs);
  EXPECT_THAT(
      world_.DrainCalls().text_with_results(),
      ElementsAre("ReadFile(port1, 1) = nothing", "Sleep(200)",  //
                  "ReadFile(port1, 1) = nothing", "Sleep(200)", "ReadFile(port1, 1) = nothing",
                  "Sleep(200)", "ReadFile(port1, 1) = nothing", "Sleep(200)",
                  "ReadFile(port1, 1) = nothing", "Sleep(200)"));
}

TEST_F(ReadPort, PausesForTheTimeoutField) {
  ipodserialPeer::TimeoutMs(serial_) = 70;
  world_.Record({"Sleep"});
  Read();
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("Sleep(70)", "Sleep(70)", "Sleep(70)", "Sleep(70)", "Sleep(70)"));
}

TEST_F(ReadPort, FailedReadCountsAsEmpty) {
  Arrived("FF 55 02 00 02 FC");
  world_.FailFrom("ReadFile", 3, 31);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(), "FF 55"); }), kSecond);
  world_.ClearFaults();
  world_.FailOnce("ReadFile", 1, 31);
  Arrived("FF 55 02 00 13 EB");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(), "FF 55 02 00 13 EB"); }), 200 * kMillisecond);
}

TEST_F(ReadPort, LineThatGoesAwayIsLikeFailedReads) {
  world_.line().Vanish();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(), ""); }), kSecond);
}

TEST_F(ReadPort, KeepsItsPlaceInTheFrameAcrossAnEmptyRead) {
  Arrived("FF 55 00 00");
  SendAfter(500 * kMillisecond, "03 04 00");
  SendAfter(1100 * kMillisecond, "1D DC");
  EXPECT_EQ(Read(), "FF 55 00 00 03 04 00 1D DC");
}

// Every way to split a frame of six bytes into reads, with gaps of one empty read each. The fifth
// empty read ends the call, also when bytes came between them.
TEST_F(ReadPort, CountsEmptyReadsOverTheWholeCall) {
  const test::Bytes frame = test::Hex("FF 55 02 00 02 FC");
  for (unsigned gaps = 0; gaps < 32; ++gaps) {
    SCOPED_TRACE(gaps);
    std::int64_t at_us = world_.now_us();
    int empty_reads = 0;
    for (std::size_t i = 0; i < frame.size(); ++i) {
      if (i > 0 && (gaps >> (i - 1) & 1) != 0) {
        at_us += kEmptyRead;
        ++empty_reads;
      }
      ipod_.SendAt(at_us, {frame[i]});
    }
    const bool whole = empty_reads < 5;
    EXPECT_EQ(Read(), whole ? "FF 55 02 00 02 FC" : "FF 55 02 00 02");
    world_.Advance(kSecond);
    serial_.purgerx();
  }
}

// The same with gaps that a read waits for: nothing is ever lost.
TEST_F(ReadPort, ShortGapsBetweenBytesCostNothing) {
  const test::Bytes frame = test::Hex("FF 55 02 00 02 FC");
  for (unsigned gaps = 0; gaps < 32; ++gaps) {
    SCOPED_TRACE(gaps);
    std::int64_t at_us = world_.now_us();
    for (std::size_t i = 0; i < frame.size(); ++i) {
      if (i > 0 && (gaps >> (i - 1) & 1) != 0) at_us += 399 * kMillisecond;
      ipod_.SendAt(at_us, {frame[i]});
    }
    world_.Record({"Sleep"});
    EXPECT_EQ(Read(), "FF 55 02 00 02 FC");
    EXPECT_THAT(world_.DrainRecord(), IsEmpty());
  }
}

TEST_F(ReadPort, UnfinishedFrameIsReturnedAsFarAsItCame) {
  Arrived("41 FF 55 09 00 08");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(), "FF 55 09 00 08"); }), test::kEmptyReadsUs);
}

TEST_F(ReadPort, EmptyReadsOfOneCallDoNotCountInTheNext) {
  EXPECT_EQ(Read(), "");
  SendAfter(4 * kEmptyRead, "FF 55 02 00 02 FC");
  EXPECT_EQ(Read(), "FF 55 02 00 02 FC");
}

// ---- Room

TEST_F(ReadPort, FullBufferEndsTheReadAndTheRestIsNoiseToTheNext) {
  Arrived("FF 55 06 00 08 41 42 43 44 E8 FF 55 02 00 02 FC");
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(Read(4), "FF 55 06 00"); }), 0);
  EXPECT_EQ(buffer_[4], 0);
  EXPECT_EQ(Read(), "FF 55 02 00 02 FC");
}

TEST_F(ReadPort, BufferOfTheFramesSizeHoldsIt) {
  Arrived("FF 55 02 00 02 FC 41");
  EXPECT_EQ(Read(6), "FF 55 02 00 02 FC");
}

TEST_F(ReadPort, BufferOfOneByteHoldsTheSyncByte) {
  Arrived("41 FF 55 02 00 02 FC");
  EXPECT_EQ(Read(1), "FF");
}

TEST_F(ReadPort, NoRoomReadsNothing) {
  Arrived("FF 55 02 00 02 FC");
  world_.Record();
  EXPECT_EQ(serial_.readport(buffer_.data(), 0), 0U);
  EXPECT_EQ(serial_.readport(buffer_.data(), -1), 0U);
  EXPECT_EQ(serial_.readport(nullptr, 256), 0U);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

TEST_F(ReadPort, ClosedPortRefusesToRead) {
  serial_.closeport();
  world_.Record();
  EXPECT_EQ(serial_.readport(buffer_.data(), 256), 0U);
  EXPECT_THAT(world_.DrainRecord(), IsEmpty());
}

}  // namespace
