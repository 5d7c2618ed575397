// SPDX-License-Identifier: MIT
// What is known of answers: which request may be sent twice, whose answer repeats what of it, and
// how the frames that come during an exchange are judged.
#include "session/answer_rules.h"

#include <algorithm>

#include "session/heap_array.h"
#include "session/ipod_requests.h"
#include "session/own_answers.h"
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using ipodcomm::AnswerVerdict;
using ipodcomm::FrameBytes;
using ipodcomm::OwnAnswers;
using test::Bytes;

ipodcomm::ReceivedFrame Parse(const Bytes& frame) {
  return ipodcomm::ParseFrame(FrameBytes(frame.data(), static_cast<std::uint32_t>(frame.size())));
}

// ---- Repeating

bool MayBeRepeated(std::uint8_t lingo, std::uint16_t command, const Bytes& data) {
  return ipodcomm::MayBeRepeated(
      {command, lingo, data.data(), static_cast<std::uint32_t>(data.size())});
}

TEST(Repeating, ChangesNothingButForTogglesAndSkips) {
  const Bytes toggles_and_skips = {0x01, 0x03, 0x04, 0x08, 0x09};
  for (unsigned code = 0; code <= 0xFF; ++code) {
    const auto byte = static_cast<std::uint8_t>(code);
    const bool once = std::count(toggles_and_skips.begin(), toggles_and_skips.end(), byte) != 0;
    EXPECT_EQ(MayBeRepeated(0x04, 0x0029, {byte}), !once) << code;
  }
}

TEST(Repeating, APlayControlWithoutACodeChangesNothing) {
  EXPECT_TRUE(MayBeRepeated(0x04, 0x0029, {}));
}

TEST(Repeating, TheSameBytesUnderAnotherLingoOrCommandChangeNothing) {
  EXPECT_TRUE(MayBeRepeated(0x03, 0x0029, {0x01}));
  EXPECT_TRUE(MayBeRepeated(0x04, 0x002A, {0x01}));
}

// ---- What an answer repeats of its request: of records, the index of the first one

bool RecordsRepeat(const Bytes& request_data, const char* answer) {
  const Bytes frame = test::Hex(answer);
  return ipodcomm::Repeats(
      *ipodcomm::FindAnswerRule(0x04, 0x001A),
      {0x001A, 0x04, request_data.data(), static_cast<std::uint32_t>(request_data.size())},
      Parse(frame));
}

TEST(AnAnswer, RepeatsWhatWasAskedFor) {
  EXPECT_TRUE(RecordsRepeat({5, 0, 0, 0, 7}, "FF 55 09 04 00 1B 00 00 00 07 41 00 90"));
  EXPECT_FALSE(RecordsRepeat({5, 0, 0, 0, 6}, "FF 55 09 04 00 1B 00 00 00 07 41 00 90"));
}

// Its checksum, DB, is none of its data.
TEST(AnAnswer, ThatIsTooShortRepeatsNothing) {
  EXPECT_FALSE(RecordsRepeat({5, 0, 0, 0, 0xDB}, "FF 55 06 04 00 1B 00 00 00 DB"));
}

TEST(AnAnswer, RepeatsNothingOfARequestThatIsTooShort) {
  EXPECT_FALSE(RecordsRepeat({5, 0, 0, 0}, "FF 55 09 04 00 1B 00 00 00 07 41 00 90"));
}

bool IsWholeRecord(const Bytes& data) {
  return ipodcomm::IsWhole(*ipodcomm::FindAnswerRule(0x04, 0x001A),
                           {0x04, 0x001B, 0, static_cast<std::uint32_t>(data.size()), data.data()});
}

TEST(AnAnswer, WithARecordIsWholeWithItsIndexAndTheEndOfItsName) {
  EXPECT_TRUE(IsWholeRecord({0, 0, 0, 7, 0}));
  EXPECT_TRUE(IsWholeRecord({0, 0, 0, 7, 'A', 0}));
  EXPECT_FALSE(IsWholeRecord({0, 0, 0, 0}));
  EXPECT_FALSE(IsWholeRecord({0, 0, 0, 7, 'A'}));
}

