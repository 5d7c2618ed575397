// SPDX-License-Identifier: MIT
// What is said of an iPod that was not identified, by the report of its identification.
#include "ipod/identify_evidence.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace ipodctl;
using ::testing::ElementsAre;

namespace {

tagIPOD_EXCHANGE Told(std::uint8_t lingo, std::uint8_t major, std::uint8_t minor) {
  tagIPOD_EXCHANGE step = {};
  step.result = IPOD_EXCHANGE_ANSWERED;
  step.command = 0x0F;
  step.argument = lingo;
  step.data_bytes = 3;
  step.data[0] = lingo;
  step.data[1] = major;
  step.data[2] = minor;
  return step;
}

tagIPOD_EXCHANGE Refused(std::uint16_t command, std::uint8_t argument, std::uint8_t status) {
  tagIPOD_EXCHANGE step = {};
  step.result = IPOD_EXCHANGE_REFUSED;
  step.command = command;
  step.argument = argument;
  step.status = status;
  return step;
}

tagIPOD_EXCHANGE Unanswered() {
  tagIPOD_EXCHANGE step = {};
  step.result = IPOD_EXCHANGE_UNANSWERED;
  step.command = 0x38;
  return step;
}

IdentifyEvidence Of(const std::vector<tagIPOD_EXCHANGE>& steps) {
  tagIPOD_IDENTIFY_REPORT report = {};
  for (const tagIPOD_EXCHANGE& step : steps) report.step[report.steps++] = step;
  return IdentifyEvidence(report);
}

TEST(IdentifyEvidence, NamesEveryVersionThatIsTooOldAndWhatIsNeeded) {
  EXPECT_EQ(Of({Told(0, 1, 9), Told(3, 1, 5), Told(4, 1, 6)}).WhatIsTooOld(),
            "Extended Interface 1.06, needs 1.08");
  EXPECT_EQ(Of({Told(0, 1, 1), Refused(0x0F, 3, 4), Told(4, 2, 0)}).WhatIsTooOld(),
            "General 1.01, needs 1.02; Display Remote not told (status 4, unknown to it), needs "
            "1.01");
}

TEST(IdentifyEvidence, CallsNoIpodTooOldForAVersionThatItKeepsToItself) {
  EXPECT_FALSE(Of({Told(0, 1, 9), Refused(0x0F, 3, 4), Told(4, 1, 8)}).AnyTooOld());
  EXPECT_TRUE(Of({Told(0, 1, 9), Refused(0x0F, 3, 4), Told(4, 1, 7)}).AnyTooOld());
}

TEST(IdentifyEvidence, TellsWithWhichStatusAVersionWasRefused) {
  const tagIPOD_IDENTIFY_REPORT none = {};
  EXPECT_FALSE(IdentifyEvidence(none).Refusal(3));
  EXPECT_FALSE(Of({Told(3, 1, 5)}).Refusal(3));
  EXPECT_EQ(Of({Told(0, 1, 9), Refused(0x0F, 3, 2)}).Refusal(3), 2);
}

TEST(IdentifyEvidence, TellsOfSilence) {
  const IdentifyEvidence evidence = Of({Unanswered(), Unanswered()});
  EXPECT_FALSE(evidence.AnyAnswer());
  EXPECT_EQ(evidence.WhatCame(), "no answer to any of 2 questions");
}

TEST(IdentifyEvidence, TellsTheRefusalThatEndedIt) {
  const IdentifyEvidence evidence = Of({Unanswered(), Refused(0x13, 0, 4)});
  EXPECT_TRUE(evidence.AnyAnswer());
  EXPECT_EQ(evidence.WhatCame(), "command 13 refused: status 4, unknown to it");
  EXPECT_EQ(Of({Refused(0x38, 0, 4), Unanswered()}).WhatCame(), "1 of 2 questions answered");
}

TEST(IdentifyEvidence, TellsHowManyQuestionsWereAnswered) {
  EXPECT_EQ(Of({Told(0, 1, 9), Unanswered()}).WhatCame(), "1 of 2 questions answered");
}

TEST(IdentifyEvidence, KnowsTheLingoesThatNeedNotBeAskedAgain) {
  const IdentifyEvidence evidence = Of({Told(0, 1, 9), Refused(0x0F, 9, 4), Unanswered()});
  EXPECT_THAT(evidence.AskedLingoes(), ElementsAre(0, 9));
  ASSERT_TRUE(evidence.Version(0).has_value());
  EXPECT_EQ(VersionText(*evidence.Version(0)), "1.09");
  EXPECT_FALSE(evidence.Version(9).has_value());
}

}  // namespace
