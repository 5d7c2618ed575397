// SPDX-License-Identifier: MIT
// The common iPod: it first says that entering the remote user interface is pending, and 200 ms
// later that it is done.
#include "field/docked.h"

namespace {

using ipodsim::Profile;
using test::Docked;
using test::kMillisecond;
using test::TrackNames;

ipodsim::Settings Pending(Profile profile = Profile::kNano) {
  ipodsim::Settings settings = test::SixtySongs(profile);
  settings.remote_ui_is_pending_first = true;
  return settings;
}

// With identifiers the pending acknowledgement is not known as one: it is a refusal, and the older
// command that follows it is met by the final acknowledgement of the first.
TEST(PendingRemoteUi, UnderFieldIsNotEnteredWithIdentifiersThoughItIs) {
  Docked docked(Pending(), IPOD_CONDUCT_FIELD);
  EXPECT_TRUE(docked.Identify());
  EXPECT_EQ(docked.session.Command_EnterRemoteUIMode(), 0);
  EXPECT_EQ(docked.ipod.ui_mode(), 1);
}

TEST(PendingRemoteUi, UnderFieldIsEnteredWithoutIdentifiers) {
  Docked docked(Pending(Profile::kClassic), IPOD_CONDUCT_FIELD);
  docked.GoToTracks();
  EXPECT_EQ(docked.Names(0, 60), TrackNames(0, 60));
}

TEST(PendingRemoteUi, UnderRobustIsEnteredWhenItIsDone) {
  for (const Profile profile : {Profile::kNano, Profile::kClassic}) {
    for (const tagIPOD_CONDUCT& conduct : {IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
      Docked docked(Pending(profile), conduct);
      EXPECT_TRUE(docked.Identify());
      const std::int64_t took_us =
          docked.Elapsed([&] { EXPECT_EQ(docked.session.Command_EnterRemoteUIMode(), 1); });
      EXPECT_GT(took_us, 200 * kMillisecond);
      EXPECT_LT(took_us, 300 * kMillisecond);
      EXPECT_EQ(docked.session.SelectTop(test::kTracks, nullptr, 0), 1);
      EXPECT_EQ(docked.Names(0, 60), TrackNames(0, 60));
    }
  }
}

}  // namespace