// ---- Each request, and what makes its answer whole and its own

struct RuleRow {
  const char* name;
  std::uint8_t lingo;
  std::uint16_t request;
  std::uint16_t answer;
  std::uint32_t least_bytes;
  std::uint32_t repeated_bytes;  // from the beginning of the request's data on
  std::uint32_t repeated_at;     // in those of the answer
  bool ends_with_text;
};

class Rule : public ::testing::TestWithParam<RuleRow> {
 protected:
  const ipodcomm::AnswerRule& rule() const {
    return *ipodcomm::FindAnswerRule(GetParam().lingo, GetParam().request);
  }
  // An answer that repeats the request as it must, and nothing else of it.
  Bytes AnswerOf(std::uint32_t length) const {
    Bytes data(length);
    for (std::uint32_t i = 0; i < length; ++i) data[i] = static_cast<std::uint8_t>(0xA0 + i);
    for (std::uint32_t i = 0; i < GetParam().repeated_bytes && GetParam().repeated_at + i < length;
         ++i) {
      data[GetParam().repeated_at + i] = kRequest[i];
    }
    if (GetParam().ends_with_text && length != 0) data.back() = 0;
    return data;
  }
  bool IsWhole(const Bytes& data) const { return ipodcomm::IsWhole(rule(), FrameOf(data)); }
  bool Repeats(const Bytes& data) const {
    return ipodcomm::Repeats(
        rule(), {GetParam().request, GetParam().lingo, kRequest, sizeof kRequest}, FrameOf(data));
  }

 private:
  static constexpr unsigned char kRequest[] = {0x11, 0x12, 0x13, 0x14, 0x15, 0x16};

  static ipodcomm::ReceivedFrame FrameOf(const Bytes& data) {
    return {GetParam().lingo, GetParam().answer, 0, static_cast<std::uint32_t>(data.size()),
            data.data()};
  }
};

TEST_P(Rule, NamesTheAnswer) { EXPECT_EQ(rule().answer, GetParam().answer); }

TEST_P(Rule, HasAnAnswerWholeFromItsLeastBytesOn) {
  EXPECT_TRUE(IsWhole(AnswerOf(GetParam().least_bytes)));
  EXPECT_TRUE(IsWhole(AnswerOf(GetParam().least_bytes + 1)));
  EXPECT_FALSE(IsWhole(AnswerOf(GetParam().least_bytes - 1)));
}

TEST_P(Rule, HasATextEndedWhereThereIsOne) {
  Bytes data = AnswerOf(GetParam().least_bytes + 1);
  data.back() = 'x';
  EXPECT_EQ(IsWhole(data), !GetParam().ends_with_text);
}

TEST_P(Rule, TakesAnAnswerThatRepeatsTheRequest) {
  EXPECT_TRUE(Repeats(AnswerOf(GetParam().least_bytes)));
}

