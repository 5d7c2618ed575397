// SPDX-License-Identifier: MIT
// Proves that each fault does what its name says, every time the same, and that the iPod is itself
// again afterwards.

#include "simulator/settings/ipod_faults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr char kRequest[] = "FF 55 02 00 07 F7";
constexpr char kName[] = "FF 55 06 00 08 50 6F 64 00 CF";

// The fault strikes at every opportunity from the first name request on.
Settings Faulty(Fault fault, std::uint64_t seed = 1) {
  Settings settings = QuietSettings();
  settings.seed = seed;
  settings.faults.Enable(fault);
  settings.faults.one_in = 1;
  return settings;
}

TEST(Faults, EachIsFoundByItsName) {
  for (const FaultInfo& info : Faults::All()) {
    Faults faults;
    EXPECT_TRUE(faults.Enable(info.name)) << info.name;
    for (const FaultInfo& other : Faults::All()) {
      EXPECT_EQ(faults.Has(other.fault), other.fault == info.fault) << other.name;
    }
  }
  Faults faults;
  EXPECT_FALSE(faults.Enable("gremlins"));
  EXPECT_FALSE(faults.Any());
}

TEST(Faults, StrikeOnceInEveryRun) {
  Faults faults;
  faults.Enable(Fault::kJunk);
  faults.one_in = 5;
  FaultDice dice(faults, 3);
  for (int run = 0; run < 100; ++run) {
    int strikes = 0;
    for (int i = 0; i < 5; ++i) strikes += dice.Strikes(Fault::kJunk) ? 1 : 0;
    EXPECT_EQ(strikes, 1);
  }
  EXPECT_FALSE(dice.Strikes(Fault::kUnplug));
}

TEST(Faults, DroppedByteIsMissing) {
  IpodUnderTest dock(Faulty(Fault::kDroppedBytes));
  dock.Identify();
  const Bytes damaged = Hex(dock.Exchange(kRequest));
  const Bytes whole = Hex(kName);
  ASSERT_EQ(damaged.size(), whole.size() - 1);
  bool found = false;
  for (std::size_t place = 0; place < whole.size(); ++place) {
    Bytes expected = whole;
    expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(place));
    found = found || expected == damaged;
  }
  EXPECT_TRUE(found);
}

TEST(Faults, DoubledByteComesTwice) {
  IpodUnderTest dock(Faulty(Fault::kDoubledBytes));
  dock.Identify();
  const Bytes damaged = Hex(dock.Exchange(kRequest));
  const Bytes whole = Hex(kName);
  ASSERT_EQ(damaged.size(), whole.size() + 1);
  bool found = false;
  for (std::size_t place = 0; place < whole.size(); ++place) {
    Bytes expected = whole;
    expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(place), whole[place]);
    found = found || expected == damaged;
  }
  EXPECT_TRUE(found);
}

TEST(Faults, FlippedBitIsOneBit) {
  IpodUnderTest dock(Faulty(Fault::kFlippedBits));
  dock.Identify();
  const Bytes damaged = Hex(dock.Exchange(kRequest));
  const Bytes whole = Hex(kName);
  ASSERT_EQ(damaged.size(), whole.size());
  int bits = 0;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (int changed = damaged[i] ^ whole[i]; changed != 0; changed &= changed - 1) ++bits;
  }
  EXPECT_EQ(bits, 1);
}

TEST(Faults, LateBytesStopInTheMiddle) {
  IpodUnderTest dock(Faulty(Fault::kLateBytes));
  dock.Identify();
  dock.Read(2 * kSecond);
  const std::string first = dock.Exchange(kRequest);
  const std::string rest = dock.Read(1500 * kMillisecond);
  EXPECT_NE(first, "");
  EXPECT_NE(rest, "");
  EXPECT_EQ(first + " " + rest, kName);
}

TEST(Faults, SplitBytesComeOneByOne) {
  IpodUnderTest dock(Faulty(Fault::kSplitBytes));
  dock.Identify();
  dock.Read(kSecond);
  EXPECT_EQ(dock.Exchange(kRequest), "FF");
  std::string rest;
  for (int i = 0; i < 100; ++i) {
    const std::string piece = dock.Read(kMillisecond);
    EXPECT_LE(piece.size(), 2u);
    if (!piece.empty()) rest += " " + piece;
  }
  EXPECT_EQ("FF" + rest, kName);
}

TEST(Faults, FramesNeverMixOnALateLine) {
  IpodUnderTest dock(Faulty(Fault::kLateBytes));
  dock.Identify();
  dock.Read(2 * kSecond);
  dock.Write(kRequest);
  dock.Write(kRequest);
  EXPECT_EQ(dock.Read(5 * kSecond), std::string(kName) + " " + kName);
}

