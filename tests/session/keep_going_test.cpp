// SPDX-License-Identifier: MIT
// A host that has a say in every command: when its no takes effect, and what becomes of the
// session.
#include <string>
#include <utility>

#include "support/foreign_answers.h"
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char kAskIndex[] = "FF 55 03 04 00 1E DB";
constexpr char kThird[] = "FF 55 07 04 00 1F 00 00 00 03 D3";
constexpr char kSeventh[] = "FF 55 07 04 00 1F 00 00 00 07 CF";
constexpr char kSetShuffle[] = "FF 55 05 04 00 2E 01 01 C7";
constexpr char kShuffled[] = "FF 55 06 04 00 01 00 00 2E C7";
constexpr char kSetRepeat[] = "FF 55 05 04 00 31 01 00 C5";

struct Chosen {
  std::string name;
  tagIPOD_CONDUCT conduct;
};

void PrintTo(const Chosen& chosen, std::ostream* stream) { *stream << chosen.name; }

const Chosen kConducts[] = {{"Field", IPOD_CONDUCT_FIELD}, {"Robust", IPOD_CONDUCT_ROBUST}};

class KeepGoing : public test::SessionTest, public ::testing::WithParamInterface<Chosen> {
 protected:
  KeepGoing() {
    EXPECT_EQ(session_.SetConduct(&GetParam().conduct), 1);
    session_.SetKeepGoing(Ask, this);
  }

  static bool Ask(void* context) {
    KeepGoing& test = *static_cast<KeepGoing*>(context);
    ++test.asked_;
    return test.world_.now_us() < test.no_at_us_;
  }
  void SayNoIn(std::int64_t us) { no_at_us_ = world_.now_us() + us; }
  void SayYes() { no_at_us_ = kNever; }

  int AskIndex() { return session_.Command_GetCurrentPlayingTrackIndex(&index_); }
  void StopAskingIndexIn(std::int64_t us) {
    SayNoIn(us);
    EXPECT_EQ(AskIndex(), 0);
    EXPECT_THAT(DrainSent(), ElementsAre(kAskIndex));
    SayYes();
  }
  tagIPOD_EXCHANGE Last() {
    tagIPOD_EXCHANGE last = {};
    EXPECT_EQ(session_.GetLastExchange(&last), 1);
    return last;
  }

  static constexpr std::int64_t kNever = INT64_MAX;
  static constexpr std::int64_t kSendingUs = 20 * kMillisecond;  // the pause behind the sync byte
  std::int64_t no_at_us_ = kNever;
  int asked_ = 0;
  unsigned long index_ = 0xEEEE;
};

TEST_P(KeepGoing, NoEndsACommandToASilentIpodAtTheNextSlice) {
  SayNoIn(330 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskIndex(), 0); }), kSendingUs + 350 * kMillisecond);
  EXPECT_EQ(index_, 0xEEEEU);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskIndex));
  EXPECT_EQ(Last().result, IPOD_EXCHANGE_UNANSWERED);
  EXPECT_EQ(Last().attempts, 1U);
}

TEST_P(KeepGoing, NoTakesEffectWithinATenthOfASecondWheneverItIsSaid) {
  for (std::int64_t no_in_ms = 1; no_in_ms < 3200; no_in_ms += 37) {
    SayNoIn(no_in_ms * kMillisecond);
    const std::int64_t took_us = Elapsed([&] { EXPECT_EQ(AskIndex(), 0); });
    EXPECT_LE(took_us, (no_in_ms + 100) * kMillisecond);
    EXPECT_GE(took_us, std::min<std::int64_t>(no_in_ms, 3000) * kMillisecond);
    SayYes();
    world_.Advance(11 * kSecond);
  }
}

TEST_P(KeepGoing, NothingIsSentWhileTheHostSaysNo) {
  SayNoIn(0);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskIndex(), 0); }), 0);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.Command_SetShuffle(1, 0), 0); }), 0);
  EXPECT_THAT(DrainSent(), IsEmpty());
  EXPECT_EQ(Last().result, IPOD_EXCHANGE_UNANSWERED);
  EXPECT_EQ(Last().command, 0x2EU);
  EXPECT_EQ(Last().attempts, 0U);
}