TEST_P(Rule, TakesNoAnswerWithAnyOfTheRepeatedBytesWrong) {
  for (std::uint32_t i = 0; i < GetParam().repeated_bytes; ++i) {
    Bytes data = AnswerOf(GetParam().least_bytes);
    data[GetParam().repeated_at + i] ^= 0x40;
    EXPECT_FALSE(Repeats(data)) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Of, Rule,
    ::testing::Values(RuleRow{"IpodName", 0x00, 0x07, 0x08, 1, 0, 0, true},
                      RuleRow{"IpodModelNumber", 0x00, 0x0D, 0x0E, 5, 0, 0, true},
                      RuleRow{"LingoProtocolVersion", 0x00, 0x0F, 0x10, 3, 1, 0, false},
                      RuleRow{"MaxPayloadSize", 0x00, 0x11, 0x12, 2, 0, 0, false},
                      RuleRow{"IpodPreferences", 0x00, 0x29, 0x2A, 2, 1, 0, false},
                      RuleRow{"SetFidTokenValues", 0x00, 0x39, 0x3A, 1, 0, 0, false},
                      RuleRow{"EndIdps", 0x00, 0x3B, 0x3C, 1, 0, 0, false},
                      RuleRow{"IpodOptionsForLingo", 0x00, 0x4B, 0x4C, 9, 1, 0, false},
                      RuleRow{"SupportedEventNotification", 0x00, 0x4F, 0x51, 8, 0, 0, false},
                      RuleRow{"PlayingTrackInfo", 0x03, 0x12, 0x13, 1, 1, 0, false},
                      RuleRow{"NumberOfRecords", 0x04, 0x0018, 0x0019, 4, 0, 0, false},
                      RuleRow{"PlayStatus", 0x04, 0x001C, 0x001D, 9, 0, 0, false},
                      RuleRow{"PlayingTrackIndex", 0x04, 0x001E, 0x001F, 4, 0, 0, false},
                      RuleRow{"PlayingTrackTitle", 0x04, 0x0020, 0x0021, 1, 0, 0, true},
                      RuleRow{"PlayingTrackArtist", 0x04, 0x0022, 0x0023, 1, 0, 0, true},
                      RuleRow{"PlayingTrackAlbum", 0x04, 0x0024, 0x0025, 1, 0, 0, true},
                      RuleRow{"Shuffle", 0x04, 0x002C, 0x002D, 1, 0, 0, false},
                      RuleRow{"DbTrackInfo", 0x04, 0x0040, 0x0041, 9, 4, 0, false},
                      RuleRow{"SportsCaps", 0x09, 0x83, 0x84, 3, 0, 0, false},
                      RuleRow{"UserData", 0x09, 0x88, 0x89, 2, 1, 0, false},
                      RuleRow{"StorageCaps", 0x0C, 0x01, 0x02, 22, 0, 0, false},
                      RuleRow{"FreeSpace", 0x0C, 0x10, 0x11, 8, 0, 0, false},
                      RuleRow{"FeatureFile", 0x0C, 0x12, 0x04, 1, 0, 0, false}),
    test::RowName());

TEST(OnlyTheWeight, OfTheUsersDataTakesThreeBytes) {
  const ipodcomm::AnswerRule& rule = *ipodcomm::FindAnswerRule(0x09, 0x88);
  const unsigned char weight[] = {0x03, 0x02, 0x58};
  const unsigned char gender[] = {0x02, 0x01};
  EXPECT_TRUE(ipodcomm::IsWhole(rule, {0x09, 0x89, 0, 3, weight}));
  EXPECT_FALSE(ipodcomm::IsWhole(rule, {0x09, 0x89, 0, 2, weight}));
  EXPECT_TRUE(ipodcomm::IsWhole(rule, {0x09, 0x89, 0, 2, gender}));
}

TEST(OnlyTheCapabilities, OfAPlayingTrackTakeFiveBytes) {
  const ipodcomm::AnswerRule& rule = *ipodcomm::FindAnswerRule(0x03, 0x12);
  const unsigned char capabilities[] = {0x00, 0x00, 0x00, 0x00, 0x01};
  const unsigned char title[] = {0x01, 0x00, 0x00, 0x00};
  EXPECT_TRUE(ipodcomm::IsWhole(rule, {0x03, 0x13, 0, 5, capabilities}));
  EXPECT_FALSE(ipodcomm::IsWhole(rule, {0x03, 0x13, 0, 4, capabilities}));
  EXPECT_TRUE(ipodcomm::IsWhole(rule, {0x03, 0x13, 0, 4, title}));
}

TEST(AnAnswer, OfNoCommandAnswersNoRequest) {
  for (const int lingo : {0x00, 0x04}) {
    EXPECT_EQ(ipodcomm::FindRequestAnsweredBy(static_cast<std::uint8_t>(lingo), 0), nullptr);
  }
  EXPECT_EQ(ipodcomm::FindRequestAnsweredBy(0x00, 0xFFFF), nullptr);
  EXPECT_EQ(ipodcomm::FindRequestAnsweredBy(0x00, 0x0028)->command, 0x0027);
}

// What acknowledges in each lingo, and nothing beside it.
TEST(AnAcknowledgement, HasANumberInEachLingo) {
  const std::vector<std::pair<std::uint8_t, std::uint16_t>> acks = {
      {0x00, 0x02}, {0x02, 0x02}, {0x03, 0x00}, {0x04, 0x0001}, {0x09, 0x80}, {0x0C, 0x00}};
  const unsigned char data[] = {0x04, 0x00, 0x18};
  for (const auto& [lingo, ack] : acks) {
    for (std::uint16_t command = 0; command <= 0x100; ++command) {
      EXPECT_EQ(ipodcomm::IsAck({lingo, command, 0, 3, data}), command == ack)
          << int{lingo} << " " << command;
    }
    ipodcomm::Ack read = {};
    EXPECT_TRUE(ipodcomm::ReadAck({lingo, ack, 0, 3, data}, &read));
    EXPECT_EQ(read.status, 4);
    EXPECT_EQ(read.command, lingo == 0x04 ? 0x0018 : 0x00);
    EXPECT_EQ(ipodcomm::ReadAck({lingo, ack, 0, 2, data}, &read), lingo != 0x04);
    EXPECT_FALSE(ipodcomm::ReadAck({lingo, ack, 0, 1, data}, &read));
  }
}

TEST(APendingAcknowledgement, AsksForATimeThatIsWhole) {
  const unsigned char data[] = {0x06, 0x00, 0x18, 0x00, 0x00, 0x01, 0xF4};
  EXPECT_EQ(ipodcomm::PendingMs({0x04, 0x0001, 0, 7, data}), 500U);
  EXPECT_EQ(ipodcomm::PendingMs({0x04, 0x0001, 0, 6, data}), 0U);
  EXPECT_EQ(ipodcomm::PendingMs({0x00, 0x02, 0, 6, data + 1}), 500U);
  EXPECT_EQ(ipodcomm::PendingMs({0x00, 0x02, 0, 5, data + 1}), 0U);
}

TEST(Identifiers, NoneIsContainedInNone) {
  ipodcomm::SentIds sent = {};
  EXPECT_FALSE(sent.Contain(0));
  sent.Add(0xFFFF);
  sent.Add(0x0001);
  EXPECT_TRUE(sent.Contain(0x0000));
  EXPECT_FALSE(sent.Contain(0x0002));
}

TEST(HeapArrays, OfMoreThanThereIsAreNotAskedFor) {
  test::World world;
  world.Record({"LocalAlloc"});
  constexpr auto kAll = static_cast<std::size_t>(-1);
  EXPECT_EQ(ipodcomm::HeapArray<wchar_t>(kAll).data(), nullptr);
  EXPECT_EQ(ipodcomm::HeapArray<wchar_t>(kAll / sizeof(wchar_t) + 1).data(), nullptr);
  EXPECT_THAT(world.DrainRecord(), ::testing::IsEmpty());
  world.FailOnce("LocalAlloc", 1, 8);
  EXPECT_EQ(ipodcomm::HeapArray<char>(kAll).data(), nullptr);
  EXPECT_EQ(world.call_count("LocalAlloc"), 1U);
}

// ---- Judging: tracks are counted, 04 00 18 05, and 04 00 19 is expected

constexpr char kSixty[] = "FF 55 07 04 00 19 00 00 00 3C A0";
constexpr char kCutShort[] = "FF 55 04 04 00 19 00 DF";
constexpr char kRefused[] = "FF 55 06 04 00 01 04 00 18 D9";

class Judging : public ::testing::Test {
 protected:
  explicit Judging(std::uint16_t expected = 0x0019) : answers_(request_, expected) {
    answers_.AddAttempt();
  }
  AnswerVerdict Judge(const char* frame) {
    bytes_ = test::Hex(frame);
    ipodcomm::ReceivedFrame parsed = Parse(bytes_);
    return answers_.Judge(&parsed);
  }

  const Bytes data_ = {0x05};
  const tagIPOD_WRITE_PARAMS request_ = {0x0018, 0x04, data_.data(), 1};
  OwnAnswers answers_;
  Bytes bytes_;
};

TEST_F(Judging, TheRequestItselfComesBackOnALineThatIsWiredToItself) {
  EXPECT_EQ(Judge("FF 55 04 04 00 18 05 DB"), AnswerVerdict::kForeign);
  EXPECT_EQ(answers_.noted().result, IPOD_EXCHANGE_ECHOED);
}

TEST_F(Judging, ARequestWithOtherDataIsNotTheRequestItself) {
  EXPECT_EQ(Judge("FF 55 04 04 00 18 02 DE"), AnswerVerdict::kForeign);
  EXPECT_EQ(Judge("FF 55 05 04 00 18 05 05 D5"), AnswerVerdict::kForeign);
  EXPECT_EQ(answers_.noted().result, IPOD_EXCHANGE_UNANSWERED);
}

// Though the request carried none.
TEST_F(Judging, AnAckWithAnIdentifierCountsByTheCommandThatItNames) {
  EXPECT_EQ(Judge("FF 55 08 04 00 01 00 07 04 00 18 D0"), AnswerVerdict::kRefusal);
  EXPECT_EQ(answers_.noted().status, 4);
  EXPECT_EQ(answers_.noted().answer_carried_id, 1);
  EXPECT_EQ(Judge("FF 55 08 04 00 01 00 07 04 00 1A CE"), AnswerVerdict::kForeign);
}

// Behind 04 00 18 the two bytes 00 16 are no command, though they are one behind an identifier.
TEST_F(Judging, ARefusalWithTwoBytesMoreCountsByTheCommandThatItNames) {
  EXPECT_EQ(Judge("FF 55 08 04 00 01 04 00 18 00 16 C1"), AnswerVerdict::kRefusal);
  EXPECT_EQ(answers_.noted().status, 4);
  EXPECT_EQ(answers_.noted().answer_carried_id, 0);
}

TEST_F(Judging, AnotherCommandWithTheRequestsDataIsNotTheRequestItself) {
  EXPECT_EQ(Judge("FF 55 04 04 00 2D 05 C6"), AnswerVerdict::kForeign);
  EXPECT_EQ(Judge("FF 55 03 00 18 05 E0"), AnswerVerdict::kForeign);
  EXPECT_EQ(answers_.noted().result, IPOD_EXCHANGE_UNANSWERED);
}

TEST_F(Judging, AnAckThatAcceptsTheRequestIsNotItsAnswer) {
  EXPECT_EQ(Judge("FF 55 06 04 00 01 00 00 18 DD"), AnswerVerdict::kForeign);
  EXPECT_EQ(answers_.noted().result, IPOD_EXCHANGE_UNANSWERED);
}

TEST_F(Judging, WhatIsDamagedDoesNotCountBesideAnAnswer) {
  EXPECT_EQ(Judge(kSixty), AnswerVerdict::kAnswer);
  EXPECT_EQ(Judge(kCutShort), AnswerVerdict::kDamaged);
  EXPECT_EQ(answers_.noted().result, IPOD_EXCHANGE_ANSWERED);
}

TEST_F(Judging, WhatIsDamagedDoesNotCountBesideARefusal) {
  EXPECT_EQ(Judge(kRefused), AnswerVerdict::kRefusal);
  EXPECT_EQ(Judge(kCutShort), AnswerVerdict::kDamaged);
  EXPECT_EQ(answers_.noted().result, IPOD_EXCHANGE_REFUSED);
  EXPECT_EQ(answers_.noted().status, 4);
}

TEST_F(Judging, AnAnswerHasNoStatus) {
  EXPECT_EQ(Judge(kRefused), AnswerVerdict::kRefusal);
  EXPECT_EQ(answers_.noted().status, 4);
  EXPECT_EQ(Judge(kSixty), AnswerVerdict::kAnswer);
  EXPECT_EQ(answers_.noted().status, 0);
  EXPECT_EQ(answers_.noted().answer_carried_id, 0);
}

TEST_F(Judging, OfAnAnswerTheFirstBytesAreKept) {
  EXPECT_EQ(
      Judge("FF 55 17 04 00 19 00 00 00 3C 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13 00"),
      AnswerVerdict::kAnswer);
  const tagIPOD_EXCHANGE noted = answers_.noted();
  ASSERT_EQ(noted.data_bytes, sizeof noted.data);
  const Bytes sent = test::Hex("00 00 00 3C 04 05 06 07 08 09 0A 0B 0C 0D 0E 0F 10 11 12 13");
  EXPECT_TRUE(std::equal(noted.data, noted.data + sizeof noted.data, sent.begin()));
}

class JudgingAHostsOwnAnswer : public Judging {
 protected:
  JudgingAHostsOwnAnswer() : Judging(0x0042) {}
};

TEST_F(JudgingAHostsOwnAnswer, ItIsTakenWhateverItHolds) {
  EXPECT_EQ(Judge("FF 55 03 04 00 42 B7"), AnswerVerdict::kAnswer);
  EXPECT_EQ(answers_.noted().result, IPOD_EXCHANGE_ANSWERED);
}

// The mode is set, 00 37 01 under the identifiers 5 and 6, and the ACK 00 02 is expected.
class JudgingUnderIdentifiers : public ::testing::Test {
 protected:
  JudgingUnderIdentifiers() {
    answers_.AddAttempt(5);
    answers_.AddAttempt(6);
  }
  AnswerVerdict Judge(const char* frame) {
    bytes_ = test::Hex(frame);
    ipodcomm::ReceivedFrame parsed = Parse(bytes_);
    return answers_.Judge(&parsed);
  }

  const Bytes data_ = {0x01};
  const tagIPOD_WRITE_PARAMS request_ = {0x37, 0x00, data_.data(), 1};
  OwnAnswers answers_{request_, 0x02};
  Bytes bytes_;
};

TEST_F(JudgingUnderIdentifiers, AnAckOfEitherAttemptIsTheAnswer) {
  EXPECT_EQ(Judge("FF 55 06 00 02 00 05 00 37 BC"), AnswerVerdict::kAnswer);
  EXPECT_EQ(answers_.noted().answer_carried_id, 1);
  EXPECT_EQ(Judge("FF 55 06 00 02 00 06 00 37 BB"), AnswerVerdict::kAnswer);
  EXPECT_EQ(Judge("FF 55 06 00 02 00 04 00 37 BD"), AnswerVerdict::kForeign);
  EXPECT_EQ(Judge("FF 55 06 00 02 00 07 00 37 BA"), AnswerVerdict::kForeign);
}

TEST_F(JudgingUnderIdentifiers, AnAckOfJustStatusAndCommandCountsByTheCommand) {
  EXPECT_EQ(Judge("FF 55 04 00 02 00 37 C3"), AnswerVerdict::kAnswer);
  EXPECT_EQ(answers_.noted().answer_carried_id, 0);
  EXPECT_EQ(Judge("FF 55 04 00 02 00 38 C2"), AnswerVerdict::kForeign);
  EXPECT_EQ(Judge("FF 55 05 00 02 00 37 00 C2"), AnswerVerdict::kForeign);  // identifier 0037
}

TEST_F(JudgingUnderIdentifiers, AnAnswerWithoutRoomForAnIdentifierIsForeign) {
  EXPECT_EQ(Judge("FF 55 02 00 02 FC"), AnswerVerdict::kForeign);
  EXPECT_EQ(Judge("FF 55 03 00 02 00 FB"), AnswerVerdict::kForeign);
  EXPECT_EQ(answers_.noted().result, IPOD_EXCHANGE_UNANSWERED);
}

// ---- Answers that are owed

ipodcomm::EarlierQuestions AskedOnce(const tagIPOD_WRITE_PARAMS& question) {
  ipodcomm::EarlierQuestions earlier;
  earlier.Note(question, 1);
  return earlier;
}

class OwedAnswer : public ::testing::Test {
 protected:
  void Arrive(const char* frame) {
    const Bytes bytes = test::Hex(frame);
    earlier_.NoteArrival(Parse(bytes));
  }

  const Bytes tracks_ = {0x05};
  const Bytes artists_ = {0x02};
  const tagIPOD_WRITE_PARAMS count_tracks_ = {0x0018, 0x04, tracks_.data(), 1};
  const tagIPOD_WRITE_PARAMS count_artists_ = {0x0018, 0x04, artists_.data(), 1};
  ipodcomm::EarlierQuestions earlier_ = AskedOnce(count_tracks_);
};

TEST_F(OwedAnswer, IsStillOwedWhileItsCommandIsPending) {
  Arrive("FF 55 0A 04 00 01 06 00 18 00 00 03 E8 E8");
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 2000U);
}

