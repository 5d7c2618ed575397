// SPDX-License-Identifier: MIT
// Framing, exhaustively: every command's frame whole, cut, damaged in every way that one byte can
// be, and in every company. What comes out must be what a plain reading of the same bytes finds,
// and whatever it was, a good frame behind it is found again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "golden_frames.h"
#include "ipodcomm/detail/FrameAssembler.h"
#include "legacy/frame_hunt.h"
#include "plain_reading.h"
#include "platform/services.h"
#include "support/session_test.h"

namespace {

using ipodcomm::FrameAssembler;
using test::Bytes;
using test::GoldenFrames;
using test::Reading;

const Bytes kFollower = test::Hex("FF 55 06 00 08 5A 6F 65 00 C4");

void Append(Bytes* line, const Bytes& more) { line->insert(line->end(), more.begin(), more.end()); }

// ---- What is read

std::vector<Bytes> AssembledByteByByte(const Bytes& line) {
  FrameAssembler assembler;
  assembler.Reset();
  std::vector<Bytes> frames;
  for (const std::uint8_t byte : line) {
    if (assembler.Feed(byte))
      frames.emplace_back(assembler.data(), assembler.data() + assembler.length());
  }
  return frames;
}

// In runs: up to `cut`, and the rest.
std::vector<Bytes> AssembledInRuns(const Bytes& line, std::size_t cut) {
  FrameAssembler assembler;
  assembler.Reset();
  std::vector<Bytes> frames;
  const std::uint8_t* next = line.data();
  for (const std::uint8_t* end : {line.data() + cut, line.data() + line.size()}) {
    while (next != end) {
      if (!assembler.FeedRun(&next, end)) continue;
      frames.emplace_back(assembler.data(), assembler.data() + assembler.length());
    }
  }
  return frames;
}

// Reads of as many bytes as the hunt says are safe to take; each read ends with the line.
std::vector<Bytes> HuntedFor(const Bytes& line) {
  std::vector<Bytes> frames;
  std::size_t next = 0;
  while (next < line.size()) {
    ipodcomm::FrameHunt hunt;
    Bytes frame;
    while (!hunt.complete() && next < line.size()) {
      const std::size_t end = std::min(line.size(), next + hunt.least_missing());
      for (; next < end; ++next) {
        // Completed before the end of such a read, it would have taken what is not its own.
        if (hunt.complete()) return {};
        if (hunt.Accept(line[next])) frame.push_back(line[next]);
      }
    }
    if (hunt.complete()) frames.push_back(std::move(frame));
  }
  return frames;
}

// ---- Lines made of a frame

template <class Action>
void ForEachPrefix(const Bytes& frame, Action action) {
  for (std::size_t length = 0; length < frame.size(); ++length) {
    action(Bytes(frame.begin(), frame.begin() + static_cast<std::ptrdiff_t>(length)));
  }
}

template <class Action>
void ForEachReplacement(const Bytes& frame, Action action) {
  Bytes changed = frame;
  for (std::size_t position = 0; position < frame.size(); ++position) {
    for (unsigned more = 1; more <= 0xFF; ++more) {
      changed[position] = static_cast<std::uint8_t>(frame[position] + more);
      action(changed);
    }
    changed[position] = frame[position];
  }
}

template <class Action>
void ForEachDeletion(const Bytes& frame, Action action) {
  for (std::size_t position = 0; position < frame.size(); ++position) {
    Bytes changed = frame;
    changed.erase(changed.begin() + static_cast<std::ptrdiff_t>(position));
    action(changed);
  }
}

template <class Action>
void ForEachDoubling(const Bytes& frame, Action action) {
  for (std::size_t position = 0; position < frame.size(); ++position) {
    Bytes changed = frame;
    const std::uint8_t byte = frame[position];
    changed.insert(changed.begin() + static_cast<std::ptrdiff_t>(position), byte);
    action(changed);
  }
}

template <class Action>
void ForEachDamage(const Bytes& frame, Action action) {
  ForEachPrefix(frame, action);
  ForEachReplacement(frame, action);
  ForEachDeletion(frame, action);
  ForEachDoubling(frame, action);
}

// ---- The tests

// A test's cases, which it prints at its end.
class Framing : public ::testing::Test {
 protected:
  ~Framing() override {
    std::printf("%lu cases of %zu frames, %lu left out\n", cases_, GoldenFrames().size(),
                left_out_);
  }

