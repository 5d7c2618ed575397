// SPDX-License-Identifier: MIT
// The conduct of the legacy interface: the pause behind the sync byte, and how much a read asks
// for.
#include <array>

#include "support/legacy_test.h"

namespace {

using test::kEmptyReadsUs;
using test::kMillisecond;
using test::LegacyTest;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr char kName[] = "FF 55 06 00 08 50 6F 64 00 CF";  // "Pod"
constexpr char kAck[] = "FF 55 04 00 02 00 07 F3";

class LegacyConduct : public LegacyTest {
 protected:
  int Choose(const tagIPOD_LEGACY_CONDUCT& conduct) { return legacy_.SetConduct(&conduct); }
  void ChooseFast() { EXPECT_EQ(Choose(IPOD_LEGACY_CONDUCT_FAST), 1); }
  // Has the bytes wait in the driver.
  void Arrived(const char* bytes) {
    Send(bytes);
    world_.Advance(20 * kMillisecond);
  }
  std::string ReadFrame() {
    std::array<unsigned char, 256> buffer = {};
    const unsigned long count = ipodPeer::Serial(legacy_).readport(buffer.data(), 256);
    return test::ToHex(buffer.data(), count);
  }
  std::vector<std::string> CallsOfSending() {
    world_.DrainCalls();
    world_.Record({"WriteFile", "Sleep"});
    EXPECT_EQ(legacy_.command_requestipodname(), 1);
    world_.StopRecording();
    return world_.DrainRecord();
  }
  std::vector<std::string> CallsOfReading(const char* expected) {
    world_.DrainCalls();
    world_.Record();
    EXPECT_EQ(ReadFrame(), expected);
    world_.StopRecording();
    return world_.DrainRecord();
  }
};

TEST_F(LegacyConduct, IsFieldUnlessAnotherIsChosen) {
  tagIPOD_LEGACY_CONDUCT conduct = {};
  EXPECT_EQ(legacy_.GetConduct(&conduct), 1);
  EXPECT_EQ(conduct.sync_pause_ms, 5U);
  EXPECT_EQ(conduct.bytes_per_read, 1U);
  EXPECT_EQ(conduct.sync_pause_until_answered, 0);
  EXPECT_EQ(conduct.line_pause_ms, 0U);
  EXPECT_EQ(conduct.answers_questions, 0);
  EXPECT_EQ(Choose({7, 8, 1, 9, 1}), 1);
  EXPECT_EQ(legacy_.GetConduct(&conduct), 1);
  EXPECT_EQ(conduct.sync_pause_ms, 7U);
  EXPECT_EQ(conduct.bytes_per_read, 8U);
  EXPECT_EQ(conduct.sync_pause_until_answered, 1);
  EXPECT_EQ(conduct.line_pause_ms, 9U);
  EXPECT_EQ(conduct.answers_questions, 1);
  EXPECT_EQ(legacy_.GetConduct(nullptr), 0);
}

TEST_F(LegacyConduct, ASenselessOneIsRefusedAndChangesNothing) {
  for (const tagIPOD_LEGACY_CONDUCT senseless :
       {tagIPOD_LEGACY_CONDUCT{10001, 1, 0, 0, 0}, tagIPOD_LEGACY_CONDUCT{5, 0, 0, 0, 0},
        tagIPOD_LEGACY_CONDUCT{5, 1025, 0, 0, 0}, tagIPOD_LEGACY_CONDUCT{5, 1, 2, 0, 0},
        tagIPOD_LEGACY_CONDUCT{5, 1, -1, 0, 0}, tagIPOD_LEGACY_CONDUCT{5, 1, 0, 10001, 0},
        tagIPOD_LEGACY_CONDUCT{5, 1, 0, 0, 2}, tagIPOD_LEGACY_CONDUCT{5, 1, 0, 0, -1}}) {
    EXPECT_EQ(Choose(senseless), 0);
  }
  EXPECT_EQ(legacy_.SetConduct(nullptr), 0);
  EXPECT_THAT(CallsOfSending(),
              ElementsAre("WriteFile(port1, FF)", "Sleep(5)", "WriteFile(port1, 55 02 00 07 F7)"));
}

TEST_F(LegacyConduct, ItsPausesLastTenSecondsAtMost) {
  EXPECT_EQ(Choose({10000, 1024, 0, 10000, 0}), 1);
  tagIPOD_LEGACY_CONDUCT conduct = {};
  EXPECT_EQ(legacy_.GetConduct(&conduct), 1);
  EXPECT_EQ(conduct.sync_pause_ms, 10000U);
  EXPECT_EQ(conduct.line_pause_ms, 10000U);
}

TEST_F(LegacyConduct, ThePauseIsTheOneChosen) {
  EXPECT_EQ(Choose({12, 1, 0, 0, 0}), 1);
  EXPECT_THAT(CallsOfSending(),
              ElementsAre("WriteFile(port1, FF)", "Sleep(12)", "WriteFile(port1, 55 02 00 07 F7)"));
  EXPECT_EQ(Choose({0, 1, 0, 0, 0}), 1);
  EXPECT_THAT(CallsOfSending(), ElementsAre("WriteFile(port1, FF 55 02 00 07 F7)"));
}

TEST_F(LegacyConduct, FastPausesUntilTheIpodHasAnswered) {
  ChooseFast();
  EXPECT_THAT(CallsOfSending(), SizeIs(3));
  Arrived(kName);
  EXPECT_EQ(ReadFrame(), kName);
  EXPECT_THAT(CallsOfSending(), ElementsAre("WriteFile(port1, FF 55 02 00 07 F7)"));
}

TEST_F(LegacyConduct, FastPausesAgainOnceThePortIsOpenedAnew) {
  ChooseFast();
  Arrived(kName);
  EXPECT_EQ(ReadFrame(), kName);
  EXPECT_EQ(legacy_.closeport(), 1);
  EXPECT_EQ(legacy_.openport(), 1);
  EXPECT_THAT(CallsOfSending(), SizeIs(3));
}

TEST_F(LegacyConduct, FastTakesHalfAFrameForNoAnswer) {
  ChooseFast();
  Arrived("FF 55 06 00");
  EXPECT_EQ(ReadFrame(), "FF 55 06 00");
  EXPECT_THAT(CallsOfSending(), SizeIs(3));
}

TEST_F(LegacyConduct, FastReadsWhatTheDriverHoldsAndTheFrameNeeds) {
  ChooseFast();
  Arrived(kName);
  Arrived(kAck);
  EXPECT_THAT(CallsOfReading(kName), ElementsAre("ClearCommError(port1)", "ReadFile(port1, 5)",
                                                 "ClearCommError(port1)", "ReadFile(port1, 5)"));
  EXPECT_EQ(ReadFrame(), kAck);
}

TEST_F(LegacyConduct, FastFindsAFrameBehindNoiseAndLeavesWhatFollows) {
  ChooseFast();
  Arrived("00 41 FF FF 55 04 00 02 00 07 F3 FF 55 04 00 02 00 07 F3");
  EXPECT_EQ(ReadFrame(), kAck);
  EXPECT_EQ(ReadFrame(), kAck);
}

TEST_F(LegacyConduct, FastWaitsForASilentLineAsLongAsByDefault) {
  ChooseFast();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(ReadFrame(), ""); }), kEmptyReadsUs);
}