TEST_F(OwedAnswer, IsOwedNoLongerOnceItsCommandIsRefused) {
  Arrive(kRefused);
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 20U);
}

TEST_F(OwedAnswer, IsNotMoreThanOneAfterItHasCome) {
  Arrive(kSixty);
  Arrive(kSixty);
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 20U);
}

TEST_F(OwedAnswer, IsStillOwedAfterTheAnswerOfAnotherLingoUnderItsNumber) {
  Arrive("FF 55 03 00 19 00 E4");
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 2000U);
}

TEST_F(OwedAnswer, IsStillOwedAfterTheRefusalOfAnotherCommand) {
  Arrive("FF 55 06 04 00 01 04 00 1A D7");
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 2000U);
}

// Without data, and the answer is told from no other.
constexpr tagIPOD_WRITE_PARAMS kAskShuffle = {0x002C, 0x04, nullptr, 0};
// Answered by an ACK alone.
constexpr unsigned char kFirstRecord[] = {0x05, 0x00, 0x00, 0x00, 0x01};
constexpr unsigned char kSecondRecord[] = {0x05, 0x00, 0x00, 0x00, 0x02};
constexpr tagIPOD_WRITE_PARAMS kSelectFirst = {0x0017, 0x04, kFirstRecord, sizeof kFirstRecord};
constexpr tagIPOD_WRITE_PARAMS kSelectSecond = {0x0017, 0x04, kSecondRecord, sizeof kSecondRecord};