TEST_P(KeepGoing, NoBetweenTwoAttemptsLeavesTheSecondOut) {
  SayNoIn(kSendingUs + 960 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskIndex(), 0); }), kSendingUs + kSecond);
  EXPECT_THAT(DrainSent(), ElementsAre(kAskIndex));
}

TEST_P(KeepGoing, AnswerThatCameBeforeTheNoCounts) {
  Answer(kAskIndex, kSeventh, 30 * kMillisecond);
  SayNoIn(2900 * kMillisecond);
  EXPECT_EQ(AskIndex(), 1);
  EXPECT_EQ(index_, 7U);
}

TEST_P(KeepGoing, YesChangesNothingOfASilentIpodsTimes) {
  const std::int64_t asking_us = Elapsed([&] { EXPECT_EQ(AskIndex(), 0); });
  world_.Advance(11 * kSecond);
  session_.SetKeepGoing(nullptr, nullptr);
  asked_ = 0;
  const std::int64_t plain_us = Elapsed([&] { EXPECT_EQ(AskIndex(), 0); });
  EXPECT_EQ(asked_, 0);
  // A robust session waits for what may still come of the first question.
  const bool waits = GetParam().conduct.robust != 0;
  EXPECT_NEAR(static_cast<double>(plain_us),
              static_cast<double>(asking_us + (waits ? 2 * kSecond : 0)), 5. * kMillisecond)
      << "give or take a pause of the read thread, which holds the port";
}

// ---- What comes later ---------------------------------------------------------------------------

TEST_P(KeepGoing, LateAnswerIsNotTakenForTheNextOne) {
  StopAskingIndexIn(100 * kMillisecond);
  Answer(kAskIndex, kThird, 30 * kMillisecond);
  Arrive(kSeventh);
  EXPECT_EQ(AskIndex(), 1);
  EXPECT_EQ(index_, 3U);
}

TEST_P(KeepGoing, LateAcknowledgementIsNotTakenForAnotherCommands) {
  Answer(kSetShuffle, kShuffled, 700 * kMillisecond);
  SayNoIn(100 * kMillisecond);
  EXPECT_EQ(session_.Command_SetShuffle(1, 0), 0);
  SayYes();
  EXPECT_EQ(session_.Command_SetRepeat(1, 0), 0);
  EXPECT_THAT(DrainSent(), ElementsAre(kSetShuffle, kSetRepeat, kSetRepeat, kSetRepeat));
}

TEST_P(KeepGoing, LateAnswerWithAnIdentifierIsNotTakenForTheNextOne) {
  TurnOnTransactionIds(5);
  Answer("FF 55 05 04 00 1E 00 05 D4", "FF 55 09 04 00 1F 00 05 00 00 00 07 C8",
         700 * kMillisecond);
  Answer("FF 55 05 04 00 1E 00 06 D3", "FF 55 09 04 00 1F 00 06 00 00 00 03 CB", 30 * kMillisecond);
  SayNoIn(100 * kMillisecond);
  EXPECT_EQ(AskIndex(), 0);
  SayYes();
  EXPECT_EQ(AskIndex(), 1);
  EXPECT_EQ(index_, 3U);
}

TEST_P(KeepGoing, CommandBehindAStoppedOneWaitsTwoSecondsForItsAnswer) {
  StopAskingIndexIn(100 * kMillisecond);
  world_.Advance(100 * kMillisecond);
  Answer(kAskIndex, kThird);
  EXPECT_GE(Elapsed([&] { EXPECT_EQ(AskIndex(), 1); }), 2 * kSecond);
  EXPECT_EQ(index_, 3U);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(AskIndex(), 1); }), 2 * kSecond);
}

TEST_P(KeepGoing, NoEndsThatWaitTooAndItIsMadeUpForLater) {
  StopAskingIndexIn(100 * kMillisecond);
  SayNoIn(500 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskIndex(), 0); }), 500 * kMillisecond);
  EXPECT_THAT(DrainSent(), IsEmpty());
  SayYes();
  Answer(kAskIndex, kThird);
  EXPECT_GE(Elapsed([&] { EXPECT_EQ(AskIndex(), 1); }), 2 * kSecond);
}

