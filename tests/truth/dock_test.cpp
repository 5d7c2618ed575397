// SPDX-License-Identifier: MIT
// The dock does each trouble, and nothing else, to the frames that pass it.
#include "dock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenes.h"
#include "support/bytes.h"

namespace truth {
namespace {

using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// Asks the iPod for its name and its model number, and gathers what comes within three seconds.
class DockTest : public ::testing::Test {
 protected:
  std::string Gather(const char* trouble, unsigned place) {
    ipodsim::Settings settings;
    settings.fixed_latency = 10 * ipodsim::kMillisecond;
    settings.library.name = "Zoe";
    settings.asks_accessory = false;
    ipodsim::SimulatedIpod ipod(settings);
    Dock dock(ipod, *TroubleByName(trouble), place, 1);
    test::Bytes heard;
    const auto say = [&](std::string_view frame, std::int64_t now_us) {
      const test::Bytes bytes = test::Hex(frame);
      dock.Receive(bytes.data(), bytes.size(), now_us);
    };
    const auto listen = [&](std::int64_t until_us) {
      for (auto next = dock.NextEvent(); next && *next <= until_us; next = dock.NextEvent()) {
        for (const std::uint8_t byte : dock.Transmit(*next)) heard.push_back(byte);
      }
    };
    say("FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 00 C2", 0);
    listen(100'000);
    say("FF 55 02 00 07 F7", 100'000);
    listen(200'000);
    say("FF 55 02 00 07 F7", 200'000);
    listen(3'000'000);
    account_ = dock.account();
    return test::ToHex(heard.data(), heard.size());
  }

  Account account_;
  const std::string identified_ = "FF 55 04 00 02 00 13 E7";
  const std::string name_ = "FF 55 06 00 08 5A 6F 65 00 C4";
};

TEST_F(DockTest, PassesOnWhatNoTroubleStrikes) {
  EXPECT_EQ(Gather("none", 0), identified_ + " " + name_ + " " + name_);
  EXPECT_EQ(account_.requests, 3U);
  EXPECT_EQ(account_.answers, 3U);
  EXPECT_THAT(account_.refusals, IsEmpty());
  EXPECT_FALSE(account_.struck);
}

TEST_F(DockTest, LosesAnAnswerOrARequest) {
  EXPECT_EQ(Gather("missing", 2), identified_ + " " + name_);
  EXPECT_TRUE(account_.struck);
  EXPECT_EQ(Gather("lost", 3), identified_ + " " + name_);
  EXPECT_TRUE(account_.struck);
}

TEST_F(DockTest, DoublesRepeatsAndCutsAnAnswer) {
  EXPECT_EQ(Gather("doubled", 1), identified_ + " " + identified_ + " " + name_ + " " + name_);
  EXPECT_EQ(Gather("repeated", 1), identified_ + " " + identified_ + " " + name_ + " " + name_);
  EXPECT_THAT(Gather("cut", 2), HasSubstr("FF 55 0"));
  EXPECT_EQ(account_.answers, 3U);
}

TEST_F(DockTest, RefusesARequestAndRemembersIt) {
  EXPECT_THAT(Gather("refused", 2), HasSubstr("FF 55 04 00 02 0"));
  EXPECT_THAT(account_.refusals, ElementsAre(Field(&Refusal::after, 2U)));
  Gather("refused-always", 2);
  EXPECT_THAT(account_.refusals,
              ElementsAre(Field(&Refusal::after, 2U), Field(&Refusal::command, 0x07)));
}

TEST_F(DockTest, HangsUpForGood) {
  EXPECT_EQ(Gather("hang-up", 2), identified_);
  EXPECT_TRUE(account_.cut_off);
}

TEST_F(DockTest, BringsBackWhatTheAccessorySends) {
  EXPECT_EQ(Gather("loopback", 1),
            "FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 00 C2 FF 55 02 00 07 F7 "
            "FF 55 02 00 07 F7");
}

TEST_F(DockTest, DamagedFrameSeldomHasAChecksumThatHolds) {
  Gather("flipped-bit", 2);
  EXPECT_TRUE(account_.struck);
  EXPECT_FALSE(account_.checksum_held);
}

TEST(HoldsAnotherFrame, SeesTheFrameThatALostByteMakes) {
  // Of FF 55 04 00 02 00 FF FB the byte FF is lost, and the next frame's first byte takes the place
  // of the checksum.
  const test::Bytes arriving = test::Hex("FF 55 04 00 02 00 FB FF 55 02 00 07 F7");
  EXPECT_TRUE(HoldsAnotherFrame(arriving, {test::Hex("FF 55 02 00 07 F7")}));
}

TEST(HoldsAnotherFrame, KnowsTheFramesThatWereSent) {
  const test::Bytes sent = test::Hex("FF 55 02 00 07 F7");
  EXPECT_FALSE(HoldsAnotherFrame(sent, {sent}));
  EXPECT_TRUE(HoldsAnotherFrame(sent, {}));
  EXPECT_FALSE(HoldsAnotherFrame(test::Hex("FF 55 02 00 07 F6"), {}));
}

}  // namespace
}  // namespace truth