  // Up to the first that shows something wrong.
  template <class Action>
  static void ForEachFrame(Action action) {
    for (const Bytes& frame : GoldenFrames()) {
      if (HasFatalFailure()) return;
      action(frame);
    }
  }

  // However the bytes come, the assembler finds what the plain reading does.
  void ExpectAssembled(const Bytes& line, const Reading& expected, std::size_t cut) {
    ++cases_;
    ASSERT_EQ(AssembledByteByByte(line), expected.frames) << test::ToHex(line);
    ASSERT_EQ(AssembledInRuns(line, cut), expected.frames)
        << test::ToHex(line) << " cut at " << cut;
  }

  // Behind the end of whatever has begun, the next frame is found. Noise without a sync byte is in
  // the place of what the damaged frame takes with it. One that takes very much is left out: to the
  // hunt, 65536 bytes may be a frame.
  void ExpectInStepBehind(const Bytes& damaged, Reading (*read)(const Bytes&),
                          std::vector<Bytes> (*found_in)(const Bytes&)) {
    Bytes line = damaged;
    Append(&line, kFollower);
    Append(&line, kFollower);
    Reading expected = read(line);
    while (expected.end != line.size()) {
      if (expected.end > kLongestLine) {
        ++left_out_;
        return;
      }
      line.resize(expected.end, 0x00);
      expected = read(line);
    }
    Append(&line, kFollower);
    expected.frames.push_back(kFollower);
    ++cases_;
    ASSERT_EQ(found_in(line), expected.frames) << test::ToHex(line);
  }

  static constexpr std::size_t kLongestLine = 4096;

