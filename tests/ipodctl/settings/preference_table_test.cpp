// SPDX-License-Identifier: MIT
// The names of the preferences and of their settings.
#include "settings/preference_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace ipodctl;

namespace {

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

}  // namespace
