// SPDX-License-Identifier: MIT
// The iPod's preferences: their names on the command line and those of their settings.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ipodctl {

struct PreferenceSetting {
  unsigned char code;
  const char* name;
};

struct Preference {
  unsigned char code;  // the preference class on the wire
  const char* name;
  const char* description;
  std::vector<PreferenceSetting> settings;
  std::optional<unsigned char> introduction;  // what the library sets it to when it identifies
};

const std::vector<Preference>& AllPreferences();
const Preference* PreferenceByName(const std::string& name);

/// The setting's name; "setting N" for one that the table does not know.
std::string SettingName(const Preference& preference, unsigned char code);
std::optional<unsigned char> SettingByName(const Preference& preference, const std::string& name);

/// "off, on or ask", for messages and help.
std::string SettingNames(const Preference& preference);
std::string PreferenceNames();

}  // namespace ipodctl
