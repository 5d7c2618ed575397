// SPDX-License-Identifier: MIT
// One answer that comes just after it was given up, and is met by the next attempt.
#include "field/docked.h"

namespace {

using ipodsim::Fault;
using test::Docked;
using test::kMillisecond;

// ---- A count, with identifiers

unsigned long CountThatCameLate(const tagIPOD_CONDUCT& conduct) {
  ipodsim::Settings settings = test::SixtySongs();
  settings.faults.Plan(
      {Fault::kLateAnswers, ipodsim::kExtended, ipodsim::extended::kGetNumberCategorizedDbRecords});
  settings.faults.late_by = 1100 * kMillisecond;
  Docked docked(settings, conduct);
  EXPECT_TRUE(docked.Identify());
  EXPECT_TRUE(docked.ipod.identifiers_on());
  EXPECT_EQ(docked.session.Command_EnterRemoteUIMode(), 1);
  unsigned long count = 0;
  EXPECT_EQ(docked.session.Command_GetNumberCategorizedDBRecords(test::kTracks, &count), 1);
  return count;
}

// The identifier of the first attempt, 000A, is read as the upper half of the count.
TEST(LateCount, UnderFieldHoldsTheIdentifierOfTheFirstAttempt) {
  EXPECT_EQ(CountThatCameLate(IPOD_CONDUCT_FIELD), 655360UL);
}

TEST(LateCount, UnderRobustIsTheCount) {
  EXPECT_EQ(CountThatCameLate(IPOD_CONDUCT_ROBUST), 60UL);
  EXPECT_EQ(CountThatCameLate(IPOD_CONDUCT_FAST), 60UL);
}

// ---- A version, without identifiers

// An iPod new enough, of whose versions the nth that is asked for comes late.
ipodsim::Settings WithALateVersion(std::uint32_t nth) {
  ipodsim::Settings settings = test::SixtySongs(ipodsim::Profile::kClassic);
  settings.faults.Plan({Fault::kLateAnswers, ipodsim::kGeneral,
                        ipodsim::general::kRequestLingoProtocolVersion, nth});
  settings.faults.late_by = 1200 * kMillisecond;
  return settings;
}

// General 1.06, which comes twice, is taken for the Display Remote's version, and so on.
TEST(LateVersion, UnderFieldIsTakenForTheNextLingosAndTheIpodForTooOld) {
  for (const std::uint32_t nth : {1U, 2U}) {
    Docked docked(WithALateVersion(nth), IPOD_CONDUCT_FIELD);
    EXPECT_FALSE(docked.Identify()) << nth;
    EXPECT_EQ(docked.how, IPOD_IDENTIFY_RESULT_TOOOLD) << nth;
  }
}

TEST(LateVersion, UnderRobustIsItsOwnLingos) {
  for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    for (std::uint32_t nth = 1; nth <= 5; ++nth) {
      Docked docked(WithALateVersion(nth), conduct);
      EXPECT_TRUE(docked.Identify()) << nth;
      EXPECT_EQ(docked.how, IPOD_IDENTIFY_RESULT_LINGOS) << nth;
    }
  }
}

}  // namespace