TEST_F(LegacyConduct, RobustPausesBeforeThePortIsOpenedForTheNextLineOfAWorkout) {
  wchar_t line[] = L"x";
  EXPECT_EQ(Choose(IPOD_LEGACY_CONDUCT_ROBUST), 1);
  world_.Record({"Sleep", "CloseHandle"});
  legacy_.ipodstoragewritestring(1, line);
  const auto robust = world_.DrainRecord();
  EXPECT_EQ(Choose(IPOD_LEGACY_CONDUCT_FIELD), 1);
  legacy_.ipodstoragewritestring(1, line);
  const auto field = world_.DrainRecord();
  ASSERT_THAT(robust, SizeIs(testing::Ge(2U)));
  ASSERT_THAT(field, SizeIs(testing::Ge(1U)));
  EXPECT_EQ(robust[0], "Sleep(10)");
  EXPECT_EQ(robust[1], "CloseHandle(port1)");
  EXPECT_THAT(field[0], testing::StartsWith("CloseHandle(port"));
}

TEST_F(LegacyConduct, RobustAndFastDiscardADoubledAcknowledgementOfALine) {
  constexpr char kAckTwice[] = "FF 55 04 0C 00 00 07 E9 FF 55 04 0C 00 00 07 E9";
  wchar_t line[] = L"x";
  for (const auto& conduct : {IPOD_LEGACY_CONDUCT_ROBUST, IPOD_LEGACY_CONDUCT_FAST}) {
    EXPECT_EQ(Choose(conduct), 1);
    ipod_.SendAt(world_.now_us() + 40 * kMillisecond, test::Hex(kAckTwice));
    EXPECT_EQ(legacy_.ipodstoragewritestring(1, line), 1);
    // Nothing acknowledges the second line, and the doubled acknowledgement does not either.
    EXPECT_EQ(legacy_.ipodstoragewritestring(1, line), 0);
  }
}

