// SPDX-License-Identifier: MIT
// The legacy interface with answers that it does not await: it reads the frame that comes next, and
// is off by one from there on. One question in between, of whose answer any frame before is passed
// over, brings it back.
#include <set>

#include "field/docked.h"
#include "ipodcomm/ipod.h"

namespace {

using ipodsim::Fault;
using test::World;

// Says first that entering the remote user interface is pending, as the common iPod does.
ipodsim::Settings WithAPendingRemoteUi() {
  ipodsim::Settings settings = test::SixtySongs();
  settings.remote_ui_is_pending_first = true;
  return settings;
}

class DockedLegacy {
 public:
  explicit DockedLegacy(const ipodsim::Settings& settings, std::uint64_t seed = 1)
      : simulated(settings), world({seed}) {
    world.line().PlugModel(simulated);
  }
  ~DockedLegacy() {
    legacy.closeport();
    world.line().Unplug();
  }

  void Identify() {
    EXPECT_EQ(legacy.openport(), 1);
    EXPECT_EQ(legacy.command_identifydevicelingos(0), 1);
    EXPECT_EQ(legacy.getipodsoftwareversion(text, 256), 1);
  }
  void EnterRemoteUi() {
    Identify();
    EXPECT_EQ(legacy.command_enterremoteuimode(), 1);
  }
  std::wstring Name(unsigned long index) {
    EXPECT_EQ(legacy.getnextcategorizeddbrecord(text, 255, index), 1);
    return text;
  }

