// SPDX-License-Identifier: MIT
// What ipodctl is made of, piece by piece, where no iPod is needed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "console/progress.h"
#include "console/text.h"
#include "library/categories.h"
#include "options.h"
#include "settings/preference_table.h"

using namespace ipodctl;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

TEST(Text, EncodesEveryPlaneAsUtf8) {
  EXPECT_EQ(Utf8(L"A\u00EB\u6A4B"), "A\xC3\xAB\xE6\xA9\x8B");
  EXPECT_EQ(Utf8(L"\U0001F3A7"), "\xF0\x9F\x8E\xA7");
}

TEST(Text, JoinsSurrogatePairsAndReplacesLoneOnes) {
  const wchar_t pair[] = {static_cast<wchar_t>(0xD83C), static_cast<wchar_t>(0xDFA7), 0};
  EXPECT_EQ(Utf8(pair), "\xF0\x9F\x8E\xA7");
  const wchar_t lone[] = {static_cast<wchar_t>(0xD83C), L'x', 0};
  EXPECT_EQ(Utf8(lone), "\xEF\xBF\xBDx");
}

TEST(Text, KeepsNamesFromSteeringTheTerminal) {
  EXPECT_EQ(Printable("a\x1b[2Jb\x07"), "a\xEF\xBF\xBD[2Jb\xEF\xBF\xBD");
  EXPECT_EQ(Printable("\xC2\x9B"
                      "1m"),
            "\xEF\xBF\xBD"
            "1m");
  EXPECT_EQ(Printable("Gr\xC3\xB6\xC3\x9F"
                      "e"),
            "Gr\xC3\xB6\xC3\x9F"
            "e");
}

TEST(Text, ComparesNamesInAnyCase) {
  EXPECT_TRUE(SameName("The Hum", "tHE hUM"));
  EXPECT_FALSE(SameName("The Hum", "The Hu"));
  EXPECT_TRUE(Contains("The Hum", "HU"));
  EXPECT_FALSE(Contains("The Hum", "hut"));
}

TEST(Text, WritesTimesAsClocksDo) {
  EXPECT_EQ(Clock(0), "0:00");
  EXPECT_EQ(Clock(187), "3:07");
  EXPECT_EQ(Clock(3599), "59:59");
  EXPECT_EQ(Clock(3723), "1:02:03");
}

TEST(ProgressBar, FillsInProportion) {
  EXPECT_EQ(RenderBar("Reading", 1, 2, "1/2", 25), "Reading  █████░░░░░  1/2");
  EXPECT_EQ(RenderBar("Reading", 2, 2, "2/2", 25), "Reading  ██████████  2/2");
  EXPECT_EQ(RenderBar("Reading", 0, 0, "0/0", 25), "Reading  ░░░░░░░░░░  0/0");
  EXPECT_EQ(RenderBar("Reading", 9, 2, "9/2", 25), "Reading  ██████████  9/2");
}

TEST(ProgressBar, GivesWayOnANarrowTerminal) {
  EXPECT_EQ(RenderBar("Reading", 1, 2, "1/2", 19), "Reading  1/2");
}

TEST(Categories, LeadFromGenresDownToTracks) {
  std::vector<std::string> way;
  for (unsigned char code = kGenres; code != kTracks; code = CategoryByCode(code).next) {
    way.push_back(CategoryByCode(code).name);
  }
  EXPECT_THAT(way, ElementsAre("genres", "artists", "albums"));
}

TEST(Categories, HaveTheNumbersOfTheWire) {
  const std::pair<const char*, int> numbers[] = {
      {"playlists", 1}, {"artists", 2},    {"albums", 3},   {"genres", 4},          {"tracks", 5},
      {"composers", 6}, {"audiobooks", 7}, {"podcasts", 8}, {"nested-playlists", 9}};
  for (const auto& [name, number] : numbers) {
    ASSERT_TRUE(CategoryByName(name)) << name;
    EXPECT_EQ(CategoryByName(name)->code, number) << name;
  }
  EXPECT_EQ(CategoryByName("artist")->code, 2);
  EXPECT_FALSE(CategoryByName("artis"));
}

