// SPDX-License-Identifier: MIT
// What a session reports of its last identification: each step with what was asked and what came,
// which is the evidence for the outcome.
#include "identify/identify_report.h"

#include "identify/identification.h"
#include "support/echoing_line.h"

namespace {

using test::Bytes;
using test::Identification;
using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::Ge;
using ::testing::IsEmpty;
using ::testing::Le;

std::string ResultName(tagIPOD_EXCHANGE_RESULT result) {
  switch (result) {
    case IPOD_EXCHANGE_ANSWERED:
      return "answered";
    case IPOD_EXCHANGE_REFUSED:
      return "refused";
    case IPOD_EXCHANGE_UNANSWERED:
      return "unanswered";
    case IPOD_EXCHANGE_DAMAGED:
      return "damaged";
    case IPOD_EXCHANGE_ECHOED:
      return "echoed";
    default:
      return "none";
  }
}

// "0F 03 answered 03 01 05": command, argument, what came, the answer's data; refusals with their
// status; "x3" where it took several attempts.
std::string Text(const tagIPOD_EXCHANGE& step) {
  std::string text = test::ToHex({static_cast<std::uint8_t>(step.command), step.argument});
  text += " " + ResultName(step.result);
  if (step.result == IPOD_EXCHANGE_REFUSED) {
    text += " " + test::ToHex({step.status});
  } else if (step.data_bytes != 0) {
    text += " " + test::ToHex(Bytes(step.data, step.data + step.data_bytes));
  }
  if (step.attempts != 1) text += " x" + std::to_string(step.attempts);
  return text;
}

class IdentifyReport : public Identification {
 protected:
  tagIPOD_IDENTIFY_REPORT Report() {
    tagIPOD_IDENTIFY_REPORT report = {};
    EXPECT_EQ(session_.GetIdentifyReport(&report), 1);
    return report;
  }
  std::vector<tagIPOD_EXCHANGE> Steps() {
    const tagIPOD_IDENTIFY_REPORT report = Report();
    return {report.step, report.step + report.steps};
  }
  std::vector<std::string> Texts() {
    std::vector<std::string> texts;
    for (const tagIPOD_EXCHANGE& step : Steps()) texts.push_back(Text(step));
    return texts;
  }
  void BeRobust() { ASSERT_EQ(session_.SetConduct(&IPOD_CONDUCT_ROBUST), 1); }
};

TEST_F(IdentifyReport, IsEmptyBeforeTheFirstIdentification) {
  EXPECT_EQ(Report().steps, 0U);
  EXPECT_EQ(Report().result, IPOD_IDENTIFY_RESULT_NONE);
  EXPECT_EQ(session_.GetIdentifyReport(nullptr), 0);
}

TEST_F(IdentifyReport, TellsEveryStepOfTokensUnderTheDefaultConduct) {
  DockTokenIpod();
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(Report().result, IPOD_IDENTIFY_RESULT_IDPS);
  EXPECT_THAT(Texts(), ElementsAre("38 00 answered 00 38", "11 00 answered 01 F8",
                                   "4B 00 answered 00 00 00 00 00 00 00 00 00",
                                   "4B 09 answered 09 00 00 00 00 00 00 00 02",
                                   "4B 04 answered 04 00 00 00 00 00 00 00 02",
                                   "39 01 answered 01 03 00 00 00", "39 0F answered 01 03 00 01 00",
                                   "3B 00 answered 00", "4F 00 answered 00 00 00 00 00 00 02 04",
                                   "49 00 answered 00 49"));
  EXPECT_EQ(Steps().front().carried_id, 0);
  EXPECT_EQ(Steps().back().carried_id, 1);
}

TEST_F(IdentifyReport, MeasuresNoTimeUnderTheDefaultConduct) {
  Identify();
  EXPECT_EQ(Report().took_ms, 0U);
  EXPECT_THAT(Steps(), Each(Field(&tagIPOD_EXCHANGE::took_ms, 0U)));
}

TEST_F(IdentifyReport, TellsSilenceAndWhatItCost) {
  BeRobust();
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(Report().result, IPOD_IDENTIFY_RESULT_NONE);
  EXPECT_THAT(Texts(), ElementsAre("38 00 unanswered", "38 00 unanswered", "38 00 unanswered",
                                   "38 00 unanswered", "38 00 unanswered", "38 00 unanswered",
                                   "13 00 unanswered x3"));
  EXPECT_EQ(Steps()[1].carried_id, 1);
  // A second of silence, and 20 ms and a few bytes to write before it.
  EXPECT_THAT(Steps()[1].took_ms, AllOf(Ge(1020U), Le(1025U)));
  EXPECT_THAT(Steps().back().took_ms, AllOf(Ge(3060U), Le(3075U)));
  EXPECT_GE(Report().took_ms, 9180U);
  EXPECT_LE(Report().took_ms, 9800U);
}

TEST_F(IdentifyReport, TellsTheVersionsThatAreTooOldUnderTheDefaultConduct) {
  Reply(test::kStart, test::kStartRefused);
  Reply("00 0F 04", "00 10 04 01 07");
  AcceptLingoes();
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(Report().result, IPOD_IDENTIFY_RESULT_TOOOLD);
  EXPECT_THAT(Texts(),
              ElementsAre("38 00 refused 04", "13 00 answered 00 13", "0F 00 answered 00 01 09",
                          "0F 03 answered 03 01 05", "0F 04 answered 04 01 07",
                          "0F 09 answered 09 01 01", "0F 0C answered 0C 01 02"));
}

TEST_F(IdentifyReport, TellsTheStatusOfARefusalUnderTheDefaultConduct) {
  Reply(test::kStart, test::kStartRefused);
  Reply("00 0F 09", "00 02 05 0F");
  DockLingoIpod();
  Identify();
  EXPECT_EQ(Texts()[5], "0F 09 refused 05");
}

TEST_F(IdentifyReport, TellsAnIdentifierThatNobodyAskedFor) {
  Reply(test::kStart, "00 02 00 05 04 38");
  Identify();
  EXPECT_EQ(Texts().front(), "38 00 refused 04");
  EXPECT_EQ(Steps().front().carried_id, 0);
  EXPECT_EQ(Steps().front().answer_carried_id, 1);
}

TEST_F(IdentifyReport, DoesNotTellAForeignAnswerThoughTheDefaultConductBelievesIt) {
  Reply(test::kStart, test::kStartRefused);
  Reply("00 0F 03", "00 10 00 01 09");  // the General lingo's
  DockLingoIpod();
  Identify();
  EXPECT_EQ(Texts()[3], "0F 03 unanswered");
}

TEST_F(IdentifyReport, TellsADamagedAnswer) {
  BeRobust();
  session_.SetIDPSEnable(0);
  Reply(test::kIdentifyGeneralOnly, test::kIdentified);
  Reply("00 0F 00", "00 10 00 01");
  EXPECT_EQ(Identify(), 0);
  EXPECT_THAT(Texts(), ElementsAre("13 00 answered 00 13", "0F 00 damaged 00 01 x3"));
}

TEST_F(IdentifyReport, TellsOwnBytesThatCameBack) {
  BeRobust();
  test::EchoingLine line;
  world_.line().Unplug();
  world_.line().Plug(line);
  EXPECT_EQ(Identify(), 0);
  EXPECT_EQ(Report().result, IPOD_IDENTIFY_RESULT_ECHO);
  EXPECT_EQ(Texts().back(), "38 00 echoed");
  world_.line().Unplug();
}

TEST_F(IdentifyReport, BeginsAnewWithEachIdentification) {
  DockLingoIpod();
  Identify();
  ASSERT_GT(Report().steps, 10U);
  Reply(test::kStart, test::kStartRefused);
  stop_at_ = 2;
  session_.SetIDPSEnable(0);
  Identify();
  EXPECT_THAT(Texts(), ElementsAre("13 00 answered 00 13"));
}

// A host that may stop every command is asked for the fourth time before StartIDPS is sent.
TEST_F(IdentifyReport, LeavesOutWhatTheHostDidNotLetBeSent) {
  session_.SetKeepGoing([](void*) { return true; }, nullptr);
  stop_at_ = 4;
  EXPECT_EQ(Identify(), 0);
  EXPECT_THAT(DrainSent(), ElementsAre("FF"));
  EXPECT_THAT(Texts(), IsEmpty());
}

TEST_F(IdentifyReport, TellsWhatTheHostDidNotLetBeAwaited) {
  session_.SetKeepGoing([](void*) { return true; }, nullptr);
  on_step_ = [&](int step) {
    const bool asked = ipod_.received().size() > 1;  // more than the wake-up byte has come
    if (asked) stop_at_ = step;
  };
  EXPECT_EQ(Identify(), 0);
  EXPECT_THAT(DrainSent(), ElementsAre("FF", "FF 55 02 00 38 C6"));
  EXPECT_THAT(Texts(), ElementsAre("38 00 unanswered"));
}

TEST_F(IdentifyReport, OutlivesLaterCommandsAndIsCopied) {
  DockLingoIpod();
  Identify();
  const auto steps = Report().steps;
  session_.Command_GetShuffle(nullptr);
  CIpodComm copy(session_);
  tagIPOD_IDENTIFY_REPORT report = {};
  copy.GetIdentifyReport(&report);
  EXPECT_EQ(report.steps, steps);
  EXPECT_EQ(report.result, IPOD_IDENTIFY_RESULT_LINGOS);
}

// The host is asked five times, and asks the iPod nine times each for itself: 45 steps beside the
// 17 of the sequence, whose last ones find the report full.
TEST_F(IdentifyReport, CountsTheStepsThatItHasNoRoomFor) {
  session_.SetConduct(&IPOD_CONDUCT_FIELD);
  session_.SetIDPSEnable(0);
  AcceptLingoes();
  Answer("FF 55 03 04 00 2C CD", "FF 55 04 04 00 2D 02 C9");
  on_step_ = [&](int) {
    for (int i = 0; i < 9; ++i) session_.Command_GetShuffle(nullptr);
  };
  EXPECT_NE(Identify(), 0);
  EXPECT_EQ(steps_, 5);
  EXPECT_EQ(Report().steps, 48U);
  EXPECT_EQ(Report().steps_left_out, 14U);
}

TEST(IdentifyReportRecord, CountsStepsThatDoNotFit) {
  tagIPOD_IDENTIFY_REPORT report = {};
  for (std::uint16_t i = 0; i < 51; ++i) {
    tagIPOD_EXCHANGE step = {};
    step.command = i;
    ipodcomm::AddStep(&report, step);
  }
  EXPECT_EQ(report.steps, 48U);
  EXPECT_EQ(report.step[47].command, 47);
  EXPECT_EQ(report.steps_left_out, 3U);
}

}  // namespace
