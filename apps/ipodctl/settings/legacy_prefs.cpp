// SPDX-License-Identifier: MIT
// ipodctl --legacy prefs: shows the preferences' display texts, or sets a preference.
#include <nlohmann/json.hpp>
#include <optional>

#include "console/text.h"
#include "ipod/display_text.h"
#include "legacy_commands.h"
#include "settings/preference_table.h"

namespace ipodctl {

namespace {

struct TextGetter {
  unsigned char preference;
  int (ipod::*get)(wchar_t* text);
};

constexpr TextGetter kGetters[] = {
    {ipod::IPOD_PREFERENCE_VIDEOOUTSETTING, &ipod::getipodpreferencevideooutsetting},
    {ipod::IPOD_PREFERENCE_SCREENCONFIGURATION, &ipod::getipodpreferencescreenconfiguration},
    {ipod::IPOD_PREFERENCE_VIDEOSIGNALFORMAT, &ipod::getipodpreferencevideosignalformat},
    {ipod::IPOD_PREFERENCE_LINEOUTUSAGE, &ipod::getipodpreferencelineoutusage},
    {ipod::IPOD_PREFERENCE_VIDEOOUTCONNECTION, &ipod::getipodpreferencevideoutconnection},
    {ipod::IPOD_PREFERENCE_CLOSEDCAPTIONING, &ipod::getipodpreferenceclosedcaptioning},
    {ipod::IPOD_PREFERENCE_VIDEOMONITORASPECT, &ipod::getipodpreferencevideomonitoraspect},
    {ipod::IPOD_PREFERENCE_SUBTITLES, &ipod::getipodpreferencesubtitles},
    {ipod::IPOD_PREFERENCE_VIDEOALTERNATEAUDIO, &ipod::getipodpreferencevideoalternateaudiochannel},
};

/// None when the iPod does not tell. One preference has no display text; its setting is named then.
std::optional<std::string> Read(ipod& docked, const Preference& preference) {
  for (const TextGetter& getter : kGetters) {
    if (getter.preference != preference.code) continue;
    DisplayText text;
    const bool read = (docked.*getter.get)(text.buffer()) != 0;
    return read ? std::optional<std::string>(text.text()) : std::nullopt;
  }
  unsigned char setting = 0;
  if (docked.loadipodpreference(preference.code, &setting) == 0) return std::nullopt;
  return SettingName(preference, setting);
}

void ShowAll(Output& output, LegacySession& session) {
  nlohmann::ordered_json json = nlohmann::ordered_json::object();
  for (const Preference& preference : AllPreferences()) {
    const std::optional<std::string> text = Read(session.interface(), preference);
    if (!text) {
      session.RequireAnswers();
      continue;
    }
    json[preference.name] = *text;
    output.Fact(preference.name, *text);
  }
  session.Require(!json.empty(), "tell any preference");
  output.Object(json);
}

/// Sets a preference until the iPod is undocked. The interface has an operation of its own for the
/// video output only, which does the same.
bool Set(ipod& docked, const Preference& preference, unsigned char setting) {
  if (preference.code == ipod::IPOD_PREFERENCE_VIDEOOUTSETTING) {
    return docked.setipodpreferencevidooutsetting(setting) != 0;
  }
  constexpr unsigned char kCapacity = 20;
  wchar_t acknowledgement[kCapacity] = {};
  return docked.command_setipodpreference(preference.code, setting) != 0 &&
         docked.extractdatafrompacket(ipod::IPOD_COMMAND_ACK, acknowledgement, kCapacity, 0, 0) !=
             0 &&
         acknowledgement[0] == 0;
}

}  // namespace

void RunLegacyPrefs(const Context& context, LegacySession& session) {
  const Options& options = context.options;
  Output& output = context.output;
  if (options.preference.empty()) {
    ShowAll(output, session);
    return;
  }
  const Preference& preference = *PreferenceByName(options.preference);
  if (!options.setting.empty()) {
    const unsigned char setting = *SettingByName(preference, options.setting);
    session.Require(Set(session.interface(), preference, setting),
                    std::string("set ") + preference.name + " to " + options.setting);
  }
  const std::optional<std::string> text = Read(session.interface(), preference);
  session.Require(text.has_value(), std::string("tell ") + preference.name);
  output.Object({{preference.name, *text}});
  output.Line(std::string(preference.name) + ": " + *text);
}

}  // namespace ipodctl
