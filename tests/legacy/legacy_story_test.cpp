// SPDX-License-Identifier: MIT
// Whole stories of the legacy interface with the simulated iPod in the dock: the self-test, and a
// workout whose file is read back, without one protocol mistake.
#include <string>
#include <vector>

#include "simulator/files/feature_files.h"
#include "simulator/simulated_ipod.h"
#include "support/session_test.h"

namespace {

using test::kSecond;
using test::World;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

std::vector<std::string> Mistakes(const ipodsim::SimulatedIpod& simulated) {
  std::vector<std::string> names;
  for (const auto& mistake : simulated.mistakes()) {
    names.push_back(mistake.name + ": " + mistake.detail);
  }
  return names;
}

std::string Narrow(const wchar_t* text) {
  std::string narrow;
  for (; *text != L'\0'; ++text) narrow += *text < 0x80 ? static_cast<char>(*text) : '?';
  return narrow;
}

// What a service screen has shown.
struct Shown {
  std::vector<std::string> titles;
  std::vector<std::string> details;
  std::vector<int> results;
};

Shown RunSelfTest(ipod& docked) {
  Shown shown;
  wchar_t title[256] = {};
  wchar_t detail[256] = {};
  EXPECT_EQ(docked.startregressiontest(detail), 1);
  for (int more = 1; more != 0;) {
    int result = 77;
    more = docked.nextregressiontest(title, &result, detail);
    shown.titles.push_back(Narrow(title));
    shown.details.push_back(Narrow(detail));
    shown.results.push_back(result);
  }
  return shown;
}

class LegacyStories : public ::testing::TestWithParam<std::uint64_t> {};

TEST_P(LegacyStories, SelfTestPassesEachStepWithoutAMistake) {
  ipodsim::Settings settings;
  settings.seed = GetParam();
  ipodsim::SimulatedIpod simulated(settings);
  World world({GetParam()});
  world.line().PlugModel(simulated);
  ipod docked;
  const Shown shown = RunSelfTest(docked);
  EXPECT_THAT(shown.results, ElementsAre(1, 1, 1, 1, 1));
  EXPECT_THAT(shown.titles, ElementsAre("Set Up Connection Test", StartsWith("Ipod Information "),
                                        "Select Tracks from Album 0 Test", "Play Pause Stop Test",
                                        "End of Regression Test"));
  EXPECT_THAT(shown.details,
              ElementsAre("Enter Remote UI mode", "Getting Software Version",
                          StartsWith("Compare Playing Track "), "Setting to Stop", ""));
  world.Advance(2 * kSecond);
  EXPECT_THAT(Mistakes(simulated), IsEmpty());
  EXPECT_FALSE(world.line().open());
  world.line().Unplug();
}

INSTANTIATE_TEST_SUITE_P(Seeds, LegacyStories, ::testing::Range<std::uint64_t>(1, 9));

ipodsim::Settings SettingsWithAlbumOf(std::size_t tracks) {
  ipodsim::Settings settings;
  settings.library = {};
  settings.library.name = "Pod";
  for (std::size_t i = 0; i < tracks; ++i) {
    ipodsim::Track track;
    track.title = "Track " + std::to_string(i);
    track.artist = "Ann";
    track.album = "Rivers";
    track.genre = "Rock";
    track.length_ms = 180'000;
    track.number = static_cast<int>(i) + 1;
    settings.library.tracks.push_back(track);
  }
  return settings;
}

TEST(LegacyStory, SelfTestOnAnAlbumOfOneTrackEndsWithTheFirstComparison) {
  ipodsim::SimulatedIpod simulated(SettingsWithAlbumOf(1));
  World world({1});
  world.line().PlugModel(simulated);
  ipod docked;
  const Shown shown = RunSelfTest(docked);
  EXPECT_THAT(shown.results, ElementsAre(1, 1, 1, 1, 1));
  EXPECT_EQ(shown.details[2], "Compare Playing Track 0 Name to Selected Track Name");
  EXPECT_THAT(Mistakes(simulated), IsEmpty());
  world.line().Unplug();
}

TEST(LegacyStory, SelfTestOnAnAlbumOfTwoTracksPlaysBoth) {
  ipodsim::SimulatedIpod simulated(SettingsWithAlbumOf(2));
  World world({1});
  world.line().PlugModel(simulated);
  ipod docked;
  const Shown shown = RunSelfTest(docked);
  EXPECT_THAT(shown.results, ElementsAre(1, 1, 1, 1, 1));
  EXPECT_EQ(shown.details[2], "Compare Playing Track 1 Name to Selected Track Name");
  EXPECT_THAT(Mistakes(simulated), IsEmpty());
  world.line().Unplug();
}

TEST(LegacyStory, SelfTestOnAnEmptyIpodFindsNoAlbum) {
  ipodsim::SimulatedIpod simulated(SettingsWithAlbumOf(0));
  World world({1});
  world.line().PlugModel(simulated);
  ipod docked;
  const Shown shown = RunSelfTest(docked);
  EXPECT_EQ(shown.results[2], 0);
  EXPECT_EQ(shown.details[2], "Select Top Album Both");
  world.line().Unplug();
}

// ---- A workout

// An iPod that older consoles take for one that knows workouts.
ipodsim::Settings WorkoutSettings(std::uint64_t seed) {
  ipodsim::Settings settings;
  settings.seed = seed;
  settings.model_id = 0x00140000;
  return settings;
}

int StartWorkout(ipod& docked) {
  wchar_t manufacturer_id[] = L"0042";
  wchar_t ignored[] = L"not written";
  wchar_t model[] = L"B7";
  wchar_t serial_number[] = L"123-4";
  wchar_t gym_name[] = L"Nord";
  wchar_t gym_location[] = L"Hall 2";
  return docked.startworkout(ipod::IPOD_SPORTS_WORKOUTTYPE_BIKE, manufacturer_id, ignored, model,
                             serial_number, gym_name, gym_location, 72.5F);
}

constexpr const char* kDocument =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "\t<gymData>\n"
    "\t<vers>1</vers>\n"
    "\t<equipmentInfo>\n"
    "\t\t<manufacturerID>0042</manufacturerID>\n"
    "\t\t<type>Bike</type>\n"
    "\t\t<model>B7</model>\n"
    "\t\t<serialNumber>123-4</serialNumber>\n"
    "\t\t<gymName>Nord</gymName>\n"
    "\t\t<gymLocation>Hall 2</gymLocation>\n"
    "\t</equipmentInfo>\n"
    "\t<userInfo>\n"
    "\t\t<kg>72.500000</kg>\n"
    "\t</userInfo>\n"
    "\t<interval>\n"
    "\t\t<event>start</event>\n"
    "\t\t<sec>0</sec>\n"
    "\t\t<kCal>0</kCal>\n"
    "\t\t<km>0.000000</km>\n"
    "\t\t<pace>0</pace>\n"
    "\t\t<bpm>71</bpm>\n"
    "\t\t<incline>0.000000</incline>\n"
    "\t\t<level>3</level>\n"
    "\t</interval>\n"
    "\t<interval>\n"
    "\t\t<sec>60</sec>\n"
    "\t\t<kCal>11</kCal>\n"
    "\t\t<km>0.250000</km>\n"
    "\t\t<pace>240</pace>\n"
    "\t\t<bpm>118</bpm>\n"
    "\t\t<incline>1.500000</incline>\n"
    "\t\t<level>4</level>\n"
    "\t</interval>\n"
    "\t<workoutSummary>\n"
    "\t\t<sec>120</sec>\n"
    "\t\t<kCal>22</kCal>\n"
    "\t\t<km>0.500000</km>\n"
    "\t\t<pace>240</pace>\n"
    "\t\t<bpm>109</bpm>\n"
    "\t</workoutSummary>\n";

class LegacyWorkoutStories : public ::testing::TestWithParam<std::uint64_t> {};

TEST_P(LegacyWorkoutStories, FileOnTheIpodHoldsTheDocument) {
  ipodsim::SimulatedIpod simulated(WorkoutSettings(GetParam()));
  World world({GetParam()});
  world.line().PlugModel(simulated);
  ipod docked;
  ASSERT_EQ(docked.openport(), 1);
  EXPECT_EQ(docked.command_identifydevicelingos(0), 1);
  world.Advance(kSecond);
  EXPECT_EQ(StartWorkout(docked), 1);
  EXPECT_EQ(docked.intervalworkout(1, 0, 0, 0, 0, 0, 0, 0, 71, 0, 3), 1);
  EXPECT_EQ(docked.intervalworkout(6, 60, 11, 0.25F, 0, 240, 0, 0, 118, 1.5F, 4), 1);
  EXPECT_THAT(simulated.open_feature_files(), ElementsAre("gym-0001.xml"));
  EXPECT_EQ(docked.finishworkout(120, 22, 0.5F, 0, 240, 0, 0, 109), 1);
  docked.closeport();

  EXPECT_THAT(simulated.open_feature_files(), IsEmpty());
  ASSERT_THAT(simulated.feature_files().Names(), ElementsAre("gym-0001.xml"));
  const std::string file = simulated.feature_files().Read("gym-0001.xml");
  const std::string written = kDocument;
  EXPECT_EQ(file.substr(0, written.size()), written);
  const std::string appended = file.substr(written.size());
  EXPECT_THAT(appended, HasSubstr("<iPodInfo>"));
  EXPECT_THAT(appended, HasSubstr("<signature>"));
  EXPECT_EQ(appended.substr(appended.size() - 10), "</gymData>");
  EXPECT_THAT(Mistakes(simulated), IsEmpty());
  world.line().Unplug();
}

INSTANTIATE_TEST_SUITE_P(Seeds, LegacyWorkoutStories, ::testing::Range<std::uint64_t>(1, 9));

// The iPod wants to know about the accessory's Sports lingo before it tells about its own. What it
// asks about Storage stays without an answer.
TEST(LegacyWorkoutStory, QuestionsInBetweenAreAnswered) {
  ipodsim::Settings settings = WorkoutSettings(1);
  settings.asks_during_session = true;
  ipodsim::SimulatedIpod simulated(settings);
  std::vector<std::string> heard;
  simulated.set_trace([&heard](const ipodsim::TraceLine& line) {
    if (line.direction == ipodsim::TraceLine::Direction::kFromAccessory) heard.push_back(line.text);
  });
  World world({1});
  world.line().PlugModel(simulated);
  ipod docked;
  ASSERT_EQ(docked.openport(), 1);
  EXPECT_EQ(docked.command_identifydevicelingos(0), 1);
  world.Advance(kSecond);
  EXPECT_EQ(StartWorkout(docked), 1);
  EXPECT_THAT(heard, Contains("Sports RetDeviceVersion: 01 00"));
  EXPECT_THAT(heard, Contains("Sports RetDeviceCaps: 02 00 00"));
  world.line().Unplug();
}

TEST(LegacyWorkoutStory, RefusedWriteEndsTheHeaderAndTheFileCanBeClosed) {
  ipodsim::Settings settings = WorkoutSettings(1);
  settings.storage.failing_writes[3] = ipodsim::AckStatus::kOutOfResources;
  ipodsim::SimulatedIpod simulated(settings);
  World world({1});
  world.line().PlugModel(simulated);
  ipod docked;
  ASSERT_EQ(docked.openport(), 1);
  EXPECT_EQ(docked.command_identifydevicelingos(0), 1);
  world.Advance(kSecond);
  EXPECT_EQ(StartWorkout(docked), 0);
  EXPECT_EQ(Narrow(docked.getlasttry()),
            "Error in Ack from Storage Write, value is 2, should be 0");
  EXPECT_EQ(docked.command_storagecloseipodfile(), 1);
  world.Advance(kSecond);
  EXPECT_THAT(simulated.open_feature_files(), IsEmpty());
  EXPECT_THAT(simulated.feature_files().Read("gym-0001.xml"),
              StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n\t<gymData>\n"));
  world.line().Unplug();
}

TEST(LegacyWorkoutStory, IpodWithoutWorkoutsIsLeftAlone) {
  ipodsim::Settings settings = WorkoutSettings(1);
  settings.sports.capabilities = 0;
  ipodsim::SimulatedIpod simulated(settings);
  World world({1});
  world.line().PlugModel(simulated);
  ipod docked;
  ASSERT_EQ(docked.openport(), 1);
  EXPECT_EQ(docked.command_identifydevicelingos(0), 1);
  world.Advance(kSecond);
  EXPECT_EQ(StartWorkout(docked), 0);
  EXPECT_EQ(Narrow(docked.getlasttry()), "Makeing sure iPod supports workout");
  EXPECT_THAT(simulated.feature_files().Names(), IsEmpty());
  EXPECT_THAT(Mistakes(simulated), IsEmpty());
  world.line().Unplug();
}

}  // namespace
