// SPDX-License-Identifier: MIT
// Proves that each named habit changes what the iPod says, and nothing before it is asked for.

#include "simulator/settings/habits.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/simulator/ipod_under_test.h"

namespace ipodsim {
namespace {

constexpr char kStartIdps[] = "FF 55 02 00 38 C6";
constexpr char kEnterRemoteUi[] = "FF 55 02 00 05 F9";

Settings With(const char* habit, Settings settings = QuietSettings()) {
  EXPECT_TRUE(ApplyHabit(habit, &settings)) << habit;
  return settings;
}

// QuietSettings has a habit already.
Settings CommonSettings() {
  Settings settings = QuietSettings();
  settings.remote_ui_is_pending_first = Settings().remote_ui_is_pending_first;
  return settings;
}

// What an identified iPod with this habit answers.
std::string Answer(const char* habit, const std::string& request) {
  IpodUnderTest dock(With(habit));
  dock.Identify();
  return dock.Exchange(request);
}

TEST(Habits, AreFoundByTheirNamesAlone) {
  Settings settings = QuietSettings();
  EXPECT_FALSE(ApplyHabit("manners", &settings));
  for (const Habit& habit : AllHabits()) {
    EXPECT_EQ(std::count_if(
                  AllHabits().begin(), AllHabits().end(),
                  [&](const Habit& other) { return std::string_view(other.name) == habit.name; }),
              1)
        << habit.name;
  }
}

TEST(Habits, RemoteUserInterfaceIsPendingFirstUnlessItIsEnteredAtOnce) {
  IpodUnderTest slow(CommonSettings());
  slow.IdentifyOnly();
  EXPECT_EQ(slow.Exchange(kEnterRemoteUi), "FF 55 08 00 02 06 05 00 00 00 C8 23");
  EXPECT_EQ(slow.Read(190 * kMillisecond), "");
  EXPECT_EQ(slow.Read(), "FF 55 04 00 02 00 05 F5");

  IpodUnderTest prompt(With("ui-at-once", CommonSettings()));
  prompt.IdentifyOnly();
  EXPECT_EQ(prompt.Exchange(kEnterRemoteUi), "FF 55 04 00 02 00 05 F5");
}

// Consoles in the field take the pending answer for the answer and go on.
TEST(Habits, PendingAnswerNeedNotBeWaitedFor) {
  IpodUnderTest dock(CommonSettings());
  dock.IdentifyOnly();
  dock.Exchange(kEnterRemoteUi);
  dock.Exchange("FF 55 03 04 00 16 E3");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Habits, StartWithIdIsSilentWithoutOne) {
  IpodUnderTest dock(With("start-with-id"));
  EXPECT_EQ(dock.Exchange(kStartIdps), "");
  EXPECT_EQ(dock.Exchange("FF 55 04 00 38 00 00 C4"), "FF 55 06 00 02 00 00 00 38 C0");
}

TEST(Habits, SilentStartIsNotRefused) {
  EXPECT_EQ(
      IpodUnderTest(With("silent-start", QuietSettings(Profile::kClassic))).Exchange(kStartIdps),
      "");
  EXPECT_EQ(IpodUnderTest(QuietSettings(Profile::kClassic)).Exchange(kStartIdps),
            "FF 55 04 00 02 04 38 BE");
}

TEST(Habits, KeptIdentifiersOutliveTheOlderIdentification) {
  IpodUnderTest dock(With("keeps-ids"));
  dock.Exchange(kStartIdps);
  dock.IdentifyOnly();
  EXPECT_TRUE(dock.ipod.identifiers_on());
}

TEST(Habits, LargeFramesAreLargeHoweverShort) {
  EXPECT_EQ(Answer("large-frames", "FF 55 02 00 07 F7"), "FF 55 00 00 06 00 08 50 6F 64 00 CF");
}

TEST(Habits, NameIsRefusedAsUnknown) {
  EXPECT_EQ(Answer("no-name", "FF 55 02 00 07 F7"), "FF 55 04 00 02 04 07 EF");
}

TEST(Habits, FewFactsAreTold) {
  EXPECT_EQ(Answer("few-facts", "FF 55 02 00 11 ED"), "FF 55 04 00 02 04 11 E5");
  EXPECT_EQ(Answer("few-facts", "FF 55 03 00 29 08 CC"), "FF 55 04 00 02 04 29 CD");
  EXPECT_EQ(Answer("few-facts", "FF 55 02 00 4F AF"), "FF 55 04 00 02 04 4F A7");
  EXPECT_EQ(Answer("few-facts", "FF 55 03 00 4B 04 AE"), "FF 55 04 00 02 04 4B AB");
}

TEST(Habits, TrackInformationIsRefusedAsUnknown) {
  EXPECT_EQ(Answer("no-track-info", "FF 55 0A 04 00 0C 00 00 00 00 00 00 00 E6"),
            "FF 55 06 04 00 01 04 00 0C E5");
  EXPECT_EQ(Answer("no-track-info", "FF 55 09 03 12 00 00 00 00 00 00 00 E2"),
            "FF 55 04 03 00 04 12 E3");
}

TEST(Habits, PreferencesNeedAuthentication) {
  EXPECT_EQ(Answer("authentication", "FF 55 03 00 29 08 CC"), "FF 55 04 00 02 07 29 CA");
  EXPECT_EQ(Answer("authentication", "FF 55 05 00 2B 08 01 01 C6"), "FF 55 04 00 02 07 2B C8");
}

TEST(Habits, SelectIsRefused) {
  EXPECT_EQ(Answer("no-select", "FF 55 08 04 00 17 05 00 00 00 02 D6"),
            "FF 55 06 04 00 01 04 00 17 DA");
}

TEST(Habits, SelectedTrackIsAcknowledgedButStaysPausedOnTheFirst) {
  IpodUnderTest dock(With("stays-paused"));
  dock.Identify();
  EXPECT_EQ(dock.Exchange("FF 55 09 04 00 38 05 00 00 00 02 04 B0"),
            "FF 55 06 04 00 01 00 00 38 BD");
  EXPECT_EQ(dock.ipod.player().state(), PlayerState::kPaused);
  EXPECT_EQ(dock.ipod.player().index(), 0u);
}

TEST(Habits, IpodWithoutQuestionsAsksNothing) {
  Settings asking = QuietSettings();
  asking.asks_accessory = true;
  IpodUnderTest common(asking);
  common.IdentifyOnly();
  EXPECT_EQ(common.Read(kSecond), "FF 55 03 00 27 00 D6");
  IpodUnderTest dock(With("no-questions", asking));
  dock.IdentifyOnly();
  EXPECT_EQ(dock.Read(kSecond), "");
}

TEST(Habits, LongTitleHas480BytesAndItsOldPlace) {
  const Settings settings = With("long-title");
  const std::string& title = settings.library.tracks[5].title;
  EXPECT_EQ(title.size(), 480u);
  EXPECT_EQ(title.substr(0, 20), "Book 1 and on and on");
  EXPECT_EQ(settings.library.tracks[4].title, "Été");
}

// The codes came with version 1.13.
TEST(Habits, ClassicAcknowledgesPlayAndPauseAndIgnoresThem) {
  constexpr char kAcknowledged[] = "FF 55 06 04 00 01 00 00 29 CC";
  IpodUnderTest classic(QuietSettings(Profile::kClassic));
  classic.Identify();
  EXPECT_EQ(classic.Exchange("FF 55 04 04 00 29 0A C5"), kAcknowledged);
  EXPECT_EQ(classic.ipod.player().state(), PlayerState::kStopped);
  EXPECT_EQ(classic.Exchange("FF 55 04 04 00 29 01 CE"), kAcknowledged);
  EXPECT_EQ(classic.ipod.player().state(), PlayerState::kPlaying);
  EXPECT_EQ(classic.Exchange("FF 55 04 04 00 29 0B C4"), kAcknowledged);
  EXPECT_EQ(classic.ipod.player().state(), PlayerState::kPlaying);
}

TEST(Profiles, StrictHearsNoQuestionWithoutAnIdentifier) {
  IpodUnderTest dock(QuietSettings(Profile::kStrict));
  EXPECT_EQ(dock.Exchange(kStartIdps), "");
  EXPECT_EQ(dock.Exchange("FF 55 03 00 0F 04 EA"), "");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Profiles, StrictRefusesUnderAnIdentifierThatNobodyGave) {
  IpodUnderTest dock(QuietSettings(Profile::kStrict));
  EXPECT_EQ(dock.Exchange("FF 55 0E 00 13 00 00 00 1D 00 00 00 00 00 00 00 00 C2"),
            "FF 55 06 00 02 00 00 03 13 E2");
  EXPECT_FALSE(dock.ipod.identified());
}

TEST(Profiles, StrictIsANanoOnceItHasAnIdentifier) {
  IpodUnderTest dock(QuietSettings(Profile::kStrict));
  EXPECT_EQ(dock.Exchange("FF 55 04 00 38 00 00 C4"), "FF 55 06 00 02 00 00 00 38 C0");
  EXPECT_EQ(dock.Exchange("FF 55 05 00 0F 00 01 04 E7"), "FF 55 07 00 10 00 01 04 01 0E D5");
  EXPECT_EQ(dock.Mistakes(), "");
}

TEST(Profiles, EchoSendsEveryByteBack) {
  IpodUnderTest dock(QuietSettings(Profile::kEcho));
  EXPECT_EQ(dock.Exchange("FF 55 02 00 38 C6"), "FF 55 02 00 38 C6");
  EXPECT_EQ(dock.Exchange("FF 01 02"), "FF 01 02");
  EXPECT_EQ(dock.Read(kSecond), "");
}

}  // namespace
}  // namespace ipodsim