TEST(Faults, JunkComesBeforeAWholeFrame) {
  IpodUnderTest dock(Faulty(Fault::kJunk));
  dock.Identify();
  const std::string answer = dock.Exchange(kRequest);
  EXPECT_GT(answer.size(), std::string(kName).size());
  EXPECT_THAT(answer, testing::EndsWith(kName));
  EXPECT_EQ(answer.find("FF"), answer.size() - std::string(kName).size());
}

TEST(Faults, RefusedCommandIsNotCarriedOut) {
  IpodUnderTest dock(Faulty(Fault::kRefusedCommands));
  EXPECT_EQ(dock.Exchange("FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 00 C2"),
            "FF 55 04 00 02 01 13 E6");
  EXPECT_FALSE(dock.ipod.identified());
  EXPECT_EQ(dock.Exchange("FF 55 02 00 11 ED"), "FF 55 04 00 02 01 11 E8");
}

TEST(Faults, PendingAcknowledgementComesFirst) {
  IpodUnderTest dock(Faulty(Fault::kPendingAcks));
  dock.Identify();
  dock.Read(kSecond);
  EXPECT_EQ(dock.Exchange(kRequest), "FF 55 08 00 02 06 07 00 00 00 C8 21");
  EXPECT_EQ(dock.Read(190 * kMillisecond), "");
  EXPECT_EQ(dock.Read(), kName);
  EXPECT_EQ(dock.Exchange("FF 55 03 04 00 16 E3"), "FF 55 0A 04 00 01 06 00 16 00 00 00 C8 0D");
}

TEST(Faults, ShortReplyIsAGoodFrameWithLessInIt) {
  IpodUnderTest dock(Faulty(Fault::kShortReplies));
  dock.Identify();
  const std::string answer = dock.Exchange(kRequest);
  // The name cut to none, one, two or three letters, or without its end.
  EXPECT_THAT(answer, testing::AnyOf("FF 55 02 00 08 F6", "FF 55 03 00 08 50 A5",
                                     "FF 55 04 00 08 50 6F 35", "FF 55 05 00 08 50 6F 64 D0"));
}

TEST(Faults, LongReplyIsAGoodFrameWithMoreInIt) {
  for (std::uint64_t seed = 1; seed < 20; ++seed) {
    IpodUnderTest dock(Faulty(Fault::kLongReplies, seed));
    dock.Identify();
    const Bytes answer = Hex(dock.Exchange(kRequest));
    ASSERT_GT(answer.size(), Hex(kName).size());
    const bool large = answer[2] == 0;
    const std::size_t length = large ? Get16(answer, 3) : answer[2];
    EXPECT_EQ(answer.size(), length + (large ? 6u : 4u));
    EXPECT_EQ(ToHex(Bytes(answer.begin() + (large ? 5 : 3), answer.begin() + (large ? 11 : 9))),
              "00 08 50 6F 64 00");
    unsigned sum = 0;
    for (std::size_t i = 2; i < answer.size(); ++i) sum += answer[i];
    EXPECT_EQ(sum % 256, 0u);
  }
}

TEST(Faults, UnaskedRequestComesBeforeTheAnswer) {
  std::string kinds;
  for (std::uint64_t seed = 1; seed < 40; ++seed) {
    IpodUnderTest dock(Faulty(Fault::kUnaskedRequests, seed));
    dock.Identify();
    const std::string answer = dock.Exchange(kRequest);
    EXPECT_THAT(answer, testing::EndsWith(kName));
    EXPECT_GT(answer.size(), std::string(kName).size());
    kinds += answer;
    EXPECT_EQ(dock.Mistakes(), "");
  }
  EXPECT_THAT(kinds, HasSubstr("FF 55 03 00 27 00 D6"));
  EXPECT_THAT(kinds, HasSubstr("FF 55 03 00 27 01 D5"));
  EXPECT_THAT(kinds, HasSubstr("FF 55 02 09 03 F2"));
  EXPECT_THAT(kinds, HasSubstr("FF 55 02 0C 81 71"));
  EXPECT_THAT(kinds, HasSubstr("FF 55 04 00 4A 02 00 B0"));
}

TEST(Faults, AnswerToAnUnaskedRequestIsWelcome) {
  Settings settings = Faulty(Fault::kUnaskedRequests);
  for (std::uint64_t seed = 1;; ++seed) {
    ASSERT_LT(seed, 100u);
    settings.seed = seed;
    IpodUnderTest dock(settings);
    const std::string answer =
        dock.Exchange("FF 55 0E 00 13 00 00 00 01 00 00 00 00 00 00 00 00 DE");
    if (answer.find("FF 55 03 00 27 01 D5") == std::string::npos) continue;
    dock.Exchange("FF 55 06 00 28 01 4D 65 00 1F");
    EXPECT_EQ(dock.Mistakes(), "");
    return;
  }
}

