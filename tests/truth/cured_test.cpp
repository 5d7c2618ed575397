// SPDX-License-Identifier: MIT
// Single runs in which a command once told something untrue.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "children.h"

namespace truth {
namespace {

// The sentence that it fails with, and honestly.
std::string HonestFailure(const char* name) {
  std::string message = "nothing";
  RunInChildren({*CaseByName(name)}, 1, [&message](const Report& report) {
    EXPECT_EQ(report.judgement.verdict, Verdict::kHonest) << report.judgement.why;
    EXPECT_TRUE(report.struck);
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

}  // namespace
}  // namespace truth
