// SPDX-License-Identifier: MIT
// A host that has a say in the waits of the legacy interface: when its no takes effect, and that a
// host without one sees no difference.
#include <array>
#include <cstdint>

#include "self_test_test.h"
#include "support/legacy_test.h"

namespace {

using test::kEmptyReadsUs;
using test::kMillisecond;
using test::kSecond;
using test::kSilenceUs;
using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::Le;

constexpr char kNameQuestion[] = "FF 55 02 00 07 F7";
constexpr char kNameIsPod[] = "FF 55 06 00 08 50 6F 64 00 CF";  // "Pod"
constexpr char kLeaveRemoteUi[] = "FF 55 02 00 06 F8";

// Adds a host that says no from a time on.
template <class Ground>
class Asked : public Ground {
 protected:
  Asked() { EXPECT_EQ(this->legacy_.SetKeepGoing(Ask, this), 1); }

  static bool Ask(void* context) {
    Asked& test = *static_cast<Asked*>(context);
    ++test.asked_;
    return test.world_.now_us() < test.no_at_us_;
  }
  void SayNoIn(std::int64_t us) { no_at_us_ = this->world_.now_us() + us; }
  void SayYes() { no_at_us_ = INT64_MAX; }

  std::int64_t no_at_us_ = INT64_MAX;
  int asked_ = 0;
};

class LegacyKeepGoing : public Asked<test::LegacyTest> {
 protected:
  std::string ReadFrame() {
    std::array<unsigned char, 256> buffer = {};
    const unsigned long count = ipodPeer::Serial(legacy_).readport(buffer.data(), 256);
    return test::ToHex(buffer.data(), count);
  }
  int AskName() { return legacy_.getipodname(name_); }

  wchar_t name_[256] = {};
};

TEST_F(LegacyKeepGoing, NoEndsTheWaitForASilentIpodAtTheNextSlice) {
  SayNoIn(330 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskName(), 0); }), (5 + 350) * kMillisecond);
  EXPECT_EQ(DrainSentBytes(), kNameQuestion);
}

TEST_F(LegacyKeepGoing, NoEndsThePauseBehindAnEmptyReadAtTheNextSlice) {
  SayNoIn(510 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(ReadFrame(), ""); }), 550 * kMillisecond);
}

TEST_F(LegacyKeepGoing, NoTakesEffectWithinATenthOfASecondWheneverItIsSaid) {
  for (std::int64_t no_in_ms = 1; no_in_ms < 3000; no_in_ms += 37) {
    SayNoIn(no_in_ms * kMillisecond);
    EXPECT_THAT(Elapsed([&] { EXPECT_EQ(ReadFrame(), ""); }),
                AllOf(Ge(no_in_ms * kMillisecond), Le((no_in_ms + 100) * kMillisecond)));
  }
}

TEST_F(LegacyKeepGoing, NoEndsAReadThatFindsOnlyNoise) {
  const std::int64_t start_us = world_.now_us();
  for (int i = 0; i < 100; ++i) ipod_.SendAt(start_us + i * 30 * kMillisecond, {0x00});
  SayNoIn(kSecond);
  EXPECT_THAT(Elapsed([&] { EXPECT_EQ(ReadFrame(), ""); }),
              AllOf(Ge(kSecond), Le(kSecond + 50 * kMillisecond)));
}

TEST_F(LegacyKeepGoing, NoLeavesWhatHasComeOfAFrame) {
  Send("FF 55 09 00");
  SayNoIn(100 * kMillisecond);
  EXPECT_EQ(ReadFrame(), "FF 55 09 00");
}

TEST_F(LegacyKeepGoing, NothingIsReadWhileTheHostSaysNo) {
  Send(kNameIsPod);
  world_.Advance(20 * kMillisecond);
  SayNoIn(0);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(ReadFrame(), ""); }), 0);
  SayYes();
  EXPECT_EQ(ReadFrame(), kNameIsPod);
}

