// SPDX-License-Identifier: MIT
// The robust conduct: late, doubled, damaged and foreign answers are told from the exchange's own
// one. Beside each stands what comes of it under the default conduct, which hosts in the field
// know.
#include <cstring>

#include "support/foreign_answers.h"
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::SessionTest;
using ::testing::ElementsAre;
using ::testing::SizeIs;

class RobustExchange : public SessionTest {
 protected:
  void BeRobust() { ASSERT_EQ(session_.SetConduct(&IPOD_CONDUCT_ROBUST), 1); }
  int Count(unsigned char category) {
    count_ = 0xEEEE;
    return session_.Command_GetNumberCategorizedDBRecords(category, &count_);
  }

  unsigned long count_ = 0;
};

// ---- Refusals ---------------------------------------------------------------------------------

// Its first two bytes, as they lie in memory: the status, then the command.
TEST_F(RobustExchange, RefusalIsKeptForTheCaller) {
  BeRobust();
  Answer("FF 55 02 00 07 F7", "FF 55 04 00 02 04 07 EF");
  tagIPOD_WRITE_PARAMS write = {0x07, 0x00, nullptr, 0};
  unsigned char buffer[8] = {};
  tagIPOD_READ_PARAMS read = {};
  read.expected_command = 0x08;
  read.buffer = buffer;
  read.size = sizeof buffer;
  read.retries = 3;
  EXPECT_EQ(session_.WriteReadCommand(&write, &read), IPOD_COMM_NO_ANSWER);
  EXPECT_EQ(read.ack_received, 1);
  unsigned char kept[2] = {};
  std::memcpy(kept, &read.ack, sizeof kept);
  EXPECT_THAT(kept, ElementsAre(4, 7));
  EXPECT_EQ(read.stored, 0U);
}

// ---- Late answers, with identifiers -------------------------------------------------------------

class LateAnswerWithIdentifier : public RobustExchange {
 protected:
  // Tracks are counted; the answer to the first question comes in the middle of the second attempt.
  LateAnswerWithIdentifier() {
    TurnOnTransactionIds(7);
    Answer("FF 55 06 04 00 18 00 07 05 D2", "FF 55 09 04 00 19 00 07 00 00 00 3C 97",
           1100 * kMillisecond);
    Answer("FF 55 06 04 00 18 00 08 05 D1", "FF 55 09 04 00 19 00 08 00 00 00 3C 96",
           400 * kMillisecond);
    Answer("FF 55 06 04 00 18 00 09 02 D3", "FF 55 09 04 00 19 00 09 00 00 00 04 CD",
           500 * kMillisecond);
  }
};

TEST_F(LateAnswerWithIdentifier, IsTheExchangesOwnAndLosesItsIdentifier) {
  BeRobust();
  EXPECT_EQ(Count(5), 1);
  EXPECT_EQ(count_, 60U);
  EXPECT_THAT(DrainSent(), SizeIs(2));
}

TEST_F(LateAnswerWithIdentifier, IsDroppedByTheNextExchange) {
  BeRobust();
  EXPECT_EQ(Count(5), 1);
  EXPECT_EQ(Count(2), 1);  // the second attempt's answer comes first
  EXPECT_EQ(count_, 4U);
}

TEST_F(LateAnswerWithIdentifier, KeepsItsIdentifierAsDataByDefault) {
  EXPECT_EQ(Count(5), 1);
  EXPECT_EQ(count_, 0x00070000U);
}

// ---- Late and foreign answers, without identifiers ----------------------------------------------

class AnswerOfAnotherLingo : public RobustExchange {
 protected:
  // The General lingo's version comes late, before that of the lingo asked for now.
  AnswerOfAnotherLingo() {
    Answer("FF 55 03 00 0F 03 EB", "FF 55 05 00 10 00 01 09 E1 FF 55 05 00 10 03 01 05 E2");
  }
  tagIPOD_VERSION Version() {
    tagIPOD_VERSION version = {};
    EXPECT_EQ(session_.Command_RequestLingoProtocolVersion(3, &version), 1);
    return version;
  }
};

TEST_F(AnswerOfAnotherLingo, IsDropped) {
  BeRobust();
  EXPECT_EQ(Version().minor, 5);
}

TEST_F(AnswerOfAnotherLingo, IsBelievedByDefault) { EXPECT_EQ(Version().minor, 9); }