  ipodsim::SimulatedIpod simulated;
  World world;
  ipod legacy;
  wchar_t text[256] = {};
};

TEST(LegacyInterface, ReadsCountAndNamesOfAnIpodThatEntersAtOnce) {
  DockedLegacy dock(test::SixtySongs());
  dock.EnterRemoteUi();
  unsigned long count = 0;
  EXPECT_EQ(dock.legacy.selecttop(test::kTracks, &count, 0), 1);
  EXPECT_EQ(count, 60UL);
  EXPECT_EQ(dock.Name(0), L"T000");
  EXPECT_EQ(dock.Name(1), L"T001");
}

TEST(LegacyInterface, IsOffByOneBehindAPendingRemoteUi) {
  DockedLegacy dock(WithAPendingRemoteUi());
  dock.EnterRemoteUi();
  unsigned long count = 99;
  EXPECT_EQ(dock.legacy.selecttop(test::kTracks, &count, 0), 0);
  EXPECT_EQ(count, 0UL);
}

TEST(LegacyInterface, IsBroughtBackByAQuestionBehindAPendingRemoteUi) {
  DockedLegacy dock(WithAPendingRemoteUi());
  dock.EnterRemoteUi();
  EXPECT_EQ(dock.legacy.getipodsoftwareversion(dock.text, 256), 1);
  unsigned long count = 0;
  EXPECT_EQ(dock.legacy.selecttop(test::kTracks, &count, 0), 1);
  EXPECT_EQ(count, 60UL);
  EXPECT_EQ(dock.Name(59), L"T059");
  EXPECT_TRUE(dock.simulated.mistakes().empty());
}

// Asks for RequestAccessoryInfo in the middle of the exchange with this command.
ipodsim::Settings AskingBefore(std::uint16_t command) {
  ipodsim::Settings settings = test::SixtySongs();
  settings.faults.Plan({Fault::kUnaskedRequests, ipodsim::kExtended, command});
  settings.faults.interjection = ipodsim::Interjection::kAsksInformation;
  return settings;
}

TEST(LegacyInterface, AnswersAQuestionInTheMiddleOfAnExchangeUnderRobustAndFast) {
  for (const auto& conduct : {IPOD_LEGACY_CONDUCT_ROBUST, IPOD_LEGACY_CONDUCT_FAST}) {
    DockedLegacy dock(AskingBefore(ipodsim::extended::kGetNumberCategorizedDbRecords));
    EXPECT_EQ(dock.legacy.SetConduct(&conduct), 1);
    dock.EnterRemoteUi();
    unsigned long count = 0;
    EXPECT_EQ(dock.legacy.selecttop(test::kTracks, &count, 0), 1);
    EXPECT_EQ(count, 60UL);
    EXPECT_EQ(dock.Name(0), L"T000");
    EXPECT_EQ(dock.Name(1), L"T001");
    EXPECT_FALSE(dock.simulated.accessory_information(0).empty());
    EXPECT_TRUE(dock.simulated.mistakes().empty());
  }
}

TEST(LegacyInterface, IsOffByOneBehindAQuestionAndLeavesItUnanswered) {
  DockedLegacy dock(AskingBefore(ipodsim::extended::kGetNumberCategorizedDbRecords));
  dock.EnterRemoteUi();
  unsigned long count = 99;
  EXPECT_EQ(dock.legacy.selecttop(test::kTracks, &count, 0), 0);
  EXPECT_EQ(count, 0UL);
  EXPECT_EQ(dock.Name(0), L"T000");
  EXPECT_EQ(dock.Name(1), L"T000");
  EXPECT_TRUE(dock.simulated.accessory_information(0).empty());
}

// The session answers it and goes on, under every conduct.
TEST(Question, InTheMiddleOfAnExchangeIsAnsweredByASession) {
  for (const tagIPOD_CONDUCT& conduct :
       {IPOD_CONDUCT_FIELD, IPOD_CONDUCT_ROBUST, IPOD_CONDUCT_FAST}) {
    test::Docked docked(AskingBefore(ipodsim::extended::kGetNumberCategorizedDbRecords), conduct);
    docked.GoToTracks();
    unsigned long count = 0;
    EXPECT_EQ(docked.session.Command_GetNumberCategorizedDBRecords(test::kTracks, &count), 1);
    EXPECT_EQ(count, 60UL);
    EXPECT_EQ(docked.Names(0, 60), test::TrackNames(0, 60));
    EXPECT_FALSE(docked.ipod.accessory_information(0).empty());
  }
}

// The results of the self-test's steps, one digit each.
std::string SelfTest(const ipodsim::Settings& settings, std::uint64_t seed) {
  DockedLegacy dock(settings, seed);
  wchar_t title[256] = {};
  std::string results;
  EXPECT_EQ(dock.legacy.startregressiontest(dock.text), 1);
  for (int more = 1; more != 0;) {
    int result = 7;
    more = dock.legacy.nextregressiontest(title, &result, dock.text);
    results += std::to_string(result);
  }
  return results;
}

// Each step sends what it needs and looks at what comes; so it is kept.
TEST(LegacySelfTest, FailsUnderQuestionsAtAStepThatVaries) {
  std::set<std::string> results;
  for (std::uint64_t seed = 1; seed <= 6; ++seed) {
    ipodsim::Settings settings = test::SixtySongs();
    settings.seed = seed;
    settings.faults.Enable(Fault::kUnaskedRequests);
    settings.faults.interjection = ipodsim::Interjection::kAsksInformation;
    results.insert(SelfTest(settings, seed));
  }
  EXPECT_EQ(results.count("11111"), 0U);
  EXPECT_GT(results.size(), 1U);
}

TEST(LegacySelfTest, PassesOnAnIpodWhoseRemoteUiIsPendingFirst) {
  EXPECT_EQ(SelfTest(WithAPendingRemoteUi(), 1), "11111");
}

// A host that takes the name for the sign that an iPod is there finds none.
TEST(LegacyInterface, HearsNoNameOfAnIpodThatKnowsNone) {
  DockedLegacy dock(test::SixtySongsWith("no-name"));
  dock.Identify();
  EXPECT_EQ(dock.legacy.getipodname(dock.text), 0);
  EXPECT_EQ(dock.legacy.getipodsoftwareversion(dock.text, 256), 1);
}

}  // namespace
