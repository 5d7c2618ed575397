// SPDX-License-Identifier: MIT
// The table of preferences.
#include "settings/preference_table.h"

namespace ipodctl {

namespace {

std::string Join(const std::vector<const char*>& names) {
  std::string joined;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i != 0) joined += i + 1 == names.size() ? " or " : ", ";
    joined += names[i];
  }
  return joined;
}

}  // namespace

const std::vector<Preference>& AllPreferences() {
  static const std::vector<PreferenceSetting> kSwitch = {{0, "off"}, {1, "on"}};
  static const std::vector<Preference> kAll = {
      {0, "video-out", "send video to the dock", {{0, "off"}, {1, "on"}, {2, "ask"}}, 1},
      {1, "screen", "how video fills the screen", {{0, "fill"}, {1, "fit"}}, 0},
      {2, "signal", "video signal format", {{0, "ntsc"}, {1, "pal"}}, 0},
      {3, "line-out", "send audio to the dock", kSwitch, 1},
      {8,
       "connection",
       "video connection",
       {{0, "none"}, {1, "composite"}, {2, "s-video"}, {3, "component"}},
       1},
      {9, "captions", "closed captions", kSwitch, {}},
      {10, "aspect", "shape of the screen", {{0, "4:3"}, {1, "16:9"}}, 1},
      {12, "subtitles", "subtitles", kSwitch, {}},
      {13, "alternate-audio", "alternate audio of videos", kSwitch, {}},
      {15, "pause-on-removal", "pause when taken out of the dock", kSwitch, {}},
  };
  return kAll;
}

const Preference* PreferenceByName(const std::string& name) {
  for (const Preference& preference : AllPreferences()) {
    if (name == preference.name) return &preference;
  }
  return nullptr;
}

std::string SettingName(const Preference& preference, unsigned char code) {
  for (const PreferenceSetting& setting : preference.settings) {
    if (setting.code == code) return setting.name;
  }
  return "setting " + std::to_string(code);
}

std::optional<unsigned char> SettingByName(const Preference& preference, const std::string& name) {
  for (const PreferenceSetting& setting : preference.settings) {
    if (name == setting.name) return setting.code;
  }
  return std::nullopt;
}

std::string SettingNames(const Preference& preference) {
  std::vector<const char*> names;
  for (const PreferenceSetting& setting : preference.settings) names.push_back(setting.name);
  return Join(names);
}

std::string PreferenceNames() {
  std::vector<const char*> names;
  for (const Preference& preference : AllPreferences()) names.push_back(preference.name);
  return Join(names);
}

}  // namespace ipodctl