TEST_F(OwedAnswer, OfAQuestionWithoutDataIsWaitedForBeforeTheSame) {
  earlier_.Note(kAskShuffle, 1);
  EXPECT_EQ(earlier_.QuietMsBefore(kAskShuffle), 2000U);
  Arrive("FF 55 04 04 00 2D 01 CA");
  EXPECT_EQ(earlier_.QuietMsBefore(kAskShuffle), 0U);
}

TEST_F(OwedAnswer, OfAnAcknowledgedCommandIsWaitedForBeforeAnotherAlone) {
  earlier_.Note(kSelectFirst, 1);
  EXPECT_EQ(earlier_.QuietMsBefore(kSelectFirst), 0U);
  EXPECT_EQ(earlier_.QuietMsBefore(kSelectSecond), 2000U);
  Arrive("FF 55 06 04 00 01 00 00 17 DE");
  EXPECT_EQ(earlier_.QuietMsBefore(kSelectSecond), 0U);
}

TEST_F(OwedAnswer, MayComeTwiceOnlyRightBehindItsQuestion) {
  Arrive(kSixty);
  EXPECT_EQ(earlier_.QuietMsBefore(count_tracks_), 0U);
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 20U);
  earlier_.Note(kSelectFirst, 0);
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 0U);
}

TEST_F(OwedAnswer, IsOneMoreForEachAttemptThatIsNotedBesides) {
  earlier_.NoteMore(count_tracks_, 2);
  earlier_.NoteMore(kAskShuffle, 1);
  Arrive(kSixty);
  Arrive(kSixty);
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 2000U);
  Arrive(kSixty);
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 0U);
  EXPECT_EQ(earlier_.QuietMsBefore(kAskShuffle), 2000U);
  Arrive("FF 55 04 04 00 2D 01 CA");
  EXPECT_EQ(earlier_.QuietMsBefore(kAskShuffle), 0U);
}

