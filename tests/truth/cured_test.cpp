// SPDX-License-Identifier: MIT
// Single runs in which a command once told something untrue.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "children.h"

namespace truth {
namespace {

// Of the iPod's own troubles the dock does not know whether they struck.
enum class Struck { kByTheDock, kByTheIpod };

// The sentence that it fails with, and honestly.
std::string HonestFailure(const char* name, Struck struck = Struck::kByTheDock) {
  std::string message = "nothing";
  RunInChildren({*CaseByName(name)}, 1, [&](const Report& report) {
    EXPECT_EQ(report.judgement.verdict, Verdict::kHonest) << report.judgement.why;
    EXPECT_EQ(report.struck, struck == Struck::kByTheDock);
    message = report.judgement.why;
  });
  return message;
}

void ExpectRight(const char* name) {
  unsigned runs = 0;
  RunInChildren({*CaseByName(name)}, 1, [&runs](const Report& report) {
    ++runs;
    EXPECT_EQ(report.judgement.verdict, Verdict::kRight) << report.judgement.why;
  });
  EXPECT_EQ(runs, 1U);
}

TEST(Cured, AnIpodWhoseRefusalIsCutShortIsThereAllTheSame) {
  EXPECT_EQ(HonestFailure("legacy-info/strict/fast/cut@12/1008"),
            "the iPod did not answer when asked to tell its General version");
}

TEST(Cured, AnIpodWhoseRefusalsAreOftenCutShortIsThereAllTheSame) {
  EXPECT_EQ(HonestFailure("legacy-prefs/strict/fast/often-cut@0/2011"),
            "the iPod refused to tell any preference");
  EXPECT_EQ(HonestFailure("legacy-prefs/strict/robust/often-cut@0/2012"),
            "the iPod did not answer when asked to tell its preferences");
}

TEST(Cured, AnIpodThatRefusesToTellOfWorkoutsIsNotSaidToTakeNone) {
  for (const char* name : {"legacy-info/nano/fast/refused-always@9/5033",
                           "legacy-info/nano/fast/refused-always@10/5033"}) {
    ExpectRight(name);
  }
  EXPECT_EQ(HonestFailure("legacy-workout/nano/fast/refused-always@5/5033"),
            "the iPod refused to tell whether it takes workouts (status 4, unknown to it); try "
            "without --legacy");
}

TEST(Cured, ARestartedIpodPlaysFromItsFirstTrackOn) {
  ExpectRight("play/classic/robust/sim-restart@0/5042");
}

TEST(Cured, AWorkoutIsClosedAlthoughItsLastLineIsAcknowledgedTwice) {
  ExpectRight("legacy-workout/nano/fast/often-doubled@0/2049");
}

TEST(Cured, AnIpodThatAnswersTheSelfTestNowAndThenIsNotSaidToBeGone) {
  HonestFailure("selftest/nano/robust/doubled-bytes@0/4242006/text");
  HonestFailure("legacy-selftest/classic/robust/sim-refused-commands@0/4242015/text",
                Struck::kByTheIpod);
  HonestFailure("legacy-selftest/nano/robust/sim-shuffled-answers@0/4242015/text",
                Struck::kByTheIpod);
}

// Behind a lone sync byte stood the answer to the last attempt.
TEST(Cured, AnAnswerBehindALoneSyncByteIsTaken) {
  ExpectRight("now/classic/robust/flipped-bits@0/777025");
}

// Each came whole only where its refusal was awaited.
TEST(Cured, AnIpodWhoseAnswersAreOftenDamagedIsNotSaidToBeGone) {
  EXPECT_EQ(HonestFailure("legacy-selftest/nosports/robust/flipped-bits@0/777050/text"),
            "the self-test failed in 3 of 5 steps, first at 'Getting Ipod Name'");
  EXPECT_EQ(HonestFailure("legacy-selftest/classic/fast/doubled-bytes@0/778005"),
            "the self-test failed in 4 of 5 steps, first at 'Enter Remote UI mode'");
  EXPECT_EQ(HonestFailure("legacy-workout/nosports/fast/doubled-bytes@0/778026"),
            "this iPod does not take workouts from the legacy interface; dock one that does, or "
            "leave out --legacy");
}

// Half a second lay between two bytes of the refusal, which the legacy interface waits for.
TEST(Cured, ARefusalThatCameInPiecesIsOne) {
  EXPECT_EQ(HonestFailure("legacy-play-path/strict/robust/sim-late-bytes@0/902035/text",
                          Struck::kByTheIpod),
            "the iPod refused to be controlled from outside (status 1, command failed)");
}

TEST(Cured, AnIpodThatStartedAnewIsNotSaidToLackALingo) {
  EXPECT_EQ(HonestFailure("workout/nano/robust/restart@20/904023/text"),
            "the iPod refused to tell the version of a lingo (status 3, bad parameter)");
}

// Of one that sends large frames, and of two that only refuse or ask for patience now and then.
TEST(Cured, WhatSendsFramesIsNotSaidToBeAbsentNorToSendLargeOnes) {
  const std::string unusable =
      "what sends frames on /dev/ttyS1 cannot be used through the legacy interface; if they are "
      "large, which that does not know, leave out --legacy";
  EXPECT_EQ(
      HonestFailure("legacy-selftest/old/robust/large-frames@30/4242008/text", Struck::kByTheIpod),
      unusable);
  EXPECT_EQ(HonestFailure("legacy-info/silent/fast/often-pending@0/902002"), unusable);
  EXPECT_EQ(HonestFailure("legacy-selftest/silent/robust/refused-always@12/902026"), unusable);
}

TEST(Cured, ASelfTestDoesNotPassWithAVersionThatWasCutShort) {
  EXPECT_EQ(HonestFailure("legacy-selftest/classic/fast/cut@13/4242000/text"),
            "the self-test failed in 1 of 5 steps, first at 'Asked again, it told: Ipod "
            "Information Zoë's iPod MB029LL 0013|0100 8K7420SIM02 2.0.1'");
}

TEST(Cured, ASelfTestDoesNotPassWithAPlayerThatWasNotStopped) {
  EXPECT_EQ(HonestFailure("selftest/nano/robust/lost@38/20261122016"),
            "the self-test failed in 1 of 5 steps, first at 'Set to stop, it is paused'");
}

TEST(Cured, AnInterruptedSelfTestTellsTheStepsUntilThen) {
  EXPECT_EQ(HonestFailure("selftest/classic/fast/interrupt@23/20261122025"),
            "interrupted before it was done");
}

// A status that says nothing of the lingo: the command failed.
TEST(Cured, ALingoWhoseVersionIsRefusedIsNotSaidToBeLacking) {
  ExpectRight("info/nano/fast/refused@26/7002/text");
  ExpectRight("info/nano/fast/refused@27/7002/text");
  ExpectRight("info/nosports/robust/refused@24/7002");
}

TEST(Cured, ALineThatWasNotConfirmedIsNamedWithoutItsIndentation) {
  EXPECT_EQ(
      HonestFailure("legacy-workout/nano/fast/sim-restart@0/901016", Struck::kByTheIpod),
      "the iPod did not confirm the interval at 0:00 ('<pace>631</pace>'); a new workout file on "
      "the iPod holds the header (326 bytes), but not the summary and the end");
}

}  // namespace
}  // namespace truth