TEST_F(RobustExchange, AnAcknowledgementOfAnotherCommandIsDropped) {
  BeRobust();
  // ACK for 0018 (late), then for 0016.
  Answer("FF 55 03 04 00 16 E3", "FF 55 06 04 00 01 04 00 18 D9 FF 55 06 04 00 01 00 00 16 DF");
  EXPECT_EQ(session_.Command_ResetDBSelection(), 1);
}

TEST_F(RobustExchange, TheAccessorysOwnBytesComingBackAreNoAnswer) {
  BeRobust();
  Answer("FF 55 04 04 00 18 05 DB", "FF 55 04 04 00 18 05 DB");
  EXPECT_EQ(Count(5), 0);
  EXPECT_EQ(count_, 0xEEEEU);
}

// ---- Damaged answers ----------------------------------------------------------------------------

TEST_F(RobustExchange, AnAnswerCutShortIsAskedAgainAtOnce) {
  BeRobust();
  Answer("FF 55 04 04 00 18 05 DB", "FF 55 06 04 00 19 00 00 3C A1");
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(Count(5), 0); });
  EXPECT_EQ(count_, 0xEEEEU);
  EXPECT_THAT(DrainSent(), SizeIs(3));
  EXPECT_LT(elapsed_us, 500 * kMillisecond);
}

// It is awaited once more, as a skip is not sent twice; then no answer is owed any more.
TEST_F(RobustExchange, ASkipAcknowledgedBehindADamagedAcknowledgementDelaysNothing) {
  BeRobust();
  Answer("FF 55 04 04 00 29 03 CC", "FF 55 04 04 00 01 00 F7 FF 55 06 04 00 01 00 00 29 CC");
  Answer("FF 55 04 04 00 29 02 CD", "FF 55 06 04 00 01 00 00 29 CC");
  EXPECT_EQ(session_.Command_PlayControl(3), 1);
  EXPECT_LT(Elapsed([&] { EXPECT_EQ(session_.Command_PlayControl(2), 1); }), kSecond);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 04 00 29 03 CC", "FF 55 04 04 00 29 02 CD"));
}

class CutWeight : public RobustExchange {
 protected:
  // The user's weight comes without its low byte.
  CutWeight() {
    Answer("FF 55 02 09 83 72", "FF 55 05 09 84 00 03 00 6B");
    Answer("FF 55 03 09 88 03 69", "FF 55 04 09 89 03 00 67");
  }
  unsigned short weight_ = 7;
};

TEST_F(CutWeight, IsAskedAgain) {
  BeRobust();
  EXPECT_EQ(session_.Command_GetUserData(nullptr, &weight_, nullptr), 0);
  EXPECT_EQ(weight_, 7);
}

TEST_F(CutWeight, IsAWeightByDefault) {
  EXPECT_EQ(session_.Command_GetUserData(nullptr, &weight_, nullptr), 1);
  EXPECT_EQ(weight_, 0);
}

TEST_F(RobustExchange, AnAnswerCutShortIsANumberByDefault) {
  Answer("FF 55 04 04 00 18 05 DB", "FF 55 06 04 00 19 00 00 3C A1");
  EXPECT_EQ(Count(5), 1);
  EXPECT_EQ(count_, 0x00003C00U);
}

TEST_F(RobustExchange, ARecordWithoutItsTerminatorIsNoRecord) {
  BeRobust();
  Answer("FF 55 0C 04 00 1A 05 00 00 00 02 00 00 00 01 CE", "FF 55 08 04 00 1B 00 00 00 02 42 95");
  wchar_t name[16] = L"before";
  EXPECT_EQ(session_.Command_RetrieveCategorizedDatabaseRecord(name, 16, 2, 5), 0);
  EXPECT_STREQ(name, L"before");
}

TEST_F(RobustExchange, ARecordOfAnotherIndexIsDropped) {
  BeRobust();
  Answer("FF 55 0C 04 00 1A 05 00 00 00 02 00 00 00 01 CE",
         "FF 55 09 04 00 1B 00 00 00 01 41 00 96 FF 55 09 04 00 1B 00 00 00 02 42 00 94");
  wchar_t name[16] = L"before";
  EXPECT_EQ(session_.Command_RetrieveCategorizedDatabaseRecord(name, 16, 2, 5), 1);
  EXPECT_STREQ(name, L"B");
}

// ---- Refusals and pending acknowledgements ------------------------------------------------------