TEST(Preferences, HaveTheNumbersOfTheWire) {
  const std::pair<const char*, int> numbers[] = {
      {"video-out", 0},        {"screen", 1},           {"signal", 2},  {"line-out", 3},
      {"connection", 8},       {"captions", 9},         {"aspect", 10}, {"subtitles", 12},
      {"alternate-audio", 13}, {"pause-on-removal", 15}};
  ASSERT_EQ(AllPreferences().size(), 10U);
  for (const auto& [name, number] : numbers) {
    ASSERT_NE(PreferenceByName(name), nullptr) << name;
    EXPECT_EQ(PreferenceByName(name)->code, number) << name;
  }
  const Preference& connection = *PreferenceByName("connection");
  EXPECT_EQ(SettingByName(connection, "component"), 3);
  EXPECT_EQ(SettingName(connection, 2), "s-video");
  EXPECT_EQ(SettingName(connection, 9), "setting 9");
  EXPECT_EQ(SettingByName(*PreferenceByName("video-out"), "ask"), 2);
  EXPECT_EQ(SettingByName(*PreferenceByName("screen"), "fit"), 1);
}

TEST(CommandLine, TakesGlobalOptionsOnBothSidesOfTheCommand) {
  const CommandLine before = ParseCommandLine({"--json", "--port", "/dev/x", "info"});
  const CommandLine after = ParseCommandLine({"info", "--port", "/dev/x", "--json"});
  ASSERT_TRUE(before.options && after.options);
  for (const CommandLine& line : {before, after}) {
    EXPECT_EQ(line.options->command, "info");
    EXPECT_EQ(line.options->port, "/dev/x");
    EXPECT_TRUE(line.options->json);
    EXPECT_TRUE(line.options->idps);
    EXPECT_FALSE(line.options->simulation);
  }
}

TEST(CommandLine, SimulatesOnRequestAndForATourWithoutPort) {
  EXPECT_EQ(ParseCommandLine({"--simulated", "info"}).options->simulation->profile, "nano");
  EXPECT_EQ(ParseCommandLine({"--simulated=old", "info"}).options->simulation->profile, "old");
  EXPECT_EQ(ParseCommandLine({"tour", "--seed", "7"}).options->simulation->seed, 7U);
  EXPECT_FALSE(ParseCommandLine({"tour", "--port", "/dev/x"}).options->simulation);
  EXPECT_FALSE(ParseCommandLine({"info"}).options->simulation);
}

TEST(CommandLine, KeepsNamesApartFromTheProfile) {
  const CommandLine line = ParseCommandLine({"browse", "--simulated", "artists", "-", "nano"});
  ASSERT_TRUE(line.options) << line.text;
  EXPECT_THAT(line.options->path, ElementsAre("artists", "-", "nano"));
  EXPECT_EQ(line.options->simulation->profile, "nano");
}

TEST(CommandLine, ReadsEachCommandsOwnOptions) {
  const CommandLine browse = ParseCommandLine(
      {"browse", "artists", "--from", "3", "--count", "4", "--hierarchy", "video"});
  EXPECT_EQ(browse.options->from, 3U);
  EXPECT_EQ(browse.options->count, 4U);
  EXPECT_EQ(browse.options->hierarchy, 2);
  const CommandLine seek = ParseCommandLine({"seek", "back", "0.5"});
  EXPECT_FALSE(seek.options->forward);
  EXPECT_EQ(seek.options->seek_seconds, 0.5);
  const CommandLine now = ParseCommandLine({"now", "--for", "9"});
  EXPECT_TRUE(now.options->follow);
  EXPECT_EQ(now.options->follow_seconds, 9U);
  const CommandLine prefs = ParseCommandLine({"prefs", "set", "aspect", "16:9"});
  EXPECT_EQ(prefs.options->command, "prefs");
  EXPECT_EQ(prefs.options->preference, "aspect");
  EXPECT_EQ(prefs.options->setting, "16:9");
}

}  // namespace
