// SPDX-License-Identifier: MIT
// Why sessions went as they did. Each test is one, told frame by frame.
#include "wire/findings/findings.h"

#include <gmock/gmock.h>

#include "wire/findings/evidence.h"
#include "wire_test_support.h"

namespace {

using ipodwire::Finding;
using ipodwire::Sender;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using wire_test::Bytes;
using wire_test::Small;

constexpr ipodwire::Nanoseconds kMillisecond = 1'000'000;

// "E302 proved: StartIDPS was refused: unknown ID (2)": code, certainty, evidence and packets.
std::string Describe(const Finding& finding) {
  std::string text = finding.code + " " + NameOf(finding.certainty) + ": " + finding.seen + " (";
  for (std::size_t i = 0; i < finding.packets.size(); ++i) {
    text += (i == 0 ? "" : ", ") + std::to_string(finding.packets[i]);
  }
  return text + ")";
}

class ASession : public testing::Test {
 protected:
  ASession() { collector_.set_baud(57600); }

  void Say(Sender sender, const Bytes& bytes, int after_ms = 20) {
    now_ += after_ms * kMillisecond;
    collector_.Add(conversation_.Next({++number_, now_, sender, bytes}));
  }
  void Ask(const Bytes& content, int after_ms = 20) {
    Say(Sender::kAccessory, Small(content), after_ms);
  }
  void Answer(const Bytes& content, int after_ms = 20) {
    Say(Sender::kIpod, Small(content), after_ms);
  }
  void TellEvent(const std::string& text, std::uint64_t packet) {
    ipodwire::Told told;
    told.observed.number = packet;
    told.is_event = true;
    told.notes.push_back({ipodwire::Note::Kind::kLine, text});
    collector_.Add(told);
  }
  void TellVersion(unsigned char lingo, unsigned char major, unsigned char minor) {
    Ask({0x00, 0x0F, lingo});
    Answer({0x00, 0x10, lingo, major, minor});
  }
  // StartIDPS and EndIDPS without a token in between.
  void IdentifyByTokens() {
    Ask({0x00, 0x38});
    Answer({0x00, 0x02, 0x00, 0x38});
    Ask({0x00, 0x3B, 0x00, 0x01, 0x00});
    Answer({0x00, 0x3C, 0x00, 0x01, 0x00});
  }
  void IdentifyByLingoes() {
    Ask({0x00, 0x13, 0, 0, 0, 0x19, 0, 0, 0, 0, 0, 0, 0, 0});
    Answer({0x00, 0x02, 0x00, 0x13});
  }
  std::vector<std::string> Findings() const {
    std::vector<std::string> texts;
    for (const Finding& finding : FindingsOf(collector_.evidence())) {
      texts.push_back(Describe(finding));
    }
    return texts;
  }