TEST_F(LegacyKeepGoing, CommandsGoOutWhileTheHostSaysNo) {
  SayNoIn(0);
  EXPECT_EQ(legacy_.command_exitremoteuimode(), 1);
  EXPECT_EQ(DrainSentBytes(), kLeaveRemoteUi);
}

TEST_F(LegacyKeepGoing, YesChangesNothingOfASilentIpodsTimes) {
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskName(), 0); }), kSilenceUs);
  EXPECT_GE(asked_, 60);
  world_.FailFrom("ReadFile", 1, 5);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(ReadFrame(), ""); }), kSecond);
}

TEST_F(LegacyKeepGoing, YesChangesNothingOfAnAnswersTime) {
  Answer(kNameQuestion, kNameIsPod, 380 * kMillisecond);
  const std::int64_t asking_us = Elapsed([&] { EXPECT_EQ(AskName(), 1); });
  EXPECT_STREQ(name_, L"Pod");
  EXPECT_EQ(legacy_.SetKeepGoing(nullptr, nullptr), 1);
  asked_ = 0;
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskName(), 1); }), asking_us);
  EXPECT_EQ(asked_, 0);
}

TEST_F(LegacyKeepGoing, ReadsWaitForASliceOnlyWhileThereIsAHost) {
  world_.Record({"SetCommTimeouts", "ReadFile"});
  SayNoIn(60 * kMillisecond);
  EXPECT_EQ(ReadFrame(), "");
  EXPECT_EQ(legacy_.SetKeepGoing(nullptr, nullptr), 1);
  EXPECT_EQ(ReadFrame(), "");
  EXPECT_EQ(legacy_.SetKeepGoing(Ask, this), 1);
  EXPECT_THAT(world_.DrainRecord(),
              ElementsAre("ReadFile(port1, 1)", "ReadFile(port1, 1)",
                          "SetCommTimeouts(port1, 200, 200, 200, 0, 0)", "ReadFile(port1, 1)",
                          "ReadFile(port1, 1)", "ReadFile(port1, 1)", "ReadFile(port1, 1)",
                          "ReadFile(port1, 1)", "SetCommTimeouts(port1, 200, 0, 50, 0, 0)"));
}

TEST_F(LegacyKeepGoing, HoldsForAPortThatIsOpenedLater) {
  EXPECT_EQ(legacy_.closeport(), 1);
  EXPECT_EQ(legacy_.openport(), 1);
  SayNoIn(60 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(ReadFrame(), ""); }), 100 * kMillisecond);
}

TEST_F(LegacyKeepGoing, APortThatDoesNotTakeTheWaitsChangesNothing) {
  EXPECT_EQ(legacy_.SetKeepGoing(nullptr, nullptr), 1);
  world_.FailOnce("SetCommTimeouts", 1, 87);
  EXPECT_EQ(legacy_.SetKeepGoing(Ask, this), 0);
  SayNoIn(0);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(ReadFrame(), ""); }), kEmptyReadsUs);
  EXPECT_EQ(asked_, 0);
}

TEST_F(LegacyKeepGoing, ACopyAsksToo) {
  ipod copy = legacy_;
  SayNoIn(330 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(copy.getipodname(name_), 0); }), (5 + 350) * kMillisecond);
}

// Playback is given two seconds to begin, and then the title is asked for.
class SelfTestKeepGoing : public Asked<test::SelfTestTest> {};

TEST_F(SelfTestKeepGoing, NoEndsTheWaitForPlaybackToBegin) {
  const std::int64_t whole_us = Elapsed([&] { EXPECT_EQ(Perform(2).result, 1); });
  EXPECT_GT(whole_us, 4 * kSecond);
  SayNoIn(kSecond);
  const std::int64_t stopped_us = Elapsed([&] { EXPECT_EQ(Perform(2).result, 0); });
  EXPECT_THAT(stopped_us, AllOf(Ge(kSecond), Le(kSecond + 100 * kMillisecond)));
  EXPECT_STREQ(detail_, L"Get Indexed Playing Track Title");
}

}  // namespace
