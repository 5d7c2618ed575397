// SPDX-License-Identifier: MIT
// iPods that want a transaction identifier from the first frame on, and a line that is wired back
// to itself: what identification makes of them.
#include "field/docked.h"

namespace {

using ipodsim::Profile;
using test::Docked;
using test::kSecond;

TEST(StrictIpod, UnderFieldIsTooOldAfterTwentySeconds) {
  Docked docked(test::SixtySongs(Profile::kStrict), IPOD_CONDUCT_FIELD);
  EXPECT_GT(docked.Elapsed([&] { EXPECT_FALSE(docked.Identify()); }), 19 * kSecond);
  EXPECT_EQ(docked.how, IPOD_IDENTIFY_RESULT_TOOOLD);
}

TEST(StrictIpod, UnderRobustIsIdentifiedByTokens) {
  for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    Docked docked(test::SixtySongs(Profile::kStrict), conduct);
    EXPECT_LT(docked.Elapsed([&] { EXPECT_TRUE(docked.Identify()); }), 5 * kSecond);
    EXPECT_EQ(docked.how, IPOD_IDENTIFY_RESULT_IDPS);
    EXPECT_TRUE(docked.ipod.identified_by_tokens());
    EXPECT_TRUE(docked.ipod.mistakes().empty());
  }
}

TEST(IpodThatStartsWithAnIdentifier, UnderFieldIsIdentifiedByLingoes) {
  Docked docked(test::SixtySongsWith("start-with-id"), IPOD_CONDUCT_FIELD);
  EXPECT_TRUE(docked.Identify());
  EXPECT_EQ(docked.how, IPOD_IDENTIFY_RESULT_LINGOS);
}

TEST(IpodThatStartsWithAnIdentifier, UnderRobustIsIdentifiedByTokens) {
  for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    Docked docked(test::SixtySongsWith("start-with-id"), conduct);
    EXPECT_TRUE(docked.Identify());
    EXPECT_EQ(docked.how, IPOD_IDENTIFY_RESULT_IDPS);
  }
}

TEST(LineWiredBackToItself, UnderFieldIsAnIpodIdentifiedByTokens) {
  Docked docked(test::SixtySongs(Profile::kEcho), IPOD_CONDUCT_FIELD);
  EXPECT_TRUE(docked.Identify());
  EXPECT_EQ(docked.how, IPOD_IDENTIFY_RESULT_IDPS);
}

TEST(LineWiredBackToItself, UnderRobustIsWhatItIs) {
  for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    Docked docked(test::SixtySongs(Profile::kEcho), conduct);
    EXPECT_LT(docked.Elapsed([&] { EXPECT_FALSE(docked.Identify()); }), 3 * kSecond);
    EXPECT_EQ(docked.how, IPOD_IDENTIFY_RESULT_ECHO);
  }
}

}  // namespace