TEST_P(KeepGoing, QuestionOfTheIpodBehindAStoppedCommandIsAnsweredBeforeTheNextIsSent) {
  StopAskingIndexIn(100 * kMillisecond);
  Arrive("FF 55 02 09 01 F4");
  Answer(kAskIndex, kThird);
  EXPECT_EQ(AskIndex(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 09 02 01 01 EF", kAskIndex));
}

// ---- Other calls that wait ----------------------------------------------------------------------

TEST_P(KeepGoing, RecordsAreStoppedToo) {
  SayNoIn(330 * kMillisecond);
  session_.Command_RetrieveCategorizedDatabaseRecords(0, 3, 5);
  wchar_t name[20] = {};
  EXPECT_EQ(session_.GetNextCategorizedRecord(name, 20), 0);
  EXPECT_LE(world_.now_us(), no_at_us_ + 50 * kMillisecond);
  EXPECT_EQ(DrainSent().size(), 1U);
  EXPECT_EQ(session_.Command_RetrieveCategorizedDatabaseRecords(0, 3, 5), 0U);
  EXPECT_THAT(DrainSent(), IsEmpty());
}

TEST_P(KeepGoing, PacketsAreAwaitedNoLonger) {
  tagSERIAL_PACKET packet = {};
  SayNoIn(330 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(session_.GetNextReadPacket(&packet)); }),
            350 * kMillisecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.PeekNextReadPacket(), 0xFFFF); }), 0);
}

TEST_P(KeepGoing, YesLetsAPacketBeAwaitedForASecond) {
  tagSERIAL_PACKET packet = {};
  EXPECT_EQ(Elapsed([&] { EXPECT_FALSE(session_.GetNextReadPacket(&packet)); }), kSecond);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.PeekNextReadPacket(), 0xFFFF); }), kSecond);
}

TEST_P(KeepGoing, IdentificationEndsWithinATenthOfASecond) {
  for (std::int64_t no_in_ms = 0; no_in_ms < 9000; no_in_ms += 470) {
    tagIPOD_IDENTIFY_RESULT result = IPOD_IDENTIFY_RESULT_IDPS;
    session_.SetIDPSEnable(1);
    SayNoIn(no_in_ms * kMillisecond);
    EXPECT_EQ(session_.Command_IdentifyDeviceLingos(0, &result, nullptr, nullptr), 0);
    EXPECT_LE(world_.now_us(), std::max(no_at_us_, world_.now_us() - 1) + 100 * kMillisecond);
    EXPECT_EQ(result, IPOD_IDENTIFY_RESULT_NONE);
    world_.Advance(kSecond);
    const std::size_t sent = DrainSent().size();
    world_.Advance(kSecond);
    EXPECT_THAT(DrainSent(), IsEmpty()) << sent << " were sent before";
  }
}

TEST_P(KeepGoing, ACopyHasItToo) {
  SayNoIn(0);
  CIpodComm copy(session_);
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(copy.Command_GetCurrentPlayingTrackIndex(&index_), 0); }), 0);
}

INSTANTIATE_TEST_SUITE_P(Under, KeepGoing, ::testing::ValuesIn(kConducts), test::RowName());

// ---- The default conduct's own ------------------------------------------------------------------

class KeepGoingByDefault : public KeepGoing {};

// Silence behind it would make a success of it.
TEST_P(KeepGoingByDefault, UnexpectedPacketAndANoAreNoSuccess) {
  Answer("FF 55 02 00 07 F7", "FF 55 02 00 14 EA", 30 * kMillisecond);
  SayNoIn(300 * kMillisecond);
  unsigned char name[20] = {};
  tagIPOD_WRITE_PARAMS write = {};
  write.command = 0x07;
  tagIPOD_READ_PARAMS read = {};
  read.expected_command = 0x08;
  read.buffer = name;
  read.size = 20;
  read.retries = 3;
  EXPECT_EQ(session_.WriteReadCommand(&write, &read), IPOD_COMM_RETRIES_EXHAUSTED);
}

