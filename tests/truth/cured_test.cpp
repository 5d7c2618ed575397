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

TEST(Cured, AnIpodWhoseRefusalIsCutShortIsThereAllTheSame) {
  EXPECT_EQ(HonestFailure("legacy-info/strict/fast/cut@12/1008"),
            "the iPod did not answer when asked to tell its General version");
}

TEST(Cured, AnIpodWhoseRefusalsAreOftenCutShortIsThereAllTheSame) {
  EXPECT_EQ(HonestFailure("legacy-prefs/strict/fast/often-cut@0/2011"),
            "the iPod did not answer when asked to tell its preferences");
}

}  // namespace
}  // namespace truth
