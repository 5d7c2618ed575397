// SPDX-License-Identifier: MIT
// A whole story with an iPod of forty tracks in the dock: identified, browsed name by name, played
// and followed, without one protocol mistake.
#include <string>

#include "simulator/simulated_ipod.h"
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kSecond;
using test::World;
using ::testing::IsEmpty;

constexpr std::size_t kTracks = 40;

std::string Title(std::size_t track) {
  return std::string(track < 10 ? "Track 0" : "Track ") + std::to_string(track);
}

ipodsim::Settings SettingsOf(std::uint64_t seed) {
  ipodsim::Settings settings;
  settings.seed = seed;
  settings.remote_ui_is_pending_first = false;  // the default conduct takes that for the answer
  settings.library = {};
  settings.library.name = "Pod";
  for (std::size_t i = 0; i < kTracks; ++i) {
    ipodsim::Track track;
    track.title = Title(i);
    track.artist = "Ann";
    track.album = "Rivers";
    track.genre = "Rock";
    track.length_ms = 180'000;
    settings.library.tracks.push_back(track);
  }
  return settings;
}

class FortyTracks : public ::testing::TestWithParam<std::uint64_t> {
 protected:
  static void Identify(CIpodComm& session) {
    tagIPOD_IDENTIFY_RESULT how = IPOD_IDENTIFY_RESULT_NONE;
    session.SetIDPSEnable(1);
    EXPECT_NE(session.Command_IdentifyDeviceLingos(0, &how, nullptr, nullptr), 0);
    EXPECT_EQ(how, IPOD_IDENTIFY_RESULT_IDPS);
  }
  static void Browse(CIpodComm& session) {
    unsigned long tracks = 0;
    EXPECT_EQ(session.Command_EnterRemoteUIMode(), 1);
    EXPECT_EQ(session.SelectTop(5, &tracks, 0), 1);
    EXPECT_EQ(tracks, kTracks);
    session.Command_RetrieveCategorizedDatabaseRecords(0, 20, 5);
    wchar_t name[64] = {};
    for (std::size_t i = 0; i < 20; ++i) {
      ASSERT_EQ(session.GetNextCategorizedRecord(name, 64), 1);
      const std::string title = Title(i);
      EXPECT_EQ(std::wstring(name), std::wstring(title.begin(), title.end()));
    }
  }
  static void PlayAndFollow(World& world, CIpodComm& session) {
    session.SetNotification(0x0000000F);
    EXPECT_EQ(session.Select(5, 3UL), 1);
    world.Advance(4 * kSecond);
    tagIPOD_PLAY_STATUS status = {};
    session.GetPlayStatus(&status);
    EXPECT_GE(status.position, 2U);
    EXPECT_LE(status.position, 5U);
  }
};

TEST_P(FortyTracks, AreBrowsedPlayedAndFollowed) {
  test::DrainTraceLog();
  ipodsim::SimulatedIpod ipod(SettingsOf(GetParam()));
  World world({GetParam()});
  world.line().PlugModel(ipod);
  {
    test::ChosenSession session;
    world.Advance(2 * kSecond);
    ASSERT_EQ(session.Open(), 0);
    Identify(session);
    Browse(session);
    PlayAndFollow(world, session);
    session.Close();
  }
  world.Advance(2 * kSecond);
  for (const auto& mistake : ipod.mistakes())
    ADD_FAILURE() << mistake.name << ": " << mistake.detail;
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  world.line().Unplug();
}

INSTANTIATE_TEST_SUITE_P(Seeds, FortyTracks, ::testing::Range<std::uint64_t>(1, 4));

}  // namespace
