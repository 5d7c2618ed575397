// SPDX-License-Identifier: MIT
// ipodctl prefs: shows or sets the iPod's preferences.
#include <nlohmann/json.hpp>
#include <optional>

#include "commands.h"
#include "console/failure.h"
#include "settings/preference_table.h"

namespace ipodctl {

namespace {

/// None when the iPod does not know the preference, as iPods without video know few of them.
std::optional<unsigned char> Read(Session& session, const Preference& preference) {
  unsigned char setting = 0;
  if (session.ipod().Command_GetPreference(preference.code, &setting) == 0) return std::nullopt;
  return setting;
}

void ShowAll(Output& output, Session& session) {
  nlohmann::ordered_json json = nlohmann::ordered_json::object();
  for (const Preference& preference : AllPreferences()) {
    const std::optional<unsigned char> setting = Read(session, preference);
    if (!setting) {
      session.RequireAnswers();
      continue;
    }
    const std::string name = SettingName(preference, *setting);
    json[preference.name] = name;
    output.Fact(preference.name, name);
  }
  session.Require(!json.empty(), "tell any preference");
  output.Object(json);
}

void ShowOne(Output& output, Session& session, const Preference& preference) {
  const std::optional<unsigned char> setting = Read(session, preference);
  session.Require(setting.has_value(), std::string("tell ") + preference.name);
  const std::string name = SettingName(preference, *setting);
  output.Object({{preference.name, name}});
  output.Line(std::string(preference.name) + ": " + name);
}

}  // namespace

void RunPrefs(const Context& context, Session& session) {
  const Options& options = context.options;
  if (options.preference.empty()) {
    ShowAll(context.output, session);
    return;
  }
  const Preference& preference = *PreferenceByName(options.preference);
  if (!options.setting.empty()) {
    const unsigned char setting = *SettingByName(preference, options.setting);
    session.Require(session.ipod().Command_SetPreference(preference.code, setting) != 0,
                    std::string("set ") + preference.name + " to " + options.setting);
  }
  ShowOne(context.output, session, preference);
}

}  // namespace ipodctl