  ipodwire::Conversation conversation_;
  ipodwire::EvidenceCollector collector_;
  std::uint64_t number_ = 0;
  ipodwire::Nanoseconds now_ = 0;
};

TEST_F(ASession, InWhichNothingHappenedHasNoFinding) { EXPECT_THAT(Findings(), IsEmpty()); }

TEST_F(ASession, ThatWentWellHasNoFinding) {
  IdentifyByTokens();
  Ask({0x00, 0x07, 0x00, 0x02});
  Answer({0x00, 0x08, 0x00, 0x02, 'A', 0x00});
  EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(ASession, WithoutOneByteFromTheIpodHeardNothing) {
  Ask({0x00, 0x38});
  Ask({0x00, 0x38}, 1000);
  EXPECT_THAT(Findings(),
              ElementsAre("E201 proved: 2 frames went out and not one byte came (1, 2)"));
}

TEST_F(ASession, ThatWasGivenUpBehindItsFirstFrameIsLessSureThatNothingComes) {
  Ask({0x00, 0x38});
  EXPECT_THAT(Findings(), ElementsAre("E201 likely: 1 frame went out and not one byte came (1)"));
}

TEST_F(ASession, InWhichAllComesBackRunsOnABridgedLine) {
  const Bytes start = Small({0x00, 0x38});
  Say(Sender::kAccessory, start);
  Say(Sender::kIpod, start);
  EXPECT_THAT(Findings(),
              ElementsAre("E202 proved: all that came, 1 frame, are the accessory's own, "
                          "byte for byte (2)"));
}

TEST_F(ASession, InWhichOneFrameComesBackAndAnotherAnswersIsNoBridge) {
  const Bytes question = Small({0x00, 0x07});
  Say(Sender::kAccessory, question);
  Say(Sender::kIpod, question);
  Answer({0x00, 0x08, 'A', 0x00});
  EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(ASession, AtATellingRateNamesIt) {
  Ask({0x00, 0x38});
  Say(Sender::kIpod, {0xFC, 0x1C, 0x1C, 0x1C, 0xE0});
  EXPECT_THAT(Findings(),
              ElementsAre("E203 proved: 5 bytes came and no whole frame; they are frames sent at "
                          "19200 baud and heard at 57600 (2)"));
}

TEST_F(ASession, OfNoiseDoesNotNameARate) {
  Ask({0x00, 0x38});
  Say(Sender::kIpod, {0x00, 0x01, 0x00, 0x03});
  EXPECT_THAT(Findings(),
              ElementsAre("E203 not excluded: 4 bytes came and no whole frame; the rate at which "
                          "they were sent is unknown (2)"));
}

TEST_F(ASession, WithDamagedFramesCountsThem) {
  Ask({0x00, 0x07});
  Bytes damaged = Small({0x00, 0x08, 'A', 0x00});
  damaged.back() ^= 0x10;
  Say(Sender::kIpod, damaged);
  Answer({0x00, 0x08, 'A', 0x00});
  EXPECT_THAT(Findings(),
              ElementsAre("E204 proved: 1 frame from the iPod has a bad checksum, 1 good "
                          "ones came (2)"));
}

TEST_F(ASession, WithErrorsOfTheDriverCountsThem) {
  TellEvent("framing error", 4);
  TellEvent("break", 6);
  EXPECT_THAT(Findings(),
              ElementsAre("E205 proved: the driver reported 2 errors of the line (4, 6)"));
}

TEST_F(ASession, WhoseStartNeededAnIdentifierSaysSo) {
  Ask({0x00, 0x38});
  Ask({0x00, 0x38, 0x00, 0x00}, 1000);
  Answer({0x00, 0x02, 0x00, 0x00, 0x00, 0x38});
  EXPECT_THAT(Findings(),
              ElementsAre("E301 likely: StartIDPS was accepted with an identifier, after "
                          "it stayed unanswered without (1, 3)"));
}

// What answers the one without identifier has none either.
TEST_F(ASession, WhoseStartIsAnsweredLateWantedNoIdentifier) {
  Ask({0x00, 0x38});
  Ask({0x00, 0x38, 0x00, 0x00}, 1000);
  Answer({0x00, 0x02, 0x00, 0x38}, 300);
  Answer({0x00, 0x02, 0x00, 0x00, 0x00, 0x38});
  EXPECT_THAT(Findings(), ElementsAre("E402 proved: 1 answer came after more than a second (3)"));
}

TEST_F(ASession, WhoseStartWasAnsweredWithADamagedFrameMayHaveWantedNoIdentifier) {
  Ask({0x00, 0x38});
  Bytes damaged = Small({0x00, 0x02, 0x00, 0x38});
  damaged.back() ^= 0x10;
  Say(Sender::kIpod, damaged);
  Ask({0x00, 0x38, 0x00, 0x00}, 1000);
  Answer({0x00, 0x02, 0x00, 0x00, 0x00, 0x38});
  EXPECT_THAT(Findings(), Contains("E301 not excluded: StartIDPS was accepted with an identifier, "
                                   "after it stayed unanswered without; what came between was "
                                   "damaged (1, 4)"));
}

TEST_F(ASession, WithAnIpodThatKnowsNoTokensSaysSo) {
  Ask({0x00, 0x38});
  Answer({0x00, 0x02, 0x04, 0x38});
  IdentifyByLingoes();
  EXPECT_THAT(Findings(), ElementsAre("E302 proved: StartIDPS was refused: unknown ID (2)"));
}

TEST_F(ASession, WithAnIpodThatIgnoresTokensIsLessSure) {
  Ask({0x00, 0x38});
  IdentifyByLingoes();
  EXPECT_THAT(Findings(),
              ElementsAre("E302 likely: StartIDPS stayed unanswered, other questions did not (1)",
                          "E301 not excluded: StartIDPS stayed unanswered, and was never sent with "
                          "an identifier (1)"));
}

TEST_F(ASession, WithAnIpodThatIgnoresTokensWithAnIdentifierTooWantsNone) {
  Ask({0x00, 0x38});
  Ask({0x00, 0x38, 0x00, 0x00}, 1000);
  IdentifyByLingoes();
  EXPECT_THAT(Findings(),
              ElementsAre("E302 likely: StartIDPS stayed unanswered, other questions did not (1)"));
}

TEST_F(ASession, WithRefusedTokensNamesThem) {
  Ask({0x00, 0x38});
  Answer({0x00, 0x02, 0x00, 0x38});
  Ask({0x00, 0x39, 0x00, 0x01, 0x00});   // of which the answer tells more than was asked
  Answer({0x00, 0x3A, 0x00, 0x01, 0x03,  // three tokens
          0x04, 0x00, 0x02, 0x01, 0x07,  // accessory information, type 7: malformed
          0x03, 0x00, 0x01, 0x00,        // capabilities: accepted
          0x03, 0x00, 0x05, 0x02});      // bundle seed: not supported
  EXPECT_THAT(Findings(), ElementsAre("E303 proved: accessory information, type model number: "
                                      "malformed; bundle seed: not supported (4)"));
}

TEST_F(ASession, WhoseTokensDidNotSucceedTellsTheStatus) {
  Ask({0x00, 0x38});
  Answer({0x00, 0x02, 0x00, 0x38});
  Ask({0x00, 0x3B, 0x00, 0x01, 0x00});
  Answer({0x00, 0x3C, 0x00, 0x01, 0x05});
  EXPECT_THAT(Findings(),
              ElementsAre("E304 proved: EndIDPS was answered by: not to be tried again (4)"));
}

TEST_F(ASession, WithAnIpodThatWantsACertificateSaysSo) {
  IdentifyByTokens();
  Answer({0x00, 0x14, 0x00, 0x09});
  EXPECT_THAT(Findings(),
              ElementsAre("E305 proved: the iPod asked for the accessory's certificate (5)"));
}

TEST_F(ASession, WithAnIpodThatIsTooOldNamesTheLingoAndTheVersions) {
  TellVersion(0x00, 1, 2);
  TellVersion(0x03, 1, 1);
  TellVersion(0x04, 1, 7);
  EXPECT_THAT(Findings(),
              ElementsAre("E306 proved: Extended Interface has version 1.07 and needs 1.08 (6)"));
}

TEST_F(ASession, WithEachNeededLingoTooOldNamesIt) {
  TellVersion(0x00, 1, 1);
  EXPECT_THAT(Findings(), ElementsAre("E306 proved: General has version 1.01 and needs 1.02 (2)"));
  TellVersion(0x00, 1, 9);
  TellVersion(0x03, 1, 0);
  EXPECT_THAT(Findings(),
              ElementsAre("E306 proved: Display Remote has version 1.00 and needs 1.01 (6)"));
}

TEST_F(ASession, WithoutTheSportsLingoTellsThatWorkoutsAreNotTaken) {
  Ask({0x00, 0x0F, 0x09});
  Answer({0x00, 0x02, 0x03, 0x0F});
  EXPECT_THAT(Findings(), ElementsAre("E307 proved: the iPod knows no lingo Sports (2)"));
}

TEST_F(ASession, WithAnOldStorageLingoTellsThatWorkoutsAreNotTaken) {
  TellVersion(0x09, 1, 1);
  TellVersion(0x0C, 1, 1);
  EXPECT_THAT(Findings(), ElementsAre("E307 proved: Storage has version 1.01 and needs 1.02 (4)"));
}

TEST_F(ASession, WhoseLingoesWereRefusedTellsTheStatus) {
  Ask({0x00, 0x13, 0, 0, 0x12, 0x19, 0, 0, 0, 0, 0, 0, 0, 0});
  Answer({0x00, 0x02, 0x03, 0x13});
  EXPECT_THAT(Findings(),
              ElementsAre("E308 proved: IdentifyDeviceLingoes was refused: bad parameter (2)"));
}

TEST_F(ASession, WhoseLingoesWereAcceptedLaterHasNoRefusal) {
  Ask({0x00, 0x13, 0, 0, 0x12, 0x19, 0, 0, 0, 0, 0, 0, 0, 0});
  Answer({0x00, 0x02, 0x03, 0x13});
  IdentifyByLingoes();
  EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(ASession, WithAnswersUnderOtherIdentifiersCountsThem) {
  IdentifyByTokens();
  Ask({0x00, 0x07, 0x00, 0x02});
  Answer({0x00, 0x08, 0x00, 0x09, 'A', 0x00});
  EXPECT_THAT(Findings(),
              ElementsAre("E401 proved: 1 answer came not under the question's identifier "
                          "(6)"));
}

// So many questions ago that it is not known any more what it was.
TEST_F(ASession, WithARecordUnderAnEarlierQuestionsIdentifierProvesNothing) {
  IdentifyByTokens();
  const auto ask = [this](std::uint8_t id) {
    Ask({0x04, 0x00, 0x1A, 0x00, id, 0x05, 0, 0, 0, 0, 0, 0, 0, 1});
  };
  const auto answer = [this](std::uint8_t id) {
    Answer({0x04, 0x00, 0x1B, 0x00, id, 0, 0, 0, 0, 'A', 0x00});
  };
  for (std::uint8_t id = 2; id < 40; ++id) {
    ask(id);
    answer(id);
  }
  ask(40);
  answer(2);
  EXPECT_THAT(Findings(),
              ElementsAre("E401 likely: 1 answer came under the identifier of an earlier question "
                          "(82)"));
}

TEST_F(ASession, WithLateAnswersCountsThem) {
  Ask({0x00, 0x07});
  Answer({0x00, 0x08, 'A', 0x00}, 1001);
  EXPECT_THAT(Findings(), ElementsAre("E402 proved: 1 answer came after more than a second (2)"));
}

TEST_F(ASession, WithAFullIpodSaysSo) {
  Ask({0x0C, 0x07, 0, 0, 0, 0, 0x01, 'x'});
  Answer({0x0C, 0x00, 0x02, 0x07});
  EXPECT_THAT(Findings(),
              ElementsAre("E403 proved: the Storage lingo answered: out of resources (2)"));
}

TEST_F(ASession, WithRefusalsForWantOfAuthenticationCountsThem) {
  Ask({0x00, 0x29, 0x00});
  Answer({0x00, 0x02, 0x07, 0x29});
  EXPECT_THAT(Findings(),
              ElementsAre("E404 proved: 1 question was refused for want of authentication (2)"));
}

TEST_F(ASession, ThatBreaksOffInAFrameSaysSo) {
  Ask({0x00, 0x07});
  Answer({0x00, 0x08, 'A', 0x00});
  Ask({0x00, 0x0D});
  Say(Sender::kIpod, {0xFF, 0x55, 0x0B, 0x00, 0x0E});
  EXPECT_THAT(Findings(),
              ElementsAre("E501 likely: the last that came is the beginning of a frame (4)"));
}

TEST_F(ASession, ThatGoesOnBehindACutFrameDidNotBreakOff) {
  Ask({0x00, 0x07});
  Say(Sender::kIpod, {0xFF, 0x55, 0x0B, 0x00, 0x08});
  Answer({0x00, 0x08, 'A', 0x00});
  EXPECT_THAT(Findings(),
              ElementsAre("E206 proved: 1 frame was begun and not ended before others came (2)"));
}

TEST_F(ASession, WhosePortWentAwaySaysSoFirst) {
  Ask({0x00, 0x07});
  Answer({0x00, 0x08, 'A', 0x00});
  for (int i = 0; i < 3; ++i) Ask({0x00, 0x0D}, 1000);
  TellEvent("the line is gone: Input/output error", 6);
  const std::vector<std::string> findings = Findings();
  ASSERT_EQ(findings.size(), 2U);
  EXPECT_EQ(findings[0], "E502 proved: the system reported that the line is gone (6)");
}

TEST_F(ASession, WhoseIpodFellSilentSaysSo) {
  Ask({0x00, 0x07});
  Answer({0x00, 0x08, 'A', 0x00});
  Ask({0x00, 0x0D}, 1000);
  Ask({0x00, 0x0D}, 1000);
  EXPECT_THAT(Findings(), IsEmpty());
  Ask({0x00, 0x0D}, 1000);
  EXPECT_THAT(Findings(),
              ElementsAre("E503 likely: the last 3 questions stayed unanswered, after 1 "
                          "frame had come (3, 4, 5)"));
}

TEST_F(ASession, WhoseIpodAskedForIdentificationAgainRestarted) {
  Answer({0x00, 0x00});
  IdentifyByTokens();
  Answer({0x00, 0x00});
  EXPECT_THAT(Findings(),
              ElementsAre("E504 likely: an iPod that had accepted the accessory asked it "
                          "to identify itself (6)"));
}

// ---- Neighbours that are never taken for each other -------------------------------------------

TEST_F(ASession, WhoseOwnFramesComeBackLateIsABridgeAllTheSame) {
  const Bytes first = Small({0x00, 0x1A});
  const Bytes second = Small({0x00, 0x38});
  Say(Sender::kAccessory, first);
  Say(Sender::kAccessory, second);
  Say(Sender::kIpod, first);
  Say(Sender::kIpod, second);
  EXPECT_THAT(Findings(), ElementsAre("E202 proved: all that came, 2 frames, are the accessory's "
                                      "own, byte for byte (3, 4)"));
}

TEST_F(ASession, WithJunkBetweenGoodFramesIsNotAtAnotherRate) {
  Ask({0x00, 0x07});
  Say(Sender::kIpod, {0xFC, 0x1C, 0x1C, 0x1C, 0xE0});
  Answer({0x00, 0x08, 'A', 0x00});
  EXPECT_THAT(Findings(), ElementsAre("E207 proved: 1 run of bytes belonged to no frame, 1 good "
                                      "frames came (2)"));
}

TEST_F(ASession, WithDamagedFramesToTheIpodSaysWhichWay) {
  Bytes damaged = Small({0x00, 0x07});
  damaged.back() ^= 0x10;
  Say(Sender::kAccessory, damaged);
  Ask({0x00, 0x07});
  Answer({0x00, 0x08, 'A', 0x00});
  EXPECT_THAT(Findings(), ElementsAre("E204 proved: 1 frame to the iPod has a bad checksum (1)"));
}

TEST_F(ASession, WhoseDamagedFramesLackTheSameBitSaysSo) {
  for (const char letter : {'A', 'C', 'E'}) {
    Ask({0x00, 0x07});
    Bytes damaged = Small({0x00, 0x08, static_cast<std::uint8_t>(letter), 0x00});
    damaged[5] ^= 0x40;
    Say(Sender::kIpod, damaged);
    Answer({0x00, 0x08, static_cast<std::uint8_t>(letter), 0x00});
  }
  EXPECT_THAT(Findings(), ElementsAre("E204 proved: 3 frames from the iPod have bad checksums, 3 "
                                      "good ones came; each is off by bit 6 (2, 5, 8)"));
}

TEST_F(ASession, WhoseIpodRefusesACommandSaysWhichOneAndHowOften) {
  for (int i = 0; i < 2; ++i) {
    Ask({0x00, 0x07});
    Answer({0x00, 0x02, 0x04, 0x07});
  }
  EXPECT_THAT(Findings(), ElementsAre("E405 proved: RequestiPodName was refused: unknown ID; 1 "
                                      "other refusal came (2, 4)"));
}

TEST_F(ASession, InWhichAnAnswerIsLostIsNotOneWithASlowIpod) {
  Ask({0x00, 0x07});
  Ask({0x00, 0x07}, 1000);
  Answer({0x00, 0x08, 'A', 0x00});
  EXPECT_THAT(Findings(),
              ElementsAre("E406 proved: 1 question stayed unanswered, others did not (1)"));
}

// The answer that came may be the first one's, and the second's may be on its way.
TEST_F(ASession, ThatAsksAgainAtOnceIsLessSureThatAnAnswerIsLost) {
  Ask({0x00, 0x07});
  Ask({0x00, 0x07}, 3);
  Answer({0x00, 0x08, 'A', 0x00}, 10);
  EXPECT_THAT(Findings(),
              ElementsAre("E406 likely: 1 question stayed unanswered, others did not (1)"));
}

// Without identifiers the second answer is known to be late by the question that waits for none.
TEST_F(ASession, WithoutIdentifiersInWhichAnAnswerIsLateIsNotOneThatLostIt) {
  Ask({0x00, 0x07});
  Ask({0x00, 0x07}, 1000);
  Answer({0x00, 0x08, 'A', 0x00}, 100);
  Answer({0x00, 0x08, 'A', 0x00}, 100);
  EXPECT_THAT(Findings(), ElementsAre("E402 proved: 1 answer came after more than a second (4)"));
}

// The answer repeats the lingo that was asked about, which tells whose it is.
TEST_F(ASession, WithoutIdentifiersKnowsALateAnswerByWhatItRepeats) {
  Ask({0x00, 0x0F, 0x03});
  Ask({0x00, 0x0F, 0x04}, 1100);
  Answer({0x00, 0x10, 0x03, 1, 5});
  Answer({0x00, 0x10, 0x04, 1, 14});
  EXPECT_THAT(Findings(), ElementsAre("E402 proved: 1 answer came after more than a second (3)"));
}

TEST_F(ASession, WithoutIdentifiersKnowsAnAnswerToAnotherQuestionByWhatItRepeats) {
  Ask({0x00, 0x0F, 0x04});
  Answer({0x00, 0x10, 0x03, 1, 5});
  Answer({0x00, 0x10, 0x04, 1, 14});
  EXPECT_THAT(Findings(),
              ElementsAre("E407 proved: 1 answer came that no open question had asked for (2)"));
}

TEST_F(ASession, InWhichAnAnswerComesTwiceIsNotOneWithAnotherIdentifier) {
  IdentifyByTokens();
  Ask({0x00, 0x07, 0x00, 0x02});
  Answer({0x00, 0x08, 0x00, 0x02, 'A', 0x00});
  Ask({0x00, 0x07, 0x00, 0x03});
  Answer({0x00, 0x08, 0x00, 0x02, 'A', 0x00});
  Answer({0x00, 0x08, 0x00, 0x03, 'A', 0x00});
  EXPECT_THAT(Findings(),
              ElementsAre("E407 proved: 1 answer came that no open question had asked for (8)"));
}

TEST_F(ASession, InWhichRecordsAreMissingSaysSo) {
  const auto record = [](unsigned char index) {
    return Bytes{0x04, 0x00, 0x1B, 0, 0, 0, index, 'A', 0x00};
  };
  Ask({0x04, 0x00, 0x1A, 0x05, 0, 0, 0, 0, 0, 0, 0, 4});
  Answer(record(0));
  Answer(record(2));
  Answer(record(2));
  Answer(record(1));
  EXPECT_THAT(Findings(),
              ElementsAre("E408 proved: 3 records did not follow the one before (3, 4, 5)"));
}

TEST_F(ASession, WithAnAnswerThatIsTooShortSaysSo) {
  Ask({0x00, 0x0F, 0x00});
  Answer({0x00, 0x10, 0x00});
  EXPECT_THAT(Findings(), ElementsAre("E409 proved: 1 good frame does not hold what its command is "
                                      "made of (2)"));
}

// It asks nothing, but answers as one that was never told of identifiers.
TEST_F(ASession, WhoseIpodForgotTheIdentifiersRestarted) {
  IdentifyByTokens();
  Ask({0x00, 0x29, 0x00, 0x02, 0x00});
  Answer({0x00, 0x02, 0x04, 0x29});
  EXPECT_THAT(Findings(),
              ElementsAre("E504 likely: an iPod that had accepted the accessory by tokens answers "
                          "without identifiers (6)",
                          "E405 proved: GetiPodPreferences was refused: unknown ID (6)"));
}

TEST_F(ASession, WhoseTokensSucceedInTheEndDidNotFail) {
  Ask({0x00, 0x38});
  Answer({0x00, 0x02, 0x00, 0x38});
  Ask({0x00, 0x3B, 0x00, 0x01, 0x00});
  Answer({0x00, 0x3C, 0x00, 0x01, 0x01});
  IdentifyByTokens();
  EXPECT_THAT(Findings(), IsEmpty());
}

TEST_F(ASession, AtTheEndOfWhichALineIsGoneIsNotOneWithoutItsIpod) {
  Ask({0x00, 0x07});
  Answer({0x00, 0x08, 'A', 0x00});
  Ask({0x00, 0x0D});
  TellEvent("the line is gone: No such device", 4);
  EXPECT_THAT(Findings(),
              ElementsAre("E502 proved: the system reported that the line is gone (4)"));
}

TEST(FindingPages, HaveEachATextForEveryQuestion) {
  std::string previous;
  for (const ipodwire::FindingPage& page : ipodwire::FindingPages()) {
    EXPECT_GT(page.code, previous) << "codes are in order, and each is there once";
    previous = page.code;
    EXPECT_EQ(ipodwire::FindFindingPage(page.code), &page);
    for (const char* text : {page.tried, page.meaning, page.remedy}) {
      EXPECT_THAT(text, testing::EndsWith(".")) << page.code;
    }
    EXPECT_THAT(page.title, testing::Not(testing::EndsWith("."))) << page.code;
  }
  EXPECT_EQ(ipodwire::FindingPages().size(), 32U);
  EXPECT_EQ(ipodwire::FindFindingPage("E000"), nullptr);
}

}  // namespace