TEST(Faults, UnplugForgetsTheAccessoryAndReplugHearsItAgain) {
  Settings settings = Faulty(Fault::kUnplug);
  settings.faults.unplug_after = 4;
  IpodUnderTest dock(settings);
  dock.Identify();
  dock.Exchange("FF 55 04 04 00 29 0A C5");
  EXPECT_TRUE(dock.ipod.plugged());
  EXPECT_EQ(dock.Exchange(kRequest), "");
  EXPECT_FALSE(dock.ipod.plugged());
  EXPECT_FALSE(dock.ipod.identified());
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPaused);
  EXPECT_EQ(dock.Exchange(kRequest), "");
  const auto back = dock.ipod.NextEvent();
  ASSERT_TRUE(back);
  dock.now = *back;
  EXPECT_EQ(dock.Read(0), "");
  EXPECT_TRUE(dock.ipod.plugged());
  dock.Identify();
  EXPECT_EQ(dock.Exchange(kRequest), kName);
}

TEST(Faults, UnplugByHandLastsUntilReplug) {
  IpodUnderTest dock;
  dock.Identify();
  dock.ipod.Unplug(dock.now);
  EXPECT_EQ(dock.ipod.NextEvent(), std::nullopt);
  EXPECT_EQ(dock.Exchange(kRequest), "");
  dock.Read(3600 * kSecond);
  EXPECT_FALSE(dock.ipod.plugged());
  dock.ipod.Replug(dock.now);
  EXPECT_TRUE(dock.ipod.plugged());
  dock.Identify();
  EXPECT_EQ(dock.Exchange(kRequest), kName);
}

// A conversation under every fault at once, as one text.
std::string Conversation(std::uint64_t seed) {
  Settings settings = QuietSettings();
  settings.seed = seed;
  settings.fixed_latency.reset();
  settings.asks_accessory = true;
  for (const FaultInfo& info : Faults::All()) settings.faults.Enable(info.fault);
  IpodUnderTest dock(settings);
  std::string said;
  for (int i = 0; i < 60; ++i) {
    dock.Write("FF 55 0E 00 13 00 00 12 1D 00 00 00 00 00 00 00 00 B0");
    said += dock.Read(100 * kMillisecond) + "/";
    dock.Write("FF 55 0C 04 00 1A 05 00 00 00 00 00 00 00 06 CB");
    said += dock.Read(100 * kMillisecond) + "/";
    dock.Write("FF 55 04 04 00 29 0A C5");
    said += dock.Read(100 * kMillisecond) + "/";
  }
  return said;
}

TEST(Faults, SameSeedGivesTheSameBytes) {
  EXPECT_EQ(Conversation(1), Conversation(1));
  EXPECT_EQ(Conversation(77), Conversation(77));
  EXPECT_NE(Conversation(1), Conversation(77));
}

TEST(Faults, LineFaultsAreNotHeldAgainstTheAccessory) {
  Settings settings = Faulty(Fault::kDroppedBytes);
  settings.asks_accessory = true;
  IpodUnderTest dock(settings);
  dock.Identify();
  dock.Read(10 * kSecond);
  dock.Exchange(kRequest);
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Latency, NeverLetsOneAnswerOvertakeAnother) {
  Settings settings = QuietSettings();
  settings.fixed_latency.reset();
  IpodUnderTest dock(settings);
  dock.Identify();
  dock.Read(kSecond);
  for (int i = 0; i < 300; ++i) {
    dock.Write(kRequest);
    dock.Write("FF 55 02 00 09 F5");
    EXPECT_EQ(dock.Read(500 * kMillisecond), std::string(kName) + " FF 55 05 00 0A 01 00 04 EC");
  }
}

TEST(Latency, IsEightMillisecondsInTheMiddleAndNeverOver240) {
  Settings settings = QuietSettings();
  settings.fixed_latency.reset();
  IpodUnderTest dock(settings);
  dock.Identify();
  dock.Read(kSecond);
  std::vector<Microseconds> latencies;
  for (int i = 0; i < 4000; ++i) {
    dock.Write(kRequest);
    const auto due = dock.ipod.NextEvent();
    ASSERT_TRUE(due);
    latencies.push_back(*due - dock.now);
    dock.Read(300 * kMillisecond);
  }
  std::sort(latencies.begin(), latencies.end());
  EXPECT_NEAR(static_cast<double>(latencies[2000]), 8000, 200);
  EXPECT_NEAR(static_cast<double>(latencies[3800]), 15000, 1500);
  EXPECT_GE(latencies.front(), 1000);
  EXPECT_LE(latencies.back(), 240000);
  EXPECT_GT(latencies.back(), 150000);
}

}  // namespace
}  // namespace ipodsim