// The default conduct takes it from the queue though it came before the question.
TEST_P(KeepGoingByDefault, WhatCameBehindALateAnswerIsLeftToTheNextCommand) {
  StopAskingIndexIn(100 * kMillisecond);
  Arrive(std::string(kSeventh) + " " + kThird);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(AskIndex(), 1); }), 100 * kMillisecond);
  EXPECT_EQ(index_, 3U);
}

// Behind a command that is stopped 600 ms before its acknowledgement comes, another is sent as soon
// as that is there; without it two seconds would pass.
class LateAcknowledgement : public KeepGoingByDefault {
 protected:
  template <class Command>
  void Stop(Command command, const char* request, const char* acknowledgement) {
    TurnOnTransactionIds(5);
    Answer(request, acknowledgement, 700 * kMillisecond);
    SayNoIn(100 * kMillisecond);
    EXPECT_EQ((session_.*command)(), 0);
    SayYes();
  }
  void ExpectTheNextWithoutTwoSeconds() {
    Answer("FF 55 05 04 00 1E 00 06 D3", "FF 55 09 04 00 1F 00 06 00 00 00 03 CB");
    const std::int64_t took_us = Elapsed([&] { EXPECT_EQ(AskIndex(), 1); });
    EXPECT_GE(took_us, 600 * kMillisecond);
    EXPECT_LT(took_us, 2 * kSecond);
  }
};

TEST_P(LateAcknowledgement, OfAGeneralCommandIsKnownWithItsIdentifier) {
  Stop(&CIpodComm::Command_EnterRemoteUIMode, "FF 55 05 00 37 00 05 01 BE",
       "FF 55 06 00 02 00 05 00 37 BC");
  ExpectTheNextWithoutTwoSeconds();
}

TEST_P(LateAcknowledgement, OfAGeneralCommandIsKnownWithoutIt) {
  Stop(&CIpodComm::Command_EnterRemoteUIMode, "FF 55 05 00 37 00 05 01 BE",
       "FF 55 04 00 02 00 37 C3");
  ExpectTheNextWithoutTwoSeconds();
}

TEST_P(LateAcknowledgement, OfAnExtendedCommandIsKnownWithItsIdentifier) {
  Stop(&CIpodComm::Command_ResetDBSelection, "FF 55 05 04 00 16 00 05 DC",
       "FF 55 08 04 00 01 00 05 00 00 16 D8");
  ExpectTheNextWithoutTwoSeconds();
}

TEST_P(LateAcknowledgement, OfAnExtendedCommandIsKnownWithoutIt) {
  Stop(&CIpodComm::Command_ResetDBSelection, "FF 55 05 04 00 16 00 05 DC",
       "FF 55 06 04 00 01 00 00 16 DF");
  ExpectTheNextWithoutTwoSeconds();
}

INSTANTIATE_TEST_SUITE_P(Under, LateAcknowledgement, ::testing::Values(kConducts[0]),
                         test::RowName());

// The last packet comes just when the ten seconds are over.
TEST_P(KeepGoingByDefault, OtherPacketsMakeTheNextCommandWaitForTenSecondsAtMost) {
  // A write waits for no read, so that times are exact.
  const tagIPOD_CONDUCT conduct = {20, 0, 1, 50, 16, 512, 1, 0};
  EXPECT_EQ(session_.SetConduct(&conduct), 1);
  StopAskingIndexIn(100 * kMillisecond);
  const test::ForeignAnswers foreign(session_, {1900, 1900, 1900, 1900, 1900, 500});
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(AskIndex(), 0); }), 10 * kSecond + 3 * (kSendingUs + kSecond));
  EXPECT_THAT(DrainSent(), ElementsAre(kAskIndex, kAskIndex, kAskIndex));
}

INSTANTIATE_TEST_SUITE_P(Under, KeepGoingByDefault, ::testing::Values(kConducts[0]),
                         test::RowName());

}  // namespace
