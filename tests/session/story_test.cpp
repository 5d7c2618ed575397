// SPDX-License-Identifier: MIT
// Whole stories with the simulated iPod in the dock: identified, browsed, played, followed and
// closed without one protocol mistake; and the same with each of its faults switched on, after
// which the session works.
#include <array>
#include <string>

#include "simulator/settings/ipod_faults.h"
#include "simulator/simulated_ipod.h"
#include "support/packets.h"
#include "support/session_test.h"

namespace {

using test::kMillisecond;
using test::kSecond;
using test::World;
using ::testing::IsEmpty;

std::vector<std::string> Mistakes(const ipodsim::SimulatedIpod& ipod) {
  std::vector<std::string> names;
  for (const auto& mistake : ipod.mistakes()) names.push_back(mistake.name + ": " + mistake.detail);
  return names;
}

// How far the story came.
struct Story {
  int identified = 0;
  tagIPOD_IDENTIFY_RESULT how = IPOD_IDENTIFY_RESULT_NONE;
  unsigned long artists = 0;
  unsigned names = 0;
  int playing = 0;
  tagIPOD_PLAY_STATUS status = {};
};

Story Tell(World& world, CIpodComm& session) {
  Story story;
  session.SetIDPSEnable(1);
  story.identified = session.Command_IdentifyDeviceLingos(0, &story.how, nullptr, nullptr);
  session.Command_EnterRemoteUIMode();
  session.SelectTop(2, &story.artists, 0);  // artists
  session.Command_RetrieveCategorizedDatabaseRecords(0, 20, 2);
  wchar_t name[64] = {};
  while (story.names < 20 && session.GetNextCategorizedRecord(name, 64) == 1) ++story.names;
  session.SetNotification(0x0000000F);
  session.SelectTop(5, nullptr, 0);  // tracks
  story.playing = session.Select(5, 3UL);
  world.Advance(4 * kSecond);
  session.GetPlayStatus(&story.status);
  return story;
}

// The session works when it can be identified again and tells the iPod's name.
void ExpectToWork(CIpodComm& session, const std::string& where) {
  EXPECT_EQ(session.Open(), 0) << where;
  tagIPOD_IDENTIFY_RESULT how = IPOD_IDENTIFY_RESULT_NONE;
  session.SetIDPSEnable(1);
  EXPECT_NE(session.Command_IdentifyDeviceLingos(0, &how, nullptr, nullptr), 0) << where;
  wchar_t name[64] = {};
  EXPECT_EQ(session.Command_RequestIpodName(name, 64), 1) << where;
  EXPECT_NE(name[0], L'\0') << where;
}

class Stories : public ::testing::TestWithParam<std::uint64_t> {};

TEST_P(Stories, IdentifiedBrowsedPlayedAndFollowedWithoutAMistake) {
  test::DrainTraceLog();
  ipodsim::Settings settings;
  settings.seed = GetParam();
  ipodsim::SimulatedIpod ipod(settings);
  World world({GetParam()});
  world.line().PlugModel(ipod);
  {
    test::ChosenSession session;
    world.Advance(2 * kSecond);
    ASSERT_EQ(session.Open(), 0);
    const Story story = Tell(world, session);
    EXPECT_NE(story.identified, 0);
    EXPECT_EQ(story.how, IPOD_IDENTIFY_RESULT_IDPS);
    EXPECT_TRUE(ipod.identified_by_tokens());
    EXPECT_GT(story.artists, 20U);
    EXPECT_EQ(story.names, 20U);
    EXPECT_EQ(story.playing, 1);
    EXPECT_GE(story.status.position, 2U);
    EXPECT_LE(story.status.position, 5U);
    const std::uint32_t before = story.status.position;
    world.Advance(3 * kSecond);
    tagIPOD_PLAY_STATUS later = {};
    session.GetPlayStatus(&later);
    EXPECT_GE(later.position, before + 2);
    session.Close();
  }
  world.Advance(2 * kSecond);
  EXPECT_THAT(Mistakes(ipod), IsEmpty());
  EXPECT_THAT(test::DrainTraceLog(), IsEmpty());
  world.line().Unplug();
}

INSTANTIATE_TEST_SUITE_P(Seeds, Stories, ::testing::Range<std::uint64_t>(1, 9));

class FaultyStories : public ::testing::TestWithParam<ipodsim::FaultInfo> {};

TEST_P(FaultyStories, EndInTimeAndTheSessionWorksAfterwards) {
  for (std::uint64_t seed = 1; seed <= 4; ++seed) {
    const std::string where = std::string(GetParam().name) + ", seed " + std::to_string(seed);
    ipodsim::Settings faulty;
    faulty.seed = seed;
    faulty.faults.Enable(GetParam().fault);
    ipodsim::SimulatedIpod faulty_ipod(faulty);
    ipodsim::Settings sound;
    sound.seed = seed;
    ipodsim::SimulatedIpod sound_ipod(sound);
    World world({seed});
    world.line().PlugModel(faulty_ipod);
    test::ChosenSession session;
    world.Advance(2 * kSecond);
    ASSERT_EQ(session.Open(), 0) << where;
    const std::int64_t start_us = world.now_us();
    const Story story = Tell(world, session);
    // At the worst every command takes its attempts, and each of them a few waits.
    EXPECT_LT(world.now_us() - start_us, 300 * kSecond) << where;
    EXPECT_LE(story.names, 20U) << where;
    world.line().PlugModel(sound_ipod);
    ExpectToWork(session, where);
    session.Close();
  }
  test::DrainTraceLog();
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultyStories, ::testing::ValuesIn(ipodsim::Faults::All()),
                         [](const ::testing::TestParamInfo<ipodsim::FaultInfo>& tested) {
                           std::string name = tested.param.name;
                           for (char& letter : name) {
                             if (letter == '-' || letter == ' ') letter = '_';
                           }
                           return name;
                         });

TEST(Story, SilentIpodIsGivenUpAndASoundOneIsIdentifiedAfterwards) {
  ipodsim::Settings settings;
  settings.profile = ipodsim::Profile::kSilent;
  ipodsim::SimulatedIpod silent(settings);
  ipodsim::SimulatedIpod sound(ipodsim::Settings{});
  World world({1});
  world.line().PlugModel(silent);
  test::ChosenSession session;
  world.Advance(2 * kSecond);
  ASSERT_EQ(session.Open(), 0);
  session.SetIDPSEnable(1);
  tagIPOD_IDENTIFY_RESULT how = IPOD_IDENTIFY_RESULT_LINGOS;
  EXPECT_EQ(session.Command_IdentifyDeviceLingos(0, &how, nullptr, nullptr), 0);
  EXPECT_EQ(how, IPOD_IDENTIFY_RESULT_NONE);
  world.line().PlugModel(sound);
  ExpectToWork(session, "after silence");
  test::DrainTraceLog();
}

}  // namespace