TEST_F(LegacyConduct, ByDefaultADoubledAcknowledgementIsTakenForTheNextLines) {
  constexpr char kAckTwice[] = "FF 55 04 0C 00 00 07 E9 FF 55 04 0C 00 00 07 E9";
  wchar_t line[] = L"x";
  ipod_.SendAt(world_.now_us() + 40 * kMillisecond, test::Hex(kAckTwice));
  EXPECT_EQ(legacy_.ipodstoragewritestring(1, line), 1);
  EXPECT_EQ(legacy_.ipodstoragewritestring(1, line), 1);
}

// The first line closes and opens the port, which purges it under each, and is not acknowledged.
TEST_F(LegacyConduct, OnlyRobustAndFastDiscardWhatCameBeforeTheFileOfAWorkoutIsClosed) {
  const auto purges = [&](const tagIPOD_LEGACY_CONDUCT& conduct) {
    EXPECT_EQ(Choose(conduct), 1);
    world_.Record({"PurgeComm"});
    EXPECT_EQ(legacy_.finishworkout(0, 0, 0, 0, 0, 0, 0, 0), 0);
    world_.StopRecording();
    return world_.DrainRecord();
  };
  EXPECT_THAT(purges(IPOD_LEGACY_CONDUCT_FIELD),
              ElementsAre("PurgeComm(port1, 12)", "PurgeComm(port2, 12)"));
  EXPECT_THAT(purges(IPOD_LEGACY_CONDUCT_ROBUST),
              ElementsAre("PurgeComm(port2, 12)", "PurgeComm(port3, 12)", "PurgeComm(port3, 8)"));
  EXPECT_THAT(purges(IPOD_LEGACY_CONDUCT_FAST),
              ElementsAre("PurgeComm(port3, 12)", "PurgeComm(port4, 12)", "PurgeComm(port4, 8)"));
}

TEST_F(LegacyConduct, ADriverThatDoesNotTellWhatItHoldsIsReadByteByByte) {
  ChooseFast();
  world_.FailFrom("ClearCommError", 1, 50);
  Arrived(kName);
  EXPECT_EQ(ReadFrame(), kName);
  EXPECT_THAT(test::DrainTraceLog(),
              ElementsAre("ipodserial::readport: Driver does not tell what it holds, reading byte "
                          "by byte"));
  Arrived(kAck);
  const auto calls = CallsOfReading(kAck);
  EXPECT_THAT(calls, SizeIs(8));
  EXPECT_THAT(calls, Each("ReadFile(port1, 1)"));
}

TEST_F(LegacyConduct, AVanishedAdapterIsLikeFailedReads) {
  ChooseFast();
  world_.line().Vanish();
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(ReadFrame(), ""); }), 1000 * kMillisecond);
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
}

// Six bytes and ten at 57600 baud, 10 bits a byte; the iPod takes 8 ms.
TEST_F(LegacyConduct, FastAsksForANameAtTheSpeedOfTheLine) {
  Answer("FF 55 02 00 07 F7", kName, 8 * kMillisecond);
  wchar_t name[256];
  const std::int64_t by_default = Elapsed([&] { EXPECT_EQ(legacy_.getipodname(name), 1); });
  ChooseFast();
  EXPECT_EQ(legacy_.getipodname(name), 1);
  const std::int64_t fast = Elapsed([&] { EXPECT_EQ(legacy_.getipodname(name), 1); });
  EXPECT_STREQ(name, L"Pod");
  EXPECT_EQ(by_default, 5000 + 869 + 8000 + 1737);
  EXPECT_EQ(fast, 1042 + 8000 + 1737);
}

}  // namespace