TEST_F(RobustExchange, ARefusalEndsTheExchangeAtOnce) {
  BeRobust();
  Answer("FF 55 02 00 07 F7", "FF 55 04 00 02 04 07 EF");
  wchar_t name[16] = L"before";
  const auto elapsed_us =
      Elapsed([&] { EXPECT_EQ(session_.Command_RequestIpodName(name, 16), 0); });
  EXPECT_LT(elapsed_us, 200 * kMillisecond);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 02 00 07 F7"));
  EXPECT_STREQ(name, L"before");
}

TEST_F(RobustExchange, ARefusalCostsASecondAndAnEmptyNameByDefault) {
  Answer("FF 55 02 00 07 F7", "FF 55 04 00 02 04 07 EF");
  wchar_t name[16] = L"before";
  const auto elapsed_us =
      Elapsed([&] { EXPECT_EQ(session_.Command_RequestIpodName(name, 16), 1); });
  EXPECT_GE(elapsed_us, kSecond);
  EXPECT_STREQ(name, L"");
}

TEST_F(RobustExchange, APendingAcknowledgementIsWaitedOut) {
  BeRobust();
  // ACK: status 6, command 37, 500 ms; then the final one.
  Answer("FF 55 03 00 37 01 C5", "FF 55 08 00 02 06 37 00 00 01 F4 C4");
  ipod_.SendAt(world_.now_us() + 500 * kMillisecond, test::Hex("FF 55 04 00 02 00 37 C3"));
  EXPECT_EQ(session_.Command_EnterRemoteUIMode(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 00 37 01 C5"));
}

TEST_F(RobustExchange, TheTimeThatAPendingAcknowledgementAsksForIsGiven) {
  BeRobust();
  // ACK: status 6, command 37, 5000 ms; then the final one.
  Answer("FF 55 03 00 37 01 C5", "FF 55 08 00 02 06 37 00 00 13 88 1E");
  ipod_.SendAt(world_.now_us() + 5000 * kMillisecond, test::Hex("FF 55 04 00 02 00 37 C3"));
  EXPECT_EQ(session_.Command_EnterRemoteUIMode(), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 03 00 37 01 C5"));
}

TEST_F(RobustExchange, APendingAcknowledgementIsNotWaitedOutForEver) {
  BeRobust();
  // Each attempt: status 6, command 0016, four billion ms.
  Answer("FF 55 03 04 00 16 E3", "FF 55 0A 04 00 01 06 00 16 FF FF FF FF D9");
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(session_.Command_ResetDBSelection(), 0); });
  EXPECT_GE(elapsed_us, 30 * kSecond);
  EXPECT_LT(elapsed_us, 31 * kSecond);
}

// ---- What else arrives meanwhile ----------------------------------------------------------------

TEST_F(RobustExchange, AQuestionOfTheIpodIsAnsweredMeanwhile) {
  BeRobust();
  Answer("FF 55 04 04 00 18 05 DB", "FF 55 02 09 01 F4 FF 55 07 04 00 19 00 00 00 3C A0");
  EXPECT_EQ(Count(5), 1);
  EXPECT_EQ(count_, 60U);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 04 00 18 05 DB", "FF 55 04 09 02 01 01 EF"));
}

TEST_F(RobustExchange, AQuestionUnderTheExchangesOwnIdentifierIsAnswered) {
  BeRobust();
  TurnOnTransactionIds(7);
  Answer("FF 55 04 09 83 00 07 69", "FF 55 04 09 01 00 07 EB FF 55 07 09 84 00 07 00 03 01 61");
  unsigned short caps = 0;
  EXPECT_EQ(session_.Command_SportsGetIpodCaps(&caps, nullptr), 1);
  EXPECT_EQ(caps, 3);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 09 83 00 07 69", "FF 55 06 09 02 00 08 01 01 E5"));
}

TEST_F(RobustExchange, AnAnswerStillArrivingIsNotGivenUp) {
  BeRobust();
  // A record of 200 bytes at a byte per 20 ms takes four seconds.
  Answer("FF 55 04 04 00 18 05 DB", "");
  const test::Bytes answer = test::Hex("FF 55 07 04 00 19 00 00 00 3C A0");
  std::int64_t at_us = world_.now_us() + 300 * kMillisecond;
  for (const std::uint8_t byte : answer) {
    ipod_.SendAt(at_us, {byte});
    at_us += 200 * kMillisecond;
  }
  EXPECT_EQ(Count(5), 1);
  EXPECT_EQ(count_, 60U);
  EXPECT_THAT(DrainSent(), SizeIs(1));
}

TEST_F(RobustExchange, ALineThatIsNeverSilentEndsAnAttemptAfterTenSeconds) {
  BeRobust();
  for (int i = 0; i < 400; ++i) ipod_.SendAt(world_.now_us() + i * 100 * kMillisecond, {0x00});
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(Count(5), 0); });
  EXPECT_GE(elapsed_us, 30 * kSecond);
  EXPECT_LT(elapsed_us, 35 * kSecond);
}