TEST_F(OwedAnswer, IsOwedNoLongerOnceItsQuestionIsSettled) {
  earlier_.Note(kAskShuffle, 1);
  earlier_.Settle(count_artists_);
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 0U);
  EXPECT_EQ(earlier_.QuietMsBefore(kAskShuffle), 2000U);
}

TEST_F(OwedAnswer, IsRememberedBehindSevenOtherQuestions) {
  const auto note_other = [&](std::uint16_t number) {
    earlier_.Note({static_cast<std::uint16_t>(0x0100 + number), 0x04, nullptr, 0}, 1);
  };
  for (std::uint16_t number = 0; number < 7; ++number) note_other(number);
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 2000U);
  note_other(7);
  EXPECT_EQ(earlier_.QuietMsBefore(count_artists_), 0U);
}

// Of the data the first twelve bytes, and how many there are, tell questions apart.
TEST_F(OwedAnswer, OfQuestionsThatBeginAlikeIsToldApartByTwelveBytes) {
  const Bytes noted(14, 0x07);
  const auto quiet_ms_before = [&](const Bytes& data) {
    return earlier_.QuietMsBefore(
        {0x0100, 0x04, data.data(), static_cast<std::uint32_t>(data.size())});
  };
  earlier_.Note({0x0100, 0x04, noted.data(), 14}, 1);
  Bytes other = noted;
  other[12] = 0x08;
  EXPECT_EQ(quiet_ms_before(noted), 0U);
  EXPECT_EQ(quiet_ms_before(other), 0U);
  other[11] = 0x08;
  EXPECT_EQ(quiet_ms_before(other), 2000U);
  EXPECT_EQ(quiet_ms_before(Bytes(13, 0x07)), 2000U);
  EXPECT_EQ(quiet_ms_before(Bytes(15, 0x07)), 2000U);
}

TEST_F(OwedAnswer, OfAStoppedCommandIsWaitedForBeforeAnything) {
  EXPECT_EQ(earlier_.QuietMsAfterStop(), 0U);
  earlier_.NoteStopped(kSelectFirst, 0);
  EXPECT_EQ(earlier_.QuietMsAfterStop(), 0U);
  earlier_.NoteStopped(kSelectFirst, 2);
  Arrive("FF 55 06 04 00 01 00 00 17 DE");
  EXPECT_EQ(earlier_.QuietMsAfterStop(), 2000U);
  Arrive("FF 55 06 04 00 01 00 00 17 DE");
  EXPECT_EQ(earlier_.QuietMsAfterStop(), 0U);
  earlier_.NoteStopped(kSelectFirst, 1);
  earlier_.NoteStopped(kSelectSecond, 0);
  EXPECT_EQ(earlier_.QuietMsAfterStop(), 2000U);
  earlier_.SettleStopped();
  EXPECT_EQ(earlier_.QuietMsAfterStop(), 0U);
}

}  // namespace
