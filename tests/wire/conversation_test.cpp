// SPDX-License-Identifier: MIT
// What stands out in a conversation. Each test is one, told frame by frame.
#include "wire/conversation.h"

#include <gtest/gtest.h>

#include "wire/text.h"
#include "wire_test_support.h"

namespace {

using ipodwire::Conversation;
using ipodwire::Note;
using ipodwire::Sender;
using wire_test::Bytes;
using wire_test::Small;

constexpr ipodwire::Nanoseconds kMillisecond = 1'000'000;

class AConversation : public testing::Test {
 protected:
  ipodwire::Told Say(Sender sender, const Bytes& bytes, int after_ms) {
    now_ += after_ms * kMillisecond;
    return conversation_.Next({++number_, now_, sender, bytes});
  }
  ipodwire::Told Ask(const Bytes& content, int after_ms = 20) {
    return Say(Sender::kAccessory, Small(content), after_ms);
  }
  ipodwire::Told Answer(const Bytes& content, int after_ms = 20) {
    return Say(Sender::kIpod, Small(content), after_ms);
  }
  void BeginTokens() {
    Ask({0x00, 0x38});
    Answer({0x00, 0x02, 0x00, 0x38});
  }

  Conversation conversation_;
  std::uint64_t number_ = 0;
  ipodwire::Nanoseconds now_ = 0;
};

std::string Notes(const std::vector<Note>& notes) {
  std::string text;
  for (const Note& note : notes) {
    if (!text.empty()) text += "; ";
    text += std::string(ipodwire::NameOf(note.kind)) + ": " + note.text;
  }
  return text;
}
std::string Notes(const ipodwire::Told& told) { return Notes(told.notes); }

TEST_F(AConversation, LinksAnAnswerToItsQuestion) {
  EXPECT_EQ(Notes(Ask({0x04, 0x00, 0x2C})), "");
  const ipodwire::Told answer = Answer({0x04, 0x00, 0x2D, 0x01}, 35);
  EXPECT_EQ(answer.question, 1U);
  EXPECT_EQ(answer.response_time, 35 * kMillisecond);
  EXPECT_EQ(Notes(answer), "");
  EXPECT_EQ(Notes(conversation_.End()), "");
}

TEST_F(AConversation, LinksAnAckToTheCommandThatItNames) {
  Ask({0x04, 0x00, 0x16});
  Ask({0x04, 0x00, 0x29, 0x01});
  EXPECT_EQ(Answer({0x04, 0x00, 0x01, 0x00, 0x00, 0x29}).question, 2U);
  EXPECT_EQ(Answer({0x04, 0x00, 0x01, 0x00, 0x00, 0x16}).question, 1U);
}

TEST_F(AConversation, LinksTheAccessorysAnswersToo) {
  Answer({0x00, 0x27, 0x01});
  const ipodwire::Told answer = Ask({0x00, 0x28, 0x01, 'A', 0x00});
  EXPECT_EQ(answer.question, 1U);
  EXPECT_EQ(Notes(answer), "");
}

TEST_F(AConversation, LinksEachOfManyAnswersToTheirQuestion) {
  Ask({0x04, 0x00, 0x1A, 0x05, 0, 0, 0, 0, 0, 0, 0, 2});
  EXPECT_EQ(Answer({0x04, 0x00, 0x1B, 0, 0, 0, 0, 'A', 0}).question, 1U);
  const ipodwire::Told second = Answer({0x04, 0x00, 0x1B, 0, 0, 0, 1, 'B', 0}, 2000);
  EXPECT_EQ(second.question, 1U);
  EXPECT_EQ(Notes(second), "");
}

TEST_F(AConversation, ExpectsNoAnswerToButtonsAndNotifications) {
  Ask({0x02, 0x00, 0x01});
  Answer({0x04, 0x00, 0x27, 0x00});
  EXPECT_EQ(Notes(Ask({0x02, 0x00, 0x00}, 5000)), "");
  EXPECT_EQ(Notes(conversation_.End()), "");
}

TEST_F(AConversation, TellsARefusal) {
  Ask({0x04, 0x00, 0x17, 0x05, 0, 0, 0, 9});
  const ipodwire::Told refusal = Answer({0x04, 0x00, 0x01, 0x03, 0x00, 0x17});
  EXPECT_EQ(Notes(refusal), "refused: SelectDBRecord refused: bad parameter");
  EXPECT_EQ(refusal.question, 1U);
}

TEST_F(AConversation, WaitsLongerForACommandThatIsPending) {
  Ask({0x00, 0x05});
  EXPECT_EQ(Notes(Answer({0x00, 0x02, 0x06, 0x05, 0x00, 0x00, 0x0F, 0xA0})), "");
  const ipodwire::Told done = Answer({0x00, 0x02, 0x00, 0x05}, 3000);
  EXPECT_EQ(Notes(done), "");
  EXPECT_EQ(done.question, 1U);
}

TEST_F(AConversation, TellsARetry) {
  Ask({0x04, 0x00, 0x1C});
  EXPECT_EQ(Notes(Ask({0x04, 0x00, 0x1C}, 1020)), "retry: retry of #1, unanswered for 1.0 s");
  EXPECT_EQ(Notes(Ask({0x04, 0x00, 0x1C}, 1020)), "retry: retry of #2, unanswered for 1.0 s");
}

TEST_F(AConversation, TellsARetryUnderANewIdentifier) {
  BeginTokens();
  Ask({0x04, 0x00, 0x1C, 0x00, 0x01});
  EXPECT_EQ(Notes(Ask({0x04, 0x00, 0x1C, 0x00, 0x02}, 1020)),
            "retry: retry of #3, unanswered for 1.0 s");
}

TEST_F(AConversation, TakesTheSameQuestionAboutSomethingElseForNoRetry) {
  Ask({0x04, 0x00, 0x20, 0, 0, 0, 1});
  EXPECT_EQ(Notes(Ask({0x04, 0x00, 0x20, 0, 0, 0, 2}, 100)), "");
}

TEST_F(AConversation, TellsAQuestionThatStaysUnanswered) {
  Ask({0x04, 0x00, 0x1C});
  EXPECT_EQ(Notes(Ask({0x04, 0x00, 0x1E}, 1500)), "unanswered: #1 GetPlayStatus is unanswered");
  EXPECT_EQ(Notes(Answer({0x04, 0x00, 0x1F, 0, 0, 0, 1})), "");
}

TEST_F(AConversation, TellsAtItsEndWhatIsStillUnanswered) {
  Ask({0x00, 0x38});
  EXPECT_EQ(Notes(conversation_.End()), "unanswered: #1 StartIDPS is unanswered");
}

TEST_F(AConversation, TellsALateAnswer) {
  Ask({0x04, 0x00, 0x1E});
  const ipodwire::Told late = Answer({0x04, 0x00, 0x1F, 0, 0, 0, 1}, 1800);
  EXPECT_EQ(Notes(late), "late: late answer to #1, after 1.8 s");
  EXPECT_EQ(late.question, 1U);
}

TEST_F(AConversation, LinksTwoAnswersToTheTwoQuestionsThatTheyRepeatTheIdentifierOf) {
  BeginTokens();
  Ask({0x04, 0x00, 0x1E, 0x00, 0x01});
  Ask({0x04, 0x00, 0x1E, 0x00, 0x02}, 1020);
  EXPECT_EQ(Answer({0x04, 0x00, 0x1F, 0x00, 0x02, 0, 0, 0, 1}).question, 4U);
  const ipodwire::Told late = Answer({0x04, 0x00, 0x1F, 0x00, 0x01, 0, 0, 0, 1});
  EXPECT_EQ(late.question, 3U);
  EXPECT_EQ(Notes(late), "late: late answer to #3, after 1.1 s");
}

TEST_F(AConversation, TellsAnAnswerWithoutAQuestion) {
  EXPECT_EQ(Notes(Answer({0x04, 0x00, 0x1F, 0, 0, 0, 1})), "unasked: nothing asked for it");
  EXPECT_EQ(Notes(Answer({0x04, 0x00, 0x01, 0x00, 0x00, 0x29})), "unasked: nothing asked for it");
}

TEST_F(AConversation, TellsASecondAnswerToOneQuestion) {
  Ask({0x04, 0x00, 0x2C});
  Answer({0x04, 0x00, 0x2D, 0x01});
  EXPECT_EQ(Notes(Answer({0x04, 0x00, 0x2D, 0x01})), "unasked: nothing asked for it");
}

TEST_F(AConversation, TellsAnAnswerUnderAnotherIdentifier) {
  BeginTokens();
  Ask({0x04, 0x00, 0x2C, 0x00, 0x07});
  EXPECT_EQ(Notes(Answer({0x04, 0x00, 0x2D, 0x00, 0x09, 0x01})),
            "other-identifier: not under its question's identifier, 0x0007");
}

TEST_F(AConversation, TellsABadChecksumAndTakesTheFrameForNothing) {
  Ask({0x04, 0x00, 0x2C});
  Bytes damaged = Small({0x04, 0x00, 0x2D, 0x01});
  damaged.back() ^= 0x10;
  const ipodwire::Told told = Say(Sender::kIpod, damaged, 20);
  EXPECT_EQ(Notes(told), "bad-checksum: bad checksum");
  EXPECT_FALSE(told.question);
  EXPECT_EQ(Answer({0x04, 0x00, 0x2D, 0x01}).question, 1U);
}

TEST_F(AConversation, TellsBytesThatAreNoFrameButNotAWakeUp) {
  EXPECT_EQ(Notes(Say(Sender::kIpod, {0xFE, 0x66, 0x66}, 20)), "no-frame: no frame");
  EXPECT_EQ(Notes(Say(Sender::kAccessory, {0xFF}, 20)), "");
}

TEST_F(AConversation, TellsAnEchoOfTheAccessorysOwnCommands) {
  Ask({0x00, 0x38});
  EXPECT_EQ(Notes(Answer({0x00, 0x38})), "other-sender: a command of accessories");
  EXPECT_EQ(Notes(conversation_.End()), "unanswered: #1 StartIDPS is unanswered");
}

TEST_F(AConversation, TellsDataThatDoNotFitTheCommand) {
  Ask({0x00, 0x11});
  EXPECT_EQ(Notes(Answer({0x00, 0x12, 0x01})), "damaged: cut short at maximum payload");
}

TEST_F(AConversation, ReadsIdentifiersFromAnAcceptedStartIdpsOn) {
  BeginTokens();
  // Both with and without an identifier this could be a name.
  EXPECT_EQ(ipodwire::Describe(*Answer({0x00, 0x08, 'A', 'b', 'c', 0x00}).frame),
            "General ReturniPodName id 0x4162: name \"c\"");
}

TEST_F(AConversation, ReadsNoIdentifiersAfterARefusedStartIdps) {
  Ask({0x00, 0x38});
  Answer({0x00, 0x02, 0x04, 0x38});
  EXPECT_EQ(ipodwire::Describe(*Answer({0x00, 0x08, 'A', 'b', 'c', 0x00}).frame),
            "General ReturniPodName: name \"Abc\"");
}

TEST_F(AConversation, ReadsNoIdentifiersFromAnAcceptedIdentifyDeviceLingoesOn) {
  BeginTokens();
  Ask({0x00, 0x13, 0, 0, 0, 0x19, 0, 0, 0, 0, 0, 0, 0, 0});
  Answer({0x00, 0x02, 0x00, 0x13});
  EXPECT_EQ(ipodwire::Describe(*Answer({0x00, 0x08, 'A', 'b', 'c', 0x00}).frame),
            "General ReturniPodName: name \"Abc\"");
}

TEST_F(AConversation, LearnsFromFramesOfAKnownSizeWhereItsBeginningIsMissing) {
  Ask({0x04, 0x00, 0x1C, 0x00, 0x41});
  Answer({0x04, 0x00, 0x1D, 0x00, 0x41, 0, 0, 0, 1, 0, 0, 0, 0, 1});
  EXPECT_EQ(ipodwire::Describe(*Answer({0x00, 0x08, 'A', 'b', 'c', 0x00}).frame),
            "General ReturniPodName id 0x4162: name \"c\"");
}

TEST_F(AConversation, LearnsEachSidesIdentifiersByItself) {
  BeginTokens();
  // An iPod that answers without identifiers all the same.
  Ask({0x04, 0x00, 0x1C, 0x00, 0x01});
  Answer({0x04, 0x00, 0x1D, 0, 0, 0, 1, 0, 0, 0, 0, 1});
  EXPECT_EQ(ipodwire::Describe(*Answer({0x00, 0x08, 'A', 'b', 'c', 0x00}).frame),
            "General ReturniPodName: name \"Abc\"");
  EXPECT_EQ(ipodwire::Describe(*Ask({0x0C, 0x07, 0, 0x02, 0, 0, 0, 0, 7, 'x'}).frame),
            "Storage WriteiPodFileData id 0x0002: offset 0 bytes, file handle 7, data \"x\"");
}

}  // namespace