// Under the fast conduct a write waits for no read, so that times are exact. Each attempt begins
// with the pause behind the sync byte.
class ExactTimes : public SessionTest {
 protected:
  ExactTimes() { EXPECT_EQ(session_.SetConduct(&IPOD_CONDUCT_FAST), 1); }

  std::int64_t AskingInVainMs() {
    return Elapsed([&] { EXPECT_EQ(session_.Command_GetShuffle(nullptr), 0); }) / kMillisecond;
  }
};

TEST_F(ExactTimes, OfASilentIpodAreASecondForEachAttempt) {
  EXPECT_EQ(AskingInVainMs(), 3 * (20 + 1000));
}

// It is noticed at the end of its slice of 50 ms, and the second begins anew.
TEST_F(ExactTimes, OfALineAreASecondFromItsLastByteOn) {
  ipod_.SendAt(world_.now_us() + 345 * kMillisecond, {0x00});
  EXPECT_EQ(AskingInVainMs(), 20 + 350 + 1000 + 2 * (20 + 1000));
}

TEST_F(ExactTimes, OfAnAttemptAreLongerByWhatTheIpodAsksFor) {
  TurnOnTransactionIds(7);
  // ACK: status 6, command 002C, 25 ms.
  CIpodCommPeer::Responses(session_).Append(
      test::Packet("FF 55 0C 04 00 01 00 07 06 00 2C 00 00 00 19 9D"));
  EXPECT_EQ(AskingInVainMs(), 20 + 1025 + 2 * (20 + 1000));
}

TEST_F(ExactTimes, OfALineThatIsNeverSilentAreTenSecondsForEachAttempt) {
  for (int i = 0; i < 1000; ++i) ipod_.SendAt(world_.now_us() + i * 40 * kMillisecond, {0x00});
  EXPECT_EQ(AskingInVainMs(), 3 * (20 + 10000));
}

// The last one comes just when the ten seconds are over.
TEST_F(ExactTimes, OfAnAttemptAmongForeignAnswersAreTenSeconds) {
  std::vector<DWORD> pauses_ms(11, 900);
  pauses_ms.front() += 20;
  pauses_ms.push_back(100);
  const test::ForeignAnswers foreign(session_, pauses_ms);
  unsigned long count = 0;
  EXPECT_EQ(
      Elapsed([&] { EXPECT_EQ(session_.Command_GetNumberCategorizedDBRecords(5, &count), 0); }),
      (20 + 10000 + 2 * (20 + 1000)) * kMillisecond);
}

TEST_F(ExactTimes, OfWhatAnEarlierQuestionIsOwedAreTenSecondsAmongForeignAnswers) {
  EXPECT_EQ(session_.Command_GetCurrentPlayingTrackIndex(nullptr), 0);
  const test::ForeignAnswers foreign(session_, {1900, 1900, 1900, 1900, 1900, 500});
  EXPECT_EQ(Elapsed([&] { EXPECT_EQ(session_.Command_GetCurrentPlayingTrackIndex(nullptr), 0); }),
            (10000 + 3 * (20 + 1000)) * kMillisecond);
}

// Answers to nothing come all the time: the line is not awaited for longer than ten seconds before
// another question is asked whose answer would look like one that is owed, nor is its answer.
TEST_F(RobustExchange, AnIpodThatSaysOtherThingsAllTheTimeEndsAnAttemptAfterTenSeconds) {
  BeRobust();
  EXPECT_EQ(Count(5), 0);
  DrainSent();
  for (int i = 0; i < 120; ++i) {
    ipod_.SendAt(world_.now_us() + i * 500 * kMillisecond, test::Hex("FF 55 04 04 00 2D 01 CA"));
  }
  const auto elapsed_us = Elapsed([&] { EXPECT_EQ(Count(2), 0); });
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 04 00 18 02 DE", "FF 55 04 04 00 18 02 DE",
                                       "FF 55 04 04 00 18 02 DE"));
  EXPECT_GE(elapsed_us, 40 * kSecond);
  EXPECT_LT(elapsed_us, 43 * kSecond);
}