  unsigned long cases_ = 0;
  unsigned long left_out_ = 0;
};

TEST_F(Framing, EveryFrameIsFoundWhereverItIsCutInTwo) {
  ForEachFrame([&](const Bytes& frame) {
    Bytes line = frame;
    Append(&line, kFollower);
    for (std::size_t cut = 0; cut <= line.size(); ++cut) {
      ExpectAssembled(line, {{frame, kFollower}, 0}, cut);
    }
    ++cases_;
    ASSERT_EQ(HuntedFor(line), (std::vector<Bytes>{frame, kFollower})) << test::ToHex(line);
  });
}

TEST_F(Framing, EveryTwoFramesInARowAreFound) {
  ForEachFrame([&](const Bytes& first) {
    for (const Bytes& second : GoldenFrames()) {
      Bytes line = first;
      Append(&line, second);
      ExpectAssembled(line, {{first, second}, 0}, line.size());
      ASSERT_EQ(HuntedFor(line), (std::vector<Bytes>{first, second})) << test::ToHex(line);
    }
  });
}

TEST_F(Framing, NoBeginningOfAFrameIsAFrame) {
  ForEachFrame([&](const Bytes& frame) {
    ForEachPrefix(frame, [&](const Bytes& line) {
      ExpectAssembled(line, {}, line.size());
      ASSERT_EQ(HuntedFor(line), std::vector<Bytes>());
    });
  });
}

// Every one of the values that a byte of a good frame might have been instead spoils the checksum,
// or is of the length and makes another frame.
TEST_F(Framing, NoFrameWithOneWrongByteIsFound) {
  ForEachFrame([&](const Bytes& frame) {
    ForEachReplacement(frame, [&](const Bytes& line) {
      ++cases_;
      for (const Bytes& found : AssembledByteByByte(line)) ASSERT_LT(found.size(), frame.size());
    });
  });
}

TEST_F(Framing, WhatIsFoundInDamagedFramesIsWhatAPlainReadingFinds) {
  ForEachFrame([&](const Bytes& frame) {
    ForEachDamage(frame, [&](const Bytes& damaged) {
      Bytes line = damaged;
      Append(&line, kFollower);
      ExpectAssembled(line, test::ReadPlainly(line), line.size());
    });
  });
}

TEST_F(Framing, TheAssemblerIsInStepBehindEveryDamagedFrame) {
  ForEachFrame([&](const Bytes& frame) {
    ForEachDamage(frame, [&](const Bytes& damaged) {
      ExpectInStepBehind(damaged, test::ReadPlainly, AssembledByteByByte);
    });
  });
}

TEST_F(Framing, TheLegacyHuntIsInStepBehindEveryDamagedFrame) {
  ForEachFrame([&](const Bytes& frame) {
    ForEachDamage(frame, [&](const Bytes& damaged) {
      ExpectInStepBehind(damaged, test::ReadAsLegacy, HuntedFor);
    });
  });
}

TEST(FramingEnd, ACompleteHuntTakesNothingMore) {
  ipodcomm::FrameHunt hunt;
  for (const std::uint8_t byte : kFollower) EXPECT_TRUE(hunt.Accept(byte));
  EXPECT_TRUE(hunt.complete());
  EXPECT_EQ(hunt.least_missing(), 0U);
  EXPECT_FALSE(hunt.Accept(0xFF));
  EXPECT_TRUE(hunt.complete());
}

// A wrong byte behind the length costs its own frame and no other.
TEST_F(Framing, AWrongByteBehindTheLengthCostsOneFrame) {
  ForEachFrame([&](const Bytes& frame) {
    const std::size_t lingo = frame[2] == 0 ? 5 : 3;
    std::size_t position = 0;
    ForEachReplacement(frame, [&](const Bytes& damaged) {
      if (position++ / 0xFF < lingo) return;
      Bytes line = damaged;
      Append(&line, kFollower);
      ExpectAssembled(line, {{kFollower}, 0}, line.size());
    });
  });
}

// ---- The robust conduct

// A port that looks again through what it has given up, and gives up what the line falls silent in.
class FramingUnderRobustConduct : public Framing {
 protected:
  FramingUnderRobustConduct() { CIpodSerialPeer::ChoosePace(serial_, IPOD_CONDUCT_ROBUST); }

  std::vector<Bytes> FramesIn(const Bytes& line) {
    auto& assembler = CIpodSerialPeer::Assembler(serial_);
    assembler.Reset();
    CIpodSerialPeer::FeedAssembler(serial_, line.data(), line.size());
    while (assembler.begun()) {
      CIpodSerialPeer::LastByteMs(serial_) =
          static_cast<std::uint32_t>(GetTickCount()) - kSilenceMs;
      CIpodSerialPeer::GiveUpStalledFrame(serial_);
    }
    std::vector<Bytes> frames;
    for (const tagSERIAL_PACKET& packet : CIpodSerialPeer::Received(serial_)) {
      frames.emplace_back(packet.data, packet.data + packet.length);
    }
    CIpodSerialPeer::Received(serial_).clear();
    return frames;
  }

  static constexpr std::uint32_t kSilenceMs = 500;

  test::World world_;
  CIpodSerial serial_;
};

// The frame behind is lost only where bytes of both happen to make a frame whose checksum holds.
TEST_F(FramingUnderRobustConduct, TheFrameBehindEveryDamagedOneIsFoundAtOnce) {
  unsigned long merged = 0;
  ForEachFrame([&](const Bytes& frame) {
    world_.Advance(test::kMillisecond);  // no thread runs on for ever without a wait
    ForEachDamage(frame, [&](const Bytes& damaged) {
      ++cases_;
      Bytes line = damaged;
      Append(&line, kFollower);
      const Reading expected = test::ReadAgain(line);
      const std::vector<Bytes> found = FramesIn(line);
      ASSERT_EQ(found, expected.frames) << test::ToHex(line);
      if (!found.empty() && found.back() == kFollower) return;
      ASSERT_FALSE(found.empty()) << test::ToHex(line);
      ++merged;
    });
  });
  std::printf("%lu times the bytes of two frames made one whose checksum holds\n", merged);
}

}  // namespace