// The notification thread meets it; one that came among the answers is not answered a second time.
TEST_F(RobustExchange, ARequestThatIsNotForTheWaitingCommandIsPassedOver) {
  BeRobust();
  Answer("FF 55 04 04 00 18 05 DB", "FF 55 07 04 00 19 00 00 00 3C A0");
  CIpodCommPeer::Responses(session_).Append(test::Packet("FF 55 03 00 27 00 D6"));
  EXPECT_EQ(Count(5), 1);
  EXPECT_THAT(DrainSent(), ElementsAre("FF 55 04 04 00 18 05 DB"));
}

// ---- Choosing a conduct -------------------------------------------------------------------------

bool operator==(const tagIPOD_CONDUCT& a, const tagIPOD_CONDUCT& b) {
  return a.sync_pause_ms == b.sync_pause_ms && a.read_pause_ms == b.read_pause_ms &&
         a.empty_read_pause_ms == b.empty_read_pause_ms &&
         a.failed_read_pause_ms == b.failed_read_pause_ms &&
         a.quiet_read_pause_ms == b.quiet_read_pause_ms && a.bytes_per_read == b.bytes_per_read &&
         a.sync_pause_until_answered == b.sync_pause_until_answered && a.robust == b.robust;
}

TEST_F(RobustExchange, ASessionBeginsWithTheFieldsConduct) {
  tagIPOD_CONDUCT conduct = {};
  EXPECT_EQ(session_.GetConduct(&conduct), 1);
  EXPECT_TRUE(conduct == IPOD_CONDUCT_FIELD);
}

TEST_F(RobustExchange, ASenselessConductIsRefusedAndChangesNothing) {
  BeRobust();
  const auto refused = [&](auto change) {
    tagIPOD_CONDUCT conduct = IPOD_CONDUCT_FAST;
    change(conduct);
    EXPECT_EQ(session_.SetConduct(&conduct), 0);
    EXPECT_EQ(session_.GetConduct(&conduct), 1);
    EXPECT_TRUE(conduct == IPOD_CONDUCT_ROBUST);
  };
  refused([](tagIPOD_CONDUCT& conduct) { conduct.sync_pause_ms = 10001; });
  refused([](tagIPOD_CONDUCT& conduct) { conduct.read_pause_ms = 10001; });
  refused([](tagIPOD_CONDUCT& conduct) { conduct.empty_read_pause_ms = 10001; });
  refused([](tagIPOD_CONDUCT& conduct) { conduct.failed_read_pause_ms = 10001; });
  refused([](tagIPOD_CONDUCT& conduct) { conduct.quiet_read_pause_ms = 10001; });
  refused([](tagIPOD_CONDUCT& conduct) { conduct.empty_read_pause_ms = 0; });
  refused([](tagIPOD_CONDUCT& conduct) { conduct.failed_read_pause_ms = 0; });
  refused([](tagIPOD_CONDUCT& conduct) { conduct.quiet_read_pause_ms = 0; });
  refused([](tagIPOD_CONDUCT& conduct) { conduct.bytes_per_read = 0; });
  refused([](tagIPOD_CONDUCT& conduct) { conduct.bytes_per_read = 1025; });
  refused([](tagIPOD_CONDUCT& conduct) { conduct.sync_pause_until_answered = 2; });
  refused([](tagIPOD_CONDUCT& conduct) { conduct.robust = -1; });
  EXPECT_EQ(session_.SetConduct(nullptr), 0);
  EXPECT_EQ(session_.GetConduct(nullptr), 0);
}

TEST_F(RobustExchange, TheShortestPausesAreAccepted) {
  const tagIPOD_CONDUCT shortest = {0, 0, 1, 1, 1, 1, 0, 0};
  EXPECT_EQ(session_.SetConduct(&shortest), 1);
}

TEST_F(RobustExchange, TheLongestPausesAreAccepted) {
  const tagIPOD_CONDUCT longest = {10000, 10000, 10000, 10000, 10000, 1024, 1, 1};
  EXPECT_EQ(session_.SetConduct(&longest), 1);
}

TEST_F(RobustExchange, AConductOutlivesClosingAndIsCopied) {
  BeRobust();
  session_.Close();
  const CIpodComm copy(session_);
  tagIPOD_CONDUCT conduct = {};
  EXPECT_EQ(CIpodComm(copy).GetConduct(&conduct), 1);
  EXPECT_TRUE(conduct == IPOD_CONDUCT_ROBUST);
}

}  // namespace
